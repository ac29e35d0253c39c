#include "fixture.h"

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

using Rects = std::vector<PixelRect>;

class DamageTest : public UITest {
  protected:
    Rects damage() {
        const auto rects = host.render();
        Rects sorted(rects.begin(), rects.end());
        std::ranges::sort(sorted, {}, [](const PixelRect& r) { return std::pair(r.x, r.y); });
        return sorted;
    }
    Ref<UIView> box(CGRect frame) {
        const auto view = add<UIView>(frame);
        view->setBackgroundColor(UIColor::redColor());
        return view;
    }
};

TEST_F(DamageTest, IsExact) {
    const CGRect place(50, 10, 20, 20);
    const auto a = box(CGRect(10, 10, 20, 20)), b = box(CGRect(200, 300, 20, 20));
    const auto cover = box(CGRect(40, 0, 100, 100));
    cover->setHidden(true);
    damage();
    const struct {
        std::function<void()> change;
        Rects expected;
    } steps[] = {
        {[] {}, {}},
        {[&] { a->setNeedsDisplay(), b->setNeedsDisplay(); },
         {{10, 10, 20, 20}, {200, 300, 20, 20}}},
        {[&] { a->setFrame(place); }, {{10, 10, 20, 20}, {50, 10, 20, 20}}}, // old and new place
        {[&] { a->setNeedsDisplayInRect(CGRect(5, 5, 3, 3)); }, {{55, 15, 3, 3}}},
        {[&] { a->setFrame(CGRect(-100, 10, 20, 20)); }, {{50, 10, 20, 20}}},
        {[&] { a->setNeedsDisplay(); }, {}}, // off the surface
        {[&] { a->setFrame(place); }, {{50, 10, 20, 20}}},
        {[&] { cover->setHidden(false); }, {{40, 0, 100, 100}}},
        {[&] { a->setNeedsDisplay(); }, {}}, // covered
        {[&] { cover->setAlpha(0.5); }, {{40, 0, 100, 100}}},
        {[&] { a->setNeedsDisplay(); }, {{50, 10, 20, 20}}},
        {[&] { a->setHidden(true); }, {{50, 10, 20, 20}}},
        {[&] { a->setBackgroundColor(nullptr); }, {}}, // hidden
        {[&] { box(CGRect(0, 380, 20, 20)), box(CGRect(20, 380, 20, 20)); }, {{0, 380, 40, 20}}},
    };
    for (std::size_t i = 0; i < std::size(steps); ++i) {
        steps[i].change();
        EXPECT_EQ(damage(), steps[i].expected) << "step " << i;
    }
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

// Painting only the damage gives the same pixels as painting everything.
TEST_F(DamageTest, IncrementalPaintingEqualsAFullRepaint) {
    static const Class* const kinds[] = {&UIStepper::classObject(), &UISwitch::classObject(),
                                         &UILabel::classObject(), &UIView::classObject()};
    for (int round = 0; round < 48; ++round) {
        HeadlessHost incremental({160, 120}, std::array{1.0, 1.5, 2.0, 3.0}[round % 4]);
        std::mt19937 random(static_cast<unsigned>(round));
        std::uniform_real_distribution<> unit;
        const auto part = [&](double most) { return most * unit(random); };
        const auto point = [&](double most) { return CGPoint{part(most), part(most)}; };
        const auto rect = [&] {
            return CGRect{point(140) - CGPoint{20, 20}, CGSize{part(70), part(50)}};
        };
        UIView& root = *incremental.window()->rootViewController()->view();
        const auto scroll =
            makeWith<UIScrollView>(&UIScrollView::initWithFrame, CGRect(20.3, 10, 100, 90));
        scroll->setContentSize({300, 300});
        root.addSubview(scroll);
        std::vector<Ref<UIView>> views;
        for (unsigned i = 0; i < 10; ++i) {
            const auto view = views.emplace_back(as<UIView>(kinds[i % 4]->alloc()));
            view->initWithFrame(rect());
            if (const auto label = as<UILabel>(view))
                label->setText("Wavy text");
            else if (i % 4 == 3)
                view->setBackgroundColor(UIColor::colorWithWhite(part(1), i > 5 ? 1 : part(1)));
            (i % 3 == 0 ? root : i % 3 == 1 ? *scroll : *views[i - 1]).addSubview(view);
        }
        incremental.render();
        for (int i = 0; i < 40; ++i) {
            const auto& view = views[random() % views.size()];
            const std::function<void()> changes[] = {
                [&] { view->setFrame(rect()); },
                [&] { view->setAlpha(part(1.3)); },
                [&] { view->setHidden(!view->isHidden()); },
                [&] { view->setTranslation(point(9)); },
                [&] { view->setClipsToBounds(!view->clipsToBounds()); },
                [&] { scroll->setContentOffset(point(200), false); },
                [&] { incremental.tap(point(150)); },
                [&] { incremental.advance(part(0.1)); }};
            changes[random() % std::size(changes)]();
            incremental.render();
        }
        const auto painted = incremental.pixels();
        incremental.window()->invalidate();
        incremental.render();
        ASSERT_TRUE(painted == incremental.pixels()) << "round " << round;
    }
}

} // namespace
} // namespace tesmar
