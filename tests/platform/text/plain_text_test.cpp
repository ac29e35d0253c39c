#include "tesmar/platform/text/internal/plain_text.h"

#include "tesmar/platform/text/UIFont.h"
#include "tesmar/platform/text/internal/ComplexText.h"
#include "tesmar/platform/text/internal/FontCatalogue.h"
#include "tesmar/platform/text/internal/fallback_fonts.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <sstream>

namespace tesmar {
namespace {

std::string describe(const TypesetText& text) {
    std::ostringstream out;
    out << std::hexfloat << text.isLeftToRight << text.isEllipsized;
    for (const TypesetLine& line : text.lines) {
        out << "\n"
            << line.box.minX() << " " << line.box.maxX() << " " << line.box.maxY() << line.baseline;
        for (const GlyphRun& run : line.runs)
            for (const PlacedGlyph& g : run.glyphs)
                out << " " << g.glyph << " at " << g.origin.x << " " << g.origin.y;
    }
    return out.str();
}

MakeComplexText fullTypesetter() {
    void* const module = dlopen("tesmar-pango" TESMAR_MODULE_SUFFIX, RTLD_NOW | RTLD_LOCAL);
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
                ASSERT_EQ(describe(*plain), describe(full->typeset(request))) << name << text << i;
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
