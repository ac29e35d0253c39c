// The functions that concern the whole process.
#include "tesmar/capi/internal/boundary.h"
#include "tesmar/controls/library_bundle.h"
#include "tesmar/panel/registration.h"
#include "tesmar/platform/foundation/NSBundle.h"
#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/foundation/defaults/NSUserDefaults.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/text/FontRegistry.h"
#include "tesmar/version.h"

using namespace tesmar;
using namespace tesmar::capi;

int tesmar_api_version() {
    return TESMAR_API_VERSION;
}

const char* tesmar_version() {
    return TESMAR_VERSION;
}

int tesmar_init(const char* applicationId) {
    return guard(Caller::anyThread, [&] {
        require(applicationId && *applicationId, "tesmar_init: the application has no identifier");
        becomeOwner();
        NSBundle::setMainBundle(TESMARHostBundle(applicationId));
        registerTESMAR();
    });
}

int tesmar_set_log(tesmar_log_function log, void* user) {
    return guard(Caller::owner, [&] {
        if (!log)
            return setDiagnosticHandler({});
        setDiagnosticHandler(
            [log, user](std::string_view message) { log(std::string(message).c_str(), user); });
    });
}

int tesmar_set_preferences_path(const char* path) {
    return guard(Caller::owner, [&] {
        NSUserDefaults::standardUserDefaults()->setPreferencesPath(path ? path : "");
    });
}

int tesmar_add_font_file(const char* path) {
    return guard(Caller::owner, [&] {
        require(path, "tesmar_add_font_file: there is no path");
        require(FontRegistry::addFontFile(path), "tesmar_add_font_file: this is no font file");
    });
}

int tesmar_advance(double now) {
    return guard(Caller::owner, [&] { NSRunLoop::mainRunLoop().advanceTo(now); });
}

int tesmar_deadline(double* deadline) {
    return guard(Caller::owner, [&] {
        require(deadline, "tesmar_deadline: there is no place for the time");
        const auto next = NSRunLoop::mainRunLoop().nextDeadline();
        *deadline = next.value_or(0);
        return next ? 1 : 0;
    });
}

int tesmar_set_wake(tesmar_wake_function wake, void* user) {
    return guard(Caller::owner, [&] {
        NSRunLoop& loop = NSRunLoop::mainRunLoop();
        if (!wake)
            return loop.setWakeHandler({});
        loop.setWakeHandler([wake, user] { wake(user); });
    });
}

int tesmar_set_frame_interval(double seconds) {
    return guard(Caller::owner, [&] { NSRunLoop::mainRunLoop().setFrameInterval(seconds); });
}
