#include "tesmar/platform/foundation/internal/console.h"

#include <csignal>
#include <cstdio>
#include <ctime>
#include <pthread.h>

namespace tesmar {
namespace {

// While it lives, this thread writes into broken pipes unharmed; the process's own handling of the
// signal, and one that was already on its way, stay untouched.
class NoPipeSignal {
  public:
    NoPipeSignal() {
        sigemptyset(&pipe_);
        sigaddset(&pipe_, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &pipe_, &before_);
        wasPending_ = isPending();
    }
    ~NoPipeSignal() {
        const timespec atOnce{};
        if (!wasPending_ && isPending())
            sigtimedwait(&pipe_, nullptr, &atOnce);
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    NoPipeSignal(const NoPipeSignal&) = delete;
    NoPipeSignal& operator=(const NoPipeSignal&) = delete;

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
    const NoPipeSignal unharmed;
    std::puts(text);
    std::fflush(stdout);
}

} // namespace tesmar
