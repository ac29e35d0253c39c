// Saves that are made to fail, are killed, or meet others: the file is always whole.
//
// TESMAR_SOAK=N repeats the kills and the concurrent saves N times as often.
#include "tesmar/platform/foundation/defaults/internal/preferences_store.h"

#include "support.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tesmar {
namespace {

namespace fs = std::filesystem;
using test::readFile;
using test::writeFile;

int soak() {
    const char* value = std::getenv("TESMAR_SOAK");
    return value ? std::max(1, std::atoi(value)) : 1;
}

// Fails, or dies, at the call of a certain number.
class FaultyFiles : public FileSystem {
  public:
    enum Extent { once, fromThenOn };
    static constexpr int kDies = -1;

    void arm(std::size_t call, int error, Extent extent) {
        calls.clear();
        call_ = call;
        error_ = error;
        extent_ = extent;
    }
    void disarm() { arm(0, 0, once); }
    std::vector<std::string_view> calls; // by name, since they were last armed

  protected:
    int fault(std::string_view name) override {
        calls.push_back(name);
        if (call_ == 0 || (extent_ == once ? calls.size() != call_ : calls.size() < call_))
            return 0;
        if (error_ == kDies)
            ::kill(::getpid(), SIGKILL);
        return error_;
    }

  private:
    std::size_t call_ = 0;
    int error_ = 0;
    Extent extent_ = once;
};

std::string listOf(const char* value) {
    return writePropertyList(
        PropertyList::Dictionary{{"foreign", PropertyList::UID{7}}, {"key", value}});
}

// Every state that a save may find.
struct Scene {
    const char* what;
    std::string before, after;
};
const Scene kScenes[] = {
    {"first save", "", writePropertyList(PropertyList::Dictionary{{"key", "new"}})},
    {"later save", listOf("old"), listOf("new")},
    {"broken file", "broken", writePropertyList(PropertyList::Dictionary{{"key", "new"}})},
};

class PreferencesFault : public testing::Test {
  protected:
    void lay(const Scene& scene) {
        fs::remove_all(directory.path() / "app");
        if (!scene.before.empty()) {
            fs::create_directory(directory.path() / "app");
            writeFile(file, scene.before);
        }
    }
    bool save(FileSystem& files, const PropertyList& value = "new") const {
        PreferencesStore store(files);
        store.setPath(file);
        store.setValue(value, "key");
        return store.synchronize();
    }
    // Runs `body` in a process of its own, which ends with its answer.
    template <class Body>
    static pid_t start(Body&& body) {
        const pid_t child = ::fork();
        if (child == 0)
            ::_exit(body() ? 0 : 1);
        return child;
    }
    static int finish(pid_t child) {
        int status = 0;
        ::waitpid(child, &status, 0);
        return status;
    }

