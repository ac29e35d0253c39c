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

    void layout(double width = 300) {
        root->frame.size.width = width;
        engine->layout(*root);
    }
    CGRect layoutOfA() {
        layout();
        return a.frame;
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
    layout(310);
    EXPECT_EQ(test::measured([this] { layout(305.5); }).allocations, 0u);
    EXPECT_EQ(b.frame, CGRect(78, 0, 207.5, 0));
    EXPECT_EQ(a.frameWrites, 1);
}

TEST_F(Engine, ChangedConstraintsTakeEffect) {
    root->constrain("|-20-[a(50)]", views);
    EXPECT_EQ(layoutOfA(), CGRect(20, 0, 50, 0));
    root->constraints[0]->setConstant(30);
    EXPECT_EQ(layoutOfA(), CGRect(30, 0, 50, 0));
    root->constraints[0]->setActive(false);
    EXPECT_EQ(layoutOfA(), CGRect(0, 0, 50, 0));
    root->constrain("[a(70@500)]", views);
    root->constraints[1]->setPriority(499);
    EXPECT_EQ(layoutOfA(), CGRect(0, 0, 70, 0));
    EXPECT_TRUE(messages.empty());
}

TEST_F(Engine, ReportsEachProblemOnce) {
    for (const char* name : {"outside", "gone"})
        views[name] = std::make_shared<LayoutBox>(name);
    for (const char* format : {"|-20-[a(50)]-20-|", "V:[a(outside)]", "[gone(9)]"})
        root->constrain(format, views);
    views.erase("gone");
    layout(90);
    EXPECT_EQ(layoutOfA(), CGRect(20, 0, 50, 0));
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
    root->constrain("[b(5)]-[a]", views);
    layout(300);
    EXPECT_EQ(b.frame.minX(), -3);
    b.onFrame = [this] { a.frame = {30, 10, 40, 40}; };
    a.frame.origin.x = 20;
    layout(300);
    EXPECT_EQ(b.frame.minX(), 17);
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
        root->constraints.clear();
        root->children.pop_back();
        engine->invalidate();
        a.onFrame = [] {};
    });
    EXPECT_EQ(a.frame, CGRect(0, 0, 50, 0));
    layoutWith(60, [this] { engine.reset(); });
    EXPECT_EQ(a.frame.size.width, 60);
}

TEST_F(Engine, FittingSizes) {
    a.intrinsic[0] = 40;
    a.intrinsic[1] = 10;
    b.intrinsic[1] = 30;
    b.hugging = 40;
    const auto fitting = [this](CGSize target) { return LayoutEngine::fittingSize(*root, target); };
    EXPECT_EQ(fitting({7, 8}), (CGSize{7, 8}));
    root->constrain("|[a]|", views);
    root->constrain("V:|[b]|", views);
    EXPECT_EQ(fitting({10000, 10000}), (CGSize{40, 10000})); // a hugs
    root->constraints.clear();
    root->constrain("|-0-[a]->=20-[b(94)]-0-|", views);
    root->constrain("V:|-0-[a]-2-[b]->=0-|", views);
    EXPECT_EQ(fitting({0, 0}), (CGSize{154, 42}));
    EXPECT_EQ(fitting({10000, 10000}), (CGSize{10000, 10000}));
    EXPECT_EQ(root->frameWrites + a.frameWrites, 0);
}

} // namespace
} // namespace tesmar
