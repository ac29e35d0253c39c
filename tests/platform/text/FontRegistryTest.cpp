#include "tesmar/platform/text/FontRegistry.h"

#include "tesmar/platform/text/TextLayout.h"
#include "tesmar/platform/text/UIFont.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>

namespace tesmar {
namespace {

using namespace std::literals;
using Names = std::vector<std::string>;

void useConfiguration(const std::string& path) {
    setenv("FONTCONFIG_FILE", path.c_str(), 1);
    FontRegistry::reset();
}

// Limits all tests of this program to the fonts that the project's set-up installs.
class TestFonts : public testing::Environment {
    void SetUp() override { useConfiguration(TESMAR_TEST_FONTS); }
};
const auto* const environment = testing::AddGlobalTestEnvironment(new TestFonts);

// Every listed face, with the families that list it.
std::map<std::string, Names> listedFaces() {
    std::map<std::string, Names> faces;
    for (const auto& family : UIFont::familyNames())
        for (const auto& face : UIFont::fontNamesForFamilyName(family))
            faces[face].push_back(family);
    return faces;
}

std::string fileOf(std::string_view fontName) {
    const auto source = FontRegistry::sourceOf(fontName);
    return source ? std::filesystem::path(source->file).filename().string() : "";
}

class FontRegistryTest : public testing::Test {
  protected:
    FontRegistryTest() { EXPECT_TRUE(::mkdtemp(directory_.data())); }
    ~FontRegistryTest() override {
        std::filesystem::remove_all(directory_);
        useConfiguration(TESMAR_TEST_FONTS);
    }

    // Until the end of the test, only the fonts of these directories are installed.
    void install(std::initializer_list<std::string> directories, const std::string& include = "") {
        std::ofstream file(directory_ + "/fonts.conf");
        file << "<fontconfig><cachedir prefix=\"xdg\">fontconfig</cachedir>";
        for (const auto& directory : directories)
            file << "<dir>" << directory << "</dir>";
        if (!include.empty())
            file << "<include>" << include << "</include\n>";
        file << "</fontconfig>" << std::flush;
        useConfiguration(directory_ + "/fonts.conf");
    }

