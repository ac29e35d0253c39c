// One panel, measured as a host would meet it. Prints one JSON object as its last line.
//
//     probe [--sdl] [--start] [--bare]
//
// --sdl shows it in a desktop window instead of in memory. --start stops after the first complete
// frame; --bare shows an empty window instead of the panel.
// PEER_T0_NS, a CLOCK_MONOTONIC stamp in nanoseconds taken before the process was started, makes
// start_ms count from there; without it the count begins in main().
#include "Screen.h"
#include "footprint.h"

#include "tesmar/tesmar.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
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

// `prepare` and the settling between rounds are not measured.
template <class Prepare, class Work>
Cost medianCost(Screen& screen, Prepare prepare, Work work) {
    std::vector<double> wall, cpu;
    for (int i = 0; i < kRounds; ++i) {
        prepare();
        screen.settle();
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
    explicit Stage(Screen& on) : screen(on) { present(); }

    void present() {
        panel = make<TESMARViewController>();
        panel->setDelegate(clock);
        screen.window()->presentViewController(panel, false);
        screen.show();
    }

    void letGo() {
        panel->dismissViewControllerAnimated(false);
        panel.reset();
    }

    CGPoint swatch(int index) const {
        const std::string name = "textColorPicker." + std::to_string(index);
        const UIView& view = *screen.window()->viewWithIdentifier(name);
        return view.convertRectTo(view.bounds(), nullptr).center();
    }

    void touch(UITouchPhase phase, CGPoint point) const {
        screen.window()->touch(phase, 0, point, screen.now());
    }

    Screen& screen;
    Ref<Clock> clock = std::make_shared<Clock>();
    Ref<TESMARViewController> panel;
};

void measure(Stage& stage) {
    Screen& screen = stage.screen;
    const auto nothing = [] {};
    const Cost create = medianCost(
        screen, [&] { stage.letGo(); }, [&](int) { stage.present(); });

    std::vector<double> heard;
    const CGPoint points[] = {stage.swatch(1), stage.swatch(5)};
    const Cost tap = medianCost(screen, nothing, [&](int i) {
        stage.touch(UITouchPhase::began, points[i % 2]);
        const double up = clockMilliseconds(CLOCK_MONOTONIC);
        stage.touch(UITouchPhase::ended, points[i % 2]);
        heard.push_back((stage.clock->heard - up) * 1e3);
        screen.show();
    });
    const Cost relayout = medianCost(screen, nothing, [&](int i) {
        screen.resize(i % 2 ? kSize : CGSize{kSize.height, kSize.width});
        screen.show();
    });

    screen.settle();
    const double before = clockMilliseconds(CLOCK_PROCESS_CPUTIME_ID);
    const int wakeups = screen.idle(5);
    const double idle = clockMilliseconds(CLOCK_PROCESS_CPUTIME_ID) - before;

    std::printf("\"create_ms\": %.4f, \"create_cpu_ms\": %.4f, \"tap_cb_us\": %.3f, "
                "\"tap_frame_ms\": %.4f, \"tap_frame_cpu_ms\": %.4f, \"relayout_ms\": %.4f, "
                "\"relayout_cpu_ms\": %.4f, \"idle_cpu_ms\": %.4f, \"idle_wakeups\": %d, ",
                create.wall, create.cpu, median(heard), tap.wall, tap.cpu, relayout.wall,
                relayout.cpu, idle, wakeups);
}

std::unique_ptr<Screen> loadSDLScreen() {
    const auto module =
        std::filesystem::read_symlink("/proc/self/exe").parent_path() / "probe_sdl.so";
    void* const handle = dlopen(module.c_str(), RTLD_NOW);
    void* const make = handle ? dlsym(handle, "makeSDLScreen") : nullptr;
    if (!make) {
        std::fprintf(stderr, "probe: %s\n", dlerror());
        std::exit(1);
    }
    return std::unique_ptr<Screen>(reinterpret_cast<decltype(&makeSDLScreen)>(make)(kSize));
}

struct Arguments {
    bool isSDL = false, onlyStart = false, isBare = false;
};

Arguments parsed(int argc, char** argv) {
    Arguments arguments;
    for (int i = 1; i < argc; ++i) {
        const std::string_view word = argv[i];
        if (word == "--sdl")
            arguments.isSDL = true;
        else if (word == "--start")
            arguments.onlyStart = true;
        else if (word == "--bare")
            arguments.isBare = true;
        else {
            std::fprintf(stderr,
                         "probe: unknown option %s\nusage: probe [--sdl] [--start] [--bare]\n",
                         argv[i]);
            std::exit(2);
        }
    }
    return arguments;
}

void printFootprint() {
    const Footprint f = footprint();
    std::printf("\"rss_mb\": %.2f, \"pss_mb\": %.2f, \"libs_mb\": %.2f, \"libs_count\": %d, "
                "\"exe_mb\": %.3f}\n",
                f.rssMegabytes, f.pssMegabytes, f.librariesMegabytes, f.libraries,
                f.executableMegabytes);
}

} // namespace

int main(int argc, char** argv) {
    const char* const stamp = std::getenv("PEER_T0_NS");
    const double start = stamp ? std::atof(stamp) / 1e6 : clockMilliseconds(CLOCK_MONOTONIC);
    const Arguments arguments = parsed(argc, argv);
    NSBundle::setMainBundle(TESMARHostBundle("org.tesmar.probe"));
    const auto screen = arguments.isSDL ? loadSDLScreen() : makeHeadlessScreen(kSize);
    std::optional<Stage> stage;
    if (arguments.isBare)
        screen->show();
    else
        stage.emplace(*screen);
    std::printf("{\"version\": \"%s\", \"start_ms\": %.3f, ", TESMAR_VERSION,
                clockMilliseconds(CLOCK_MONOTONIC) - start);
    if (stage && !arguments.onlyStart)
        measure(*stage);
    printFootprint();
    return 0;
}
