// Which fonts a test sees.
#pragma once

#include <filesystem>

namespace tesmar {

// From its making to its end, only the fonts of these directories are installed.
class InstalledFonts {
  public:
    explicit InstalledFonts(std::initializer_list<std::filesystem::path> directories);
    ~InstalledFonts();

  private:
    std::filesystem::path configuration_;
};

} // namespace tesmar