    std::string directory_ = testing::TempDir() + "tesmar-fonts-XXXXXX";
};

TEST_F(FontRegistryTest, GenericStylesAreFoundByNameOnly) {
    const std::pair<const char*, const char*> rows[] = {
        {".MonospacedSerif", "NimbusMonoPS-Regular"},
        {".ProportionalSerif", "NimbusRoman-Regular"},
        {".MonospacedSans", "DejaVuSansMono"},
        {".Cursive", "DancingScript"}};
    for (const auto& [name, drawnBy] : rows) {
        EXPECT_EQ(FontRegistry::sourceOf(name).value().fontName, drawnBy);
        EXPECT_FALSE(listedFaces().contains(name));
    }
}

TEST_F(FontRegistryTest, StandInsDrawNamesThatAreNotInstalled) {
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {".SystemUI", ".SystemUI", "Inter-Regular.otf"},
        {"HelveticaNeue-Light", "Helvetica Neue", "Inter-Light.otf"},
        {"Avenir", "Avenir", "Manrope-Medium.ttf"},
        {"Inter-Bold", "Inter", "Inter-Bold.otf"}, // installed
    };
    for (const auto& [name, family, file] : rows) {
        const auto font = UIFont::fontWithName(name, 17);
        ASSERT_TRUE(font) << name;
        EXPECT_EQ(font->fontName(), name);
        EXPECT_EQ(font->familyName(), family);
        EXPECT_EQ(fileOf(name), file);
    }
    EXPECT_EQ(FontRegistry::sourceOf("Avenir")->fontName, "Manrope-Medium");
    EXPECT_EQ(FontRegistry::sourceOf("Avenir")->family, "Manrope");
    for (const char* name : {"helveticaneue", "Helvetica Neue", "HelveticaNeue ", "HELVETICANEUE",
                             "HelveticaNeue-Regular", "Menlo", ".systemui", "Inter Regular", ""})
        EXPECT_TRUE(!UIFont::fontWithName(name, 17) && !FontRegistry::sourceOf(name)) << name;
}

TEST_F(FontRegistryTest, ListsEveryFaceOnceButNotTheSystemFont) {
    const auto faces = listedFaces();
    EXPECT_GT(faces.size(), 100u);
    for (const auto& [face, families] : faces)
        EXPECT_EQ(families, Names{UIFont::fontWithName(face, 12)->familyName()}) << face;
    EXPECT_FALSE(faces.contains(".SystemUI"));
    EXPECT_EQ(UIFont::fontNamesForFamilyName(".SystemUI"), Names{".SystemUI"});
    EXPECT_EQ(UIFont::fontNamesForFamilyName("Helvetica Neue"),
              (Names{"HelveticaNeue", "HelveticaNeue-Light", "HelveticaNeue-Medium"}));
}

// Replaces text of the same size: no table of a font file changes its size.
void replaceAll(std::string& bytes, const std::string& from, const std::string& to) {
    for (auto at = bytes.find(from); at != std::string::npos; at = bytes.find(from, at))
        bytes.replace(at, from.size(), to);
}

TEST_F(FontRegistryTest, InstalledAndAddedFacesPrecedeStandIns) {
    std::ifstream source("/usr/share/fonts/opentype/cabin/Cabin-Regular.otf", std::ios::binary);
    std::string bytes(std::istreambuf_iterator<char>(source), {});
    replaceAll(bytes, "Cabin-Regular", "HelveticaNeue");
    replaceAll(bytes, "C\0a\0b\0i\0n\0-\0R\0e\0g\0u\0l\0a\0r"s, // the PostScript name in UTF-16
               "H\0e\0l\0v\0e\0t\0i\0c\0a\0N\0e\0u\0e"s);
    std::ofstream(directory_ + "/face.otf", std::ios::binary) << bytes;
    install({directory_, "/usr/share/fonts/opentype/urw-base35"});
    EXPECT_EQ(fileOf("HelveticaNeue"), "face.otf");
    EXPECT_EQ(listedFaces().at("HelveticaNeue"), Names{"Cabin"}); // the file's own family
    install({"/usr/share/fonts/opentype/urw-base35"});
    EXPECT_EQ(fileOf("HelveticaNeue"), "NimbusSans-Regular.otf");
    EXPECT_TRUE(FontRegistry::addFontFile(directory_ + "/face.otf"));
    EXPECT_EQ(fileOf("HelveticaNeue"), "face.otf");
}

TEST_F(FontRegistryTest, MissingFontFilesLeaveNoNames) {
    install({"/usr/share/fonts/truetype/dejavu"});
    EXPECT_TRUE(UIFont::fontWithName("Menlo-Regular", 17));
    EXPECT_FALSE(UIFont::fontWithName("HelveticaNeue", 17));
    EXPECT_EQ(fileOf(".SystemUI"), "DejaVuSans.ttf");
    install({});
    EXPECT_TRUE(UIFont::familyNames().empty());
    EXPECT_FALSE(FontRegistry::sourceOf(".SystemUI"));
    EXPECT_EQ(UIFont::systemFontOfSize(17)->fontName(), ".SystemUI");
    EXPECT_EQ(UIFont::systemFontOfSize(17)->lineHeight(), 0);
    TextLayout layout;
    layout.setText("text");
    EXPECT_EQ(layout.size(), CGSize());
    EXPECT_TRUE(layout.lineBoxes().empty());
}

// Each in a process of its own, since the rules for fallback fonts are loaded once.
TEST_F(FontRegistryTest, AConfigurationThatIsNoRegularFileDoesNotHang) {
    const std::string fifo = directory_ + "/1.conf";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    const auto exitWithText = [](const auto& configure) {
        ::alarm(20);
        configure();
        TextLayout layout;
        layout.setText("\u0634"); // needs a fallback font
        std::_Exit(layout.size().width > 0 && layout.size().height > 10 ? 0 : 1);
    };
    for (const std::string& path : {fifo, directory_, "/dev/zero"s}) {
        const auto included = [&] { install({"/usr/share/fonts/truetype/dejavu"}, path); };
        EXPECT_EXIT(exitWithText(included), testing::ExitedWithCode(0), "") << path;
        const auto alone = [&] { useConfiguration(path); };
        EXPECT_EXIT(exitWithText(alone), testing::ExitedWithCode(0), "") << path;
    }
}

TEST_F(FontRegistryTest, ARestrictionLeavesOnlyItsNamesAndAddedFiles) {
    FontRegistry::restrictTo({"Courier", "HelveticaNeue", "Corporate-Bold"});
    const std::map<std::string, Names> expected{{"Courier", {"Courier"}},
                                                {"HelveticaNeue", {"Helvetica Neue"}},
                                                {"Corporate-Bold", {"Corporate-Bold"}}};
    EXPECT_EQ(listedFaces(), expected);
    EXPECT_EQ(UIFont::fontWithName("Menlo-Regular", 12), nullptr);
    EXPECT_EQ(fileOf("Courier"), "NimbusMonoPS-Regular.otf");
    EXPECT_EQ(fileOf("Corporate-Bold"), fileOf(".SystemUI"));
    EXPECT_TRUE(FontRegistry::addFontFile("/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf"));
    EXPECT_TRUE(listedFaces().contains("DejaVuSerif"));
    const std::string fifo = directory_ + "/fifo", face = directory_ + "/face.ttf";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    for (const char* path : {"", "/etc/passwd", "/usr/share/fonts", fifo.c_str(),
                             "/usr/share/fonts/type1/urw-base35/NimbusSans-Regular.t1"})
        EXPECT_FALSE(FontRegistry::addFontFile(path)) << path;

    std::filesystem::copy("/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf", face);
    EXPECT_TRUE(FontRegistry::addFontFile(face));
    std::filesystem::rename(fifo, face); // a file that has become a fifo does not hang either
    TextLayout layout;
    layout.setFont(UIFont::fontWithName("DejaVuSansMono", 12));
    layout.setText("text");
    EXPECT_GT(layout.size().height, 0);
}

} // namespace
} // namespace tesmar
