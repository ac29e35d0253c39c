// Boxes and formats as data, with the frames that they must have.
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/layout/internal/LayoutEngine.h"
#include "tests/platform/layout/LayoutBox.h"

#include <gtest/gtest.h>

namespace tesmar {
namespace {

struct BoxSpec {
    const char* name;
    std::optional<CGFloat> width{}, height{}; // of the content
    double hugging = 250;
    double compression = 750;
    const char* parent = "root";
};

struct Format {
    const char* text;
    unsigned options = 0;
};

using Boxes = std::map<std::string, std::shared_ptr<LayoutBox>>;

struct Case {
    const char* name;
    CGSize root;
    std::vector<BoxSpec> boxes;
    std::vector<Format> formats;
    std::vector<std::pair<const char*, CGRect>> frames;
    std::size_t conflicts = 0;
    void (*prepare)(Boxes& boxes) = nullptr;
    CGSize scrolled{}; // the content of scroll views
};

using enum NSLayoutAttribute;

void equate(Boxes& b, const char* first, NSLayoutAttribute attribute, const char* second,
            NSLayoutAttribute secondAttribute, double multiplier, double constant) {
    b["root"]->constraints.push_back(
        NSLayoutConstraint::constraintWithItem(b[first], attribute, NSLayoutRelation::equal,
                                               b[second], secondAttribute, multiplier, constant));
}

// clang-format off
const Case kCases[] = {
    {"fixed, flexible, margins", {400, 100}, {{"a"}, {"b"}},
     {{"|-[a(50)]-[b]-|", 8 | 16}, {"V:|-10.25-[a]-(-5)-|"}},
     {{"a", {20, 10.25, 50, 94.75}}, {"b", {78, 10.25, 302, 94.75}}}},
    {"equal widths, not rounded; redundant equations", {94, 30}, {{"a"}, {"b"}, {"c"}, {"d"}},
     {{"|[a][b(a)][c(a)][d(a)]|"}, {"[b(23.5)]"}, {"[d(==c,==b)]"}},
     {{"a", {0, 0, 23.5, 0}}, {"d", {70.5, 0, 23.5, 0}}}},
    {"root narrower than its margins", {30, 30}, {{"a", {}, 10}}, {{"|-20-[a]-20-|"}},
     {{"a", {20, 0, 0, 10}}}, 1},
    {"the last conflicting constraint is violated as little as possible", {300, 30}, {{"a"}},
     {{"|-20-[a]->=20-|"}, {"[a(>=500)]"}}, {{"a", {20, 0, 260, 0}}}, 1},
    {"one high priority beats many lower ones", {300, 30}, {{"a"}},
     {{"|[a(100@501,10@500,10@499.5,10@500,10@500)]"}}, {{"a", {0, 0, 100, 0}}}},
    {"content: the box that hugs less grows", {300, 50}, {{"a", 50, 20, 251}, {"b", 60, 30}},
     {{"|-[a]-[b]-|", 1024}, {"V:|-[b]"}}, {{"a", {20, 25, 50, 20}}, {"b", {78, 20, 202, 30}}}},
    {"content: the box that resists less shrinks", {100, 50}, {{"a", 50, 20}, {"b", 60, 30, 250, 749}},
     {{"|-[a]-[b]-|"}}, {{"a", {20, 0, 50, 20}}, {"b", {78, 0, 2, 30}}}},
    {"content: required and higher priorities win", {300, 50}, {{"a", 50, 20}},
     {{"|[a(<=40)]"}, {"V:|[a(35@760)]"}}, {{"a", {0, 0, 40, 35}}}},
    {"tie-break: the first of two equal boxes is smallest", {208, 50}, {{"a"}, {"b"}}, {{"|[a]-[b]|"}},
     {{"a", {0, 0, 0, 0}}, {"b", {8, 0, 200, 0}}}},
    {"tie-break: positions near 0, negative only if asked for", {100, 100}, {{"a", 30, 20}, {"b"}, {"c"}},
     {{"[a]-8-[b(5)]->=9-|"}, {"V:|-(-7)-[b]"}, {"[c(30)]-90-|"}},
     {{"a", {0, 0, 30, 20}}, {"b", {38, -7, 5, 0}}, {"c", {-20, 0, 30, 0}}}},
    {"the edges of a scroll view are its content's", {200, 100}, {{"s"}, {"in", 90, 400, 250, 750, "s"}},
     {{"|-20-[s]-20-|"}, {"V:|-10-[s]-10-|"}, {"|-5-[in]-15-|"}, {"V:|-5-[in]|"}, {"[in(s)]"}},
     {{"s", {20, 10, 160, 80}}, {"in", {5, 5, 160, 400}}}, 0,
     [](Boxes& b) { b["s"]->isScroll = true; }, {180, 405}},
    {"across levels of the tree, through a fixed frame; no rounding errors", {200, 100},
     {{"outer"}, {"in", 30, 98, 250, 750, "outer"}, {"b"}}, {{"[in]-1-[b(20)]", 8}},
     {{"in", {93, 16, 30, 98}}, {"b", {131, 25, 20, 2}}}, 0,
     [](Boxes& b) {
         b["outer"]->frameIsFixed = true;
         b["outer"]->frame = {7, 9, 120, 60};
         equate(b, "in", right, "root", centerX, 1, 30);
         equate(b, "in", top, "root", bottom, 0.25, 0);
         equate(b, "b", height, "in", height, 1.0 / 49, 0);
     }},
    {"baselines", {200, 100}, {{"a", 30, 20}, {"b", 30, 10}, {"c", 30, 10}},
     {{"|[a][b][c]", 2048}, {"V:|-10-[a]"}},
     {{"a", {0, 10, 30, 20}}, {"b", {30, 18, 30, 10}}, {"c", {60, 16, 30, 10}}}, 0,
     [](Boxes& b) { b["a"]->baseline = 6; b["b"]->baseline = 3; }},
    {"right to left", {294, 50}, {{"a", 50, 20}, {"b", 60, 30}, {"c", 20, 10}},
     {{"|-20-[a]-7-[b]"}, {"V:|[a][c]"}},
     {{"a", {224, 0, 50, 20}}, {"b", {157, 0, 60, 30}}, {"c", {268, 20, 20, 10}}}, 0,
     [](Boxes& b) {
         b["root"]->isRightToLeft = true;
         equate(b, "c", leading, "root", trailing, 1.0 / 49, 0);
     }},
};
// clang-format on

TEST(Frames, SatisfyTheConstraints) {
    std::size_t messages = 0;
    setDiagnosticHandler([&](std::string_view) { ++messages; });
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.name);
        Boxes boxes{{"root", std::make_shared<LayoutBox>("root")}};
        boxes["root"]->frame.size = c.root;
        for (const BoxSpec& spec : c.boxes) {
            auto& box = boxes[spec.name] = boxes[spec.parent]->add(spec.name);
            box->intrinsic[0] = spec.width;
            box->intrinsic[1] = spec.height;
            box->hugging = spec.hugging;
            box->compression = spec.compression;
        }
        if (c.prepare)
            c.prepare(boxes);
        const NSLayoutConstraint::Views views(boxes.begin(), boxes.end());
        for (const Format& format : c.formats)
            boxes["root"]->constrain(format.text, views,
                                     static_cast<NSLayoutFormatOptions>(format.options));
        messages = 0;
        LayoutEngine().layout(*boxes["root"]);
        EXPECT_EQ(messages, c.conflicts);
        for (const auto& [name, box] : boxes)
            EXPECT_EQ(box->contentSize, box->isScroll ? c.scrolled : CGSize()) << name;
        for (const auto& [name, frame] : c.frames)
            EXPECT_EQ(boxes.at(name)->frame, frame) << name;
    }
    setDiagnosticHandler({});
}

} // namespace
} // namespace tesmar
