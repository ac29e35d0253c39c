#pragma once

#include "tesmar/platform/foundation/defaults/internal/file_system.h"

#include <utility>

namespace tesmar {

// Owns a descriptor; not open when opening failed (errno tells why).
class OpenFile {
  public:
    OpenFile(FileSystem& files, const std::string& path, int flags, mode_t mode = 0)
        : files_(files), descriptor_(files.open(path, flags, mode)) {}
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile() { close(); }

    bool isOpen() const { return descriptor_ >= 0; }
    int descriptor() const { return descriptor_; }
    // False when the system reports a failure of what was written before.
    bool close() { return !isOpen() || files_.close(std::exchange(descriptor_, -1)) == 0; }

  private:
    FileSystem& files_;
    int descriptor_;
};

} // namespace tesmar
