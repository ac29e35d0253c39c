#include "footprint.h"

#include <filesystem>
#include <fstream>
#include <set>
#include <string>

namespace {

constexpr double kMegabyte = 1024.0 * 1024.0;

// The value of a line like "Pss:      1234 kB" in a smaps file.
double kilobytes(const std::string& path, const std::string& field) {
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);)
        if (line.rfind(field + ":", 0) == 0)
            return std::stod(line.substr(field.size() + 1));
    return 0;
}

bool isRuntime(const std::string& name) {
    for (const char* runtime : {"libc.so", "libm.so", "libstdc++.so", "libgcc_s.so", "ld-linux"})
        if (name.rfind(runtime, 0) == 0)
            return true;
    return false;
}

} // namespace

Footprint footprint() {
    Footprint f;
    f.rssMegabytes = kilobytes("/proc/self/smaps_rollup", "Rss") / 1024;
    f.pssMegabytes = kilobytes("/proc/self/smaps_rollup", "Pss") / 1024;
    std::set<std::string> libraries;
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        const auto slash = line.find('/');
        if (slash != std::string::npos && line.find(".so", slash) != std::string::npos)
            libraries.insert(line.substr(slash));
    }
    std::error_code error;
    for (const auto& path : libraries) {
        if (isRuntime(std::filesystem::path(path).filename().string()))
            continue;
        ++f.libraries;
        f.librariesMegabytes +=
            static_cast<double>(std::filesystem::file_size(path, error)) / kMegabyte;
    }
    f.executableMegabytes =
        static_cast<double>(std::filesystem::file_size("/proc/self/exe", error)) / kMegabyte;
    return f;
}
