// The interface for C: what it refuses, and that it does what the C++ interface does.
#include "tesmar/capi/tesmar.h"

#include "tesmar/platform/hosts/headless/HeadlessHost.h"
#include "tests/panel/host_parts.h"

#include <gtest/gtest.h>

#include <cstring>
#include <thread>

namespace tesmar {
namespace {

constexpr int kWidth = 600;
constexpr int kHeight = 800;

struct Host {
    explicit Host(unsigned flags = 0, bool keeps = false) {
        callbacks.size = sizeof callbacks;
        callbacks.user = this;
        callbacks.style_changed = [](auto* p, auto* s, void* u) { of(u).styled(p, s); };
        callbacks.captions_changed = [](auto*, int on, void* u) { of(u).note(on ? "on" : "off"); };
        callbacks.will_disappear = [](auto*, void* u) { of(u).note("leaves"); };
        callbacks.did_disappear = [](auto* p, void* u) {
            EXPECT_EQ(tesmar_panel_is_presented(p), 0);
            of(u).note("gone");
        };
        if (keeps) {
            callbacks.load_style = [](auto*, void* u) {
                of(u).note("load");
                return tesmar_style_retain(of(u).kept);
            };
            callbacks.save_style = [](auto*, tesmar_style* style, void* u) {
                tesmar_style_release(of(u).kept);
                of(u).kept = tesmar_style_retain(style);
                of(u).note("save");
            };
        }
        const tesmar_panel_options options{sizeof options, kWidth, kHeight, 2, flags};
        EXPECT_EQ(tesmar_init("org.tesmar.test"), 0);
        EXPECT_EQ(tesmar_panel_create(&options, &callbacks, &panel), 0) << tesmar_error_message();
        tesmar_deadline(&now);
    }
    ~Host() {
        tesmar_panel_destroy(panel);
        tesmar_style_release(kept);
    }
    static Host& of(void* user) { return *static_cast<Host*>(user); }
    void note(const std::string& call) {
        calls += call + " ";
        if (call == where)
            act();
    }
    void styled(tesmar_panel* p, tesmar_style* style) {
        EXPECT_EQ(p, panel);
        tesmar_style_values values{};
        values.size = sizeof values;
        EXPECT_EQ(tesmar_style_get(style, &values), 0);
        EXPECT_EQ(values.text.blue, 0); // yellow
        note("style");
    }
    int tap(const char* identifier) {
        tesmar_area a{};
        if (tesmar_panel_locate(panel, identifier, &a) != 1)
            return -100;
        const double x = a.x + a.width / 2, y = a.y + a.height / 2;
        tesmar_panel_touch(panel, TESMAR_BEGAN, 1, x, y, now, TESMAR_FINGER);
        return tesmar_panel_touch(panel, TESMAR_ENDED, 1, x, y, now, TESMAR_FINGER);
    }
    int wait(double seconds) { return tesmar_advance(now += seconds); }
    int render(int capacity = 16) {
        return tesmar_panel_render(panel, pixels.data(), pixels.size() * 4, kWidth * 4, 1, rects,
                                   capacity);
    }

