// A new, empty directory; the destructor deletes it with its content.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace tesmar::drive {

class TemporaryDirectory {
  public:
    // Throws std::system_error.
    TemporaryDirectory() {
        std::string name =
            (std::filesystem::temp_directory_path() / "tesmar-drive-XXXXXX").string();
        if (!mkdtemp(name.data()))
            throw std::system_error(errno, std::generic_category(), name);
        path_ = name;
    }
    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

} // namespace tesmar::drive
