#include "tesmar/sharing/TESMARStyleWatch.h"

#include "tesmar/model/TESMARConfig.h"
#include "tesmar/platform/foundation/defaults/NSUserDefaults.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <set>
#include <sys/inotify.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace tesmar {
namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t kEvents = IN_CREATE | IN_CLOSE_WRITE | IN_DELETE | IN_MOVED_FROM |
                                  IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF;
constexpr int kMostLinks = 8;    // from the preferences file to the real one
constexpr int kMostAttempts = 8; // to find directories that do not change meanwhile
constexpr int kMostReads = 256;  // in a call of process(); the rest keeps the descriptor readable

fs::path nearestDirectory(fs::path directory) {
    std::error_code error;
    while (!fs::is_directory(directory, error) && directory.has_relative_path())
        directory = directory.parent_path();
    return directory;
}

// The directory of the file, and of each file that links lead to.
std::set<fs::path> directoriesOf(fs::path file) {
    std::set<fs::path> directories;
    for (int link = 0; link <= kMostLinks; ++link) {
        directories.insert(nearestDirectory(file.parent_path()));
        std::error_code error;
        const fs::path target = fs::read_symlink(file, error);
        if (error)
            break;
        file = file.parent_path() / target; // `target` alone if it is absolute
    }
    return directories;
}

} // namespace

struct TESMARStyleWatch::State {
    fs::path file;
    int descriptor = -1;
    std::set<int> watches;
    std::string failedStep; // empty if none has failed
    int error = 0;          // of errno; 0 if the step says all

    State() = default;
    ~State() { close(); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    void close() {
        if (descriptor >= 0)
            ::close(descriptor);
        descriptor = -1;
    }

    void fail(std::string step, int code) {
        failedStep = std::move(step);
        error = code;
        close();
    }

    void open() {
        const int opened = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
        if (opened < 0)
            return fail("inotify_init1", errno);
        // If the process has closed a standard stream, another part of it may use that number.
        descriptor = ::fcntl(opened, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
        if (descriptor < 0)
            fail("fcntl", errno);
        ::close(opened);
    }

    // Watches the directories that exist now, and no others.
    void watchDirectories() {
        std::set<int> wanted;
        std::set<fs::path> watched;
        for (int i = 0; i < kMostAttempts && watched != directoriesOf(file); ++i) {
            watched = directoriesOf(file);
            wanted.clear();
            for (const fs::path& directory : watched) {
                const int watch =
                    ::inotify_add_watch(descriptor, directory.c_str(), kEvents | IN_ONLYDIR);
                if (watch >= 0)
                    wanted.insert(watch);
                else if (errno != ENOENT && errno != ENOTDIR) // gone again
                    return fail("\"" + directory.string() + "\" cannot be watched", errno);
            }
        }
        for (const int old : watches)
            if (!wanted.contains(old))
                ::inotify_rm_watch(descriptor, old);
        watches = std::move(wanted);
    }

    // Returns whether there were any reports. Which ones does not matter.
    bool takeReports() const {
        alignas(inotify_event) std::array<char, 4096> reports{};
        int reads = 0;
        while (reads<kMostReads&& ::read(descriptor, reports.data(), reports.size())> 0)
            ++reads;
        return reads > 0;
    }
};

TESMARStyleWatch::TESMARStyleWatch() : state_(std::make_unique<State>()) {
    const std::string path = NSUserDefaults::standardUserDefaults()->preferencesPath();
    if (path.empty()) {
        state_->fail("there is no preferences file", 0);
        return;
    }
    std::error_code error;
    state_->file = fs::absolute(path, error);
    state_->open();
    if (state_->descriptor >= 0)
        state_->watchDirectories();
}

TESMARStyleWatch::~TESMARStyleWatch() = default;

int TESMARStyleWatch::descriptor() const {
    return state_->descriptor;
}

std::string TESMARStyleWatch::failure() const {
    if (state_->error == 0)
        return state_->failedStep;
    return state_->failedStep + ": " + std::generic_category().message(state_->error);
}

void TESMARStyleWatch::process() {
    if (state_->descriptor >= 0 && state_->takeReports())
        state_->watchDirectories();
    TESMARConfig::refresh();
}

} // namespace tesmar
