// Any bytes as a script for drive: a whole session with the panel, from the first line to the last.
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

constexpr int kMostCommands = 200;
constexpr double kMostSeconds = 60; // of one command: the clock goes on from input to input
constexpr double kMostPixels = 1e6;

// Scripts may name files of the machine, and by `send` do what ends the process; neither is a
// fault.
bool isHarmless(const Command& command) {
    if (const auto* send = std::get_if<Send>(&command))
        return send->arguments.empty();
    if (const auto* advance = std::get_if<Advance>(&command))
        return advance->seconds <= kMostSeconds;
    if (const auto* drag = std::get_if<Drag>(&command))
        return drag->seconds <= kMostSeconds;
    if (const auto* window = std::get_if<UseWindow>(&command))
        return window->size.width * window->size.height * window->scale * window->scale <=
               kMostPixels;
    return !std::holds_alternative<UsePreferences>(command) &&
           !std::holds_alternative<TakePicture>(command);
}

bool facesAreRestricted = false;

void runLine(Session& session, const std::string& line) {
    try {
        const auto command = parseCommand(line);
        if (!command || !isHarmless(*command))
            return;
        facesAreRestricted |= std::holds_alternative<OfferFaces>(*command);
        session.run(*command);
    } catch (const Fault&) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (std::exchange(facesAreRestricted, false))
        tesmar::FontRegistry::reset(); // which takes its time
    std::istringstream script(std::string(reinterpret_cast<const char*>(data), size));
    // Answers must be writable, whatever is in them.
    Session session([](const Json& json) { static_cast<void>(text(json)); });
    std::string line;
    for (int i = 0; i < kMostCommands && std::getline(script, line); ++i)
        runLine(session, line);
    return 0;
}
