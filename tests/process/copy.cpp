// The library with a host around it, behind one function.
#include "tesmar/platform/hosts/headless/HeadlessHost.h"
#include "tesmar/tesmar.h"

using namespace tesmar;

// Presents the panel, with its preferences in that file, when there is none yet; taps the control
// of that name, if any, and lets a second pass. Answers a hash of the picture.
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
    if (UIView* const view = window.viewWithIdentifier(tapped))
        host.tap(view->convertRectTo(view->bounds(), nullptr).center());
    host.advance(1);
    host.render();
    return std::hash<std::u32string>()({host.pixels().begin(), host.pixels().end()});
}