    // In memory, where waiting for the disk takes no time: nobody cuts the power here.
    test::TemporaryDirectory directory{fs::exists("/dev/shm") ? "/dev/shm"
                                                              : fs::temp_directory_path()};
    std::string file = directory.path() / "app" / "preferences.plist";
};

// What the calls of a save can fail with while the file is there: that it is not is no failure.
constexpr int kErrors[] = {EACCES,    EAGAIN, EBADF,  EBUSY,   EDQUOT,  EFBIG,   EINTR,
                           EIO,       EISDIR, ELOOP,  EMFILE,  EMLINK,  ENFILE,  ENAMETOOLONG,
                           ENODEV,    ENOLCK, ENOMEM, ENOSPC,  ENOTDIR, ENOTSUP, ENXIO,
                           EOVERFLOW, EPERM,  EROFS,  ETXTBSY, EXDEV};

TEST_F(PreferencesFault, AFailingCallLeavesTheOldFileAndIsReported) {
    int tried = 0;
    for (const Scene& scene : kScenes) {
        FaultyFiles files;
        const auto saves = [&](std::size_t call, int error, FaultyFiles::Extent extent) {
            lay(scene);
            PreferencesStore store(files);
            store.setPath(file);
            store.setValue("new", "key");
            files.arm(call, error, extent);
            const bool saved = store.synchronize();
            const auto calls = files.calls;
            files.disarm();

            // Only what comes after the rename can fail with the new file in place.
            const auto renames = std::find(calls.begin(), calls.end(), "rename") - calls.begin();
            const bool isNew = saved || call > static_cast<std::size_t>(renames) + 1;
            EXPECT_EQ(readFile(file), isNew ? scene.after : scene.before);
            EXPECT_EQ(*store.value("key").value().get<std::string>(), "new");
            EXPECT_TRUE(store.synchronize()); // succeeds as soon as nothing fails
            EXPECT_EQ(readFile(file), scene.after);
            EXPECT_FALSE(fs::exists(file + ".tmp"));
            EXPECT_EQ(fs::exists(file + ".corrupt"), scene.before == "broken");
            EXPECT_FALSE(fs::exists(file + ".corrupt.1"));
            ++tried;
            return std::pair(saved, calls);
        };
        const auto [saved, calls] = saves(0, 0, FaultyFiles::once);
        ASSERT_TRUE(saved);
        const auto locks = std::find(calls.begin(), calls.end(), "flock");
        const auto renames = std::find(locks, calls.end(), "rename");
        const auto closes = std::find(std::find(locks, renames, "write"), renames, "close");
        // Down on the disk before the rename: the new file, and a copy with its name. After: a
        // name.
        EXPECT_EQ(std::count(locks, renames, "fsync"), scene.before == "broken" ? 3 : 1);
        EXPECT_EQ(std::count(renames, calls.end(), "fsync"), 1);
        for (auto called = calls.begin(); called != calls.end(); ++called) {
            const std::string name(*called);
            const auto call = static_cast<std::size_t>(called - calls.begin()) + 1;
            // Sweeping, giving to the owner, confirming parent directories and unlocking (which the
            // end of the descriptor does too) are done where they are possible.
            const bool isVital = name == "close"      ? called == closes
                                 : name == "mkdir"    ? scene.before.empty()
                                 : called < locks - 1 ? name == "readlink"
                                                      : name != "unlink" && name != "fchown" &&
                                                            called != calls.end() - 2;
            for (const int error : kErrors) {
                if (name == "flock" && error == EAGAIN) // is waited for
                    continue;
                SCOPED_TRACE(std::string(scene.what) + ", call " + std::to_string(call) + ", " +
                             name + ": " + std::strerror(error));
                EXPECT_EQ(saves(call, error, FaultyFiles::once).first, !isVital || error == EINTR);
                saves(call, error, FaultyFiles::fromThenOn);
            }
        }
    }
    RecordProperty("saves", tried);
}

TEST_F(PreferencesFault, ALimitOnFileSizesEndsNobody) {
    lay(kScenes[1]);
    const pid_t child = start([&] {
        const rlimit limit{8192, 8192};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        FileSystem files;
        return !save(files, std::string(20'000, 'x'));
    });
    EXPECT_EQ(finish(child), 0);
    EXPECT_EQ(readFile(file), kScenes[1].before);
}

TEST_F(PreferencesFault, AKilledSaverLeavesTheOldFileOrTheNewOne) {
    int kills = 0;
    for (const Scene& scene : kScenes) {
        FaultyFiles files;
        lay(scene);
        ASSERT_TRUE(save(files));
        const std::size_t calls = files.calls.size();
        for (std::size_t i = 0; i < calls * static_cast<std::size_t>(soak()); ++i, ++kills) {
            lay(scene);
            files.arm(i % calls + 1, FaultyFiles::kDies, FaultyFiles::once);
            ASSERT_TRUE(WIFSIGNALED(finish(start([&] { return save(files); }))));
            const std::string now = readFile(file);
            ASSERT_TRUE(now == scene.before || now == scene.after) << scene.what << i;
            ASSERT_TRUE(scene.before != "broken" || now == scene.before ||
                        readFile(file + ".corrupt") == scene.before);
            files.disarm();
            ASSERT_TRUE(save(files));
            ASSERT_EQ(readFile(file), scene.after);
            ASSERT_FALSE(fs::exists(file + ".tmp"));
        }
    }
    RecordProperty("kills", kills);
}

TEST_F(PreferencesFault, ManySaversLoseNothing) {
    lay(kScenes[1]);
    constexpr int kProcesses = 8;
    const int saves = 10 * soak();
    const auto saver = [&](const std::string& own, int count) {
        FileSystem files;
        PreferencesStore store(files);
        store.setPath(file);
        bool isWhole = true;
        for (int i = 1; i <= count; ++i) {
            store.setValue(static_cast<long long>(i), own);
            store.setValue(std::string(i % 8 * 9000, own[0]), "shared");
            while (!store.synchronize()) // waits its turn for two seconds only
                ;
            const auto value = store.value(own);
            isWhole = isWhole && value && store.value("foreign") && store.value("shared") &&
                      value->get<PropertyList::Integer>()->low == static_cast<unsigned>(i);
        }
        return isWhole;
    };
    for (int p = 0; p < kProcesses; ++p)
        start([&, p] { return saver(std::to_string(p), saves); });
    // Meanwhile others die at any moment, with the lock in their hands as often as not.
    int running = kProcesses;
    while (running > 0) {
        const pid_t victim = start([&] { return saver("victim", 1'000'000); });
        ::usleep(3000);
        ::kill(victim, SIGKILL);
        finish(victim);
        ASSERT_TRUE(readPropertyList(readFile(file)));
        for (int status; running > 0 && ::waitpid(-1, &status, WNOHANG) > 0; --running)
            EXPECT_EQ(status, 0);
    }
    const auto list = readPropertyList(readFile(file));
    ASSERT_TRUE(list && list->find("foreign") && list->find("shared"));
    for (int p = 0; p < kProcesses; ++p)
        EXPECT_EQ(list->find(std::to_string(p))->get<PropertyList::Integer>()->low,
                  static_cast<unsigned>(saves));
}

TEST_F(PreferencesFault, AHolderOfTheLockDelaysASaveButADeadOneDoesNot) {
    lay(kScenes[1]);
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t holder = start([&] {
        const int lock = ::open((file + ".lock").c_str(), O_RDWR | O_CREAT, 0600);
        ::flock(lock, LOCK_EX);
        [[maybe_unused]] const auto told = ::write(ready[1], "x", 1);
        ::pause();
        return true;
    });
    char byte;
    ASSERT_EQ(::read(ready[0], &byte, 1), 1);
    FileSystem files;
    PreferencesStore store(files);
    store.setPath(file);
    store.setValue("new", "key");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(store.synchronize());
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(4));
    EXPECT_EQ(readFile(file), kScenes[1].before);
    ::kill(holder, SIGKILL);
    finish(holder);
    EXPECT_TRUE(store.synchronize());
    EXPECT_EQ(readFile(file), kScenes[1].after);
}

} // namespace
} // namespace tesmar
