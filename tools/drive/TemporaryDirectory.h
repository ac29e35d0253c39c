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
        std::error_code error;
        const auto parent = std::filesystem::temp_directory_path(error);
        if (error)
            throw std::system_error(error, "no directory for temporary files (TMPDIR)");
        std::string name = parent / "tesmar-drive-XXXXXX";
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
