#include "fixture.h"

#include "tesmar/platform/ui/UIButton.h"
#include "tesmar/platform/ui/UILabel.h"
#include "tesmar/platform/ui/UIScrollView.h"
#include "tesmar/platform/ui/UIStepper.h"
#include "tesmar/platform/ui/UISwitch.h"
#include "tesmar/platform/ui/internal/DamageRegion.h"

#include <algorithm>
#include <array>
#include <functional>
#include <random>

namespace tesmar {
namespace {

using DamageTest = UITest;

TEST_F(DamageTest, IsExact) {
    const auto box = [&](CGRect frame) {
        auto view = add<UIView>(frame);
        view->setBackgroundColor(UIColor::redColor());
        return view;
    };
    const CGRect place(50, 10, 20, 20);
    const auto a = box(CGRect(10, 10, 20, 20)), b = box(CGRect(200, 300, 20, 20));
    const auto cover = box(CGRect(40, 0, 100, 100));
    cover->setHidden(true);
    const auto stepper = add<UIStepper>({0, 200, 94, 29});
    stepper->setValue(4);
    const auto toggle = add<UISwitch>({100, 200, 51, 31});
    const auto label = add<UILabel>({200, 200, 90, 50});
    label->setText("label");
    const auto button = add<UIButton>({0, 240, 50, 30});
    const auto image = imageOf(6, 6);
    const Rects toggleArea{{98, 198, 55, 37}};
    const auto above = make<UIViewController>();
    above->setModalPresentationStyle(UIModalPresentationStyle::fullScreen);
    above->view()->setBackgroundColor(UIColor::colorWithWhite(0.5, 1));
    const Rects all{{0, 0, 300, 400}};
    damage();
    const std::pair<std::function<void()>, Rects> steps[] = {
        {[&] { a->setNeedsDisplay(), b->setNeedsDisplay(); },
         {{10, 10, 20, 20}, {200, 300, 20, 20}}},
        {[&] { a->setFrame(place); }, {{10, 10, 20, 20}, {50, 10, 20, 20}}}, // old and new place
        {[&] { a->setNeedsDisplayInRect(CGRect(5, 5, 3, 3)); }, {{55, 15, 3, 3}}},
        {[&] { a->setFrame(CGRect(-100, 10, 20, 20)); }, {{50, 10, 20, 20}}},
        {[&] { a->setNeedsDisplay(); }, {}}, // off the surface
        {[&] { a->setFrame(place); }, {{50, 10, 20, 20}}},
        {[&] { cover->setHidden(false); }, {{40, 0, 100, 100}}},
        {[&] { a->setNeedsDisplay(); }, {}}, // covered
        {[&] { root().sendSubviewToBack(cover); }, {{40, 0, 100, 100}}},
        {[&] { root().sendSubviewToBack(cover), a->setNeedsDisplay(); }, {{50, 10, 20, 20}}},
        {[&] { root().bringSubviewToFront(cover); }, {{40, 0, 100, 100}}},
        {[&] { root().bringSubviewToFront(cover), root().sendSubviewToBack(nullptr); }, {}},
        {[&] { cover->setAlpha(0.5); }, {{40, 0, 100, 100}}},
        {[&] { a->setNeedsDisplay(); }, {{50, 10, 20, 20}}},
        {[&] { a->setBackgroundColor(UIColor::colorWithRed(1, 0, 0, 1)); }, {}}, // as before
        {[&] { label->setNumberOfLines(0), label->setLineBreakMode(NSLineBreakMode::clipping); },
         {{198, 200, 92, 50}}},
        {[&] { label->setNumberOfLines(0), label->setLineBreakMode(NSLineBreakMode::clipping); },
         {}},
        {[&] { button->setBackgroundImage(image, 0); }, {{0, 240, 50, 30}}},
        {[&] { button->setTintColor(nullptr), button->setImage(image, 4); }, {}},
        {[&] { button->setBackgroundImage(image, 0), button->setContentEdgeInsets({}); }, {}},
        {[&] { toggle->setThumbTintColor(UIColor::redColor()); }, toggleArea},
        {[&] { toggle->setThumbTintColor(UIColor::colorWithRed(1, 0, 0, 1)); }, {}},
        {[&] { stepper->setValue(5); }, {}}, // looks the same
        {[&] { stepper->setValue(0); }, {{0, 200, 94, 29}}},
        {[&] { host.window()->presentViewController(above, false); }, all},
        {[&] { root().setAlpha(0.5), a->setNeedsDisplay(), stepper->setValue(4); }, {}},
        {[&] { root().setAlpha(1), cover->setHidden(true); }, {}},
        {[&] { above->dismissViewControllerAnimated(false); }, all},
        {[&] { a->setHidden(true); }, {{50, 10, 20, 20}}},
        {[&] { a->setBackgroundColor(nullptr); }, {}}, // hidden
        {[&] { box(CGRect(0, 380, 20, 20)), box(CGRect(20, 380, 20, 20)); }, {{0, 380, 40, 20}}},
    };
    for (std::size_t i = 0; i < std::size(steps); ++i) {
        steps[i].first();
        EXPECT_EQ(damage(), steps[i].second) << "step " << i;
    }
}

TEST_F(DamageTest, IsNotComputedWhereItAddsNothing) {
    struct Measured : UIView {
        UIEdgeInsets drawingOverflow() const override { return ++count, UIEdgeInsets(); }
        mutable int count = 0;
    };
    const auto view = make<Measured>();
    const auto change = [&] {
        view->setFrame(CGRect(view->frame().minX() + 1, 0, 20, 20));
        view->setNeedsDisplay();
        return std::exchange(view->count, 0);
    };
    EXPECT_EQ(change(), 0) << "in no window";
    host.window()->addSubview(view);
    host.window()->invalidate();
    EXPECT_EQ(change(), 0) << "in a window that is repainted wholly";
    damage();
    EXPECT_GT(change(), 0);
}

// What a host that copies, blends or passes events on relies on.
TEST_F(DamageTest, BoundsAndRepaintsAgreeWithTheSurface) {
    UIWindow& window = *host.window();
    struct Card : UIViewController {
        std::optional<CGSize> preferredContentSize() override { return CGSize{100, 100}; }
    };
    const auto card = make<Card>();
    card->view()->setBackgroundColor(UIColor::redColor());
    const auto checkBounds = [&](const char* when) {
        const PixelRect bounds = window.visibleBounds();
        const auto surface = picture();
        std::vector<std::uint32_t> copy(surface.size());
        const PixelRect rects[] = {bounds, {-50, -50, 60, 60}, {290, 390, 9999, 9999}};
        EXPECT_TRUE(window.repaint(copy, 4 * host.pixelWidth(), rects));
        EXPECT_EQ(copy, surface) << when; // nothing beside them
        EXPECT_FALSE(window.needsRender());
        return bounds;
    };
    EXPECT_TRUE(checkBounds("empty").isEmpty());
    window.presentViewController(card, true);
    host.advance(0.1);
    EXPECT_FALSE(checkBounds("in motion").isEmpty());
    host.advance(1);
    const PixelRect shown = checkBounds("at rest");
    EXPECT_LT(shown.width * shown.height, 250 * 250);
    std::uint32_t few[4]{};
    EXPECT_FALSE(window.repaint(few, 8, std::span(&shown, 1)));
    const auto agrees = [&](OutsideTap outside) {
        window.setOutsideTap(outside);
        for (CGFloat x = -5; x < 310; x += 15)
            for (CGFloat y = -5; y < 410; y += 15) {
                const bool wants = window.wantsTouchAt({x, y});
                EXPECT_EQ(host.touch(UITouchPhase::began, {x, y}), wants) << x << ' ' << y;
                host.touch(UITouchPhase::cancelled, {x, y});
            }
    };
    agrees(OutsideTap::ignored);
    agrees(OutsideTap::dismisses);
    card->dismissViewControllerAnimated(true);
    agrees(OutsideTap::dismisses);
    host.advance(1);
    EXPECT_TRUE(checkBounds("gone").isEmpty());
}

TEST_F(DamageTest, WakesTheHostForWhatItMustPaint) {
    UIWindow& window = *host.window();
    NSRunLoop& loop = NSRunLoop::mainRunLoop();
    const auto box = add<UIView>({10, 10, 20, 20});
    int wakes = 0;
    loop.setWakeHandler([&] { ++wakes; });
    const auto woken = [&](const std::function<void()>& change) {
        host.render();
        loop.advanceTo(loop.now());
        wakes = 0;
        change();
        return wakes;
    };
    EXPECT_EQ(woken([&] { box->setBackgroundColor(UIColor::redColor()), box->setAlpha(0.5); }), 1);
    EXPECT_EQ(woken([&] { box->setNeedsLayout(); }), 1);
    EXPECT_EQ(woken([&] { window.setCaptionArea(CGRect(0, 300, 300, 90)); }), 1);
    EXPECT_EQ(woken([&] { window.setSize({310, 400}), window.setSize({300, 400}); }), 1);
    EXPECT_EQ(woken([&] { window.needsRender(), host.render(); }), 0);
    EXPECT_EQ(woken([&] { make<UIView>()->setNeedsLayout(); }), 0); // in no window
    struct Restless : UIView {
        void draw(CGRect) override { setNeedsDisplay(); }
    };
    add<Restless>({50, 50, 5, 5});
    EXPECT_EQ(woken([&] { host.render(); }), 1); // for the frame after this one
    root().subviews().back()->removeFromSuperview();
    host.touch(UITouchPhase::began, {15, 15});
    window.setCaptionArea(std::nullopt);
    EXPECT_EQ(woken([&] { host.touch(UITouchPhase::ended, {15, 15}); }), 1); // takes effect now
    loop.setWakeHandler({});
}

TEST(DamageRegionTest, CoversEverythingInAFewRectangles) {
    std::mt19937 random(7);
    const auto upTo = [&](unsigned n) { return static_cast<int>(random() % n); };
    DamageRegion region;
    Rects added;
    for (int i = 0; i < 500; ++i) {
        added.push_back({upTo(9000), upTo(9000), 1 + upTo(30), 1 + upTo(30)});
        region.add(added.back());
        ASSERT_LE(region.rects().size(), DamageRegion::kMostRects);
        for (const PixelRect& rect : added)
            ASSERT_TRUE(std::ranges::any_of(
                region.rects(), [&](auto& known) { return intersection(known, rect) == rect; }));
    }
}

// After every change, painting only the damage gives the same pixels as painting everything, for
// hosts whose 1 to 5 buffers take turns, in any order, and which show frames without a change or
// leave them out. No pixel beyond the rows is written.
TEST_F(DamageTest, BuffersOfAnyAgeBecomeFullRepaints) {
    static const Class* const kinds[] = {&UIStepper::classObject(), &UISwitch::classObject(),
                                         &UILabel::classObject(), &UIView::classObject(),
                                         &UIButton::classObject()};
    struct Buffer {
        std::vector<std::uint32_t> words;
        int shown = -1; // in which frame; none
    };
    const auto image = imageOf(6, 6);
    for (unsigned round = 0; round < 100; ++round) {
        host = HeadlessHost({160, 120}, std::array{1.0, 1.5, 2.0, 3.0}[round % 4]);
        UIWindow& window = *host.window();
        std::mt19937 random(round);
        std::uniform_real_distribution<> unit;
        const auto below = [&](unsigned n) { return static_cast<int>(random() % n); };
        const auto part = [&](double most) { return most * unit(random); };
        const auto chance = [&] { return random() % 2 == 0; };
        const auto point = [&](double most) { return CGPoint{part(most), part(most)}; };
        const auto rect = [&] {
            return CGRect{point(140) - CGPoint{20, 20}, CGSize{part(70), part(50)}};
        };
        const auto color = [&] {
            return chance() ? nullptr : UIColor::colorWithWhite(part(1), part(1.5));
        };
        const auto insets = [&] {
            return UIEdgeInsets{part(20) - 5, part(20) - 5, part(20) - 5, part(20) - 5};
        };
        const auto scroll = add<UIScrollView>({20.3, 10, 100, 90});
        scroll->setContentSize({300, 300});
        std::vector<Ref<UIView>> views;
        for (unsigned i = 0; i < 12; ++i) {
            const auto view = views.emplace_back(as<UIView>(kinds[i % 5]->alloc()));
            view->initWithFrame(rect());
            if (const auto text = as<UILabel>(view))
                text->setText("Wavy text\nof several lines");
            else if (const auto control = as<UIButton>(view))
                control->setTitle("off", 0), control->setTitle("on", UIControlStateHighlighted);
            else if (i % 5 == 3)
                view->setBackgroundColor(UIColor::colorWithWhite(part(1), i > 5 ? 1 : part(1)));
            (i % 3 == 0 ? root() : i % 3 == 1 ? *scroll : *views[i - 1]).addSubview(view);
        }
        CGSize size;
        std::vector<Buffer> buffers(1 + round % 5);
        for (int frame = 0; frame < 60; ++frame) {
            const auto view = views[random() % views.size()];
            const auto control = as<UIControl>(view);
            const auto stepper = as<UIStepper>(view);
            const auto toggle = as<UISwitch>(view);
            const auto label = as<UILabel>(view);
            const auto button = as<UIButton>(view);
            const CGPoint center = view->convertPointTo(view->bounds().center(), nullptr);
            const CGPoint near = center + point(40) - CGPoint{20, 20};
            const std::function<void()> changes[] = {
                [&] { view->setFrame(rect()); },
                [&] { view->setAlpha(part(1.3)); },
                [&] { view->setHidden(!view->isHidden()); },
                [&] { view->setTranslation(point(9)); },
                [&] { view->setClipsToBounds(!view->clipsToBounds()); },
                [&] { control ? control->setEnabled(chance()) : void(); },
                [&] { control ? control->setSelected(chance()) : void(); },
                [&] { control ? control->setHighlighted(chance()) : void(); },
                [&] { stepper ? stepper->setValue(part(120)) : void(); },
                [&] { stepper ? stepper->setMaximumValue(part(100)) : void(); },
                [&] { stepper ? stepper->setWraps(chance()) : void(); },
                [&] { toggle ? toggle->setOn(chance(), chance()) : void(); },
                [&] { toggle ? toggle->setThumbTintColor(color()) : void(); },
                [&] { button ? button->setContentEdgeInsets(insets()) : void(); },
                [&] { button ? button->setTitleEdgeInsets(insets()) : void(); },
                [&] { button ? button->setBackgroundImage(image, random() % 4) : void(); },
                [&] { button ? button->setImage(image, random() % 4) : void(); },
                [&] { button ? button->setTintColor(color()) : void(); },
                [&] { label ? label->setNumberOfLines(below(4)) : void(); },
                [&] { label ? label->setLineBreakMode(NSLineBreakMode{below(6)}) : void(); },
                [&] { root().bringSubviewToFront(view); },
                [&] { root().sendSubviewToBack(view); },
                [&] { scroll->setContentOffset(point(200), chance()); },
                [&] { scroll->setContentSize(CGRect(0, 0, part(400), part(400)).size); },
                [&] { scroll->setContentInset(insets()); },
                [&] { scroll->setPagingEnabled(chance()), scroll->setBounces(chance()); },
                [&] { scroll->setShowsVerticalScrollIndicator(chance()); },
                [&] { scroll->setShowsHorizontalScrollIndicator(chance()); },
                [&] { host.touch(UITouchPhase::began, near); },
                [&] { host.touch(UITouchPhase::moved, near); },
                [&] { host.touch(UITouchPhase::ended, near); },
                [&] { host.tap(near); },
                [&] { host.advance(part(0.1)); },
                [&] {
                    host.resize({100.0 + below(60), 90.0 + below(30)}, 1 + below(5) / 2.0);
                }};
            const std::size_t change = random() % std::size(changes);
            changes[change]();
            if (buffers.size() > 1)
                views[random() % views.size()]->setFrame(rect());
            if (std::exchange(size, window.pixelSize()) != window.pixelSize())
                for (Buffer& b : buffers) // an age may reach back to another size
                    b.words.clear();
            const std::size_t stride = static_cast<std::size_t>(size.width) + 3;
            const std::size_t rows = stride * static_cast<std::size_t>(size.height);
            Buffer& buffer = buffers[random() % buffers.size()];
            buffer.words.resize(rows + 50, 0xABCD);
            const int age = buffer.shown < 0 ? -below(2) : frame - buffer.shown;
            const auto paint = [&](Buffer& b, std::size_t words, int old) {
                return window.render({b.words.data(), words}, static_cast<int>(stride * 4), old);
            };
            const bool changed = window.needsRender();
            EXPECT_TRUE(paint(buffer, rows - 4, age).empty());
            ASSERT_EQ(window.needsRender(), changed); // too short: refused
            for (const PixelRect& r : paint(buffer, rows, age))
                ASSERT_TRUE(r.right() <= size.width && r.bottom() <= size.height);
            if (below(2) == 0 && !changed && age == 1)
                --frame; // not shown
            buffer.shown = frame;
            Buffer whole{std::vector<std::uint32_t>(rows + 50, 0xABCD)};
            paint(whole, rows, 0);
            ASSERT_EQ(std::ranges::count(whole.words, 0xABCDu), 3 * size.height + 50);
            ASSERT_TRUE(buffer.words == whole.words)
                << round << ", frame " << frame << ", change " << change << ", age " << age;
        }
    }
}

// What clips ends where a background of its frame does, not over the view beside it.
TEST(Clip, IsRoundedAsBackgroundsAre) {
    for (const CGFloat height : {10.0, 10.4, 10.6}) {
        HeadlessHost host({20, 20});
        const auto clip = make<UIView>(), tall = make<UIView>();
        clip->setFrame({0, 0, 20, height});
        clip->setClipsToBounds(true);
        tall->setFrame({0, 0, 20, 20});
        tall->setBackgroundColor(UIColor::redColor());
        clip->addSubview(tall);
        host.window()->addSubview(clip);
        host.render();
        const auto red = std::count(host.pixels().begin(), host.pixels().end(), 0xFFFF0000);
        EXPECT_EQ(red, 20 * std::lround(height));
    }
}

} // namespace
} // namespace tesmar
