// What several tests of this floor share.
#pragma once

#include "tesmar/platform/foundation/NSArray.h"
#include "tesmar/platform/foundation/NSDictionary.h"
#include "tesmar/platform/foundation/scalars.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tesmar::test {

inline Ref<NSString> text(std::string value) {
    return NSString::stringWithString(std::move(value));
}
inline Ref<NSNumber> number(NSNumber::Number value) {
    return NSNumber::numberWith(value);
}
inline Ref<NSData> data(std::string bytes) {
    return NSData::dataWithBytes(std::move(bytes));
}
inline Ref<NSArray> list(std::vector<Ref<NSObject>> objects) {
    return NSArray::arrayWithObjects(std::move(objects));
}
inline Ref<NSDictionary> dictionary(NSDictionary::Entries entries) {
    return NSDictionary::dictionaryWithEntries(std::move(entries));
}

// A directory that goes with the test.
class TemporaryDirectory {
  public:
    explicit TemporaryDirectory(
        std::filesystem::path parent = std::filesystem::temp_directory_path());
    ~TemporaryDirectory();
    std::filesystem::path path() const { return path_; }

  private:
    std::filesystem::path path_;
};

std::string readFile(const std::filesystem::path& path);
void writeFile(const std::filesystem::path& path, std::string_view bytes);

// What the program prints when it is given `input` in sys.stdin.buffer; nothing, and the test is
// skipped, where there is no python3. A program that fails fails the test.
std::optional<std::string> python(const std::string& program, std::string_view input = {});

// A binary property list of raw objects, the first of which is the root.
struct RawList {
    std::vector<std::string> objects;
    std::size_t referenceSize = 1;
    std::string bytes() const;
};

std::string bigEndian(std::uint64_t value, std::size_t size);

} // namespace tesmar::test
