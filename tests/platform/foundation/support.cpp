#include "support.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sys/wait.h>
#include <unistd.h>

namespace tesmar::test {

TemporaryDirectory::TemporaryDirectory(const std::filesystem::path& parent) {
    std::string name = (parent / "foundation-XXXXXX").string();
    path_ = ::mkdtemp(name.data());
}

std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

void writeFile(const std::filesystem::path& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

pid_t start(const std::function<bool()>& body) {
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(body() ? 0 : 1);
    return child;
}

int statusOf(pid_t child) {
    int status = W_EXITCODE(1, 0);
    ::waitpid(child, &status, 0);
    return status;
}

std::string bigEndian(std::uint64_t value, std::size_t size) {
    std::string bytes;
    for (std::size_t i = size; i-- > 0;)
        bytes += static_cast<char>(i < 8 ? value >> (8 * i) : 0);
    return bytes;
}

std::string RawList::bytes() const {
    std::string bytes = "bplist00", table;
    for (const std::string& object : objects) {
        table += bigEndian(bytes.size(), 8);
        bytes += object;
    }
    const std::size_t start = bytes.size();
    return bytes + table + std::string(6, '\0') + bigEndian(8, 1) + bigEndian(referenceSize, 1) +
           bigEndian(objects.size(), 8) + bigEndian(0, 8) + bigEndian(start, 8);
}

} // namespace tesmar::test
