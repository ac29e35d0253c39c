// Saves by and among several users: who may use the files afterwards, and what others have planted.
#include "tesmar/platform/foundation/defaults/internal/preferences_store.h"

#include "support.h"

#include <cerrno>
#include <functional>
#include <grp.h>
#include <gtest/gtest.h>
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
    static bool as(uid_t user, const std::function<bool()>& body, gid_t group = 60000) {
        const auto become = [&] {
            return ::setgroups(1, &group) == 0 && ::setgid(user) == 0 && ::setuid(user) == 0;
        };
        return statusOf(start([&] { return (user == kRoot || become()) && body(); })) == 0;
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
        const auto saves = [&](const char* key) { return save(path, key).empty(); };
        fs::create_directory(base);
        own(base, kUser, kShared, c.directory);
        if (c.file) {
            writeFile(path, writePropertyList(PropertyList::Dictionary{}));
            own(path, kUser, kShared, c.file);
        }
        const auto first = [&] { return ::umask(c.mask), saves("a"); };
        EXPECT_TRUE(as(c.first, first, kShared));
        for (const auto& made : {path, path + ".lock"})
            EXPECT_EQ(fs::status(made).permissions(), fs::perms(c.file ? c.file : 0600)) << made;
        EXPECT_TRUE(as(
            c.next, [&] { return saves("b"); }, kShared));
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
    // Rights of the user, kOther, the group, the mask and others.
    const std::string any(4, '\xFF'), list = "\2\0\0\0\1\0\6\0"s + any + "\2\0\4\0\x4A\xEE\0\0"s +
                                             "\4\0\0\0"s + any + "\x10\0\4\0"s + any +
                                             "\x20\0\4\0"s + any;
    const auto set = [](const fs::path& path, const char* name, const std::string& value) {
        return ::setxattr(path.c_str(), name, value.data(), value.size(), 0) == 0;
    };
    const auto attribute = [&](const char* name) {
        std::string value(100, '\0');
        const auto size = ::getxattr(file.c_str(), name, value.data(), value.size());
        return size < 0 ? "none" : value.substr(0, static_cast<std::size_t>(size));
    };
    const auto saves = [&] { return save(file, "key").empty(); };
    ASSERT_TRUE(saves());
    own(file, kUser, kShared, 0604);
    own(directory.path(), kUser, kShared, 0777);
    ASSERT_TRUE(saves()); // the lock file follows
    EXPECT_TRUE(as(kOther, saves));
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0600)); // the shared group was shut out
    own(file, kUser, kShared, 0640);
    ASSERT_TRUE(set(directory.path(), kDefault, list) && saves());
    EXPECT_EQ(attribute(kList), "none");
    ASSERT_TRUE(set(file, kList, list) && set(file, "user.note", "n") && saves());
    EXPECT_EQ(attribute(kList), list);
    EXPECT_EQ(attribute("user.note"), "n");
    EXPECT_FALSE(as(kOther, saves)); // cannot keep the group
}

TEST_F(PreferencesAccess, NothingPlantedRedirectsASave) {
    own(directory.path(), kRoot, 0, 01777);
    const auto elsewhere = directory.path() / "elsewhere";
    const struct {
        uid_t planter;
        const char* suffix;
        bool isSaved;
    } cases[] = {
        {kOther, "", false},      {kOther, ".lock", false}, {kOther, ".tmp", true},
        {kOther, ".tmp.1", true}, {kRoot, "", true}, // the owner of the directory may
    };
    for (const auto& c : cases) {
        const std::string link = file + c.suffix;
        fs::remove(file);
        fs::remove(file + ".lock");
        ASSERT_TRUE(as(c.planter, [&] { return ::symlink(elsewhere.c_str(), link.c_str()) == 0; }));
        EXPECT_EQ(as(kUser, [&] { return save(file, "key").empty(); }), c.isSaved) << c.suffix;
        EXPECT_EQ(fs::exists(elsewhere), c.planter == kRoot) << c.suffix;
        EXPECT_TRUE(fs::is_symlink(link)) << c.suffix;
    }
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
        bool isWritten = false;
        HookedFiles files;
        files.at = "fsync";
        files.hook = [&] {
            for (const int stream : {0, 1, 2})
                isWritten |= ::write(stream, "log", 3) >= 0;
        };
        ::close_range(0, 2, 0);
        return save(file, "key", std::move(files)).empty() && readPropertyList(readFile(file)) &&
               !isWritten;
    }));
}

} // namespace
} // namespace tesmar
