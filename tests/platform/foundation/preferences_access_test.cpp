// Saves by and among several users: who may use the files afterwards, and what others have planted.
#include "tesmar/platform/foundation/defaults/internal/preferences_store.h"

#include "support.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <functional>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace tesmar {
namespace {

namespace fs = std::filesystem;
using namespace test;

constexpr uid_t kRoot = 0, kUser = 61001, kOther = 61002;
constexpr gid_t kShared = 61003;

// Calls `hook` once, at the first system call of that name; fails all calls named `failing`.
struct HookedFiles : FileSystem {
    int fault(std::string_view name) override {
        if (name == at)
            std::exchange(hook, [] {})();
        return name == failing ? EPERM : 0;
    }
    std::string at, failing;
    std::function<void()> hook = [] {};
};

class PreferencesAccess : public testing::Test {
  protected:
    void SetUp() override {
        if (::geteuid() != 0)
            GTEST_SKIP() << "needs root, to act as several users";
        own(directory.path(), kUser, kShared, 0755);
    }
    static void own(const fs::path& path, uid_t user, gid_t group, mode_t mode) {
        ASSERT_EQ(::chown(path.c_str(), user, group), 0);
        ASSERT_EQ(::chmod(path.c_str(), mode), 0);
    }
    static std::string save(const std::string& file, const char* key, HookedFiles&& files = {}) {
        return savePreferences(files, file, {{key, "value"}});
    }
    // Whether `user` returns true from `body`, run in a process of its own.
    static bool as(uid_t user, const std::function<bool()>& body, gid_t group = 60000,
                   mode_t mask = 022) {
        const pid_t child = ::fork();
        if (child == 0) {
            ::umask(mask);
            const bool isSet = user == kRoot || (::setgroups(1, &group) == 0 &&
                                                 ::setgid(user) == 0 && ::setuid(user) == 0);
            ::_exit(isSet && body() ? 0 : 1);
        }
        int status = 1;
        ::waitpid(child, &status, 0);
        return status == 0;
    }
    static mode_t modeOf(const std::string& path) {
        struct stat status = {};
        return ::stat(path.c_str(), &status) == 0 ? status.st_mode & ACCESSPERMS : 01000;
    }
    static bool setACL(const std::string& path, const char* kind, uid_t other) {
        std::string list("\2\0\0\0", 4); // user, one more user, group, mask, others
        for (const auto& [tag, rights, id] : std::initializer_list<std::array<unsigned, 3>>{
                 {1, 6, ~0u}, {2, 4, other}, {4, 0, ~0u}, {16, 4, ~0u}, {32, 4, ~0u}}) {
            const unsigned words[] = {tag | rights << 16, id};
            list.append(reinterpret_cast<const char*>(words), sizeof words);
        }
        return ::setxattr(path.c_str(), kind, list.data(), list.size(), 0) == 0;
    }

