#include "tesmar/tests/platform/text/test_fonts.h"

#include "tesmar/platform/text/FontRegistry.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <unistd.h>

namespace tesmar {
namespace {

namespace fs = std::filesystem;

void useConfiguration(const fs::path& path) {
    setenv("FONTCONFIG_FILE", path.c_str(), 1);
    FontRegistry::reset();
}

class OnlyTestFonts : public testing::Environment {
  public:
    void SetUp() override { useConfiguration(TESMAR_TEST_FONTS); }
};
const auto* const environment = testing::AddGlobalTestEnvironment(new OnlyTestFonts);

fs::path ownDirectory(const char* name) {
    return fs::temp_directory_path() / (name + std::to_string(getpid()));
}

void replaceAll(std::string& text, const std::string& from, const std::string& to) {
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at))
        text.replace(at, from.size(), to);
}

std::string twoByteText(const std::string& ascii) {
    std::string result;
    for (const char c : ascii)
        result += {'\0', c};
    return result;
}

} // namespace

InstalledFonts::InstalledFonts(std::initializer_list<fs::path> directories)
    : configuration_(ownDirectory("tesmar_fonts_") += ".conf") {
    std::ofstream file(configuration_);
    file << "<fontconfig>";
    for (const auto& directory : directories)
        file << "<dir>" << directory.string() << "</dir>";
    file << "<cachedir prefix=\"xdg\">fontconfig</cachedir></fontconfig>";
    file.close();
    useConfiguration(configuration_);
}

InstalledFonts::~InstalledFonts() {
    fs::remove(configuration_);
    useConfiguration(TESMAR_TEST_FONTS);
}

RealHelveticaNeue::RealHelveticaNeue()
    : directory(ownDirectory("tesmar_real_font_")), file(directory / "face.otf") {
    // Its PostScript name is as long as the other's: no table changes its size.
    std::ifstream source("/usr/share/fonts/opentype/cabin/Cabin-Regular.otf", std::ios::binary);
    std::string bytes(std::istreambuf_iterator<char>(source), {});
    const std::string from = "Cabin-Regular", to = "HelveticaNeue";
    replaceAll(bytes, from, to);
    replaceAll(bytes, twoByteText(from), twoByteText(to));
    fs::create_directory(directory);
    std::ofstream(file, std::ios::binary) << bytes;
}

RealHelveticaNeue::~RealHelveticaNeue() {
    fs::remove_all(directory);
}

} // namespace tesmar
