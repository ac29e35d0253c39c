#include "tesmar/model/CCConstants.h"
#include "tesmar/platform/foundation/scalars.h"
#include "tesmar/platform/text/NSAttributedString.h"
#include "tesmar/sharing/TESMARStyleJSON.h"

#include <gtest/gtest.h>

namespace tesmar {
namespace {

TEST(StyleJson, AStyleComesBackEqual) {
    const auto style = CCConstants::CCDefaultStyleAttributes()->mutableCopy();
    const std::string plain = styleToJSON(*style);
    EXPECT_EQ(plain, R"({
  "version": 1,
  "text": {"color": "#ffffff", "white": 1, "opacity": 1},
  "background": {"color": "#000000", "white": 0, "opacity": 0.5},
  "font": {"name": ".SystemUI", "size": 17}
}
)");
    EXPECT_TRUE(styleFromJSON(plain).style->isEqual(style.get()));

    style->setObject(UIColor::colorWithRed(1 / 3., 0.1, 0.2, 0.1 + 0.2),
                     NSForegroundColorAttributeName);
    style->setObject(UIColor::grayColor(), NSBackgroundColorAttributeName);
    style->setObject(UIColor::yellowColor(), TESMAREdgeColorAttributeName);
    style->setObject(UIColor::colorWithWhite(0.3, 1e-300), TESMARWindowColorAttributeName);
    style->setObject(NSString::stringWithString("dropShadow"), TESMAREdgeAttributeName);
    auto font = R"({"version": 1, "font": {"name": "no \"such\" \\ \u00e9", "size": 20.1}})";
    style->setObject(styleFromJSON(font).style->objectForKey(NSFontAttributeName),
                     NSFontAttributeName);
    const auto result = styleFromJSON(styleToJSON(*style));
    EXPECT_EQ(result.problem, "");
    EXPECT_TRUE(result.style->isEqual(style.get())) << styleToJSON(*style);
    style->setObject(NSString::stringWithString("wavy"), TESMAREdgeAttributeName);
    style->setObject(NSString::stringWithString("none"), TESMARWindowColorAttributeName);
    EXPECT_EQ(styleFromJSON(styleToJSON(*style)).style->entries().size(), 4U);
}

TEST(StyleJson, BadInputIsRefusedWithLineAndReason) {
    const auto deep = [](std::size_t levels) { return std::string(levels, '['); };
    const auto style = [](const std::string& members) {
        return "{\"version\": 1,\n" + members + "}";
    };
    const auto color = [&](const std::string& rest) { return style("\"text\": {" + rest + "}"); };
    std::string zeros = "[0";
    for (int i = 0; i < 1000; ++i)
        zeros += ", 0";
    const struct {
        std::string text, problem; // a part of it
    } rows[] = {
        {"", "line 1: syntax error while parsing value - unexpected end of input"},
        {"[]", "line 1: the style must be an object"},
        {"{}", "line 1: the style has no \"version\""},
        {"{\"version\":\n\n2\n}", "line 3: version must be 1"},
        {"{\"version\": \"1\"}", "line 1: version"},
        {style("") + "\n\n}", "line 2: "}, // a comma too many
        {"{\"version\": 1}\n\n}", "line 3: syntax error"},
        {style("\"a\": 0,\n\"a\": 0"), "line 3: an object has the same key twice"},
        {style("\"a\": 1e999"), "line 2: number overflow"},
        {style("\"a\": NaN"), "line 2: syntax error"},
        {style("\"a\": \"\xff\""), "line 2: syntax error while parsing value - invalid string: "},
        {style("\"a\": \"\\ud800\""),
         "line 2: syntax error while parsing value - invalid string: "},
        {std::string("{\"version\": 1}\0", 15), "line 1: syntax error"},
        {deep(9), "line 1: nested more than 8 levels deep"},
        {deep(1 << 20), "line 1: more than 64 KiB"},
        {style("\"a\": " + zeros + "]"), "line 2: more than 1,000 values"},
        {style("\"text\": \"#ffffff\""), "line 2: text must be an object"},
        {style("\"window\": null"), "line 2: window must be an object"},
        {color(""), "line 2: text has no \"color\""},
        {color("\"color\": \"yellow\""), "line 2: text.color must be a text like \"#ffff00\""},
        {color("\"color\": \"#ff00\""), "text.color"},
        {color("\"color\": \"#-f0000\""), "text.color"},
        {color("\"color\": \"#ff000g\""), "text.color"},
        {color("\"color\": 0"), "text.color"},
        {color("\"color\": \"#FF0000\",\n\"opacity\": 1.1"),
         "line 3: text.opacity must be a number"},
        {color("\"color\": \"#ff0000\", \"opacity\": -1e-9"), "text.opacity"},
        {color("\"color\": \"#ff0000\", \"opacity\": true"), "text.opacity"},
        {color("\"color\": \"#ff0000\", \"white\": 1"), "text.white does not round to #ff0000"},
        {color("\"color\": \"#ff0000\", \"rgb\": [1, 0.1, 0]"), "text.rgb does not round"},
        {color("\"color\": \"#ff0000\", \"rgb\": [1, 0]"), "text.rgb must be a list"},
        {color("\"color\": \"#ff0000\", \"rgb\": [1, 0, 9]"), "text.rgb must be a number"},
        {color("\"color\": \"#ffffff\", \"rgb\": [1, 1, 1], \"white\": 1"), "text has both"},
        {style("\"font\": {\"name\": \"\", \"size\": 1}"), "font.name must be a text"},
        {style("\"font\": {\"name\": \"a\\n\", \"size\": 1}"), "font.name must be a text"},
        {style("\"font\": {\"name\": \"a\", \"size\": 0}"), "font.size must be a number"},
        {style("\"font\": {\"name\": \"a\", \"size\": 1001}"), "font.size must be a number"},
        {style("\"font\": {\"name\": \"a\"}"), "font has no \"size\""},
        {style("\"edge\": \"Raised\""), "line 2: edge must be \"none\", "},
    };
    for (const auto& [text, problem] : rows) {
        const auto result = styleFromJSON(text);
        EXPECT_FALSE(result.style) << text.substr(0, 100);
        EXPECT_NE(result.problem.find(problem), std::string::npos) << text.substr(0, 100) << "\n"
                                                                   << result.problem << "\n"
                                                                   << problem;
        EXPECT_LT(result.problem.size(), 150U) << result.problem;
    }
    EXPECT_TRUE(styleFromJSON(style("\"later\": {\"a\": [null, true, -1e-400]}")).style);
}

} // namespace
} // namespace tesmar