    TemporaryDirectory directory;
    std::string file = directory.path() / "preferences.plist";
};

TEST_F(PreferencesAccess, OneSaverNeverBlocksTheNext) {
    const struct {
        const char* what;
        uid_t first, next;
        mode_t mask, directory, file; // file 0: none yet
    } cases[] = {
        {"root for the user", kRoot, kUser, 0777, 0755, 0},
        {"root, after the user's file", kRoot, kUser, 0022, 0755, 0600},
        {"a umask that denies everything", kUser, kUser, 0777, 0755, 0},
        {"a shared group", kUser, kOther, 0077, 02775, 0660},
        {"a shared group that may only read", kUser, kOther, 0022, 02775, 0640},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const auto base = directory.path() / c.what;
        const std::string path = base / (c.file ? "p.plist" : "new/deeper/p.plist");
        fs::create_directory(base);
        own(base, kUser, kShared, c.directory);
        if (c.file) {
            writeFile(path, writePropertyList(PropertyList::Dictionary{}));
            own(path, kUser, kShared, c.file);
        }
        EXPECT_TRUE(as(
            c.first, [&] { return save(path, "a").empty(); }, kShared, c.mask));
        EXPECT_EQ(modeOf(path + ".lock"), c.file ? c.file : 0600);
        EXPECT_EQ(modeOf(path), c.file ? c.file : 0600);
        EXPECT_TRUE(as(
            c.next, [&] { return save(path, "b").empty(); }, kShared));
        const auto list = readPropertyList(readFile(path));
        EXPECT_TRUE(list && list->find("a") && list->find("b"));
    }
}

TEST_F(PreferencesAccess, AReplacedLockIsNoticed) {
    HookedFiles files;
    files.at = "write";
    files.hook = [&] {
        fs::remove(file + ".lock");
        EXPECT_EQ(save(file, "theirs"), "");
    };
    EXPECT_EQ(save(file, "ours", std::move(files)), "");
    const auto list = readPropertyList(readFile(file));
    EXPECT_TRUE(list && list->find("ours") && list->find("theirs"));
}

TEST_F(PreferencesAccess, IsNeverWidened) {
    constexpr char kList[] = "system.posix_acl_access", kDefault[] = "system.posix_acl_default";
    ASSERT_EQ(save(file, "key"), "");
    own(file, kUser, kShared, 0604);
    own(directory.path(), kUser, kShared, 0777);
    ASSERT_EQ(save(file, "key"), ""); // the lock file follows
    EXPECT_TRUE(as(kOther, [&] { return save(file, "key").empty(); }));
    EXPECT_EQ(modeOf(file), 0600u); // the shared group was shut out
    own(file, kUser, kShared, 0640);
    ASSERT_TRUE(setACL(directory.path(), kDefault, kOther));
    ASSERT_EQ(save(file, "key"), "");
    EXPECT_LT(::getxattr(file.c_str(), kList, nullptr, 0), 0);
    ASSERT_TRUE(setACL(file, kList, kOther));
    ASSERT_EQ(::setxattr(file.c_str(), "user.note", "n", 1, 0), 0);
    const auto attribute = [&](const char* name) {
        char value[100];
        const auto size = ::getxattr(file.c_str(), name, value, sizeof value);
        return std::string(value, static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    };
    const std::string before = attribute(kList);
    ASSERT_EQ(save(file, "key"), "");
    EXPECT_EQ(attribute(kList), before);
    EXPECT_EQ(attribute("user.note"), "n");
    EXPECT_TRUE(as(kOther, [&] { return !save(file, "key").empty(); })); // cannot keep the group
}

TEST_F(PreferencesAccess, NothingPlantedRedirectsASave) {
    own(directory.path(), kRoot, 0, 01777);
    const auto elsewhere = directory.path() / "elsewhere";
    const auto plant = [&](const char* name) {
        return as(kOther, [&] { return ::symlink(elsewhere.c_str(), name) == 0; });
    };
    const auto saves = [&] { return as(kUser, [&] { return save(file, "key").empty(); }); };
    ASSERT_TRUE(plant(file.c_str()));
    EXPECT_FALSE(saves());
    fs::remove(file);
    ASSERT_TRUE(plant((file + ".lock").c_str()));
    EXPECT_FALSE(saves());
    fs::remove(file + ".lock");
    for (const char* name : {".tmp", ".tmp.1", ".tmp.2"})
        ASSERT_TRUE(plant((file + name).c_str()));
    EXPECT_TRUE(saves());
    EXPECT_FALSE(fs::exists(elsewhere));
    fs::remove(file);
    fs::create_symlink(elsewhere, file); // the owner of the directory may
    EXPECT_TRUE(saves());
    EXPECT_TRUE(fs::exists(elsewhere) && fs::is_symlink(file));
}

TEST_F(PreferencesAccess, AFileSystemThatRefusesModesAndOwners) {
    const auto saves = [&](const char* failing, uid_t owner, mode_t mode) {
        writeFile(file, writePropertyList(PropertyList::Dictionary{}));
        own(file, owner, 0, mode);
        HookedFiles files;
        files.failing = failing;
        return save(file, "key", std::move(files));
    };
    EXPECT_EQ(saves("fchmod", 0, 0600), "");
    EXPECT_EQ(saves("fchown", kUser, 0640), "");
    EXPECT_NE(saves("fchmod", 0, 0640).find("not permitted"), std::string::npos);
}

TEST_F(PreferencesAccess, NoFileTakesTheNumberOfAClosedStream) {
    EXPECT_TRUE(as(kRoot, [&] {
        for (const int stream : {0, 1, 2})
            ::close(stream);
        HookedFiles files;
        files.at = "fsync";
        files.hook = [] {
            for (const int stream : {0, 1, 2})
                EXPECT_LT(::write(stream, "log", 3), 0);
        };
        return save(file, "key", std::move(files)).empty() && readPropertyList(readFile(file)) &&
               !testing::Test::HasFailure();
    }));
}

} // namespace
} // namespace tesmar
