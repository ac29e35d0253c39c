// Measures one panel from a host's side, and prints one JSON object as its last line.
//
//     probe [--sdl] [--start] [--bare | --extended]
//
// start_ms counts from the time in the environment variable PEER_T0_NS, a CLOCK_MONOTONIC stamp in
// nanoseconds taken before this process was started; without it, from the start of main().
#include "Screen.h"
#include "footprint.h"

#include "tesmar/tesmar.h"

#include <cxxopts.hpp>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
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

// The median over all rounds of `work`, without `prepare` and the settling before each round.
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

// Records the time of the last change of the style.
class ChangeListener : public TESMARViewControllerDelegate {
  public:
    void CCSwitchValueChanged(bool) override {}
    void CCStyleAttributesChanged(const Ref<NSDictionary>&) override {
        changedAt = clockMilliseconds(CLOCK_MONOTONIC);
    }
    void CCViewControllerWillDisappear() override {}
    double changedAt = 0; // milliseconds
};

struct PanelHost {
    using MakePanel = std::function<Ref<TESMARViewController>()>;
    PanelHost(Screen& on, MakePanel make) : screen(on), makePanel(std::move(make)) { present(); }

    void present() {
        panel = makePanel();
        panel->setDelegate(listener);
        screen.window()->presentViewController(panel, false);
        screen.show();
    }

    void dismiss() {
        panel->dismissViewControllerAnimated(false);
        panel.reset();
    }

    CGPoint swatchCenter(int index) const {
        const std::string name = "textColorPicker." + std::to_string(index);
        const UIView& view = *screen.window()->viewWithIdentifier(name);
        return view.convertRectTo(view.bounds(), nullptr).center();
    }

    void touch(UITouchPhase phase, CGPoint point) const {
        screen.window()->touch(phase, 0, point, screen.now());
    }

    Screen& screen;
    MakePanel makePanel;
    Ref<ChangeListener> listener = std::make_shared<ChangeListener>();
    Ref<TESMARViewController> panel;
};

void measure(PanelHost& host) {
    Screen& screen = host.screen;
    const auto nothing = [] {};
    const Cost create = medianCost(
        screen, [&] { host.dismiss(); }, [&](int) { host.present(); });

    std::vector<double> callbackMicroseconds;
    const CGPoint points[] = {host.swatchCenter(1), host.swatchCenter(4)};
    const Cost tap = medianCost(screen, nothing, [&](int i) {
        host.touch(UITouchPhase::began, points[i % 2]);
        const double up = clockMilliseconds(CLOCK_MONOTONIC);
        host.touch(UITouchPhase::ended, points[i % 2]);
        callbackMicroseconds.push_back((host.listener->changedAt - up) * 1e3);
        screen.show();
    });
    const Cost relayout = medianCost(screen, nothing, [&](int i) {
        screen.resize(i % 2 ? kSize : CGSize{kSize.height, kSize.width});
        screen.show();
    });

    // Right and left, from swatch to swatch; the ring jumps, so that each frame is the last one.
    setMotionSetting(MotionSetting::reduced);
    const auto press = [&](UIKey key) {
        screen.window()->key(key, UIKeyRepeat::pressed, screen.now());
    };
    for (const UIKey first : {UIKey::down, UIKey::down})
        press(first);
    const Cost key = medianCost(screen, nothing, [&](int i) {
        press(i % 2 ? UIKey::left : UIKey::right);
        screen.show();
    });
    setMotionSetting(MotionSetting::full);

    screen.settle();
    const double before = clockMilliseconds(CLOCK_PROCESS_CPUTIME_ID);
    const int wakeups = screen.idle(5);
    const double idle = clockMilliseconds(CLOCK_PROCESS_CPUTIME_ID) - before;

    std::printf("\"create_ms\": %.4f, \"create_cpu_ms\": %.4f, \"tap_cb_us\": %.3f, "
                "\"tap_frame_ms\": %.4f, \"tap_frame_cpu_ms\": %.4f, \"relayout_ms\": %.4f, "
                "\"relayout_cpu_ms\": %.4f, \"key_frame_ms\": %.4f, \"key_frame_cpu_ms\": %.4f, "
                "\"idle_cpu_ms\": %.4f, \"idle_wakeups\": %d, ",
                create.wall, create.cpu, median(callbackMicroseconds), tap.wall, tap.cpu,
                relayout.wall, relayout.cpu, key.wall, key.cpu, idle, wakeups);
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

cxxopts::ParseResult parsed(int argc, char** argv) {
    cxxopts::Options options("probe", "Measures one panel and prints one JSON object.\n");
    options.add_options("", {{"sdl", "show it in a desktop window instead of in memory"},
                             {"start", "stop after the first complete frame"},
                             {"bare", "show an empty window instead of the panel"},
                             {"extended", "show the extended panel"},
                             {"help", "print this text"}});
    try {
        auto given = options.parse(argc, argv);
        if (!given.unmatched().empty())
            throw cxxopts::exceptions::parsing("unexpected argument '" + given.unmatched()[0] +
                                               "'");
        if (given.count("help") > 0) {
            std::fputs(options.help().c_str(), stdout);
            std::exit(0);
        }
        return given;
    } catch (const cxxopts::exceptions::exception& error) {
        std::fprintf(stderr, "probe: %s; --help lists the options\n", error.what());
        std::exit(2);
    }
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
    const auto options = parsed(argc, argv);
    NSBundle::setMainBundle(TESMARHostBundle("org.tesmar.probe"));
    const auto screen = options.count("sdl") > 0 ? loadSDLScreen() : makeHeadlessScreen(kSize);
    std::optional<PanelHost> host;
    if (options.count("bare") > 0)
        screen->show();
    else
        host.emplace(*screen, [&]() -> Ref<TESMARViewController> {
            if (options.count("extended") > 0)
                return make<TESMARExtendedViewController>();
            return make<TESMARViewController>();
        });
    std::printf("{\"version\": \"%s\", \"start_ms\": %.3f, ", TESMAR_VERSION,
                clockMilliseconds(CLOCK_MONOTONIC) - start);
    if (host && options.count("start") == 0)
        measure(*host);
    printFootprint();
    return 0;
}
