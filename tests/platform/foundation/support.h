// Helpers for the tests of the foundation: objects, files and raw property lists.
#pragma once

#include "tesmar/platform/foundation/NSArray.h"
#include "tesmar/platform/foundation/NSDictionary.h"
#include "tesmar/platform/foundation/archive/internal/property_list.h"
#include "tesmar/platform/foundation/scalars.h"

#include <filesystem>
#include <functional>
#include <sys/types.h>

namespace tesmar::test {

using namespace std::string_literals;
using UID = PropertyList::UID;

inline constexpr auto text = NSString::stringWithString;
inline constexpr auto number = NSNumber::numberWith;
inline constexpr auto data = NSData::dataWithBytes;
inline constexpr auto list = NSArray::arrayWithObjects;
inline constexpr auto dictionary = NSDictionary::dictionaryWithEntries;

// A new directory; the destructor removes it with its content.
class TemporaryDirectory {
  public:
    explicit TemporaryDirectory(
        const std::filesystem::path& parent = std::filesystem::temp_directory_path());
    ~TemporaryDirectory() { std::filesystem::remove_all(path_); }
    std::filesystem::path path() const { return path_; }

  private:
    std::filesystem::path path_;
};

// Empty if the file cannot be read.
std::string readFile(const std::filesystem::path& path);
void writeFile(const std::filesystem::path& path, std::string_view bytes);

// Runs `body` in a process of its own, whose status is 0 if `body` returns true.
pid_t start(const std::function<bool()>& body);
int statusOf(pid_t child); // waits for its end

std::string bigEndian(std::uint64_t value, std::size_t size);

// A binary property list of raw objects, of which the first is the root.
struct RawList {
    std::vector<std::string> objects;
    std::size_t referenceSize = 1;
    std::string bytes() const;
};

} // namespace tesmar::test
