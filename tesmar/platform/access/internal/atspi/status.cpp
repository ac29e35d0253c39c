// Asks the desktop whether a screen reader runs, without starting anything. A module of its own, so
// that a host without a screen reader loads nothing else.
#include "tesmar/platform/access/internal/AccessibilityBridge.h"

#include <dbus/dbus.h>

#include <cstdlib>
#include <memory>

namespace tesmar {
namespace {

constexpr int kTimeout = 50; // milliseconds, for each reply of the bus

struct Unref {
    void operator()(DBusMessage* message) const { dbus_message_unref(message); }
};
using Message = std::unique_ptr<DBusMessage, Unref>;

// Of a property of the bus's status; false without an answer.
bool property(DBusConnection* bus, const char* name) {
    const Message call(dbus_message_new_method_call("org.a11y.Bus", "/org/a11y/bus",
                                                    "org.freedesktop.DBus.Properties", "Get"));
    const char* interface = "org.a11y.Status";
    if (!call || !dbus_message_append_args(call.get(), DBUS_TYPE_STRING, &interface,
                                           DBUS_TYPE_STRING, &name, DBUS_TYPE_INVALID))
        return false;
    dbus_message_set_auto_start(call.get(), FALSE);
    const Message reply(
        dbus_connection_send_with_reply_and_block(bus, call.get(), kTimeout, nullptr));
    DBusMessageIter outer, inner;
    if (!reply || !dbus_message_iter_init(reply.get(), &outer) ||
        dbus_message_iter_get_arg_type(&outer) != DBUS_TYPE_VARIANT)
        return false;
    dbus_message_iter_recurse(&outer, &inner);
    dbus_bool_t value = FALSE;
    if (dbus_message_iter_get_arg_type(&inner) == DBUS_TYPE_BOOLEAN)
        dbus_message_iter_get_basic(&inner, &value);
    return value != FALSE;
}

} // namespace

extern "C" __attribute__((visibility("default"))) bool tesmar_assistive_technology_runs_1() {
    // Without an address the library would start a bus.
    if (!secure_getenv("DBUS_SESSION_BUS_ADDRESS"))
        return false;
    DBusConnection* const bus = dbus_bus_get_private(DBUS_BUS_SESSION, nullptr);
    if (!bus)
        return false;
    dbus_connection_set_exit_on_disconnect(bus, FALSE);
    const bool runs = property(bus, "IsEnabled") || property(bus, "ScreenReaderEnabled");
    dbus_connection_close(bus);
    dbus_connection_unref(bus);
    return runs;
}

} // namespace tesmar
