#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/foundation/runtime.h"

#include "support.h"

#include <gtest/gtest.h>
#include <limits>

namespace tesmar {
namespace {

using test::text;

// The numbers of what has fired, and when.
struct Fired {
    NSRunLoop loop;
    std::vector<std::pair<int, double>> order;

    std::uint64_t schedule(double delay, int number) {
        return loop.schedule(delay, [this, number] { order.emplace_back(number, loop.now()); });
    }
};
using Order = std::vector<std::pair<int, double>>;

struct Ticker : FrameClient {
    bool frame(double now) override {
        frames.push_back(now);
        if (during)
            during();
        return static_cast<int>(frames.size()) < most;
    }
    int most = 1000;
    std::vector<double> frames;
    std::function<void()> during;
};

TEST(RunLoop, FiresInOrderOfDeadlineThenOfScheduling) {
    Fired f;
    f.schedule(2, 1);
    f.schedule(1, 2);
    f.schedule(2, 3);
    f.schedule(-5, 4);
    f.schedule(std::numeric_limits<double>::quiet_NaN(), 5);
    f.schedule(std::numeric_limits<double>::infinity(), 6);
    f.loop.cancel(f.schedule(1.5, 7));
    f.loop.cancel(12345);
    EXPECT_EQ(f.loop.nextDeadline(), 0);
    f.loop.advanceTo(1.9);
    EXPECT_EQ(f.order, (Order{{4, 0}, {5, 0}, {2, 1}}));
    EXPECT_EQ(f.loop.nextDeadline(), 2);
    for (const double time :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 1.0})
        f.loop.advanceTo(time);
    EXPECT_EQ(f.loop.now(), 1.9);
    f.loop.noteTime(5);
    EXPECT_EQ(f.order.size(), 3u);
    f.order.clear();
    f.loop.advanceTo(5);
    EXPECT_EQ(f.order, (Order{{1, 5}, {3, 5}}));
    EXPECT_FALSE(f.loop.nextDeadline()); // infinity never comes
    const auto ticker = std::make_shared<Ticker>();
    f.loop.addFrameClient(ticker);
    f.loop.advanceTo(1e300); // where a frame later is the same time
    EXPECT_EQ(f.loop.now(), 1e300);
    EXPECT_EQ(f.order.size(), 2u);
}

TEST(RunLoop, WorkMayScheduleAndCancelWork) {
    Fired f;
    const auto doomed = f.schedule(2, 1);
    f.loop.schedule(1, [&] {
        f.loop.cancel(doomed);
        f.schedule(0.5, 2);
        f.schedule(0, 3);
        f.schedule(10, 4);
        f.loop.advanceTo(1.2); // pumped from within
    });
    f.loop.advanceTo(3);
    EXPECT_EQ(f.order, (Order{{3, 1}, {2, 1.5}}));
    EXPECT_EQ(f.loop.nextDeadline(), 11);
}

TEST(RunLoop, FramesComeOncePerPumpAndStopWithTheirClient) {
    NSRunLoop loop;
    constexpr double frame = NSRunLoop::kFrameInterval;
    auto ticker = std::make_shared<Ticker>();
    ticker->most = 3;
    loop.addFrameClient(ticker);
    loop.addFrameClient(ticker);
    EXPECT_EQ(loop.nextDeadline(), frame);
    loop.advanceTo(frame / 2);
    EXPECT_TRUE(ticker->frames.empty());
    loop.advanceTo(10.5 * frame); // frames that nobody could have seen are left out
    ASSERT_EQ(ticker->frames.size(), 1u);
    EXPECT_NEAR(ticker->frames[0], 10 * frame, 1e-9);
    for (int i = 11; i < 20; ++i)
        loop.advanceTo((i + 0.5) * frame);
    EXPECT_EQ(ticker->frames.size(), 3u);
    EXPECT_FALSE(loop.nextDeadline());

    auto gone = std::make_shared<Ticker>();
    loop.addFrameClient(gone);
    gone.reset();
    EXPECT_FALSE(loop.nextDeadline());
    loop.advanceTo(2);
    const auto again = std::make_shared<Ticker>(); // after the dead one: a frame from now
    loop.addFrameClient(again);
    EXPECT_NEAR(*loop.nextDeadline(), 2 + frame, 1e-9);
}

TEST(RunLoop, AFrameMayAddAndDropClients) {
    NSRunLoop loop;
    const auto first = std::make_shared<Ticker>();
    auto second = std::make_shared<Ticker>(), third = std::make_shared<Ticker>();
    first->most = 1;
    first->during = [&] {
        second.reset();
        loop.addFrameClient(third);
        loop.addFrameClient(first); // finishing counts
    };
    loop.addFrameClient(first);
    loop.addFrameClient(second);
    loop.advanceTo(0.02);
    loop.advanceTo(0.04);
    EXPECT_EQ(first->frames.size(), 1u);
    EXPECT_EQ(third->frames.size(), 1u);
}

class Bell : public NSObject {
    TESMAR_CLASS
  public:
    void ring() { log += "ring "; }
    void ringFor(const Ref<NSString>& guest) { log += guest ? guest->text() + " " : "nobody "; }
    static inline std::string log;
};

Class& Bell::classObject() {
    static Class type("Bell", &NSObject::classObject(), allocator<Bell>(),
                      {method<&Bell::ring>("ring"), method<&Bell::ringFor>("ringFor:")});
    return type;
}

TEST(RunLoop, DelayedMessagesKeepTheirTargetUntilSentOrCancelled) {
    Bell::log.clear();
    NSRunLoop loop;
    auto bell = make<Bell>(), other = make<Bell>();
    const WeakRef<Bell> weak = bell, weakOther = other;
    loop.performSelectorAfterDelay(bell, Selector("ringFor:"), text("Ann"), 1);
    loop.performSelectorAfterDelay(bell, Selector("ringFor:"), nullptr, 1);
    loop.performSelectorAfterDelay(bell, Selector("ring"), nullptr, 3);
    loop.performSelectorAfterDelay(other, Selector("ring"), nullptr, 2);
    bell.reset();
    other.reset();
    loop.advanceTo(2);
    EXPECT_EQ(Bell::log, "Ann nobody ring ");
    EXPECT_TRUE(weakOther.expired());
    ASSERT_FALSE(weak.expired());
    loop.cancelPreviousPerformRequests(*weak.lock());
    EXPECT_TRUE(weak.expired());
    EXPECT_FALSE(loop.nextDeadline());
}

} // namespace
} // namespace tesmar
