// Deferred work in the host's time. The library has no clock and no thread: the host passes the
// time and calls advanceTo().
//
// Times are seconds on any monotonic clock that the host chooses. An earlier time than the last
// one, NaN or infinity counts as the last one. Null targets and clients and empty functions are
// fatal errors. Main thread only.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/foundation/selector.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace tesmar {

// Work that continues from frame to frame, such as an animation.
class TESMAR_API FrameClient {
  public:
    virtual ~FrameClient();
    // Advances the work to `now`, in seconds. Returns false when the work is finished; the client
    // is then removed.
    virtual bool frame(double now) = 0;
};

class TESMAR_API NSRunLoop {
  public:
    static constexpr double kDefaultFrameInterval = 1.0 / 60; // seconds

    // The one run loop of the process; never destroyed.
    static NSRunLoop& mainRunLoop();

    // The current time: the last one that the host passed, or the deadline of the work that is
    // running. Initially 0.
    double now() const { return now_; }

    // Moves the time forward without running any work, before an event of that time is handled.
    void noteTime(double time);
    // Moves the time forward to `time` and runs all work that is due by then, in order, including
    // work scheduled meanwhile. Frame clients get one frame between two deadlines, however far
    // apart. One call runs at most 20,000 items of work: after 10,000 the time jumps to `time`, so
    // work that repeats itself skips what it missed; items beyond 20,000 wait for the next call.
    void advanceTo(double time);
    // The time at which advanceTo() next has work to do; std::nullopt if there is none.
    std::optional<double> nextDeadline() const;

    // Seconds between two frames of motion, initially kDefaultFrameInterval: a host whose display
    // has another rate sets it. Clamped to 0.001 to 0.1; NaN becomes the default. Takes effect
    // after the next frame.
    double frameInterval() const { return frameInterval_; }
    void setFrameInterval(double seconds);

    // For hosts that sleep in an event loop: `handler` is called when nextDeadline() has become
    // earlier, or a window has something to paint. It is called once until the next advanceTo() or
    // nextDeadline(), and not from inside advanceTo(), UIWindow::needsRender() and
    // UIWindow::render(), after which the host looks anyway; only where drawing itself asked for
    // another frame does render() call it at its end. It may run in the middle of a change,
    // so it should only make the host's loop turn soon; of this library it may call now() and
    // nextDeadline(). What it throws is dropped. Owned; an empty function, the initial one, for
    // none.
    void setWakeHandler(std::function<void()> handler);
    // Calls the handler as described there. For windows and views.
    void wake();
    // While one exists, wake() does nothing: the host will look at windows and deadlines anyway.
    class TESMAR_API Turn {
      public:
        explicit Turn(NSRunLoop& loop) : loop_(loop) { ++loop_.turns_; }
        ~Turn() { --loop_.turns_; }
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;

      private:
        NSRunLoop& loop_;
    };

    // Calls `work` once, `delay` seconds from now; in the next advanceTo() if that is not positive
    // or NaN. Owns `work` until it has run or is cancelled. Returns an id for cancel().
    std::uint64_t schedule(double delay, std::function<void()> work);
    // Ignores ids of work that has run or was cancelled.
    void cancel(std::uint64_t id);

    // Sends the message once, `delay` seconds from now. Owns the target and the argument until the
    // message has been sent or cancelled.
    void performSelectorAfterDelay(const Ref<NSObject>& target, Selector selector,
                                   const Ref<NSObject>& argument, double delay);
    // Cancels every delayed message to `target`.
    void cancelPreviousPerformRequests(const NSObject& target);

    // Calls client->frame() at every frame interval, first one interval from now unless other
    // clients are running already, until it returns false or the client is destroyed. Does not own
    // the client. Adding it again has no effect.
    void addFrameClient(const Ref<FrameClient>& client);

  private:
    struct Item {
        std::uint64_t id;
        double due;
        const NSObject* target; // of a delayed message, else null
        std::function<void()> work;
    };

    std::optional<double> earliest() const;
    void wakeIfEarlierThan(const std::optional<double>& deadline);
    void fireNextItem();
    void runFrames(double time);

    double now_ = 0;
    std::uint64_t lastId_ = 0;
    std::vector<Item> items_; // ordered by due time, then by id
    std::vector<WeakRef<FrameClient>> frameClients_;
    std::vector<WeakRef<FrameClient>> frameScratch_; // empty between frames; keeps its memory
    double nextFrame_ = 0;                           // valid while there are frame clients
    double frameInterval_ = kDefaultFrameInterval;
    std::shared_ptr<const std::function<void()>> wakeHandler_;
    mutable bool isWoken_ = false; // the handler has been called, and the host has not looked yet
    int turns_ = 0;
};

} // namespace tesmar
