#include "tests/platform/text/test_fonts.h"

#include "tesmar/platform/text/FontRegistry.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <unistd.h>

namespace tesmar {
namespace {

void useConfiguration(const std::filesystem::path& path) {
    setenv("FONTCONFIG_FILE", path.c_str(), 1);
    FontRegistry::reset();
}

class OnlyTestFonts : public testing::Environment {
  public:
    void SetUp() override { useConfiguration(TESMAR_TEST_FONTS); }
};
const auto* const environment = testing::AddGlobalTestEnvironment(new OnlyTestFonts);

} // namespace

InstalledFonts::InstalledFonts(std::initializer_list<std::filesystem::path> directories)
    : configuration_(std::filesystem::temp_directory_path() /
                     ("tesmar_fonts_" + std::to_string(getpid()) + ".conf")) {
    std::ofstream file(configuration_);
    file << "<fontconfig>";
    for (const auto& directory : directories)
        file << "<dir>" << directory.string() << "</dir>";
    file << "<cachedir prefix=\"xdg\">fontconfig</cachedir></fontconfig>";
    file.close();
    useConfiguration(configuration_);
}

InstalledFonts::~InstalledFonts() {
    std::filesystem::remove(configuration_);
    useConfiguration(TESMAR_TEST_FONTS);
}

} // namespace tesmar
