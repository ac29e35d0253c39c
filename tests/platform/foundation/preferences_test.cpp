#include "tesmar/platform/foundation/NSBundle.h"
#include "tesmar/platform/foundation/defaults/NSUserDefaults.h"
#include "tesmar/platform/foundation/defaults/internal/preferences_store.h"
#include "tesmar/platform/foundation/diagnostics.h"

#include "support.h"

#include <cmath>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace tesmar {
namespace {

using namespace test;
namespace fs = std::filesystem;
using PL = PropertyList;

class Preferences : public testing::Test {
  protected:
    Preferences() { store.setPath(file); }

    static bool saveInto(PreferencesStore& store, std::optional<PropertyList> value) {
        store.setValue(std::move(value), "key");
        return store.synchronize();
    }
    bool save(std::optional<PropertyList> value) { return saveInto(store, std::move(value)); }
    std::string read() {
        const auto value = store.value("key");
        return value ? *value->get<std::string>() : "(none)";
    }

    TemporaryDirectory directory;
    std::string file = directory.path() / "preferences.plist";
    FileSystem files;
    PreferencesStore store{files};
};

TEST_F(Preferences, EntriesOfOthersKeepTypeValueAndOrder) {
    const auto contents = [](const PL::Array& ours) {
        PL::Dictionary all{{"half", "\xED\xA0\xBD"}, {"\xED\xA0\xBD", -0.0}, {"key", ours.front()}};
        for (const PropertyList& value : PL::Array{PL::Set{{1LL, "x"}}, PL::UID{3}, PL::Null(),
                                                   PL::Date{NAN}, 0.5f, PL::Integer{1, 2}})
            all.push_back({"other", value});
        if (ours.size() > 1)
            all.push_back({"key", ours[1]});
        return writePropertyList(all);
    };
    writeFile(file, contents({"old", "old again"}));
    store.setValue(std::nullopt, "missing");
    ASSERT_TRUE(save("new"));
    EXPECT_EQ(readFile(file), contents({"new"}));
}

TEST_F(Preferences, ReadsSeeTheFileAsItIsNowButUnsavedChangesWin) {
    PreferencesStore other(files);
    other.setPath(file);
    // Successive files have the same size and clock tick, and reuse the inode of the last but one.
    for (int i = 10; i < 60; ++i) {
        ASSERT_TRUE(saveInto(other, std::to_string(i)));
        EXPECT_EQ(read(), std::to_string(i));
    }
    EXPECT_FALSE(save(PL::Data{std::string(17 << 20, 'x')})); // too large to be read again
    store.setValue("mine", "key");
    EXPECT_EQ(read(), "mine");
    ASSERT_TRUE(save(std::nullopt));
    EXPECT_FALSE(other.value("key"));
    ASSERT_TRUE(saveInto(other, "again"));
    ASSERT_TRUE(store.synchronize()); // has nothing to write
    EXPECT_EQ(read(), "again");
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
    EXPECT_EQ(read(), "again");
    store.setPath(directory.path() / "new" / "deeper" / "preferences.plist");
    ASSERT_TRUE(save("x"));
    EXPECT_EQ(fs::status(directory.path() / "new").permissions(), fs::perms(0700));
}

TEST_F(Preferences, WhatCannotBeReadReadsAsEmpty) {
    enum Save { refused, replaces, keepsCopy };
    const auto write = [&](const std::string& bytes) {
        return [=, this] { writeFile(file, bytes); };
    };
    const struct {
        const char* what;
        std::function<void()> make;
        Save save;
    } cases[] = {
        {"absent", [] {}, replaces},
        {"an empty file", write(""), keepsCopy},
        {"XML", write("<?xml version=\"1.0\"?><plist><dict/></plist>"), keepsCopy},
        {"a list", write(writePropertyList(PL::Array{"key"})), keepsCopy},
        {"too much", [&] { write("x")(), fs::resize_file(file, 1ull << 34); }, keepsCopy},
        {"a pipe", [&] { ::mkfifo(file.c_str(), 0600); }, refused},
        {"a directory", [&] { fs::create_directories(file + "/sub"); }, refused},
        {"a device", [&] { fs::create_symlink("/dev/zero", file); }, refused},
        {"a circle of links", [&] { fs::create_symlink(file, file); }, refused},
        {"a file for a directory", [&] { write("x")(), store.setPath(file + "/x"); }, refused},
        {"no path", [&] { store.setPath(""); }, refused},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        fs::remove_all(file);
        fs::remove(file + ".corrupt");
        fs::create_directories(file + ".tmp/stuck"); // a directory, which a save cannot remove
        writeFile(file + ".tmp.1", "of a saver that died");
        store.setPath(file);
        c.make();
        EXPECT_FALSE(store.value("key"));
        EXPECT_EQ(save("new"), c.save != refused);
        EXPECT_EQ(read(), "new"); // in memory even if not saved
        EXPECT_EQ(fs::exists(file + ".corrupt"), c.save == keepsCopy);
        EXPECT_EQ(fs::exists(file + ".tmp.1"), c.save == refused);
        store.setValue(std::nullopt, "key");
    }
}

TEST_F(Preferences, CopiesOfUnparsableFilesNeverReplaceOneAnother) {
    for (int i = 0; i < 11; ++i) {
        const auto copy = file + ".corrupt" + (i == 0 ? "" : "." + std::to_string(i));
        fs::remove(file); // it is linked to the copy, which writing would change
        writeFile(file, "broken " + std::to_string(i));
        ASSERT_EQ(save("x"), i < 10);
        EXPECT_EQ(readFile(i < 10 ? copy : file), "broken " + std::to_string(i));
    }
    EXPECT_EQ(readFile(file + ".corrupt"), "broken 0");
}

class UserDefaults : public testing::Test {
  protected:
    UserDefaults() { defaults->setPreferencesPath(file); }
    ~UserDefaults() override { setDiagnosticHandler({}); }
    TemporaryDirectory directory;
    std::string file = directory.path() / "chosen";
    Ref<NSUserDefaults> defaults = make<NSUserDefaults>();
};

TEST_F(UserDefaults, ObjectsComeBackAsNewCopies) {
    const auto values = list({number(true), number(-5LL), data("\0\xFF"s)});
    const auto mutableOne = dictionary({{"list", values}})->mutableCopy();
    const Ref<NSObject> objects[] = {text("t\u00e9xt"), number(0.25), data(""), values, mutableOne};
    for (const auto& object : objects) {
        defaults->setObject(object, "key");
        EXPECT_TRUE(object->isEqual(defaults->objectForKey("key").get()));
        ASSERT_TRUE(defaults->synchronize());
        EXPECT_TRUE(object->isEqual(defaults->objectForKey("key").get()));
    }
    mutableOne->setObject(values, "later");
    EXPECT_FALSE(as<NSDictionary>(defaults->objectForKey("key"))->objectForKey("later"));
    defaults->setObject(nullptr, "key");
    EXPECT_FALSE(defaults->objectForKey("key"));
}

TEST_F(UserDefaults, RejectsObjectsThatCannotBeStored) {
    int complaints = 0;
    setDiagnosticHandler([&](std::string_view) { ++complaints; });
    defaults->setObject(text("stays"), "key");
    const auto cyclic = make<NSMutableDictionary>();
    cyclic->setObject(cyclic, "self");
    Ref<NSObject> wide = text(std::string(1000, 'x'));
    for (int i = 0; i < 40; ++i)
        wide = list({wide, wide});
    const Ref<NSObject> rejected[] = {list({make<NSObject>()}), cyclic, wide, text("\xFF"),
                                      dictionary({{"\xFF", data("")}})};
    for (const auto& object : rejected)
        defaults->setObject(object, "key");
    EXPECT_EQ(complaints, 5);
    EXPECT_TRUE(defaults->objectForKey("key")->isEqual(text("stays").get()));
    cyclic->removeObjectForKey("self");
}

TEST_F(UserDefaults, ValuesWithoutAClassReadAsNull) {
    for (const PropertyList& value : PL::Array{PL::Date{0}, PL::UID{1}, PL::Set{}, PL::Null(),
                                               "\xED\xA0\xBD", PL::Array{PL::Date{0}}}) {
        writeFile(file, writePropertyList(PL::Dictionary{{"key", value}, {"infinite", INFINITY}}));
        EXPECT_FALSE(defaults->objectForKey("key"));
    }
    EXPECT_TRUE(std::isfinite(as<NSNumber>(defaults->objectForKey("infinite"))->doubleValue()));
}

TEST_F(UserDefaults, HostAndEnvironmentChooseTheFile) {
    const std::string home = directory.path() / "home", config = directory.path() / "config";
    const std::string inHome = home + "/.config/app/preferences.plist";
    const std::string inBundle = config + "/bundle/preferences.plist", own = home + "/own.plist";
    const std::optional<std::string> unset;
    const struct {
        std::optional<std::string> configVariable, homeVariable;
        std::string identifier, path, expected;
    } cases[] = {
        {config, home, "app", "", config + "/app/preferences.plist"},
        {unset, home, "app", "", inHome},
        {"", home, "app", "", inHome},
        {"relative", home, "app", "", inHome},
        {config, unset, "", "", inBundle},
        {config, unset, "../up", "", inBundle},
        {config, unset, "..", "", inBundle},
        {config, unset, "app", own, own},
        {unset, unset, "app", "", ""},
    };
    const auto set = [](const char* name, const std::optional<std::string>& value) {
        value ? ::setenv(name, value->c_str(), 1) : ::unsetenv(name);
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
}

} // namespace
} // namespace tesmar
