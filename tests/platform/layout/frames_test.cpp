// Boxes and formats as data, and where the boxes must come to stand.
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/layout/internal/LayoutEngine.h"
#include "tests/platform/layout/LayoutBox.h"

#include <gtest/gtest.h>

namespace tesmar {
namespace {

constexpr double kNone = -1;

struct BoxSpec {
    const char* name;
    double width = kNone; // of the content
    double height = kNone;
    double hugging = 250;
    double compression = 750;
    const char* parent = "root";
};

struct Format {
    const char* text;
    unsigned options = 0;
    const char* holder = "root";
};

struct Expected {
    const char* name;
    CGRect frame;
};

struct Case {
    const char* name;
    CGSize root;
    std::vector<BoxSpec> boxes;
    std::vector<Format> formats;
    std::vector<Expected> frames;
    int conflicts = 0;
    void (*prepare)(std::map<std::string, std::shared_ptr<LayoutBox>>& boxes) = nullptr;
};

using Boxes = std::map<std::string, std::shared_ptr<LayoutBox>>;

void relate(Boxes& b, const char* first, NSLayoutAttribute a, NSLayoutRelation relation,
            const char* second, NSLayoutAttribute a2, double multiplier, double constant) {
    b["root"]->constraints.push_back(NSLayoutConstraint::constraintWithItem(
        b[first], a, relation, b[second], a2, multiplier, constant));
}

using enum NSLayoutAttribute;
using enum NSLayoutRelation;

// clang-format off
const Case kCases[] = {
    {"fixed, flexible, margins", {400, 100}, {{"a"}, {"b"}},
     {{"|-[a(50)]-[b]-|", 8 | 16}, {"V:|-10.25-[a]-(-5)-|"}},
     {{"a", {20, 10.25, 50, 94.75}}, {"b", {78, 10.25, 302, 94.75}}}},
    {"equal widths divide exactly", {100, 30}, {{"a"}, {"b"}, {"c"}}, {{"|[a][b(==a)][c(==a)]|"}},
     {{"a", {0, 0, 100.0 / 3, 0}}, {"c", {200.0 / 3, 0, 100.0 / 3, 0}}}},
    {"more equalities than unknowns, all in harmony", {300, 50}, {{"a"}, {"b"}},
     {{"|-20-[a(100)]-60-[b(100)]-20-|"}, {"[a(==b)]"}, {"[b(==a)]"}},
     {{"a", {20, 0, 100, 0}}, {"b", {180, 0, 100, 0}}}},
    {"root narrower than its margins", {30, 30}, {{"a", kNone, 10}}, {{"|-20-[a]-20-|"}},
     {{"a", {20, 0, 0, 10}}}, 1},
    {"the one added last gives way, by no more than it must", {300, 30}, {{"a"}},
     {{"|-20-[a]->=20-|"}, {"[a(>=500)]"}}, {{"a", {20, 0, 260, 0}}}, 1},
    {"one high priority beats any number of lower ones", {300, 30}, {{"a"}},
     {{"|[a(==100@501)]"}, {"[a(==10@500,==10@499.5,==10@500,==10@500)]"}},
     {{"a", {0, 0, 100, 0}}}},
    {"relations with priorities", {300, 30}, {{"a"}, {"b"}},
     {{"|-(>=20,==5@900)-[a(<=80,==200@400)]-(>=10@700,<=30@800)-[b(==40@10)]-0@300-|"}},
     {{"a", {20, 0, 80, 0}}, {"b", {130, 0, 170, 0}}}},
    {"content: the one that hugs less grows", {300, 50}, {{"a", 50, 20, 251}, {"b", 60, 30}},
     {{"|-[a]-[b]-|", 1024}, {"V:|-[b]"}}, {{"a", {20, 25, 50, 20}}, {"b", {78, 20, 202, 30}}}},
    {"content: the one that resists less shrinks", {100, 50},
     {{"a", 50, 20}, {"b", 60, 30, 250, 749}}, {{"|-[a]-[b]-|"}},
     {{"a", {20, 0, 50, 20}}, {"b", {78, 0, 2, 30}}}},
    {"content yields to required and higher priorities", {300, 50}, {{"a", 50, 20}},
     {{"|[a(<=40)]"}, {"V:|[a(35@760)]"}}, {{"a", {0, 0, 40, 35}}}},
    {"the first of two equals stays smallest", {208, 50}, {{"a"}, {"b"}}, {{"|[a]-[b]|"}},
     {{"a", {0, 0, 0, 0}}, {"b", {8, 0, 200, 0}}}},
    {"nothing determines a position", {100, 100}, {{"a", 30, 20}, {"b"}}, {{"[a]-8-[b(5)]"}},
     {{"a", {0, 0, 30, 20}}, {"b", {38, 0, 5, 0}}}},
    {"negative positions where asked", {100, 100}, {{"a", 30, 20}},
     {{"[a]-90-|"}, {"V:|-(-7)-[a]"}}, {{"a", {-20, -7, 30, 20}}}},
    {"header row too narrow for its text", {320, 320},
     {{"label", 150, 29, 250, 749}, {"toggle", 51, 31, 750}, {"reset", 120, 34}},
     {{"|-20-[label]-20-[toggle]->=20-[reset]-20-|", 1024}, {"V:|-2.5-[label]"}},
     {{"label", {20, 2.5, 69, 29}}, {"toggle", {109, 1.5, 51, 31}}, {"reset", {180, 0, 120, 34}}}},
    {"a scroll view's edges are its content", {200, 100},
     {{"scroll"}, {"inner", 90, 400, 250, 750, "scroll"}},
     {{"|-20-[scroll]-20-|"}, {"V:|-10-[scroll]-10-|"},
      {"|-5-[inner]-15-|", 0, "scroll"}, {"V:|-5-[inner]-0-|", 0, "scroll"}, {"[inner(==scroll)]"}},
     {{"scroll", {20, 10, 160, 80}}, {"inner", {5, 5, 160, 400}}, {"scroll content", {0, 0, 180, 405}}},
     0, [](Boxes& b) { b["scroll"]->isScroll = true; }},
    {"across levels of the tree, through a given frame", {200, 100},
     {{"outer"}, {"inner", 30, 10, 250, 750, "outer"}, {"other"}}, {{"[other(20)]"}},
     {{"inner", {93, 16, 30, 10}}, {"other", {131, 25, 20, 2}}}, 0,
     [](Boxes& b) {
         b["outer"]->frameIsGiven = true;
         b["outer"]->frame = {7, 9, 120, 60};
         relate(b, "inner", right, equal, "root", centerX, 1, 30);
         relate(b, "other", left, equal, "inner", right, 1, 1);
         relate(b, "other", top, equal, "inner", top, 1, 0);
         relate(b, "inner", top, equal, "root", bottom, 0.25, 0);
         relate(b, "other", height, equal, "inner", height, 0.2, 0);
     }},
    {"baselines", {200, 100}, {{"a", 30, 20}, {"b", 30, 10}, {"c", 30, 10}},
     {{"|[a][b][c]", 2048}, {"V:|-10-[a]"}},
     {{"a", {0, 10, 30, 20}}, {"b", {30, 18, 30, 10}}, {"c", {60, 16, 30, 10}}}, 0,
     [](Boxes& b) { b["a"]->baseline = 6; b["b"]->baseline = 3; }},
    {"right to left", {300, 50}, {{"a", 50, 20}, {"b", 60, 30}, {"c", 10, 10}},
     {{"|-20-[a]-7-[b]"}, {"V:|[a][c]", 32}},
     {{"a", {230, 0, 50, 20}}, {"b", {163, 0, 60, 30}}, {"c", {270, 20, 10, 10}}}, 0,
     [](Boxes& b) { b["a"]->isRightToLeft = b["b"]->isRightToLeft = b["c"]->isRightToLeft = true; }},
    {"right to left, scaled", {300, 50}, {{"a"}}, {{"[a(20)]"}}, {{"a", {180, 0, 20, 0}}}, 0,
     [](Boxes& b) {
         b["a"]->isRightToLeft = true;
         relate(b, "a", leading, equal, "root", trailing, 1.0 / 3, 0);
     }},
};
// clang-format on

TEST(Frames, AreWhatTheConstraintsSay) {
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.name);
        Boxes boxes{{"root", std::make_shared<LayoutBox>("root")}};
        boxes["root"]->frame = {{}, c.root};
        NSLayoutConstraint::Views views;
        for (const BoxSpec& spec : c.boxes) {
            auto& box = boxes[spec.name] = boxes[spec.parent]->add(spec.name);
            if (spec.width != kNone)
                box->intrinsic[0] = spec.width;
            if (spec.height != kNone)
                box->intrinsic[1] = spec.height;
            box->hugging = spec.hugging;
            box->compression = spec.compression;
            views[spec.name] = box;
        }
        if (c.prepare)
            c.prepare(boxes);
        for (const Format& format : c.formats)
            boxes[format.holder]->constrain(format.text, views,
                                            static_cast<NSLayoutFormatOptions>(format.options));
        std::vector<std::string> messages;
        setDiagnosticHandler([&](std::string_view message) { messages.emplace_back(message); });
        LayoutEngine engine;
        engine.layout(*boxes["root"]);
        setDiagnosticHandler({});
        for (const Expected& expected : c.frames) {
            const std::string name = expected.name;
            const std::size_t space = name.find(' ');
            const LayoutBox& box = *boxes.at(name.substr(0, space));
            const CGRect actual =
                space == std::string::npos ? box.frame : CGRect{{}, box.contentSize};
            const CGPoint off = actual.origin - expected.frame.origin;
            EXPECT_LT(std::hypot(off.x, off.y), 1e-9) << name;
            EXPECT_NEAR(actual.size.width, expected.frame.size.width, 1e-9) << name;
            EXPECT_NEAR(actual.size.height, expected.frame.size.height, 1e-9) << name;
        }
        EXPECT_EQ(messages.size(), static_cast<std::size_t>(c.conflicts))
            << (messages.empty() ? "" : messages[0]);
    }
}

} // namespace
} // namespace tesmar
