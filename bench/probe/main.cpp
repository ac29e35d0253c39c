// One panel, measured as a host would meet it. Prints one JSON object as its last line.
//
//     probe [--start] [--bare]
//
// --start stops after the first complete frame; --bare shows an empty window instead of the panel.
// PEER_T0_NS, a CLOCK_MONOTONIC stamp in nanoseconds taken before the process was started, makes
// start_ms count from there; without it the count begins in main().
#include "footprint.h"

#include "tesmar/platform/hosts/headless/HeadlessHost.h"
#include "tesmar/tesmar.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <vector>

using namespace tesmar;

namespace {

constexpr CGSize kSize{568, 320};
constexpr int kRounds = 50;

double clockMilliseconds(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

struct Cost {
    double wall = 0; // milliseconds
    double cpu = 0;
};

double median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + values.size() / 2, values.end());
    return values[values.size() / 2];
}

template <class Work>
Cost medianCost(Work work) {
    std::vector<double> wall, cpu;
    for (int i = 0; i < kRounds; ++i) {
        const double w = clockMilliseconds(CLOCK_MONOTONIC);
        const double c = clockMilliseconds(CLOCK_PROCESS_CPUTIME_ID);
        work(i);
        wall.push_back(clockMilliseconds(CLOCK_MONOTONIC) - w);
        cpu.push_back(clockMilliseconds(CLOCK_PROCESS_CPUTIME_ID) - c);
    }
    return {median(wall), median(cpu)};
}

// Notes when it hears of a change.
class Clock : public TESMARViewControllerDelegate {
  public:
    void CCSwitchValueChanged(bool) override {}
    void CCStyleAttributesChanged(const Ref<NSDictionary>&) override {
        heard = clockMilliseconds(CLOCK_MONOTONIC);
    }
    void CCViewControllerWillDisappear() override {}
    double heard = 0;
};

struct Stage {
    Stage() {
        panel->setDelegate(clock);
        host.window()->presentViewController(panel, false);
        host.render();
    }
    HeadlessHost host{kSize};
    Ref<TESMARViewController> panel = make<TESMARViewController>();
    Ref<Clock> clock = std::make_shared<Clock>();
};

CGPoint swatch(Stage& stage, int index) {
    const UIView& view =
        *stage.host.window()->viewWithIdentifier("textColorPicker." + std::to_string(index));
    return view.convertRectTo(view.bounds(), nullptr).center();
}

void measure(Stage& stage) {
    const Cost create = medianCost([](int) { Stage another; });

    std::vector<double> heard;
    const CGPoint points[] = {swatch(stage, 1), swatch(stage, 5)};
    for (int i = 0; i < kRounds; ++i) {
        stage.host.touch(UITouchPhase::began, points[i % 2]);
        const double up = clockMilliseconds(CLOCK_MONOTONIC);
        stage.host.touch(UITouchPhase::ended, points[i % 2]);
        heard.push_back((stage.clock->heard - up) * 1e3);
        stage.host.advance(1);
        stage.host.render();
    }
    const Cost tap = medianCost([&](int i) {
        stage.host.touch(UITouchPhase::began, points[i % 2]);
        stage.host.touch(UITouchPhase::ended, points[i % 2]);
        stage.host.render();
    });
    stage.host.advance(1);
    const Cost relayout = medianCost([&](int i) {
        stage.host.resize(i % 2 ? kSize : CGSize{kSize.height, kSize.width}, 1);
        stage.host.render();
    });

    // Five seconds of nothing, as a host spends them: asleep until a deadline that does not come.
    stage.host.advance(2);
    stage.host.render();
    int wakeups = 0;
    const double before = clockMilliseconds(CLOCK_PROCESS_CPUTIME_ID);
    const double end = stage.host.now() + 5;
    while (NSRunLoop::mainRunLoop().nextDeadline() && stage.host.now() < end) {
        ++wakeups;
        stage.host.advance(NSRunLoop::kFrameInterval);
    }
    if (stage.host.window()->needsRender())
        ++wakeups;
    const double idle = clockMilliseconds(CLOCK_PROCESS_CPUTIME_ID) - before;

    std::printf("\"create_ms\": %.4f, \"create_cpu_ms\": %.4f, \"tap_cb_us\": %.3f, "
                "\"tap_frame_ms\": %.4f, \"tap_frame_cpu_ms\": %.4f, \"relayout_ms\": %.4f, "
                "\"relayout_cpu_ms\": %.4f, \"idle_cpu_ms\": %.4f, \"idle_wakeups\": %d, ",
                create.wall, create.cpu, median(heard), tap.wall, tap.cpu, relayout.wall,
                relayout.cpu, idle, wakeups);
}

} // namespace

int main(int argc, char** argv) {
    const char* const stamp = std::getenv("PEER_T0_NS");
    const double start = stamp ? std::atof(stamp) / 1e6 : clockMilliseconds(CLOCK_MONOTONIC);
    bool onlyStart = false, bare = false;
    for (int i = 1; i < argc; ++i) {
        onlyStart = onlyStart || std::strcmp(argv[i], "--start") == 0;
        bare = bare || std::strcmp(argv[i], "--bare") == 0;
        if (std::strcmp(argv[i], "--start") != 0 && std::strcmp(argv[i], "--bare") != 0) {
            std::fprintf(stderr, "probe: unknown option %s\nusage: probe [--start] [--bare]\n",
                         argv[i]);
            return 2;
        }
    }
    NSBundle::setMainBundle(TESMARHostBundle("org.tesmar.probe"));
    const auto printStart = [start] {
        std::printf("{\"version\": \"%s\", \"start_ms\": %.3f, ", TESMAR_VERSION,
                    clockMilliseconds(CLOCK_MONOTONIC) - start);
    };
    if (bare) {
        HeadlessHost host(kSize);
        host.render();
        printStart();
    } else {
        Stage stage;
        printStart();
        if (!onlyStart)
            measure(stage);
    }
    const Footprint f = footprint();
    std::printf("\"rss_mb\": %.2f, \"pss_mb\": %.2f, \"libs_mb\": %.2f, \"libs_count\": %d, "
                "\"exe_mb\": %.3f}\n",
                f.rssMegabytes, f.pssMegabytes, f.librariesMegabytes, f.libraries,
                f.executableMegabytes);
    return 0;
}
