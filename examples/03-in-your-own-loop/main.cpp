// The whole host contract in one loop: events and time in, pixels out. The panel opens, a tap on a
// swatch changes the style, and after two idle seconds the panel closes by itself.
//
//     03-in-your-own-loop
#include "tesmar/tesmar.h"

#include <chrono>
#include <cstdio>
#include <thread>
using namespace tesmar;

class Captions : public TESMARViewControllerDelegate {
    void CCSwitchValueChanged(bool on) override { std::printf("captions %s\n", on ? "on" : "off"); }
    void CCStyleAttributesChanged(const Ref<NSDictionary>& style) override {
        caption = NSAttributedString::attributedString("Hello", style); // drawInRect() draws it
    }
    void CCViewControllerWillDisappear() override { std::printf("the panel closes\n"); }
    Ref<NSAttributedString> caption;
};

int main() {
    NSBundle::setMainBundle(TESMARHostBundle("org.tesmar.example"));
    const auto window = UIWindow::windowWithSize({640, 360}, 2); // points, pixels per point
    std::vector<std::uint32_t> pixels(1280 * 720);               // premultiplied ARGB
    const auto panel = make<TESMARViewController>();
    panel->setDelegate(std::make_shared<Captions>());
    panel->setAutoHideInterval(2); // seconds
    const auto now = [start = std::chrono::steady_clock::now()] {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    };
    window->presentViewController(panel, true, [&] { // when it is open, a viewer taps
        const UIView& swatch = *window->viewWithIdentifier("textColorPicker.4");
        for (const auto phase : {UITouchPhase::began, UITouchPhase::ended})
            window->touch(phase, 1, swatch.convertPointTo({20, 20}, nullptr), now());
    });
    while (window->presentedViewController()) {
        if (window->needsRender())
            for (const PixelRect& r : window->render(pixels, 1280 * 4))
                std::printf("%.2f s: show %d x %d pixels\n", now(), r.width, r.height);
        const double due = NSRunLoop::mainRunLoop().nextDeadline().value_or(now() + 0.1);
        std::this_thread::sleep_for(std::chrono::duration<double>(due - now()));
        NSRunLoop::mainRunLoop().advanceTo(now());
    }
}
