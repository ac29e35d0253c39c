// Keys, the focus that they move, and its ring. tests/drive/keys.drive walks through the panel.
#include "fixture.h"

#include "tesmar/platform/ui/UIScrollView.h"
#include "tesmar/platform/ui/UIStepper.h"
#include "tesmar/platform/ui/internal/focus/FocusGrid.h"
#include "tesmar/platform/ui/internal/focus/KeyRepeats.h"

namespace tesmar {
namespace {

using K = UIKey;

TEST(FocusGridTest, FindsRowsColumnsAndGroups) {
    // 0 1 and 2, a little lower; 3, wide, with 4; 5 far right, higher than its row's others.
    const FocusGrid grid({{{0, 0, 20, 20}, 0},
                          {{30, 4, 20, 10}, 1},
                          {{60, 8, 20, 20}, 1, true},
                          {{0, 40, 50, 20}, 2},
                          {{60, 40, 20, 20}, 3},
                          {{90, 34, 10, 26}, 3}});
    const struct {
        unsigned from;
        K key;
        double x;
        int to; // -1: the way ends
    } cases[] = {
        {0, K::left, 0, -1},  {0, K::right, 0, 1},   {1, K::right, 0, 2}, {2, K::right, 0, -1},
        {0, K::up, 10, -1},   {0, K::down, 10, 3},   {1, K::down, 40, 3}, {1, K::down, 56, 4},
        {2, K::down, 999, 5}, {5, K::down, 0, -1},   {3, K::up, 22, 0},   {3, K::up, 26, 1},
        {5, K::left, 0, 4},   {4, K::first, 0, 3},   {4, K::last, 0, 5},  {3, K::first, 0, 3},
        {0, K::next, 0, 2},   {1, K::next, 0, 3},    {5, K::next, 0, 0},  {3, K::previous, 0, 2},
        {4, K::next, 0, 0},   {0, K::previous, 0, 4}};
    for (const auto& [from, key, x, to] : cases)
        EXPECT_EQ(static_cast<int>(grid.destination(key, from, x).value_or(-1)), to)
            << from << ", key " << static_cast<int>(key) << ", column " << x;
    EXPECT_EQ(grid.nearest({95, 12}), 2u);
    EXPECT_EQ(grid.nearest({200, 200}), 5u);
}

TEST(KeyRepeatsTest, LimitsHeldKeys) {
    constexpr auto pressed = UIKeyRepeat::pressed, held = UIKeyRepeat::repeated;
    KeyRepeats repeats;
    const struct {
        K key;
        UIKeyRepeat repeat;
        double time;
        bool acts;
    } events[] = {{K::left, held, 0, false}, // pressed elsewhere
                  {K::right, pressed, 1, true},      {K::right, held, 1.39, false},
                  {K::left, held, 1.45, false},      {K::right, held, 1.42, true},
                  {K::right, held, 1.49, false},     {K::right, held, 1.5, true},
                  {K::right, held, 9, true},         {K::right, held, 9.03, false},
                  {K::right, pressed, 9.1, true},    {K::right, held, 9.2, false},
                  {K::select, pressed, 10, true},    {K::select, held, 20, false},
                  {K::increment, pressed, 21, true}, {K::increment, held, 21.4, true},
                  {K::decrement, pressed, 22, true}, {K::decrement, held, 22.4, true},
                  {K::last, pressed, 23, true},      {K::last, held, 30, false}};
    for (const auto& [key, repeat, time, acts] : events)
        EXPECT_EQ(repeats.acts(key, repeat, time), acts) << time;
}

// A presented view with buttons "a" and "b", a stepper "s" below "a", and a scroll view with a
// button "far" at its end.
class FocusTest : public UITest {
  protected:
    FocusTest() {
        sheet->setModalPresentationStyle(UIModalPresentationStyle::fullScreen);
        place("a", make<UIControl>(), {20, 20, 60, 40});
        place("b", make<UIControl>(), {120, 20, 60, 40});
        place("s", make<UIStepper>(), {20, 80, 94, 29});
        scroll->setFrame({20, 150, 200, 100});
        scroll->setContentSize({200, 400});
        sheet->view()->addSubview(scroll);
        const auto far = make<UIControl>();
        far->setAccessibilityIdentifier("far");
        far->setFrame({0, 300, 60, 40});
        scroll->addSubview(far);
        host.window()->presentViewController(sheet, false);
    }
    void place(const char* name, const Ref<UIControl>& control, CGRect frame) {
        control->setAccessibilityIdentifier(name);
        control->setFrame(frame);
        control->addTarget(listener, Selector("up"), UIControlEventTouchUpInside);
        sheet->view()->addSubview(control);
    }
    UIView& view(const char* name) { return *sheet->view()->viewWithIdentifier(name); }
    void press(std::initializer_list<K> keys) {
        for (const K key : keys)
            host.key(key);
    }
    // The identifier, and "?" while the ring is hidden.
    std::string focus() {
        host.window()->needsRender();
        const auto focus = host.window()->focus();
        return focus ? focus->identifier + (focus->isShown ? "" : "?") : "none";
    }

