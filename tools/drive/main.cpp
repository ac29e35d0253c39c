// Runs a script against the panel in a headless host. docs/drive.md describes the commands.
#include "tesmar/platform/foundation/diagnostics.h"
#include "tools/drive/Command.h"
#include "tools/drive/Session.h"
#include "tools/drive/fault.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
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

int fail(const std::string& message) {
    std::fprintf(stderr, "drive: %s\n", message.c_str());
    return kFailed;
}

int run(std::istream& script, const std::string& name) {
    int writeError = 0;
    const auto print = [&](const Json& json) {
        printLine(json);
        if (writeError == 0 && std::ferror(stdout))
            writeError = errno;
    };
    Session session(print);
    int status = 0;
    for (std::string line; std::getline(script, line);) {
        try {
            if (const auto command = parseCommand(line))
                session.run(*command);
        } catch (const Fault& fault) {
            print(Json::object({{"error", fault.what()}}));
            status = kFailed;
        }
    }
    // Standard input reports its errors to C only.
    if (script.bad() || std::ferror(stdin))
        return fail("cannot read " + name);
    if (std::ferror(stdout))
        return fail(std::string("cannot write the results: ") +
                    std::strerror(writeError != 0 ? writeError : EIO));
    return status;
}

int runFile(const std::string& path) {
    if (path == "-")
        return run(std::cin, "standard input");
    std::ifstream file(path);
    return file ? run(file, "'" + path + "'") : fail("cannot read '" + path + "'");
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
    try {
        return runFile(script);
    } catch (const std::exception& error) { // no temporary directory, for example
        return fail(error.what());
    }
}
