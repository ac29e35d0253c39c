#include "fixture.h"

#include "tesmar/platform/ui/UIButton.h"
#include "tesmar/platform/ui/UIScrollView.h"
#include "tesmar/platform/ui/UIStepper.h"
#include "tesmar/platform/ui/UISwitch.h"
#include "tesmar/platform/ui/internal/DamageRegion.h"

#include <algorithm>
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
        std::sort(sorted.begin(), sorted.end(), [](const PixelRect& a, const PixelRect& b) {
            return std::pair(a.x, a.y) < std::pair(b.x, b.y);
        });
        return sorted;
    }
    Ref<UIView> box(CGRect frame) {
        const auto view = add<UIView>(frame);
        view->setBackgroundColor(UIColor::redColor());
        return view;
    }
};

TEST_F(DamageTest, IsExact) {
    const auto a = box({10, 10, 20, 20}), b = box({200, 300, 20, 20});
    damage();
    EXPECT_EQ(damage(), Rects{}); // at rest
    a->setNeedsDisplay(), b->setNeedsDisplay();
    EXPECT_EQ(damage(), (Rects{{10, 10, 20, 20}, {200, 300, 20, 20}}));
    a->setFrame({50, 10, 20, 20}); // old and new place
    EXPECT_EQ(damage(), (Rects{{10, 10, 20, 20}, {50, 10, 20, 20}}));
    a->setNeedsDisplayInRect({5, 5, 3, 3});
    EXPECT_EQ(damage(), (Rects{{55, 15, 3, 3}}));
    a->setFrame({-100, 10, 20, 20});
    damage();
    a->setNeedsDisplay(); // off the screen
    EXPECT_EQ(damage(), Rects{});
    a->setFrame({50, 10, 20, 20});
    const auto cover = box({40, 0, 100, 100});
    damage();
    a->setNeedsDisplay(); // covered
    EXPECT_EQ(damage(), Rects{});
    cover->setAlpha(0.5);
    damage();
    a->setNeedsDisplay();
    EXPECT_EQ(damage(), (Rects{{50, 10, 20, 20}}));
    a->setHidden(true);
    damage();
    a->setBackgroundColor(nullptr); // hidden
    EXPECT_EQ(damage(), Rects{});
    for (int i = 0; i < 8; ++i) // neighbours that fill a row become one rectangle
        box({20.0 * i, 380, 20, 20});
    EXPECT_EQ(damage(), (Rects{{0, 380, 160, 20}}));
}

TEST(DamageRegionTest, CoversEverythingAndStaysSmall) {
    std::mt19937 random(7);
    const auto upTo = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    for (int round = 0; round < 200; ++round) {
        DamageRegion region;
        Rects added;
        for (int i = 0; i < 30; ++i) {
            added.push_back({upTo(100), upTo(100), upTo(30), upTo(30)});
            region.add(added.back());
            ASSERT_LE(region.rects().size(), DamageRegion::kMostRects);
        }
        for (const PixelRect& rect : added)
            for (int y = rect.y; y < rect.bottom(); ++y)
                for (int x = rect.x; x < rect.right(); ++x)
                    ASSERT_TRUE(std::any_of(
                        region.rects().begin(), region.rects().end(), [&](const PixelRect& r) {
                            return x >= r.x && x < r.right() && y >= r.y && y < r.bottom();
                        }));
    }
}

// Whatever happens to views, painting only the damage gives the pixels of painting everything.
TEST_F(DamageTest, IncrementalPaintingEqualsPaintingEverything) {
    for (const CGFloat scale : {1.0, 1.5, 2.0, 3.0}) {
        for (unsigned seed = 0; seed < 12; ++seed) {
            HeadlessHost incremental({160, 120}, scale);
            std::mt19937 random(seed);
            const auto part = [&](double most) {
                return std::uniform_real_distribution<>(0, most)(random);
            };
            UIView& root = *incremental.window()->rootViewController()->view();
            std::vector<Ref<UIView>> views;
            const auto scroll =
                makeWith<UIScrollView>(&UIScrollView::initWithFrame, CGRect(20.3, 10, 100, 90));
            scroll->setContentSize({300, 300});
            root.addSubview(scroll);
            for (int i = 0; i < 10; ++i) {
                static const Class* const kinds[] = {
                    &UIStepper::classObject(), &UISwitch::classObject(), &UILabel::classObject(),
                    &UIButton::classObject(), &UIView::classObject()};
                const auto view = as<UIView>(kinds[i % 5]->alloc());
                view->initWithFrame({part(120), part(90), 10 + part(60), 10 + part(40)});
                if (const auto label = as<UILabel>(view))
                    label->setText("Wavy text");
                else if (const auto button = as<UIButton>(view))
                    button->setTitle("Button", UIControlStateNormal);
                else if (i % 5 == 4)
                    view->setBackgroundColor(
                        UIColor::colorWithRed(part(1), part(1), part(1), i > 5 ? 1 : part(1)));
                (i % 2 ? static_cast<UIView&>(*scroll) : root).addSubview(view);
                views.push_back(view);
            }
            incremental.render();
            for (int i = 0; i < 40; ++i) {
                const auto& view = views[random() % views.size()];
                const std::function<void()> changes[] = {
                    [&] {
                        view->setFrame({part(150) - 20, part(110) - 20, part(70), part(50)});
                    },
                    [&] { view->setAlpha(part(1.3)); },
                    [&] { view->setHidden(!view->isHidden()); },
                    [&] {
                        view->setTranslation({part(9), part(9)});
                    },
                    [&] {
                        scroll->setContentOffset({part(200), part(200)}, false);
                    },
                    [&] { view->setClipsToBounds(!view->clipsToBounds()); },
                    [&] {
                        incremental.tap({part(160), part(120)});
                    },
                    [&] { incremental.advance(part(0.1)); }};
                changes[random() % std::size(changes)]();
                incremental.render();
            }
            const auto painted = incremental.pixels();
            incremental.window()->invalidate();
            incremental.render();
            ASSERT_EQ(painted == incremental.pixels(), true)
                << "scale " << scale << " seed " << seed;
        }
    }
}

} // namespace
} // namespace tesmar
