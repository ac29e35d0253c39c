#include "tesmar/platform/text/FontRegistry.h"

#include "tesmar/platform/text/TextLayout.h"
#include "tesmar/platform/text/UIFont.h"
#include "tests/platform/text/test_fonts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <unistd.h>

namespace tesmar {
namespace {

using Names = std::vector<std::string>;

// Every listed face, with the families that list it.
std::map<std::string, Names> listedFaces() {
    std::map<std::string, Names> faces;
    for (const auto& family : UIFont::familyNames())
        for (const auto& face : UIFont::fontNamesForFamilyName(family))
            faces[face].push_back(family);
    return faces;
}

std::string fileBehind(std::string_view fontName) {
    const auto source = FontRegistry::sourceOf(fontName);
    return source ? std::filesystem::path(source->file).filename().string() : "";
}

class FontRegistryTest : public testing::Test {
  protected:
    ~FontRegistryTest() override { FontRegistry::reset(); }
};

TEST_F(FontRegistryTest, StandInsStandBehindTheNames) {
    const struct {
        const char* name;
        const char* family;
        const char* file;
    } rows[] = {
        {".SystemUI", ".SystemUI", "Inter-Regular.otf"},
        {"HelveticaNeue", "Helvetica Neue", "NimbusSans-Regular.otf"},
        {"HelveticaNeue-Light", "Helvetica Neue", "Inter-Light.otf"},
        {"HelveticaNeue-Medium", "Helvetica Neue", "Inter-Medium.otf"},
        {"Courier", "Courier", "NimbusMonoPS-Regular.otf"},
        {"Menlo-Regular", "Menlo", "DejaVuSansMono.ttf"},
        {"TrebuchetMS", "Trebuchet MS", "Cabin-Regular.otf"},
        {"Avenir", "Avenir", "Manrope-Medium.ttf"},
        {"SavoyeLetPlain", "Savoye LET", "DancingScript-Regular.otf"},
        {"Copperplate", "Copperplate", "IrianisADFStyleStd-Regular.otf"},
        {"Inter-Bold", "Inter", "Inter-Bold.otf"}, // installed under its own name
    };
    for (const auto& row : rows) {
        const auto font = UIFont::fontWithName(row.name, 17);
        ASSERT_TRUE(font) << row.name;
        EXPECT_EQ(font->fontName(), row.name);
        EXPECT_EQ(font->familyName(), row.family);
        EXPECT_EQ(fileBehind(row.name), row.file);
    }
    EXPECT_EQ(FontRegistry::sourceOf("Avenir")->fontName, "Manrope-Medium");
    EXPECT_EQ(FontRegistry::sourceOf("Avenir")->family, "Manrope");
}

TEST_F(FontRegistryTest, NamesAreComparedByteForByte) {
    for (const char* name : {"helveticaneue", "Helvetica Neue", "HelveticaNeue ", "HELVETICANEUE",
                             "HelveticaNeue-Regular", "Menlo", "savoyeletplain", ".systemui",
                             "SystemUI", "Inter", "Inter Regular", ""}) {
        EXPECT_EQ(UIFont::fontWithName(name, 17), nullptr) << name;
        EXPECT_FALSE(FontRegistry::sourceOf(name)) << name;
    }
}

TEST_F(FontRegistryTest, EveryFaceIsListedOnceAndTheSystemFontNever) {
    const auto faces = listedFaces();
    EXPECT_GT(faces.size(), 100u);
    for (const auto& [face, families] : faces) {
        ASSERT_EQ(families.size(), 1u) << face;
        EXPECT_EQ(UIFont::fontWithName(face, 12)->familyName(), families[0]);
    }
    EXPECT_FALSE(faces.contains(".SystemUI"));
    EXPECT_EQ(UIFont::fontNamesForFamilyName(".SystemUI"), Names{".SystemUI"});
    EXPECT_EQ(UIFont::fontNamesForFamilyName("Helvetica Neue"),
              (Names{"HelveticaNeue", "HelveticaNeue-Light", "HelveticaNeue-Medium"}));
}

TEST_F(FontRegistryTest, ARealFaceWinsOverAStandIn) {
    // A font whose PostScript name is made HelveticaNeue: no table changes its size.
    std::ifstream source("/usr/share/fonts/opentype/cabin/Cabin-Regular.otf", std::ios::binary);
    std::string bytes(std::istreambuf_iterator<char>(source), {});
    const std::string from = "Cabin-Regular", to = "HelveticaNeue";
    for (auto at = bytes.find(from); at != std::string::npos; at = bytes.find(from, at))
        bytes.replace(at, from.size(), to);
    const auto wide = [](const std::string& text) {
        std::string result;
        for (const char c : text)
            result += {'\0', c};
        return result;
    };
    bytes.replace(bytes.find(wide(from)), 2 * from.size(), wide(to));
    const auto directory =
        std::filesystem::temp_directory_path() / ("tesmar_real_font_" + std::to_string(getpid()));
    std::filesystem::create_directory(directory);
    std::ofstream(directory / "face.otf", std::ios::binary) << bytes;
    {
        const InstalledFonts installed{directory, "/usr/share/fonts/opentype/urw-base35"};
        EXPECT_EQ(fileBehind("HelveticaNeue"), "face.otf");
        EXPECT_EQ(listedFaces().at("HelveticaNeue"), Names{"Cabin"}); // where the file says
    }
    EXPECT_EQ(fileBehind("HelveticaNeue"), "NimbusSans-Regular.otf");
    EXPECT_TRUE(FontRegistry::addFontFile(directory / "face.otf"));
    EXPECT_EQ(fileBehind("HelveticaNeue"), "face.otf");
    std::filesystem::remove_all(directory);
}

TEST_F(FontRegistryTest, AMissingPackageTakesItsNameAway) {
    const InstalledFonts installed{"/usr/share/fonts/truetype/dejavu"};
    EXPECT_NE(UIFont::fontWithName("Menlo-Regular", 17), nullptr);
    EXPECT_EQ(UIFont::fontWithName("HelveticaNeue", 17), nullptr);
    EXPECT_EQ(UIFont::fontWithName("SavoyeLetPlain", 17), nullptr);
    EXPECT_EQ(fileBehind(".SystemUI"), "DejaVuSans.ttf");
}

TEST_F(FontRegistryTest, AMachineWithoutFontsMeasuresNothing) {
    const InstalledFonts none{"/nowhere"};
    EXPECT_TRUE(UIFont::familyNames().empty());
    EXPECT_FALSE(FontRegistry::sourceOf(".SystemUI"));
    const auto font = UIFont::systemFontOfSize(17);
    EXPECT_EQ(font->fontName(), ".SystemUI");
    EXPECT_EQ(font->lineHeight(), 0);
    TextLayout layout;
    layout.setText("text");
    EXPECT_EQ(layout.size(), CGSize());
    EXPECT_TRUE(layout.lineBoxes().empty());
}

TEST_F(FontRegistryTest, ARestrictionOffersJustItsNames) {
    FontRegistry::restrictTo({"Courier", "HelveticaNeue", "Corporate-Bold"});
    EXPECT_EQ(listedFaces(),
              (std::map<std::string, Names>{{"Courier", {"Courier"}},
                                            {"HelveticaNeue", {"Helvetica Neue"}},
                                            {"Corporate-Bold", {"Corporate-Bold"}}}));
    EXPECT_EQ(UIFont::fontWithName("Menlo-Regular", 12), nullptr);
    EXPECT_EQ(fileBehind("Courier"), "NimbusMonoPS-Regular.otf");
    EXPECT_EQ(fileBehind("Corporate-Bold"), fileBehind(".SystemUI"));
    EXPECT_TRUE(FontRegistry::addFontFile("/usr/share/fonts/truetype/dejavu/DejaVuSerif.ttf"));
    EXPECT_TRUE(listedFaces().contains("DejaVuSerif"));
    for (const char* path : {"", "/etc/passwd", "/usr/share/fonts",
                             "/usr/share/fonts/type1/urw-base35/NimbusSans-Regular.t1"})
        EXPECT_FALSE(FontRegistry::addFontFile(path)) << path;
}

} // namespace
} // namespace tesmar
