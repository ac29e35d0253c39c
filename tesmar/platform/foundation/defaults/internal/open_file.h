// An open file that closes itself.
#pragma once

#include "tesmar/platform/foundation/defaults/internal/file_system.h"

#include <utility>

namespace tesmar {

// Owns a file descriptor. Not open if opening failed, with the reason in errno.
class OpenFile {
  public:
    OpenFile(FileSystem& files, const std::string& path, int flags, mode_t mode = 0)
        : files_(files), descriptor_(files.open(path, flags, mode)) {}
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile() { close(); }

    bool isOpen() const { return descriptor_ >= 0; }
    int descriptor() const { return descriptor_; }
    // False if the system reports that an earlier write failed.
    bool close() { return !isOpen() || files_.close(std::exchange(descriptor_, -1)) == 0; }

  private:
    FileSystem& files_;
    int descriptor_;
};

} // namespace tesmar
