// An engine over time: what it reads again, what it reports, and callbacks during a layout.
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/layout/internal/LayoutEngine.h"
#include "tests/platform/layout/LayoutBox.h"
#include "tests/platform/measured.h"

#include <gtest/gtest.h>

namespace tesmar {
namespace {

class Engine : public ::testing::Test {
  protected:
    Engine() {
        root->frame = {0, 0, 300, 100};
        a.onNeedsUpdate = [this] { engine->invalidate(); };
        setDiagnosticHandler([this](std::string_view text) { messages.emplace_back(text); });
    }
    ~Engine() override { setDiagnosticHandler({}); }

    void layout(double width) {
        root->frame.size.width = width;
        engine->layout(*root);
    }

    std::shared_ptr<LayoutBox> root = std::make_shared<LayoutBox>("root");
    LayoutBox& a = *root->add("a");
    LayoutBox& b = *root->add("b");
    NSLayoutConstraint::Views views{{"a", root->children[0]}, {"b", root->children[1]}};
    std::unique_ptr<LayoutEngine> engine = std::make_unique<LayoutEngine>();
    std::vector<std::string> messages;
};

TEST_F(Engine, AResizeWritesOnlyChangedFramesAndAllocatesNothing) {
    root->constrain("|-[a(50)]-[b]-|", views);
    layout(300);
    EXPECT_EQ(b.frame, CGRect(78, 0, 202, 0));
    layout(310);
    const auto resizes = [&] {
        layout(320);
        layout(305.5);
    };
    EXPECT_EQ(test::measured(resizes).bytes, 0u);
    EXPECT_EQ(b.frame, CGRect(78, 0, 207.5, 0));
    EXPECT_EQ(a.frameWrites, 1);
}

TEST_F(Engine, ChangedConstraintsTakeEffect) {
    root->constrain("|-20-[a(50)]", views);
    layout(300);
    root->constraints[0]->setConstant(30);
    layout(300);
    EXPECT_EQ(a.frame.minX(), 30);
    root->constraints[0]->setActive(false);
    layout(300);
    EXPECT_EQ(a.frame.minX(), 0);
    root->constrain("[a(70@500)]", views);
    root->constraints[1]->setPriority(499);
    layout(300);
    EXPECT_EQ(a.frame.size.width, 70);
    EXPECT_TRUE(messages.empty());
}

TEST_F(Engine, ReportsEachProblemOnce) {
    const auto outside = std::make_shared<LayoutBox>("outside");
    views["outside"] = outside;
    views["gone"] = std::make_shared<LayoutBox>("gone");
    root->constrain("|-20-[a(50)]-20-|", views);
    root->constrain("V:[a(outside)]", views);
    root->constrain("[gone(9)]", views);
    views.erase("gone");
    layout(90);
    layout(300);
    EXPECT_EQ(a.frame, CGRect(20, 0, 50, 0));
    layout(200);
    layout(90);
    engine->invalidate();
    layout(200);
    const std::vector<std::string> expected = {
        "layout: ignoring a.height = outside.height (required): one of its items is not in the "
        "tree",
        "layout: ignoring (destroyed).width = 9 (required): one of its items was destroyed",
        "layout: cannot satisfy root.trailing = a.trailing + 20 (required)"};
    EXPECT_EQ(messages, expected);
}

TEST_F(Engine, FixedFramesThatMoveAreReadAgain) {
    a.frameIsFixed = true;
    a.frame = {10, 10, 40, 40};
    root->constrain("[a]-[b(5)]", views);
    layout(300);
    EXPECT_EQ(b.frame.minX(), 58);
    b.onFrame = [this] { a.frame = {30, 10, 40, 40}; };
    a.frame.origin.x = 20;
    layout(300);
    EXPECT_EQ(b.frame.minX(), 78);
    EXPECT_EQ(a.frameWrites, 0);
}

TEST_F(Engine, SettersMayReenterChangeTheTreeOrDestroyTheEngine) {
    root->constrain("|-[a]-[b]-|", views);
    const auto layoutWith = [this](double width, std::function<void()> onFrame) {
        a.intrinsic[0] = width;
        a.onFrame = std::move(onFrame);
        engine->invalidate();
        engine->layout(*root);
    };
    layoutWith(40, [this] { engine->layout(*root); });
    EXPECT_EQ(b.frame, CGRect(68, 0, 212, 0));
    views.clear();
    layoutWith(50, [this] {
        a.onFrame = nullptr;
        root->constraints.clear();
        root->children.pop_back();
        engine->invalidate();
    });
    EXPECT_EQ(a.frame, CGRect(0, 0, 50, 0));
    layoutWith(60, [this] { engine.reset(); });
    EXPECT_EQ(a.frame.size.width, 60);
}

TEST_F(Engine, FittingSizes) {
    a.intrinsic[0] = 40;
    a.intrinsic[1] = 10;
    b.intrinsic[1] = 30;
    b.hugging = 40; // less than the pull to the target; a hugs more
    const struct {
        const char *row, *column;
        CGSize target, expected;
    } cases[] = {
        {"|-0-[a]->=20-[b(94)]-0-|", "V:|-0-[a]-2-[b]->=0-|", {0, 0}, {154, 42}},
        {"|-[a]->=20-[b(94)]-|", "V:|[a][b]|", {10000, 10000}, {10000, 10000}},
        {"|[a]|", "V:|[b]|", {10000, 10000}, {40, 10000}},
        {"[a]", "[b]", {7, 8}, {7, 8}},
    };
    for (const auto& c : cases) {
        root->constraints.clear();
        root->constrain(c.row, views);
        root->constrain(c.column, views);
        EXPECT_EQ(LayoutEngine::fittingSize(*root, c.target), c.expected) << c.row;
    }
    EXPECT_EQ(root->frame, CGRect(0, 0, 300, 100));
    EXPECT_EQ(a.frameWrites, 0);
}

} // namespace
} // namespace tesmar
