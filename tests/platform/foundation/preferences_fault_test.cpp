// Saves that are made to fail, are killed, or meet others: the file is always whole.
//
// TESMAR_SOAK=N repeats the kills and the concurrent saves N times as often.
#include "tesmar/platform/foundation/defaults/preferences_store.h"

#include "support.h"

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

    void arm(int call, int error, Extent extent) {
        calls = 0;
        call_ = call;
        error_ = error;
        extent_ = extent;
    }
    void disarm() { arm(0, 0, once); }
    int calls = 0;

  protected:
    int fault(std::string_view) override {
        ++calls;
        if (call_ == 0 || (extent_ == once ? calls != call_ : calls < call_))
            return 0;
        if (error_ == kDies)
            ::kill(::getpid(), SIGKILL);
        return error_;
    }

  private:
    int call_ = 0, error_ = 0;
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

TEST_F(PreferencesFault, AFailingCallLeavesTheOldFileOrTheNewOne) {
    const int errors[] = {ENOSPC, EROFS, EACCES, EIO, EDQUOT, EMFILE, ENOLCK, EINVAL, EINTR};
    for (const Scene& scene : kScenes) {
        FaultyFiles files;
        const auto saves = [&](int call, int error, FaultyFiles::Extent extent) {
            lay(scene);
            PreferencesStore store(files);
            store.setPath(file);
            store.setValue("new", "key");
            files.arm(call, error, extent);
            const bool saved = store.synchronize();
            const int calls = files.calls;
            files.disarm();

            const std::string now = readFile(file);
            EXPECT_TRUE(now == scene.after || (!saved && now == scene.before));
            EXPECT_EQ(*store.value("key").value().get<std::string>(), "new");
            EXPECT_TRUE(store.synchronize()); // succeeds as soon as nothing fails
            EXPECT_EQ(readFile(file), scene.after);
            EXPECT_FALSE(fs::exists(file + ".tmp"));
            EXPECT_EQ(fs::exists(file + ".corrupt"), scene.before == "broken");
            EXPECT_FALSE(fs::exists(file + ".corrupt.1"));
            return std::pair(saved, calls);
        };
        const auto [saved, calls] = saves(0, 0, FaultyFiles::once);
        ASSERT_TRUE(saved);
        ASSERT_GT(calls, 15);
        for (int call = 1; call <= calls; ++call) {
            for (const int error : errors) {
                SCOPED_TRACE(std::string(scene.what) + ", call " + std::to_string(call) + ": " +
                             std::strerror(error));
                const bool survived = saves(call, error, FaultyFiles::once).first;
                EXPECT_TRUE(survived || error != EINTR);
                saves(call, error, FaultyFiles::fromThenOn);
            }
        }
    }
}

TEST_F(PreferencesFault, AShortWriteIsNoSuccess) {
    lay(kScenes[1]);
    const pid_t child = start([&] {
        const rlimit limit{8192, 8192};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        ::signal(SIGXFSZ, SIG_IGN);
        FileSystem files;
        PreferencesStore store(files);
        store.setPath(file);
        store.setValue(std::string(20'000, 'x'), "key");
        return !store.synchronize();
    });
    EXPECT_EQ(finish(child), 0);
    EXPECT_EQ(readFile(file), kScenes[1].before);
    EXPECT_FALSE(fs::exists(file + ".tmp"));
}

TEST_F(PreferencesFault, AKilledSaverLeavesAWholeFile) {
    lay(kScenes[1]);
    for (int call = 1; call <= 60 * soak(); ++call) {
        const pid_t child = start([&] {
            FaultyFiles files;
            files.arm(call, FaultyFiles::kDies, FaultyFiles::once);
            PreferencesStore store(files);
            store.setPath(file);
            for (long long i = 0;; ++i) {
                store.setValue(PropertyList::Data{std::string(i % 100 * 100, 'x')}, "data");
                store.setValue(i, "number");
                store.synchronize();
            }
            return true;
        });
        ASSERT_TRUE(WIFSIGNALED(finish(child)));
        FileSystem files;
        PreferencesStore store(files);
        store.setPath(file);
        ASSERT_TRUE(store.value("foreign"))
            << call; // the file parses, and nobody else's entry is lost
        const auto number = store.value("number");
        const auto data = store.value("data");
        ASSERT_EQ(number.has_value(), data.has_value());
        if (number) {
            ASSERT_EQ(data->get<PropertyList::Data>()->bytes.size(),
                      number->get<PropertyList::Integer>()->low % 100 * 100);
        }
        store.setValue(true, "after");
        ASSERT_TRUE(store.synchronize());
        ASSERT_FALSE(fs::exists(file + ".tmp"));
    }
}

TEST_F(PreferencesFault, ManySaversLoseNothing) {
    constexpr int kProcesses = 8;
    const int saves = 10 * soak();
    pid_t children[kProcesses];
    for (int p = 0; p < kProcesses; ++p)
        children[p] = start([&] {
            FileSystem files;
            PreferencesStore store(files);
            store.setPath(file);
            bool whole = true;
            for (int i = 1; i <= saves; ++i) {
                store.setValue(static_cast<long long>(i), std::to_string(p));
                while (!store.synchronize()) // waits its turn for two seconds only
                    ;
                const auto value = store.value(std::to_string(p));
                whole = whole && value &&
                        value->get<PropertyList::Integer>()->low == static_cast<unsigned>(i);
            }
            return whole;
        });
    for (const pid_t child : children)
        EXPECT_EQ(finish(child), 0);
    const auto list = readPropertyList(readFile(file));
    ASSERT_TRUE(list);
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
