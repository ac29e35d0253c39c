#include "tesmar/platform/foundation/NSArray.h"
#include "tesmar/platform/foundation/NSBundle.h"
#include "tesmar/platform/foundation/NSDictionary.h"
#include "tesmar/platform/foundation/defaults/NSUserDefaults.h"
#include "tesmar/platform/foundation/defaults/preferences_store.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/scalars.h"

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
    static std::string text(const std::optional<PropertyList>& value) {
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
        EXPECT_EQ(text(store.value("key")), std::to_string(i));
    }
    store.setValue("mine", "key");
    EXPECT_EQ(text(store.value("key")), "mine");
    EXPECT_EQ(text(other.value("key")), "59");
    store.setValue(std::nullopt, "key");
    EXPECT_FALSE(store.value("key"));
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
    EXPECT_EQ(text(store.value("key")), "again");

    store.setPath(directory.path() / "new" / "deeper" / "preferences.plist");
    ASSERT_TRUE(save("x"));
    EXPECT_EQ(fs::status(directory.path() / "new").permissions(), fs::perms(0700));
}

TEST_F(Preferences, WhatCannotBeReadReadsAsEmpty) {
    enum Save { refused, replaces, keepsCopy };
    const struct {
        const char* what;
        std::function<void()> make;
        Save save;
    } cases[] = {
        {"absent", [] {}, replaces},
        {"an empty file", [&] { writeFile(file, ""); }, keepsCopy},
        {"text", [&] { writeFile(file, std::string(100, 'x')); }, keepsCopy},
        {"XML", [&] { writeFile(file, "<?xml version=\"1.0\"?><plist><dict/></plist>"); },
         keepsCopy},
        {"a list", [&] { writeFile(file, writePropertyList(PropertyList::Array{"key"})); },
         keepsCopy},
        {"too much",
         [&] {
             writeFile(file, writePropertyList(PropertyList::Dictionary{{"key", "x"}}));
             fs::resize_file(file, 1ull << 34);
         },
         keepsCopy},
        {"a pipe", [&] { ::mkfifo(file.c_str(), 0600); }, refused},
        {"a directory", [&] { fs::create_directories(file + "/sub"); }, refused},
        {"a device", [&] { fs::create_symlink("/dev/zero", file); }, refused},
        {"a circle of links", [&] { fs::create_symlink(file, file); }, refused},
        {"a file for a directory",
         [&] {
             writeFile(directory.path() / "plain", "x");
             store.setPath(directory.path() / "plain" / "preferences.plist");
         },
         refused},
        {"nowhere", [&] { store.setPath(""); }, refused},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        fs::remove_all(file);
        fs::remove(file + ".corrupt");
        store.setPath(file);
        c.make();
        std::error_code error;
        const bool isFile = fs::is_regular_file(file, error);
        const auto size = isFile ? fs::file_size(file) : 0;
        EXPECT_FALSE(store.value("key"));
        EXPECT_EQ(save("new"), c.save != refused);
        EXPECT_EQ(text(store.value("key")), "new"); // unsaved, maybe
        EXPECT_EQ(fs::exists(file + ".corrupt"), c.save == keepsCopy);
        if (c.save == keepsCopy) {
            EXPECT_EQ(fs::file_size(file + ".corrupt"), size);
        }
        EXPECT_FALSE(fs::exists(file + ".tmp"));
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

TEST_F(Preferences, WhatCouldNotBeReadAgainIsNotSaved) {
    ASSERT_TRUE(save("old"));
    EXPECT_FALSE(save(PropertyList::Data{std::string(17 << 20, 'x')}));
    store.setValue(std::nullopt, "key");
    store.setValue("new", "other");
    EXPECT_TRUE(store.synchronize());
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
    const auto list =
        NSArray::arrayWithObjects({NSNumber::numberWith(true), NSNumber::numberWith(-5LL)});
    const auto dictionary = NSDictionary::dictionaryWithEntries(
                                {{"list", list}, {"data", NSData::dataWithBytes("\0\xFF"s)}})
                                ->mutableCopy();
    const Ref<NSObject> objects[] = {NSString::stringWithString("t\u00e9xt"),
                                     NSNumber::numberWith(0.25), NSData::dataWithBytes(""), list,
                                     dictionary};
    for (const auto& object : objects) {
        defaults->setObject(object, "key");
        const auto unsaved = defaults->objectForKey("key");
        ASSERT_TRUE(unsaved && unsaved != object);
        EXPECT_TRUE(unsaved->isEqual(object.get()));
        ASSERT_TRUE(defaults->synchronize());
        const auto other = make<NSUserDefaults>();
        const auto saved = other->objectForKey("key");
        ASSERT_TRUE(saved);
        EXPECT_TRUE(saved->isEqual(object.get()));
    }
    dictionary->setObject(list, "later");
    EXPECT_FALSE(as<NSDictionary>(defaults->objectForKey("key"))->objectForKey("later"));
    defaults->setObject(nullptr, "key");
    EXPECT_FALSE(defaults->objectForKey("key"));
}

TEST_F(UserDefaults, WhatIsNoPropertyListChangesNothing) {
    std::string messages;
    setDiagnosticHandler(
        [&](std::string_view message) { messages += std::string(message) + "\n"; });
    defaults->setObject(NSString::stringWithString("kept"), "key");
    const auto endless = make<NSMutableDictionary>();
    endless->setObject(endless, "self");
    endless->setObject(endless, "again");
    Ref<NSObject> wide = NSString::stringWithString(std::string(1000, 'x'));
    for (int i = 0; i < 40; ++i)
        wide = NSArray::arrayWithObjects({wide, wide});
    const Ref<NSObject> objects[] = {
        make<NSObject>(),
        NSArray::arrayWithObjects({make<NSObject>()}),
        endless,
        wide,
        NSString::stringWithString("\xFF"),
        NSDictionary::dictionaryWithEntries({{"\xFF", NSData::dataWithBytes("")}})};
    for (const auto& object : objects)
        defaults->setObject(object, "key");
    EXPECT_EQ(std::count(messages.begin(), messages.end(), '\n'), std::ssize(objects));
    EXPECT_TRUE(defaults->objectForKey("key")->isEqual(NSString::stringWithString("kept").get()));
    endless->removeObjectForKey("self");
    endless->removeObjectForKey("again");
}

TEST_F(UserDefaults, TypesWithoutAClassReadAsNothing) {
    defaults->setPreferencesPath(directory.path() / "chosen");
    const PropertyList values[] = {PropertyList::Date{0}, PropertyList::UID{1}, PropertyList::Set{},
                                   "\xED\xA0\xBD", PropertyList::Array{PropertyList::Date{0}}};
    for (const auto& value : values) {
        writeFile(directory.path() / "chosen",
                  writePropertyList(PropertyList::Dictionary{{"key", value}}));
        EXPECT_FALSE(defaults->objectForKey("key"));
    }
    writeFile(directory.path() / "chosen", writePropertyList(PropertyList::Dictionary{
                                               {"key", std::numeric_limits<double>::infinity()}}));
    EXPECT_TRUE(std::isfinite(as<NSNumber>(defaults->objectForKey("key"))->doubleValue()));
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
        defaults->setObject(NSNumber::numberWith(1LL), "key");
        EXPECT_EQ(defaults->synchronize(), !c.expected.empty()) << c.expected;
        EXPECT_TRUE(c.expected.empty() || fs::remove(c.expected)) << c.expected;
    }
    NSBundle::setMainBundle(nullptr);
    set("HOME", realHome.c_str());
}

} // namespace
} // namespace tesmar