    struct Sheet : UIViewController {
        void focusDidMove(const std::string& identifier) override { told = identifier; }
        std::string told;
    };
    const Ref<Sheet> sheet = make<Sheet>();
    const Ref<UIScrollView> scroll = make<UIScrollView>();
};

TEST_F(FocusTest, StaysOnSomethingUsable) {
    press({K::right, K::right});
    const auto cover = make<UIView>();
    cover->setFrame({100, 0, 200, 70});
    const auto move = [&](const char* name, CGPoint at) {
        view(name).setFrame({at, view(name).frame().size});
    };
    const CGSize small{250, 300};
    const std::pair<std::function<void()>, const char*> steps[] = {
        {[&] {}, "b"},
        {[&] { dynamic_cast<UIControl&>(view("b")).setEnabled(false); }, "b"},
        {[&] {
             move("b", CGPoint{120, 100});
         },
         "b"},
        {[&] {
             move("b", CGPoint{120, 20});
         },
         "b"},
        {[&] { view("b").setHidden(true); }, "a"},
        {[&] { view("b").setHidden(false), press({K::right}); }, "b"},
        {[&] { view("b").setAlpha(0.001); }, "a"},
        {[&] { view("b").setAlpha(1), press({K::right}); }, "b"},
        {[&] { sheet->view()->addSubview(cover); }, "a"},
        {[&] { press({K::right}); }, "a"},
        {[&] { cover->removeFromSuperview(), press({K::right}); }, "b"},
        {[&] { view("b").removeFromSuperview(); }, "a"},
        {[&] { host.key(K::down), host.key(K::down), host.advance(1); }, "far"},
        {[&] { scroll->setContentOffset({}, false); }, "far"}, // scrolled out, but not gone
        {[&] { press({K::left}); }, "far"},
        {[&] { host.resize(small, 2); }, "far"},
        {[&] { scroll->setUserInteractionEnabled(false); }, "s.decrement"},
        {[&] { host.tap(view("a").frame().center()); }, "a?"},
        {[&] { press({K::down}); }, "a"},
        {[&] { EXPECT_FALSE(host.window()->moveFocus("none")); }, "a"},
        {[&] {
             host.tap({1, 1});
             EXPECT_TRUE(host.window()->moveFocus("s.increment"));
         },
         "s.increment"},
        {[&] { sheet->dismissViewControllerAnimated(false); }, "none"},
    };
    for (std::size_t i = 0; i < std::size(steps); ++i) {
        steps[i].first();
        EXPECT_EQ(focus(), steps[i].second) << "step " << i;
        const auto now = host.window()->focus();
        EXPECT_TRUE(!now || !now->isShown || now->identifier == sheet->told) << "step " << i;
    }
}

TEST_F(FocusTest, ScrollsToTheFocusAndSlidesTheRing) {
    press({K::down, K::down, K::down});
    EXPECT_EQ(focus(), "far");
    host.advance(0.15); // as the ring
    const CGRect frame = host.window()->focus()->frame;
    EXPECT_EQ(frame.size.width, 60);
    EXPECT_GT(frame.size.height, 30);          // whole, above the content's end
    EXPECT_EQ(scroll->contentOffset().y, 256); // with room for a title above it
    const auto next = make<UIControl>();
    next->setFrame({160, 300, 60, 40});
    scroll->addSubview(next), scroll->setContentSize({400, 400});
    scroll->setEdgeFadeColor(UIColor::whiteColor());
    host.key(K::right), host.advance(0.15);
    EXPECT_EQ(scroll->contentOffset().x, 36); // clear of the fade
    next->removeFromSuperview(), scroll->setContentSize({200, 400});
    damage();
    for (int frames = 0; frames < 30; ++frames) { // equal to full repaints while it moves
        if (frames == 3 || frames == 9)
            host.key(frames == 3 ? K::up : K::right);
        host.advance(1.0 / 60);
        const auto partial = picture();
        host.window()->invalidate();
        ASSERT_TRUE(partial == picture()) << frames;
    }
    EXPECT_TRUE(damage().empty());
    setMotionSetting(MotionSetting::reduced);
    host.key(K::left);
    EXPECT_EQ(damage(), (Rects{{15, 79, 104, 11},
                               {15, 79, 11, 31},
                               {15, 99, 104, 11}, // jumps
                               {61, 79, 12, 31},
                               {108, 79, 11, 31}}));
    host.advance(1);
    EXPECT_TRUE(damage().empty());
}

TEST_F(FocusTest, SelectsLikeATouchEvenWhenCallbacksDestroy) {
    press({K::right, K::select, K::right, K::select});
    EXPECT_EQ(listener->take(), "up up ");
    EXPECT_TRUE(dynamic_cast<UIControl&>(view("b")).isHighlighted()); // for a moment
    host.advance(1);
    EXPECT_FALSE(dynamic_cast<UIControl&>(view("b")).isHighlighted());
    EXPECT_TRUE(host.window()->keysAreInUse());

    press({K::down, K::increment, K::increment, K::decrement});
    EXPECT_EQ(dynamic_cast<UIStepper&>(view("s")).value(), 1);
    listener->log.clear();
    press({K::up});
    listener->afterUp = [&] {
        view("b").removeFromSuperview();
        sheet->dismissViewControllerAnimated(false);
        host = HeadlessHost({100, 100});
    };
    const std::weak_ptr<UIWindow> window = host.window();
    press({K::select});
    EXPECT_EQ(listener->take(), "up ");
    EXPECT_TRUE(window.expired());
}

TEST_F(FocusTest, HandsKeysToTheHost) {
    const auto isTaken = [&](K key) { return host.key(key) ? "taken " : "left "; };
    std::string log;
    for (const auto edge : {UIEdgeKeys::taken, UIEdgeKeys::leftToHost}) {
        host.window()->setEdgeKeys(edge);
        press({K::up, K::up, K::up, K::left, K::left});
        for (const K key : {K::left, K::up, K::first, K::right, K::next})
            log += isTaken(key);
    }
    EXPECT_EQ(log, "taken taken taken taken taken left left taken taken taken ");
    host.tap({5, 5});
    EXPECT_FALSE(host.window()->keysAreInUse());
    press({K::back});
    EXPECT_TRUE(host.window()->keysAreInUse());
    host.advance(1);
    for (const K key : {K::left, K::next, K::select, K::back})
        EXPECT_FALSE(host.key(key)); // nothing is presented
}

} // namespace
} // namespace tesmar
