// Deferred work in the host's time. The library has no clock and no thread: the host pumps.
//
// Times are seconds on any monotonic clock of the host's choosing. Time never runs backwards here:
// an earlier time than the last one, or one that is not finite, counts as the last one.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/foundation/selector.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace tesmar {

// Work that goes on from frame to frame, such as a motion.
class TESMAR_API FrameClient {
  public:
    virtual ~FrameClient() = default;
    // Brings the work up to `now`. False: it is finished and is asked no more.
    virtual bool frame(double now) = 0;
};

class TESMAR_API NSRunLoop {
  public:
    static constexpr double kFrameInterval = 1.0 / 60;

    // The one run loop of the process; main thread only.
    static NSRunLoop& mainRunLoop();

    // The last time that was pumped.
    double now() const { return now_; }

    // Moves the time forward without firing anything: an event that came at `time` is about to be
    // handled.
    void noteTime(double time);
    // Moves the time forward to `time`, firing on the way, in order, everything that falls due.
    // Work that is scheduled meanwhile and falls due by `time` fires too; frame clients are asked
    // once for each stretch between two deadlines, however long it is. Work that keeps scheduling
    // itself is not made up for without end: after some thousands, the time is `time`.
    void advanceTo(double time);
    // When advanceTo next has something to do; nothing while all is at rest.
    std::optional<double> nextDeadline() const;

    // Calls `work` once, `delay` seconds from now (at the next pump if that is not positive). The
    // answer cancels it.
    std::uint64_t schedule(double delay, std::function<void()> work);
    void cancel(std::uint64_t id);

    // Sends the message once, `delay` seconds from now. The target (and the argument) are kept
    // alive until it has been sent or cancelled.
    void performSelectorAfterDelay(const Ref<NSObject>& target, Selector selector,
                                   const Ref<NSObject>& argument, double delay);
    // Cancels every delayed message to `target`.
    void cancelPreviousPerformRequests(const NSObject& target);

    // Asks `client` for a frame at every frame interval from the next one on, until it has finished
    // or is destroyed. Adding it again changes nothing.
    void addFrameClient(const Ref<FrameClient>& client);

  private:
    struct Item {
        std::uint64_t id;
        double due;
        const NSObject* target; // of a delayed message, else null
        std::function<void()> work;
    };

    void fireNextItem();
    void runFrames(double time);

    double now_ = 0;
    std::uint64_t lastId_ = 0;
    std::vector<Item> items_; // ordered by due time, then by id
    std::vector<WeakRef<FrameClient>> frameClients_;
    std::vector<WeakRef<FrameClient>> askedClients_; // empty between frames
    double nextFrame_ = 0;                           // meaningful while there are frame clients
};

} // namespace tesmar
