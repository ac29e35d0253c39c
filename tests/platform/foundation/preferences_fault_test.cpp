// Saves that fail, are killed, or run at the same time: the file is always whole.
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
using namespace test;

std::size_t soak() {
    const char* value = std::getenv("TESMAR_SOAK");
    return value ? static_cast<std::size_t>(std::max(1, std::atoi(value))) : 1;
}

// Makes the calls from number `first` to number `last`, counted from 1, fail with `error`.
struct FaultyFiles : FileSystem {
    int fault(std::string_view name) override {
        calls.emplace_back(name);
        if (calls.size() < first || calls.size() > last)
            return 0;
        if (error < 0)
            ::kill(::getpid(), SIGKILL);
        return error;
    }
    std::size_t first = 1, last = 0;
    int error = 0;                  // negative: kills the process instead
    std::vector<std::string> calls; // by name
};

// The file before and after a save, for every state in which the save may find it.
struct Scene {
    const char* what;
    std::string before, after;
    bool isBroken() const { return before == "broken"; }
};
const std::string kNew = writePropertyList(PropertyList::Dictionary{{"key", "new"}});
std::string laterList(const char* value) {
    return writePropertyList(PropertyList::Dictionary{{"foreign", UID{7}}, {"key", value}});
}
const Scene kScenes[] = {{"first save", "", kNew},
                         {"later save", laterList("old"), laterList("new")},
                         {"broken file", "broken", kNew}};

class PreferencesFault : public testing::Test {
  protected:
    void prepare(const Scene& scene) {
        fs::remove_all(directory.path() / "app");
        if (!scene.before.empty() && fs::create_directory(directory.path() / "app"))
            writeFile(file, scene.before);
    }
    PreferencesStore storeWith(FileSystem& files, const PropertyList& value = "new") const {
        PreferencesStore store(files);
        store.setPath(file);
        store.setValue(value, "key");
        return store;
    }
    bool hasTemporary() const {
        const auto entries = fs::directory_iterator(directory.path() / "app");
        return std::any_of(begin(entries), end(entries), [](const fs::directory_entry& entry) {
            return entry.path().string().find(".tmp") != std::string::npos;
        });
    }
    // In memory, where flushing takes no time: no test simulates a loss of power.
    TemporaryDirectory directory{fs::exists("/dev/shm") ? "/dev/shm" : fs::temp_directory_path()};
    std::string file = directory.path() / "app" / "preferences.plist";
};

// What the calls of a save can fail with while the file exists.
constexpr int kErrors[] = {EACCES,    EAGAIN, EBADF,  EBUSY,   EDQUOT,  EFBIG,   EINTR,
                           EIO,       EISDIR, ELOOP,  EMFILE,  EMLINK,  ENFILE,  ENAMETOOLONG,
                           ENODEV,    ENOLCK, ENOMEM, ENOSPC,  ENOTDIR, ENOTSUP, ENXIO,
                           EOVERFLOW, EPERM,  EROFS,  ETXTBSY, EXDEV};

TEST_F(PreferencesFault, AFailingCallLeavesTheOldFileAndIsReported) {
    for (const Scene& scene : kScenes) {
        std::vector<std::string> calls;
        const auto saves = [&](std::size_t call, std::size_t last, int error) {
            prepare(scene);
            FaultyFiles files;
            files.first = call, files.last = last, files.error = error;
            auto store = storeWith(files);
            const bool saved = store.synchronize();
            calls = std::move(files.calls);
            files.last = 0;
            // Only calls after the rename can fail with the new file in place.
            const auto rename = std::find(calls.begin(), calls.end(), "rename") - calls.begin();
            const bool isNew = saved || call > static_cast<std::size_t>(rename) + 1;
            EXPECT_EQ(readFile(file), isNew ? scene.after : scene.before);
            EXPECT_EQ(*store.value("key").value().get<std::string>(), "new");
            EXPECT_TRUE(store.synchronize()); // succeeds as soon as nothing fails
            EXPECT_EQ(readFile(file), scene.after);
            EXPECT_FALSE(hasTemporary() || fs::exists(file + ".corrupt.1"));
            EXPECT_EQ(fs::exists(file + ".corrupt"), scene.isBroken());
            return saved;
        };
        ASSERT_TRUE(saves(1, 0, 0));
        const auto all = calls;
        const auto lock = std::find(all.begin(), all.end(), "flock");
        const auto rename = std::find(lock, all.end(), "rename");
        const auto close = std::find(std::find(lock, rename, "write"), rename, "close");
        // Before the rename, the new file and the copy of a broken one (its content and its
        // directory) are flushed; after it, the directory.
        EXPECT_EQ(std::count(lock, rename, "fsync"), scene.isBroken() ? 3 : 1);
        EXPECT_EQ(std::count(rename, all.end(), "fsync"), 1);
        for (auto called = all.begin(); called != all.end(); ++called) {
            const std::string& name = *called;
            const auto call = static_cast<std::size_t>(called - all.begin()) + 1;
            // Whether a save must fail with the call, or may not: unlocking is optional, since
            // closing the descriptor unlocks too.
            constexpr std::string_view kVital = "read write link rename fsync";
            const bool isVital = called == lock || called == close ||
                                 (called > lock && kVital.find(name) != kVital.npos);
            const bool isOptional = name == "unlink" || (name == "flock" && called != lock);
            for (const int error : kErrors) {
                if (name == "flock" && error == EAGAIN) // the save waits for the lock
                    continue;
                SCOPED_TRACE(std::string(scene.what) + ", call " + std::to_string(call) + ", " +
                             name + ": " + std::strerror(error));
                const bool isSaved = saves(call, call, error);
                EXPECT_FALSE(isSaved && isVital && error != EINTR);
                EXPECT_TRUE(isSaved || (!isOptional && error != EINTR));
                saves(call, SIZE_MAX, error);
            }
        }
    }
}

