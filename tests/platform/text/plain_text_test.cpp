#include "tesmar/platform/text/internal/plain_text.h"

#include "tesmar/platform/text/UIFont.h"
#include "tesmar/platform/text/internal/ComplexText.h"
#include "tesmar/platform/text/internal/FontCatalogue.h"
#include "tesmar/platform/text/internal/fallback_fonts.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

namespace tesmar {

bool operator==(const PlacedGlyph& a, const PlacedGlyph& b) {
    return a.glyph == b.glyph && a.origin == b.origin;
}

namespace {

std::vector<PlacedGlyph> glyphsOf(const TypesetLine& line) {
    std::vector<PlacedGlyph> glyphs;
    for (const GlyphRun& run : line.runs)
        glyphs.insert(glyphs.end(), run.glyphs.begin(), run.glyphs.end());
    return glyphs;
}

MakeComplexText fullTypesetter() {
    void* const module = dlopen(kComplexTextModule, RTLD_NOW | RTLD_LOCAL);
    return module ? reinterpret_cast<MakeComplexText>(dlsym(module, kMakeComplexText)) : nullptr;
}

TEST(PlainText, IsTheSameAsTheFullTypesetters) {
    constexpr const char* kTexts[] = {"Captions",
                                      "AVATAR To. We fi ffl",
                                      "17",
                                      "+ \u2212 \u2026",
                                      "Zażółć \u201Egęślą\u201C – jaźń",
                                      "",
                                      " two  spaces ",
                                      "one\nlonger line\r\n",
                                      "non\u00A0breaking",
                                      "\n\n",
                                      "Straße µ ª ©€"};
    const MakeComplexText make = fullTypesetter();
    ASSERT_TRUE(make) << dlerror();
    int plainTexts = 0;
    for (const char* name :
         {".SystemUI", "Courier", "SavoyeLetPlain", "Copperplate", "TrebuchetMS"}) {
        const FontRegistry::Source& source = FontRegistry::catalogue()->find(name)->source;
        const auto face = std::make_shared<FontFile>(source.file, source.index);
        const std::unique_ptr<ComplexText> full(make(face, &fallbackFonts));
        for (TypesettingRequest request; const char* text : kTexts)
            for (int i = 0; i < 54; ++i) {
                request.text = text;
                request.pointSize = std::array{9.0, 17.0, 33.3}[i % 3];
                request.width =
                    std::array<std::optional<CGFloat>, 3>{std::nullopt, 900, 100.4}[i / 3 % 3];
                request.lineCount = i / 9 % 2 * 3;
                request.alignment = NSTextAlignment(i / 18);
                request.lineBreakMode =
                    i % 2 ? NSLineBreakMode::truncatingTail : NSLineBreakMode::wordWrapping;
                const auto plain = typesetPlainText(face, request);
                if (!plain)
                    continue;
                ++plainTexts;
                const TypesetText expected = full->typeset(request);
                ASSERT_EQ(plain->lines.size(), expected.lines.size()) << name << text << i;
                ASSERT_EQ(plain->isLeftToRight, expected.isLeftToRight) << text;
                ASSERT_FALSE(expected.isEllipsized) << text;
                for (std::size_t l = 0; l < plain->lines.size(); ++l) {
                    const TypesetLine &a = plain->lines[l], &b = expected.lines[l];
                    ASSERT_EQ(a.box, b.box) << name << ": " << text << " " << i;
                    ASSERT_EQ(a.baseline, b.baseline) << name << ": " << text << " " << i;
                    ASSERT_EQ(glyphsOf(a), glyphsOf(b)) << name << ": " << text << " " << i;
                }
            }
    }
    EXPECT_GT(plainTexts, 2000);
}

TEST(PlainText, StandsInForTheFullTypesetter) {
    const FontRegistry::Source& source = FontRegistry::catalogue()->find(".SystemUI")->source;
    const auto face = std::make_shared<FontFile>(source.file, source.index);
    const TypesettingRequest request{
        .text = "שלום, long line\nb\nc", .pointSize = 17, .width = 10, .lineCount = 2};
    EXPECT_FALSE(typesetPlainText(face, request));
    EXPECT_EQ(typesetAsPlainText(face, request).lines.size(), 2U);
}

} // namespace
} // namespace tesmar
