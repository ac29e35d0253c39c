#include "tesmar/platform/foundation/NSRunLoop.h"

#include <cmath>
#include <gtest/gtest.h>

namespace tesmar {
namespace {

constexpr double kFrame = NSRunLoop::kDefaultFrameInterval;

class RunLoop : public testing::Test {
  protected:
    std::uint64_t schedule(double delay, int number) {
        return loop.schedule(delay, [this, number] { fired.emplace_back(number, loop.now()); });
    }
    using Fired = std::vector<std::pair<int, double>>;
    NSRunLoop loop;
    Fired fired; // the numbers of the items that have run, and when
};

struct Ticker : FrameClient {
    explicit Ticker(int frameCount = 1000) : most(frameCount) {}
    bool frame(double now) override {
        frames.push_back(now);
        if (during)
            during();
        return std::ssize(frames) < most;
    }
    int most;
    std::vector<double> frames;
    std::function<void()> during;
};

TEST_F(RunLoop, FiresInOrderOfDeadlineThenOfScheduling) {
    schedule(2, 1);
    schedule(1, 2);
    schedule(2, 3);
    schedule(-5, 4);
    schedule(NAN, 5);
    schedule(INFINITY, 6);
    const auto cancelled = schedule(1.5, 7);
    loop.schedule(1, [&] {
        loop.cancel(cancelled);
        schedule(0.5, 8);
        schedule(0, 9);
        loop.advanceTo(1.2);
    });
    loop.cancel(12345);
    EXPECT_EQ(loop.nextDeadline(), 0);
    loop.advanceTo(1.9);
    for (const double ignored : {double(NAN), double(INFINITY), 1.0})
        loop.advanceTo(ignored);
    EXPECT_EQ(loop.now(), 1.9);
    EXPECT_EQ(loop.nextDeadline(), 2);
    loop.noteTime(5);
    EXPECT_EQ(fired, (Fired{{4, 0}, {5, 0}, {2, 1}, {9, 1}, {8, 1.5}}));
    fired.clear();
    loop.advanceTo(5);
    EXPECT_EQ(fired, (Fired{{1, 5}, {3, 5}}));
    EXPECT_FALSE(loop.nextDeadline()); // work after an infinite delay has no deadline
    const auto ticker = std::make_shared<Ticker>();
    loop.addFrameClient(ticker);
    loop.advanceTo(1e300); // where adding an interval changes nothing
    EXPECT_EQ(loop.now(), 1e300);
}

TEST_F(RunLoop, WakesTheHostOnceForWhatItDoesNotSee) {
    int wakes = 0;
    const auto ticker = std::make_shared<Ticker>();
    const auto woken = [&](const std::function<void()>& change) {
        wakes = 0;
        change();
        return wakes;
    };
    loop.setWakeHandler([&] {
        ++wakes;
        throw 1; // dropped
    });
    EXPECT_EQ(woken([&] { schedule(5, 1), schedule(3, 2), schedule(1, 3); }), 1);
    loop.nextDeadline();
    EXPECT_EQ(woken([&] { schedule(2, 4), schedule(INFINITY, 5); }), 0); // none is earlier
    EXPECT_EQ(woken([&] { schedule(0.5, 6); }), 1);
    EXPECT_EQ(woken([&] { loop.wake(); }), 0); // the host has not looked yet
    EXPECT_EQ(woken([&] { loop.schedule(0, [&] { loop.wake(), schedule(0.01, 7); }); }), 0);
    EXPECT_EQ(woken([&] { loop.advanceTo(0.001); }), 0); // looks afterwards
    EXPECT_EQ(woken([&] { loop.addFrameClient(ticker); }), 0);
    EXPECT_EQ(woken([&] { loop.wake(), loop.wake(); }), 1);
    loop.advanceTo(1.5);
    loop.setFrameInterval(0.002);
    loop.advanceTo(1.6);
    EXPECT_LT(*loop.nextDeadline(), 1.6021);
    const std::pair<double, double> intervals[] = {{NAN, kFrame}, {0, 0.001}, {7, 0.1}};
    for (const auto& [given, used] : intervals)
        EXPECT_EQ((loop.setFrameInterval(given), loop.frameInterval()), used);
    loop.setWakeHandler({});
    EXPECT_EQ(woken([&] { schedule(0, 8); }), 0);
}

TEST_F(RunLoop, FramesComeOncePerAdvanceAndStopWithTheirClient) {
    auto ticker = std::make_shared<Ticker>(3);
    loop.addFrameClient(ticker);
    loop.addFrameClient(ticker);
    EXPECT_EQ(loop.nextDeadline(), kFrame);
    loop.advanceTo(kFrame / 2);
    EXPECT_TRUE(ticker->frames.empty());
    loop.advanceTo(10.5 * kFrame); // skips missed frames
    ASSERT_EQ(ticker->frames.size(), 1u);
    EXPECT_NEAR(ticker->frames[0], 10 * kFrame, 1e-9);
    for (int i = 11; i < 20; ++i)
        loop.advanceTo((i + 0.5) * kFrame);
    EXPECT_EQ(ticker->frames.size(), 3u);
    loop.addFrameClient(ticker);
    ticker.reset();
    EXPECT_FALSE(loop.nextDeadline());
    loop.advanceTo(2);
    const auto first = std::make_shared<Ticker>(1);
    auto second = std::make_shared<Ticker>(), third = std::make_shared<Ticker>();
    first->during = [&] {
        second.reset();
        loop.addFrameClient(third);
        loop.addFrameClient(first); // does not keep it from finishing
    };
    loop.addFrameClient(first); // after an expired client: one interval from now
    EXPECT_NEAR(*loop.nextDeadline(), 2 + kFrame, 1e-9);
    loop.addFrameClient(second);
    loop.advanceTo(2 + 1.1 * kFrame);
    loop.advanceTo(2 + 2.1 * kFrame);
    EXPECT_EQ(first->frames.size(), 1u);
    EXPECT_EQ(third->frames.size(), 1u);
}

} // namespace
} // namespace tesmar