TEST_F(PreferencesFault, ALimitOnFileSizesDoesNotEndTheProcess) {
    prepare(kScenes[1]);
    rlimit before;
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit limit{8192, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    FileSystem files;
    EXPECT_FALSE(storeWith(files, std::string(20'000, 'x')).synchronize());
    ::setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(readFile(file), kScenes[1].before);
}

TEST_F(PreferencesFault, AKilledSaverLeavesTheOldFileOrTheNewOne) {
    for (const Scene& scene : kScenes) {
        prepare(scene);
        FaultyFiles all;
        ASSERT_TRUE(storeWith(all).synchronize());
        for (std::size_t i = 0; i < all.calls.size() * soak(); ++i) {
            prepare(scene);
            FaultyFiles files;
            files.first = files.last = i % all.calls.size() + 1;
            files.error = -1;
            const int status = statusOf(start([&] { return storeWith(files).synchronize(); }));
            ASSERT_TRUE(WIFSIGNALED(status));
            files.last = 0;
            const std::string now = readFile(file);
            ASSERT_TRUE(now == scene.before || now == scene.after) << scene.what << i;
            ASSERT_TRUE(!scene.isBroken() || now == scene.before ||
                        readFile(file + ".corrupt") == scene.before);
            ASSERT_TRUE(storeWith(files).synchronize());
            ASSERT_EQ(readFile(file), scene.after);
            ASSERT_FALSE(hasTemporary());
        }
    }
}

TEST_F(PreferencesFault, ManySaversLoseNothing) {
    prepare(kScenes[1]);
    const auto saves = 10 * static_cast<long long>(soak());
    const auto saver = [&](const std::string& own, long long count) {
        FileSystem files;
        auto store = storeWith(files);
        for (long long i = 1; i <= count; ++i) {
            store.setValue(i, own);
            store.setValue(std::string(static_cast<std::size_t>(i) % 8 * 9000, own[0]), "key");
            while (!store.synchronize()) // each try waits for two seconds only
                ;
        }
        return store.value("foreign").has_value();
    };
    int running = 8;
    for (int p = 0; p < running; ++p)
        start([&, p] { return saver(std::to_string(p), saves); });
    while (running > 0) {
        // Meanwhile another process is killed at any moment, often while it holds the lock.
        const pid_t victim = start([&] { return saver("victim", 1'000'000); });
        ::usleep(3000);
        ::kill(victim, SIGKILL);
        EXPECT_TRUE(WIFSIGNALED(statusOf(victim)));
        ASSERT_TRUE(readPropertyList(readFile(file)));
        for (int status; running > 0 && ::waitpid(-1, &status, WNOHANG) > 0; --running)
            EXPECT_EQ(status, 0);
    }
    const auto list = readPropertyList(readFile(file));
    ASSERT_TRUE(list && list->find("foreign"));
    for (const char* own : {"0", "1", "2", "3", "4", "5", "6", "7"})
        EXPECT_EQ(*list->find(own)->get<PropertyList::Integer>(), PropertyList::Integer::of(saves));
}

TEST_F(PreferencesFault, AHolderOfTheLockDelaysASaveForABoundedTime) {
    prepare(kScenes[1]);
    const int holder = ::open((file + ".lock").c_str(), O_RDWR | O_CREAT, 0600);
    ASSERT_EQ(::flock(holder, LOCK_EX), 0);
    FileSystem files;
    auto store = storeWith(files);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(store.synchronize());
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(4));
    EXPECT_EQ(readFile(file), kScenes[1].before);
    ::close(holder);
    EXPECT_TRUE(store.synchronize());
}

} // namespace
} // namespace tesmar
