// Which fonts a test sees.
#pragma once

#include <filesystem>
#include <string>

namespace tesmar {

// From its making to its end, only the fonts of these directories are installed.
class InstalledFonts {
  public:
    explicit InstalledFonts(std::initializer_list<std::filesystem::path> directories);
    ~InstalledFonts();

  private:
    std::filesystem::path configuration_;
};

// A font file that truly bears the name HelveticaNeue, in a directory of its own; removed at the
// end.
class RealHelveticaNeue {
  public:
    RealHelveticaNeue();
    ~RealHelveticaNeue();
    const std::filesystem::path directory;
    const std::filesystem::path file;
};

} // namespace tesmar
