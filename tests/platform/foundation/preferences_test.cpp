#include "tesmar/platform/foundation/NSBundle.h"
#include "tesmar/platform/foundation/defaults/NSUserDefaults.h"
#include "tesmar/platform/foundation/defaults/internal/preferences_store.h"
#include "tesmar/platform/foundation/diagnostics.h"

#include "support.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

namespace tesmar {
namespace {

using test::data, test::dictionary, test::list, test::number, test::text;

using namespace std::string_literals;
namespace fs = std::filesystem;
using test::readFile;
using test::writeFile;

class Preferences : public testing::Test {
  protected:
    Preferences() { store.setPath(file); }

    bool save(PropertyList value) {
        store.setValue(value, "key");
        return store.synchronize();
    }
    static std::string read(const std::optional<PropertyList>& value) {
        const auto* found = value ? value->get<std::string>() : nullptr;
        return found ? *found : "(none)";
    }

    test::TemporaryDirectory directory;
    std::string file = directory.path() / "preferences.plist";
    FileSystem files;
    PreferencesStore store{files};
};

TEST_F(Preferences, EntriesOfOthersKeepTypeValueAndOrder) {
    const auto contents = [](const PropertyList::Array& ours) {
        PropertyList::Dictionary all{
            {"set", PropertyList::Set{{1LL, "x"}}},
            {"uid", PropertyList::UID{3}},
            {"null", PropertyList::Null()},
            {"date", PropertyList::Date{std::numeric_limits<double>::quiet_NaN()}},
            {"key", ours.front()},
            {"real", 0.5f},
            {"big", PropertyList::Integer{1, 2}},
            {"half", "\xED\xA0\xBD"},
            {"\xED\xA0\xBD", -0.0}};
        if (ours.size() > 1)
            all.push_back({"key", ours[1]});
        return writePropertyList(all);
    };
    writeFile(file, contents({"old", "old again"}));
    store.setValue(std::nullopt, "missing");
    ASSERT_TRUE(save("new"));
    EXPECT_EQ(readFile(file), contents({"new"}));
    EXPECT_EQ(store.value("uid")->get<PropertyList::UID>()->value, 3u);
}

TEST_F(Preferences, ReadsSeeTheFileAsItIsNowButUnsavedChangesWin) {
    PreferencesStore other(files);
    other.setPath(file);
    // Same size, same clock tick, and the inode of the file before last.
    for (int i = 10; i < 60; ++i) {
        other.setValue(std::to_string(i), "key");
        ASSERT_TRUE(other.synchronize());
        EXPECT_EQ(read(store.value("key")), std::to_string(i));
    }
    store.setValue("mine", "key");
    EXPECT_EQ(read(store.value("key")), "mine");
    store.setValue(PropertyList::Data{std::string(17 << 20, 'x')}, "key");
    EXPECT_FALSE(store.synchronize()); // could not be read again
    EXPECT_EQ(read(other.value("key")), "59");
    store.setValue(std::nullopt, "key");
    ASSERT_TRUE(store.synchronize());
    EXPECT_FALSE(other.value("key"));
    other.setValue("again", "key");
    ASSERT_TRUE(other.synchronize());
    const auto before = readFile(file);
    ASSERT_TRUE(store.synchronize()); // nothing of ours is left to write
    EXPECT_EQ(readFile(file), before);
}

TEST_F(Preferences, LinksAndModesSurviveASave) {
    fs::create_directory(directory.path() / "real");
    const auto target = directory.path() / "real" / "target";
    fs::create_symlink("real/link", file);
    fs::create_symlink("target", directory.path() / "real" / "link");
    ASSERT_TRUE(save("through dangling links"));
    EXPECT_EQ(fs::status(target).permissions(), fs::perms(0600));
    fs::permissions(target, fs::perms(0640));
    ASSERT_TRUE(save("again"));
    EXPECT_EQ(fs::status(target).permissions(), fs::perms(0640));
    EXPECT_TRUE(fs::is_symlink(file) && fs::is_symlink(directory.path() / "real" / "link"));
    EXPECT_EQ(read(store.value("key")), "again");

    store.setPath(directory.path() / "new" / "deeper" / "preferences.plist");
    ASSERT_TRUE(save("x"));
    EXPECT_EQ(fs::status(directory.path() / "new").permissions(), fs::perms(0700));
}

TEST_F(Preferences, WhatCannotBeReadReadsAsEmpty) {
    enum Save { refused, replaces, keepsCopy };
    const auto write = [&](std::string bytes) { return [=, this] { writeFile(file, bytes); }; };
    const struct {
        const char* what;
        std::function<void()> make;
        Save save;
    } cases[] = {
        {"absent", [] {}, replaces},
        {"an empty file", write(""), keepsCopy},
        {"XML", write("<?xml version=\"1.0\"?><plist><dict/></plist>"), keepsCopy},
        {"a list", write(writePropertyList(PropertyList::Array{"key"})), keepsCopy},
        {"too much", [&] { write("x")(), fs::resize_file(file, 1ull << 34); }, keepsCopy},
        {"a pipe", [&] { ::mkfifo(file.c_str(), 0600); }, refused},
        {"a directory", [&] { fs::create_directories(file + "/sub"); }, refused},
        {"a device", [&] { fs::create_symlink("/dev/zero", file); }, refused},
        {"a circle of links", [&] { fs::create_symlink(file, file); }, refused},
        {"a file for a directory", [&] { write("x")(), store.setPath(file + "/x"); }, refused},
        {"nowhere", [&] { store.setPath(""); }, refused},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        fs::remove_all(file);
        fs::remove(file + ".corrupt");
        fs::create_directories(file + ".tmp/stuck"); // a name that no save can free
        writeFile(file + ".tmp.1", "of a saver that died");
        store.setPath(file);
        c.make();
        std::error_code error;
        const auto size = fs::file_size(file, error);
        EXPECT_FALSE(store.value("key"));
        EXPECT_EQ(save("new"), c.save != refused);
        EXPECT_EQ(read(store.value("key")), "new"); // unsaved, maybe
        EXPECT_EQ(fs::exists(file + ".corrupt"), c.save == keepsCopy);
        if (c.save == keepsCopy) {
            EXPECT_EQ(fs::file_size(file + ".corrupt"), size);
        }
        EXPECT_EQ(fs::exists(file + ".tmp.1"), c.save == refused);
        store.setValue(std::nullopt, "key");
    }
}

TEST_F(Preferences, CopiesOfUnparsableFilesNeverReplaceOneAnother) {
    for (int i = 0; i < 10; ++i) {
        writeFile(file, "broken " + std::to_string(i));
        ASSERT_TRUE(save("x"));
        const auto copy = file + ".corrupt" + (i == 0 ? "" : "." + std::to_string(i));
        EXPECT_EQ(readFile(copy), "broken " + std::to_string(i));
        fs::remove(file); // or writing it again would change the saved one only
    }
    writeFile(file, "one too many");
    EXPECT_FALSE(save("x"));
    EXPECT_EQ(readFile(file), "one too many");
    EXPECT_EQ(readFile(file + ".corrupt"), "broken 0");
}

class UserDefaults : public testing::Test {
  protected:
    UserDefaults() { ::setenv("XDG_CONFIG_HOME", directory.path().c_str(), 1); }
    ~UserDefaults() override {
        ::unsetenv("XDG_CONFIG_HOME");
        setDiagnosticHandler({});
    }
    test::TemporaryDirectory directory;
    Ref<NSUserDefaults> defaults = make<NSUserDefaults>();
};

TEST_F(UserDefaults, ObjectsComeBackAsFreshCopies) {
    const auto values = list({number(true), number(-5LL), data("\0\xFF"s)});
    const auto changing = dictionary({{"list", values}})->mutableCopy();
    const Ref<NSObject> objects[] = {text("t\u00e9xt"), number(0.25), data(""), values, changing};
    for (const auto& object : objects) {
        defaults->setObject(object, "key");
        const auto unsaved = defaults->objectForKey("key");
        ASSERT_TRUE(unsaved && unsaved != object);
        EXPECT_TRUE(unsaved->isEqual(object.get()));
        ASSERT_TRUE(defaults->synchronize());
        const auto saved = make<NSUserDefaults>()->objectForKey("key");
        ASSERT_TRUE(saved);
        EXPECT_TRUE(saved->isEqual(object.get()));
    }
    changing->setObject(values, "later");
    EXPECT_FALSE(as<NSDictionary>(defaults->objectForKey("key"))->objectForKey("later"));
    defaults->setObject(nullptr, "key");
    EXPECT_FALSE(defaults->objectForKey("key"));
}

TEST_F(UserDefaults, WhatIsNoPropertyListChangesNothing) {
    std::string messages;
    setDiagnosticHandler(
        [&](std::string_view message) { messages += std::string(message) + "\n"; });
    defaults->setObject(text("kept"), "key");
    const auto endless = make<NSMutableDictionary>();
    endless->setObject(endless, "self");
    endless->setObject(endless, "again");
    Ref<NSObject> wide = text(std::string(1000, 'x'));
    for (int i = 0; i < 40; ++i)
        wide = list({wide, wide});
    const Ref<NSObject> objects[] = {make<NSObject>(), list({make<NSObject>()}),
                                     endless,          wide,
                                     text("\xFF"),     dictionary({{"\xFF", data("")}})};
    for (const auto& object : objects)
        defaults->setObject(object, "key");
    EXPECT_EQ(std::count(messages.begin(), messages.end(), '\n'), std::ssize(objects));
    EXPECT_TRUE(defaults->objectForKey("key")->isEqual(text("kept").get()));
    endless->removeObjectForKey("self");
    endless->removeObjectForKey("again");
}

TEST_F(UserDefaults, TypesWithoutAClassReadAsNothing) {
    PropertyList::Dictionary values{{"date", PropertyList::Date{0}}, {"uid", PropertyList::UID{1}},
                                    {"set", PropertyList::Set{}},    {"null", PropertyList::Null()},
                                    {"half", "\xED\xA0\xBD"},        {"infinite", INFINITY}};
    values.push_back({"list", PropertyList::Array{values[0].value}});
    defaults->setPreferencesPath(directory.path() / "chosen");
    writeFile(directory.path() / "chosen", writePropertyList(values));
    for (const char* key : {"date", "uid", "set", "null", "half", "list"})
        EXPECT_FALSE(defaults->objectForKey(key)) << key;
    EXPECT_TRUE(std::isfinite(as<NSNumber>(defaults->objectForKey("infinite"))->doubleValue()));
}

TEST_F(UserDefaults, TheFileIsWhereTheHostAndTheEnvironmentSay) {
    const std::string home = directory.path() / "home", config = directory.path() / "config";
    const char* unset = nullptr;
    const struct {
        const char *configVariable, *homeVariable;
        std::string identifier, path, expected;
    } cases[] = {
        {config.c_str(), home.c_str(), "org.app", "", config + "/org.app/preferences.plist"},
        {unset, home.c_str(), "org.app", "", home + "/.config/org.app/preferences.plist"},
        {"", home.c_str(), "org.app", "", home + "/.config/org.app/preferences.plist"},
        {"relative", home.c_str(), "org.app", "", home + "/.config/org.app/preferences.plist"},
        {config.c_str(), unset, "", "", config + "/bundle/preferences.plist"},
        {config.c_str(), unset, "../up", "", config + "/bundle/preferences.plist"},
        {config.c_str(), unset, "..", "", config + "/bundle/preferences.plist"},
        {config.c_str(), unset, "org.app", home + "/own.plist", home + "/own.plist"},
        {unset, unset, "org.app", "", ""},
    };
    const std::string realHome = std::getenv("HOME") ? std::getenv("HOME") : "";
    const auto set = [](const char* name, const char* value) {
        value ? ::setenv(name, value, 1) : ::unsetenv(name);
    };
    NSBundle::setMainBundle(NSBundle::bundle("bundle", {}));
    for (const auto& c : cases) {
        set("XDG_CONFIG_HOME", c.configVariable);
        set("HOME", c.homeVariable);
        defaults->setApplicationIdentifier(c.identifier);
        defaults->setPreferencesPath(c.path);
        defaults->setObject(number(1LL), "key");
        EXPECT_EQ(defaults->synchronize(), !c.expected.empty()) << c.expected;
        EXPECT_TRUE(c.expected.empty() || fs::remove(c.expected)) << c.expected;
    }
    NSBundle::setMainBundle(nullptr);
    set("HOME", realHome.c_str());
}

} // namespace
} // namespace tesmar
