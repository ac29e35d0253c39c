#include "tesmar/platform/foundation/internal/console.h"

#include <csignal>
#include <cstdio>
#include <ctime>
#include <pthread.h>

namespace tesmar {
namespace {

// Suppresses SIGPIPE for writes of this thread. Leaves the signal disposition of the process, and a
// signal that was pending before, unchanged.
class PipeSignalBlock {
  public:
    PipeSignalBlock() {
        sigemptyset(&pipe_);
        sigaddset(&pipe_, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &pipe_, &before_);
        wasPending_ = isPending();
    }
    ~PipeSignalBlock() {
        const timespec noWait{};
        if (!wasPending_ && isPending())
            sigtimedwait(&pipe_, nullptr, &noWait);
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    PipeSignalBlock(const PipeSignalBlock&) = delete;
    PipeSignalBlock& operator=(const PipeSignalBlock&) = delete;

  private:
    static bool isPending() {
        sigset_t pending;
        return sigpending(&pending) == 0 && sigismember(&pending, SIGPIPE) == 1;
    }

    sigset_t pipe_, before_;
    bool wasPending_;
};

} // namespace

void printLine(const char* text) {
    const PipeSignalBlock block;
    std::puts(text);
    std::fflush(stdout);
}

} // namespace tesmar
