#include "tesmar/platform/access/internal/atspi/MainContextWatch.h"

#include <cerrno>
#include <cstdint>
#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace tesmar {
namespace {

// Of one dispatch(), so that a client that asks without end cannot stop the host's loop.
constexpr int kMostIterations = 1000;

} // namespace

MainContextWatch::MainContextWatch(std::function<void()> wake)
    : wake_(std::move(wake)), interruption_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (interruption_ < 0)
        throw std::system_error(errno, std::generic_category(), "eventfd");
    thread_ = std::thread([this] { run(); });
}

MainContextWatch::~MainContextWatch() {
    interrupt();
    {
        const std::lock_guard lock(mutex_);
        ends_ = true;
    }
    armed_.notify_one();
    thread_.join();
    close(interruption_);
}

void MainContextWatch::interrupt() {
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = write(interruption_, &one, sizeof one);
}

void MainContextWatch::dispatch() {
    for (int i = 0; i < kMostIterations && g_main_context_iteration(nullptr, FALSE); ++i) {
    }
}

void MainContextWatch::arm() {
    GMainContext* const context = g_main_context_default();
    if (!g_main_context_acquire(context))
        return; // another loop of the application runs it
    interrupt();
    const std::lock_guard lock(mutex_); // run() is not waiting any more
    std::uint64_t count = 0;
    [[maybe_unused]] const auto emptied = read(interruption_, &count, sizeof count);
    int priority = 0;
    g_main_context_prepare(context, &priority);
    int needed = 0;
    do {
        descriptors_.resize(static_cast<std::size_t>(needed));
        needed = g_main_context_query(context, priority, &timeout_, descriptors_.data(),
                                      static_cast<int>(descriptors_.size()));
    } while (static_cast<std::size_t>(needed) > descriptors_.size());
    descriptors_.resize(static_cast<std::size_t>(needed));
    descriptors_.push_back({interruption_, G_IO_IN, 0});
    g_main_context_release(context);
    isArmed_ = true;
    armed_.notify_one();
}

void MainContextWatch::run() {
    std::unique_lock lock(mutex_);
    for (;;) {
        armed_.wait(lock, [&] { return isArmed_ || ends_; });
        if (ends_)
            return;
        isArmed_ = false;
        // Holds the lock: arm() and the destructor interrupt it first.
        g_poll(descriptors_.data(), static_cast<guint>(descriptors_.size()), timeout_);
        if (!(descriptors_.back().revents & G_IO_IN))
            wake_();
    }
}

} // namespace tesmar
