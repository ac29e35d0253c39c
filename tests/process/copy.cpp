// A plug-in that links the library statically, and hosts the panel behind one exported function.
#include "tesmar/platform/hosts/headless/HeadlessHost.h"
#include "tests/panel/host_parts.h"

using namespace tesmar;

// The first call presents the panel, with its preferences in the file `preferences`. Taps the
// control named `tapped`, if there is one, and lets a second pass. Returns a hash of the picture.
extern "C" TESMAR_API std::size_t playCopy(const char* preferences, const char* tapped) {
    static HeadlessHost host({568, 320}, 2);
    UIWindow& window = *host.window();
    if (!window.presentedViewController()) {
        NSUserDefaults::standardUserDefaults()->setPreferencesPath(preferences);
        NSBundle::setMainBundle(TESMARHostBundle("org.tesmar.copy"));
        const auto panel = make<TESMARViewController>();
        panel->setRememberChangedStyle(true);
        window.presentViewController(panel, true);
    }
    host.tap(centerOf(window, tapped));
    host.advance(1);
    host.render();
    return std::hash<std::u32string>()({host.pixels().begin(), host.pixels().end()});
}
