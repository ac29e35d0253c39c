// drive: runs a script against the panel in a headless host. See docs/drive.md.
#include "tesmar/platform/foundation/diagnostics.h"
#include "tools/drive/Command.h"
#include "tools/drive/Session.h"
#include "tools/drive/fault.h"

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>

namespace {

using namespace tesmar::drive;

constexpr int kFailed = 2;

// Through the same stream as the library's own console lines, so that their order stays.
void printLine(const Json& json) {
    std::puts(text(json).c_str());
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

int usage(std::FILE* stream, int status) {
    std::fputs("usage: drive [SCRIPT]\n"
               "Runs the commands of SCRIPT (standard input without one) against the caption\n"
               "settings panel, and prints what happens. docs/drive.md lists the commands.\n",
               stream);
    return status;
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0)
        return usage(stdout, 0);
    if (argc > 2 || (argc == 2 && argv[1][0] == '-' && argv[1][1] != '\0'))
        return usage(stderr, kFailed);
    tesmar::setDiagnosticHandler([](std::string_view message) {
        std::fprintf(stderr, "drive: %.*s\n", static_cast<int>(message.size()), message.data());
    });
    if (argc < 2 || std::strcmp(argv[1], "-") == 0)
        return run(std::cin);
    std::ifstream script(argv[1]);
    if (!script) {
        std::fprintf(stderr, "drive: cannot read %s\n", argv[1]);
        return kFailed;
    }
    return run(script);
}
