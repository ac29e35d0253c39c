// An open file that closes itself.
#pragma once

#include "tesmar/platform/foundation/defaults/internal/file_system.h"

#include <utility>

namespace tesmar {

// Owns a file descriptor. Not open if opening failed, with the reason in errno.
class OpenFile {
  public:
    OpenFile(FileSystem& files, int directory, const std::string& path, int flags, mode_t mode = 0)
        : files_(&files), descriptor_(files.open(directory, path, flags, mode)) {}
    explicit OpenFile(FileSystem& files) : files_(&files), descriptor_(-1) {} // not open
    OpenFile(OpenFile&& other) noexcept
        : files_(other.files_), descriptor_(std::exchange(other.descriptor_, -1)) {}
    OpenFile& operator=(OpenFile&& other) noexcept {
        std::swap(files_, other.files_);
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~OpenFile() { close(); }

    bool isOpen() const { return descriptor_ >= 0; }
    int descriptor() const { return descriptor_; }
    // False if the system reports that an earlier write failed.
    bool close() { return !isOpen() || files_->close(std::exchange(descriptor_, -1)) == 0; }

  private:
    FileSystem* files_;
    int descriptor_;
};

} // namespace tesmar
