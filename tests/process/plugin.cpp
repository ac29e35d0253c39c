// A plug-in that links the shared library, and hosts the panel behind one exported function.
#include "tesmar/platform/hosts/headless/HeadlessHost.h"
#include "tests/panel/host_parts.h"

using namespace tesmar;

// A whole session: presents the panel, changes the switch and a colour, and dismisses the panel.
// Returns whether the host got all calls.
extern "C" TESMAR_API bool playSession() {
    CallLog log;
    TESMARBorrowedDelegate delegate(log);
    HeadlessHost host({568, 320}, 2);
    const auto panel = make<TESMARViewController>();
    panel->setDelegate(delegate.delegate());
    host.window()->presentViewController(panel, true);
    host.advance(1);
    for (const char* control : {"CCSwitch", "textColorPicker.5"}) {
        host.tap(centerOf(*host.window(), control));
        host.advance(1);
        host.render();
    }
    panel->dismissViewControllerAnimated(true);
    host.advance(1);
    return log.calls == "switch style willDisappear ";
}
