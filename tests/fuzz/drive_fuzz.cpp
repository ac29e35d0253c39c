// Runs the input as a script for drive, against a new panel each time.
#include "tesmar/platform/text/FontRegistry.h"
#include "tools/drive/Session.h"
#include "tools/drive/fault.h"

#include <cstdint>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <variant>

namespace {

using namespace tesmar::drive;

constexpr int kMaxCommands = 200;
constexpr double kMaxSeconds = 60; // of one command: all inputs share one clock
constexpr double kMaxPixels = 1e6;

// Leaves out commands that write files, take too long, or may end the process (`send` with
// unsuitable arguments): none of these would be a fault of the library.
bool isHarmless(const Command& command) {
    if (const auto* send = std::get_if<Send>(&command))
        return send->arguments.empty();
    if (const auto* advance = std::get_if<Advance>(&command))
        return advance->seconds <= kMaxSeconds;
    if (const auto* drag = std::get_if<Drag>(&command))
        return drag->seconds <= kMaxSeconds;
    if (const auto* window = std::get_if<UseWindow>(&command))
        return window->size.width * window->size.height * window->scale * window->scale <=
               kMaxPixels;
    return !std::holds_alternative<UsePreferences>(command) &&
           !std::holds_alternative<TakePicture>(command);
}

bool fontsAreRestricted = false;

void runLine(Session& session, const std::string& line) {
    try {
        const auto command = parseCommand(line);
        if (!command || !isHarmless(*command))
            return;
        fontsAreRestricted |= std::holds_alternative<RestrictFonts>(*command);
        session.run(*command);
    } catch (const Fault&) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (std::exchange(fontsAreRestricted, false))
        tesmar::FontRegistry::reset(); // slow: only when needed
    std::istringstream script(std::string(reinterpret_cast<const char*>(data), size));
    // Every result must serialize.
    Session session([](const Json& json) { static_cast<void>(serialize(json)); });
    std::string line;
    for (int i = 0; i < kMaxCommands && std::getline(script, line); ++i)
        runLine(session, line);
    return 0;
}