    tesmar_panel_callbacks callbacks{};
    tesmar_panel* panel = nullptr;
    tesmar_style* kept = nullptr;
    double now = 0;
    tesmar_rect rects[16];
    std::vector<std::uint32_t> pixels = std::vector<std::uint32_t>(kWidth * kHeight);
    std::string calls, where;
    std::function<void()> act = [] {};
};

TEST(CInterface, NeedsItsOwner) {
    EXPECT_EQ(tesmar_advance(1), TESMAR_ERROR_INVALID);
    EXPECT_STREQ(tesmar_error_message(), "tesmar_init has not been called");
    std::thread([] { EXPECT_EQ(tesmar_init("org.tesmar.first"), 0); }).join(); // ends with it
    Host host;
    std::thread([&] {
        tesmar_rect rect;
        tesmar_panel* other = nullptr;
        const tesmar_panel_options options{sizeof options, 1, 1, 1, 0};
        const int results[] = {tesmar_init("org.tesmar.other"),
                               tesmar_advance(1),
                               tesmar_panel_create(&options, nullptr, &other),
                               tesmar_panel_present(host.panel, 0),
                               tesmar_panel_touch(host.panel, 0, 1, 1, 1, 1, 0),
                               host.render(),
                               tesmar_panel_visible_bounds(host.panel, &rect),
                               tesmar_panel_destroy(host.panel)};
        for (const int result : results)
            EXPECT_EQ(result, TESMAR_ERROR_THREAD) << &result - results;
        const auto style = tesmar_style_stored(); // any thread
        EXPECT_TRUE(style && tesmar_style_json(style));
        tesmar_style_release(style);
    }).join();
    EXPECT_EQ(tesmar_panel_is_presented(host.panel), 0);
}

TEST(CInterface, RefusesWhatItCannotUse) {
    Host host;
    const auto panel = host.panel, gone = reinterpret_cast<tesmar_panel*>(0x12345);
    tesmar_style* const style = tesmar_style_default();
    tesmar_panel* made = nullptr;
    const tesmar_panel_options options{sizeof options, 1, 1, 1, 0};
    const auto create = [&](auto change, std::size_t tail = 0, unsigned char last = 0) {
        unsigned char memory[sizeof options + 8]{};
        auto given = options;
        change(given);
        given.size += tail;
        std::memcpy(memory, &given, sizeof given);
        memory[sizeof given + 7] = last;
        const int result =
            tesmar_panel_create(reinterpret_cast<tesmar_panel_options*>(memory), nullptr, &made);
        return result == 0 ? tesmar_panel_destroy(made) : result;
    };
    const auto same = [](auto&) {};
    EXPECT_EQ(create(same) + create([](auto& o) { o.size = 20; }) + create(same, 8), 0);
    auto half = host.callbacks;
    half.load_style = [](auto*, void*) { return static_cast<tesmar_style*>(nullptr); };
    tesmar_surface small{sizeof small, host.pixels.data(), 400, 10, 11, 40, 1};
    tesmar_style_values unsized{};
    const tesmar_area area{0, 0, 10, 10};
    const std::pair<const char*, int> refused[] = {
        {"size", create([](auto& o) { o.size = 0; })},
        {"tail", create(same, 8, 1)},
        {"no size", create([](auto& o) { o.size = ~std::size_t{0}; })},
        {"flags", create([](auto& o) { o.flags = 64; })},
        {"place", tesmar_panel_create(&options, nullptr, nullptr)},
        {"store", tesmar_panel_create(&options, &half, &made)},
        {"null panel", tesmar_panel_present(nullptr, 0)},
        {"no panel", tesmar_panel_present(gone, 0)},
        {"phase", tesmar_panel_touch(panel, 4, 1, 0, 0, 0, 0)},
        {"source", tesmar_panel_touch(panel, 0, 1, 0, 0, 0, 9)},
        {"key", tesmar_panel_key(panel, -1, 0, 0)},
        {"capacity", host.render(0)},
        {"bytes", tesmar_panel_render(panel, host.pixels.data(), 99, kWidth * 4, 1, host.rects, 9)},
        {"stride", tesmar_panel_repaint(panel, host.pixels.data(), 1 << 20, 6, host.rects, 1)},
        {"font", tesmar_add_font_file("/dev/null")},
        {"identifier", tesmar_init("")},
        {"values", tesmar_style_get(style, &unsized)},
        {"surface", tesmar_style_draw(style, "a", &small, &area, 0)},
        {"language", tesmar_panel_set_language(panel, nullptr, nullptr)},
        {"deadline", tesmar_deadline(nullptr)},
        {"json", tesmar_style_from_json("{", 1) ? 0 : TESMAR_ERROR_INVALID}};
    for (const auto& [what, result] : refused)
        EXPECT_EQ(result, TESMAR_ERROR_INVALID) << what;
    EXPECT_TRUE(std::string(tesmar_error_message()).starts_with("line 1"));
    const tesmar_rect odd[] = {{-2000000000, 0, 2147483647, 2147483647}, {5, 5, -9, 2147483647}};
    EXPECT_EQ(
        tesmar_panel_repaint(panel, host.pixels.data(), 4 * host.pixels.size(), 4 * kWidth, odd, 2),
        0);
    EXPECT_EQ(tesmar_panel_destroy(nullptr), 0);
    EXPECT_EQ(tesmar_panel_set_size(panel, -1, 1 << 30, NAN), 0);
    tesmar_style_release(style);
}

// Each callback destroys its panel, or throws.
TEST(CInterface, CallbacksMayDoAnything) {
    const std::pair<const char*, const char*> cases[] = {{"style", "textColorPicker.4"},
                                                         {"save", "textColorPicker.4"},
                                                         {"on", "CCSwitch"},
                                                         {"leaves", nullptr},
                                                         {"gone", nullptr},
                                                         {"load", nullptr}};
    for (const auto& [where, control] : cases)
        for (const bool destroys : {true, false}) {
            Host host(TESMAR_PANEL_EXTENDED, true);
            host.where = where;
            host.act = [&] {
                if (!destroys && host.where == "save")
                    throw std::bad_alloc();
                if (!destroys)
                    throw std::runtime_error("the host's");
                EXPECT_EQ(tesmar_panel_destroy(host.panel), 0);
                EXPECT_EQ(tesmar_panel_dismiss(host.panel, 0), TESMAR_ERROR_INVALID);
                host.calls += "| ";
            };
            int result = tesmar_panel_present(host.panel, 0);
            host.wait(1);
            if (control)
                result = host.tap(control);
            else if (std::string(where) != "load")
                result = tesmar_panel_dismiss(host.panel, 0);
            const int thrown = host.where == "save" ? TESMAR_ERROR_NOMEM : TESMAR_ERROR_GENERIC;
            EXPECT_EQ(result == thrown, !destroys) << where;
            EXPECT_TRUE(!destroys || host.calls.ends_with("| ")) << host.calls; // none afterwards
            EXPECT_EQ(host.wait(1), 0);
            EXPECT_EQ(tesmar_panel_is_presented(host.panel) < 0, destroys);
        }
}

TEST(CInterface, PaintsWhatTheLibraryPaints) {
    Host host;
    HeadlessHost other({kWidth / 2.0, kHeight / 2.0}, 2);
    const auto panel = make<TESMARViewController>();
    int wakes = 0;
    tesmar_set_wake([](void* count) { ++*static_cast<int*>(count); }, &wakes);
    const auto same = [&](const char* when) {
        EXPECT_GE(host.render(1), 0);
        other.render();
        const auto pixels = other.pixels();
        EXPECT_TRUE(std::ranges::equal(host.pixels, pixels)) << when;
        EXPECT_EQ(tesmar_panel_needs_render(host.panel), 0);
    };
    const auto wait = [&] {
        other.advance(1);
        host.now = NSRunLoop::mainRunLoop().now();
    };
    const auto both = [&](auto inC, auto inCpp) { inC(), inCpp(); };
    both([&] { tesmar_panel_present(host.panel, 1); },
         [&] { other.window()->presentViewController(panel, true); });
    EXPECT_GE(wakes, 1);
    wait();
    same("open");
    tesmar_rect bounds;
    EXPECT_EQ(tesmar_panel_visible_bounds(host.panel, &bounds), 1);
    EXPECT_EQ(bounds.width, other.window()->visibleBounds().width);
    both([&] { host.tap("textColorPicker.4"); },
         [&] { other.tap(centerOf(*other.window(), "textColorPicker.4")); });
    wait();
    same("tapped");
    both([&] { tesmar_panel_key(host.panel, TESMAR_KEY_DOWN, 0, host.now); },
         [&] { other.key(UIKey::down); });
    wait();
    same("focused");
    both([&] { tesmar_panel_wheel(host.panel, 150, 300, 0, -80, host.now); },
         [&] {
             other.window()->wheel({150, 300}, {0, -80}, NSRunLoop::mainRunLoop().now());
         });
    wait();
    same("scrolled");
    both([&] { tesmar_panel_dismiss(host.panel, 1); },
         [&] { panel->dismissViewControllerAnimated(true); });
    wait();
    same("gone");
    EXPECT_EQ(host.calls, "style leaves gone ");
    EXPECT_EQ(tesmar_panel_visible_bounds(host.panel, &bounds), 0);
    tesmar_set_wake(nullptr, nullptr);
}

TEST(CInterface, StylesKeepTheirValues) {
    tesmar_style_values given{
        sizeof given, {1, 0.5, 0, 0.75}, {0, 0, 1, 0.5}, "Courier", 23, "uniform",
        {},           {1, 1, 1, 0.25}};
    const auto style = tesmar_style_create(&given);
    const std::string json = tesmar_style_json(style);
    const auto copy = tesmar_style_from_json(json.c_str(), json.size());
    tesmar_style_values values{};
    values.size = sizeof values;
    ASSERT_EQ(tesmar_style_get(copy, &values), 0) << json;
    EXPECT_EQ(values.text.green, 0.5);
    EXPECT_EQ(values.background.alpha, 0.5);
    EXPECT_EQ(values.window.alpha, 0.25);
    EXPECT_EQ(values.edge_color.alpha, 1); // derived
    EXPECT_STREQ(values.edge, "uniform");
    tesmar_font font{};
    font.size = sizeof font;
    EXPECT_EQ(tesmar_style_get_font(style, &font), 0);
    EXPECT_STREQ(font.name, "NimbusMonoPS-Regular");
    double width = 0, height = 0;
    EXPECT_EQ(tesmar_init("org.tesmar.test"), 0);
    EXPECT_EQ(tesmar_style_measure(style, "wide", 0, &width, &height), 0);
    EXPECT_NEAR(width, 4 * 0.6 * 23, 0.5);
    std::vector<std::uint32_t> pixels(100 * 40);
    tesmar_surface surface{sizeof surface, pixels.data(), 16000, 100, 40, 400, 1};
    const tesmar_area area{10, 5, 80, 30};
    EXPECT_EQ(tesmar_style_draw(style, "wide", &surface, &area, TESMAR_CENTER), 0);
    EXPECT_NE(pixels, std::vector<std::uint32_t>(100 * 40));
    const auto plain = tesmar_style_default();
    tesmar_style_get(plain, &values);
    const auto again = tesmar_style_create(&values); // white as the panel's, not only as bright
    EXPECT_STREQ(tesmar_style_json(again), tesmar_style_json(plain));
    tesmar_style_retain(style);
    for (tesmar_style* const each : {style, style, copy, plain, again})
        tesmar_style_release(each);
}

} // namespace
} // namespace tesmar
