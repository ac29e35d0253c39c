// The caption panel in a window of its own. Prints each change of the caption style.
//
//     02-panel-in-a-window
//
// C opens the panel again; Escape closes it.
#include "tesmar/platform/hosts/sdl/SDLHost.h"
#include "tesmar/tesmar.h"

#include <algorithm>
#include <cstdio>
#include <exception>

using namespace tesmar;

namespace {

class Listener : public TESMARViewControllerDelegate {
  public:
    void CCSwitchValueChanged(bool on) override { std::printf("captions: %d\n", on); }
    void CCStyleAttributesChanged(const Ref<NSDictionary>& attributes) override {
        if (const auto font = as<UIFont>(attributes->objectForKey(NSFontAttributeName)))
            std::printf("font: %s, %g points\n", font->fontName().c_str(), font->pointSize());
        if (const auto color =
                as<UIColor>(attributes->objectForKey(NSForegroundColorAttributeName)))
            std::printf("text: red %g, green %g, blue %g, alpha %g\n", color->red(), color->green(),
                        color->blue(), color->alpha());
    }
    void CCViewControllerWillDisappear() override { std::printf("the panel closes\n"); }
};

// Stands in for a video: a gradient from top to bottom.
void drawDusk(const SDLHost::Picture& picture) {
    for (int y = 0; y < picture.height; ++y) {
        const auto shade = static_cast<std::uint32_t>(160 * y / picture.height);
        std::uint32_t* const row = picture.pixels + picture.stride / 4 * y;
        std::fill_n(row, picture.width, (20 + shade) << 16 | (24 + shade / 2) << 8 | 70);
    }
}

int run() {
    NSBundle::setMainBundle(TESMARHostBundle("org.tesmar.example"));
    SDLHost host({.title = "Caption panel", .size = {800, 450}});
    host.onPicture(drawDusk);

    const auto panel = make<TESMARViewController>();
    panel->setDelegate(std::make_shared<Listener>());
    panel->setRememberChangedStyle(true); // across starts
    panel->setCCEnabled(true);

    host.window()->presentViewController(panel, true);
    host.onKey([&](const SDLHost::Key& key) {
        if (key.name == "C" && !host.window()->presentedViewController())
            host.window()->presentViewController(panel, true);
    });
    host.run();
    return 0;
}

} // namespace

int main() {
    try {
        return run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "02-panel-in-a-window: %s\n", error.what());
        return 1;
    }
}
