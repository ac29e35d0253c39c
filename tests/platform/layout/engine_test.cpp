// The engine over time: what it reads again and what it keeps, what it tells, whom it calls.
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/layout/internal/LayoutEngine.h"
#include "tests/platform/layout/LayoutBox.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

namespace {
std::size_t allocations = 0;
}

// Replaced for the whole test program, to see that a steady layout takes no memory. Never inlined,
// or the compiler takes the pairs for mismatched.
[[gnu::noinline]] void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size ? size : 1))
        return memory;
    throw std::bad_alloc();
}
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    ++allocations;
    return std::malloc(size ? size : 1);
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace tesmar {
namespace {

class Engine : public ::testing::Test {
  protected:
    Engine() {
        root->frame = {0, 0, 300, 100};
        for (const char* name : {"a", "b"})
            views[name] = root->add(name);
        for (auto& box : root->children)
            box->onNeedsUpdate = [this] { engine->invalidate(); };
        setDiagnosticHandler([this](std::string_view text) { messages.emplace_back(text); });
    }
    ~Engine() override { setDiagnosticHandler({}); }

    LayoutBox& a() { return *root->children[0]; }
    LayoutBox& b() { return *root->children[1]; }
    void layout(double width) {
        root->frame.size.width = width;
        engine->layout(*root);
    }

    std::shared_ptr<LayoutBox> root = std::make_shared<LayoutBox>("root");
    NSLayoutConstraint::Views views;
    std::unique_ptr<LayoutEngine> engine = std::make_unique<LayoutEngine>();
    std::vector<std::string> messages;
};

TEST_F(Engine, WritesOnlyWhatHasChangedAndTakesNoMemoryForIt) {
    root->constrain("|-[a(50)]-[b]-|", views);
    layout(300);
    EXPECT_EQ(b().frame, CGRect(78, 0, 202, 0));
    const int writes = a().frameWrites;
    layout(310);
    const std::size_t before = allocations;
    layout(320);
    layout(305.5);
    EXPECT_EQ(allocations, before);
    EXPECT_EQ(b().frame, CGRect(78, 0, 207.5, 0));
    EXPECT_EQ(a().frameWrites, writes);
}

TEST_F(Engine, SettersOfConstraintsTakeEffect) {
    root->constrain("|-20-[a(50)]", views);
    layout(300);
    root->constraints[0]->setConstant(30);
    layout(300);
    EXPECT_EQ(a().frame.minX(), 30);
    root->constraints[0]->setActive(false);
    layout(300);
    EXPECT_EQ(a().frame.minX(), 0);
    root->constrain("[a(70@500)]", views);
    root->constraints[1]->setPriority(499);
    layout(300);
    EXPECT_EQ(a().frame.size.width, 70);
    EXPECT_TRUE(messages.empty());
}

TEST_F(Engine, TellsOnceWhatGivesWay) {
    auto stranger = std::make_shared<LayoutBox>("stranger");
    views["stranger"] = stranger;
    auto late = std::make_shared<LayoutBox>("late");
    root->constrain("|-20-[a(50)]-20-|", views);
    root->constrain("V:[a(stranger)]", views);
    root->constraints.push_back(NSLayoutConstraint::constraintWithItem(
        late, NSLayoutAttribute::left, NSLayoutRelation::equal, root, NSLayoutAttribute::left, 1,
        0));
    late.reset();
    layout(90);
    const std::vector<std::string> complaints = {
        "layout: ignoring a.height = stranger.height (required): an item of it is not in the tree",
        "layout: ignoring (gone).left = root.left (required): an item of it has died"};
    EXPECT_EQ(messages, complaints);
    layout(300);
    EXPECT_EQ(messages.back(), "layout: cannot satisfy root.trailing = a.trailing + 20 (required)");
    EXPECT_EQ(a().frame, CGRect(20, 0, 50, 0));
    layout(200);
    layout(90);
    engine->invalidate(); // nothing about the conflict is new
    layout(200);
    EXPECT_EQ(messages.size(), 3u);
}

TEST_F(Engine, GivenFramesThatMoveAreSeen) {
    a().frameIsGiven = true;
    a().frame = {10, 10, 40, 40};
    root->constrain("[a]-[b(5)]", views);
    layout(300);
    EXPECT_EQ(b().frame.minX(), 58);
    // As when a view that is resized moves the views in it that constraints do not place.
    b().onFrame = [this] { a().frame = {30, 10, 40, 40}; };
    a().frame.origin.x = 20;
    layout(300);
    EXPECT_EQ(b().frame.minX(), 78);
    EXPECT_EQ(a().frameWrites, 0);
}

TEST_F(Engine, SettersMayDoWhatTheyLike) {
    root->constrain("|-[a]-[b]-|", views);
    a().intrinsic[0] = 40;
    a().onFrame = [this] { engine->layout(*root); };
    layout(300);
    EXPECT_EQ(b().frame, CGRect(68, 0, 212, 0));

    a().onFrame = [this] { // the tree changes during the pass
        a().onFrame = nullptr;
        root->constraints.clear();
        root->children.pop_back();
        engine->invalidate();
    };
    a().intrinsic[0] = 50;
    engine->invalidate();
    layout(300);
    EXPECT_EQ(a().frame, CGRect(0, 0, 50, 0));

    a().onFrame = [this] { engine.reset(); };
    a().intrinsic[0] = 60;
    engine->invalidate();
    engine->layout(*root);
    EXPECT_EQ(a().frame.size.width, 60);
}

TEST_F(Engine, FittingSizes) {
    a().intrinsic[0] = 40;
    a().intrinsic[1] = 10;
    b().intrinsic[1] = 30;
    b().hugging = 40;
    const struct {
        std::vector<const char*> formats;
        CGSize target;
        double priority;
        CGSize expected;
    } cases[] = {
        {{"|-0-[a]->=20-[b(94)]-0-|", "V:|-0-[a]-2-[b]->=0-|"}, {0, 0}, 50, {154, 42}},
        {{"|-[a]->=20-[b(94)]-|", "V:|[a][b]|"}, {10000, 10000}, 50, {10000, 10000}},
        {{"|[a]|", "V:|[b]|"}, {10000, 10000}, 50, {40, 10000}}, // a hugs more, b less than 50
        {{"|[a]|", "V:|[b]|"}, {0, 0}, 800, {0, 0}},
        {{"|[a]|", "V:|[b]|"}, {25, 26}, 1000, {25, 26}},
        {{}, {7, 8}, 50, {7, 8}},
    };
    for (const auto& c : cases) {
        root->constraints.clear();
        for (const char* format : c.formats)
            root->constrain(format, views);
        EXPECT_EQ(LayoutEngine::fittingSize(*root, c.target, c.priority, c.priority), c.expected)
            << (c.formats.empty() ? "" : c.formats[0]) << " " << c.target.width;
    }
    EXPECT_EQ(root->frame, CGRect(0, 0, 300, 100));
    EXPECT_EQ(a().frameWrites, 0);
}

} // namespace
} // namespace tesmar
