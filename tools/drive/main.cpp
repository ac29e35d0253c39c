// Runs a script against the panel in a headless host. docs/drive.md describes the commands.
#include "tesmar/platform/foundation/diagnostics.h"
#include "tools/drive/Command.h"
#include "tools/drive/Session.h"
#include "tools/drive/fault.h"

#include <cstdio>
#include <fstream>
#include <iostream>
#include <string>

namespace {

using namespace tesmar::drive;

constexpr int kFailed = 2;

// Writes to the stream that the library prints its own lines to, so that all lines stay in order.
void printLine(const Json& json) {
    std::puts(serialize(json).c_str());
    std::fflush(stdout);
}

int run(std::istream& script) {
    Session session(printLine);
    int status = 0;
    for (std::string line; std::getline(script, line);) {
        try {
            if (const auto command = parseCommand(line))
                session.run(*command);
        } catch (const Fault& fault) {
            printLine(Json::object({{"error", fault.what()}}));
            status = kFailed;
        }
    }
    return status;
}

constexpr const char* kUsage =
    "usage: drive [SCRIPT]\n"
    "Runs the commands of SCRIPT (standard input without one) against the caption\n"
    "settings panel, and prints what happens. docs/drive.md lists the commands.\n";

} // namespace

int main(int argc, char** argv) {
    const std::string script = argc > 1 ? argv[1] : "-";
    if (script == "--help") {
        std::fputs(kUsage, stdout);
        return 0;
    }
    const bool isOption = script.size() > 1 && script[0] == '-';
    if (isOption || argc > 2) {
        std::fprintf(stderr, "drive: unexpected argument '%s'\n%s", argv[isOption ? 1 : 2], kUsage);
        return kFailed;
    }
    tesmar::setDiagnosticHandler([](std::string_view message) {
        std::fprintf(stderr, "drive: %.*s\n", static_cast<int>(message.size()), message.data());
    });
    if (script == "-")
        return run(std::cin);
    std::ifstream file(script);
    if (!file) {
        std::fprintf(stderr, "drive: cannot read '%s'\n", script.c_str());
        return kFailed;
    }
    return run(file);
}
