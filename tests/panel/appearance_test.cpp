// The panel in every language and direction, with large texts and in high contrast.
#include "panel_fixture.h"

#include "tesmar/platform/text/TextLayout.h"
#include "tesmar/platform/ui/UIButton.h"

#include <cmath>

namespace tesmar {
namespace {

using Setting = std::function<void(TESMARViewController&)>;

Setting appearance(const std::string& language, double scale = 1,
                   TESMARMirroring mirroring = TESMARMirroring::controls,
                   TESMARContrast contrast = TESMARContrast::normal) {
    return [=](TESMARViewController& panel) {
        panel.setLanguage(language);
        panel.setTextScale(scale);
        panel.setMirroring(mirroring);
        panel.setContrast(contrast);
    };
}

using Greys = std::vector<std::vector<int>>;

// A presented panel with all of its controls enabled.
struct Shown {
    explicit Shown(
        CGSize size, const Setting& before = [](auto&) {}, CGFloat scale = 1)
        : host(size, scale) {
        before(*panel);
        host.window()->presentViewController(panel, false);
        const auto style = panel->CCStyleAttributes();
        style->setObject(UIFont::fontWithName("Courier", 20), NSFontAttributeName);
        style->setObject(UIColor::colorWithRed(1, 0, 0, 0.5), NSForegroundColorAttributeName);
        panel->setCCStyleAttributes(style);
        host.window()->layoutIfNeeded();
    }
    std::vector<std::uint32_t> pixels() {
        host.render();
        return {host.pixels().begin(), host.pixels().end()};
    }
    UIView& view(const char* id) { return *host.window()->viewWithIdentifier(id); }
    // Rows of the grey levels of `r`, in the coordinates of the view.
    Greys greys(const UIView& view, CGRect r) {
        const auto all = pixels();
        const PixelRect at =
            snappedToPixels(view.convertRectTo(r, nullptr), host.window()->scale());
        Greys rows(std::size_t(at.height));
        for (std::size_t y = 0; y < rows.size(); ++y)
            for (int x = at.x; x < at.right(); ++x)
                rows[y].push_back(
                    all[(at.y + y) * std::size_t(host.pixelWidth()) + std::size_t(x)] & 255);
        return rows;
    }
    HeadlessHost host;
    const Ref<TESMARViewController> panel = make<TESMARViewController>();
};

bool isPart(const UIView& view) {
    return dynamic_cast<const UILabel*>(&view) || dynamic_cast<const UIButton*>(&view) ||
           dynamic_cast<const UIStepper*>(&view) || dynamic_cast<const UISwitch*>(&view);
}

std::vector<UIView*> partsBelow(UIView& view) {
    std::vector<UIView*> parts;
    for (const auto& child : view.subviews()) {
        const auto more = isPart(*child) ? std::vector{child.get()} : partsBelow(*child);
        parts.insert(parts.end(), more.begin(), more.end());
    }
    return parts;
}

void expectReadable(UILabel& label, const std::string& where) {
    TextLayout text;
    text.setText(label.text());
    text.setFont(label.font()->fontWithSize(std::min(label.font()->pointSize(), 10.0)));
    EXPECT_LE(text.size().width, label.frame().size.width + 0.01) << where << label.text();
}

TEST(Texts, TheClosestLanguageIsChosen) {
    const std::pair<const char*, std::vector<const char*>> rows[] = {
        {"de", {"de", "de-AT"}},
        {"pt-BR", {"PT_br", "pt-PT"}},
        {"zh-Hans", {"zh", "zh-SG", "zh-Hans-HK"}},
        {"zh-Hant", {"zh-TW", "zh-HK", "zh-Hant"}},
        {"he", {"iw-IL"}},
        {"en", {"en-GB", "eo", "", "d", "deu"}}};
    for (const auto& [chosen, tags] : rows)
        for (const char* const tag : tags)
            EXPECT_EQ(TESMARTexts::closestLanguage(tag).tag, chosen) << tag;
}

TEST_F(PanelTest, EveryLanguageFits) {
    for (const auto& [tag, texts] : TESMARTexts::languages())
        for (const double scale : {1.0, 1.5, 2.0})
            for (const CGFloat width : {320, 568})
                for (const auto mirroring : {TESMARMirroring::controls, TESMARMirroring::panel}) {
                    Shown shown({width, 480}, appearance(std::string(tag), scale, mirroring));
                    const std::string where(std::string(tag) + " " + std::to_string(scale) + " " +
                                            std::to_string(width) + " ");
                    std::vector<CGRect> frames;
                    for (UIView* const part : partsBelow(*shown.panel->view())) {
                        if (auto* label = dynamic_cast<UILabel*>(part))
                            expectReadable(*label, where);
                        else if (auto* button = dynamic_cast<UIButton*>(part))
                            expectReadable(*button->titleLabel(), where);
                        const auto bounds = CGRectInset(part->bounds(), 0.01, 0.01);
                        frames.push_back(part->convertRectTo(bounds, nullptr));
                        for (std::size_t k = 0; k + 1 < frames.size(); ++k)
                            EXPECT_TRUE(CGRectIntersection(frames[k], frames.back()).isEmpty())
                                << where << part->layoutName();
                    }
                }
}

// The picture depends neither on earlier settings nor on when they are made.
TEST_F(PanelTest, AppearancesApplyAtOnce) {
    using enum TESMARMirroring;
    const Setting settings[] = {appearance("ar", 2, panel, TESMARContrast::high),
                                appearance("he", 1, controls), appearance("de", 1.3),
                                appearance("en")};
    Shown later({568, 320});
    for (const Setting& setting : settings) {
        setting(*later.panel);
        later.host.window()->layoutIfNeeded();
        EXPECT_TRUE(later.pixels() == Shown({568, 320}, setting).pixels()) << &setting - settings;
    }
}

// As soon as the width or the texts change.
TEST_F(PanelTest, ANarrowHeaderOfLargeTextsHasASecondRow) {
    const struct {
        const char* language;
        double scale;
        CGFloat width;
        bool hasTwoRows;
    } rows[] = {{"en", 1, 320, false}, {"en", 1.5, 320, true}, {"de", 2, 320, true},
                {"de", 2, 500, false}, {"ar", 2, 360, true},   {"ar", 1, 360, false}};
    Shown later({568, 480});
    for (const auto& row : rows) {
        const Setting setting = appearance(row.language, row.scale);
        setting(*later.panel);
        later.host.resize({row.width, 480}, 1);
        later.host.window()->layoutIfNeeded();
        const CGRect label = later.view("CCLabel").frame(),
                     reset = later.view("resetButton").frame();
        EXPECT_EQ(reset.minY() > label.maxY(), row.hasTwoRows) << &row - rows;
        EXPECT_EQ(later.view("CCSwitch").frame().size.width, 51) << &row - rows;
        Shown fresh({row.width, 480}, setting);
        for (const char* const id : {"CCLabel", "CCSwitch", "resetButton", "topSeparator"})
            EXPECT_EQ(later.view(id).frame(), fresh.view(id).frame()) << &row - rows << id;
    }
}

TEST_F(PanelTest, CopiesTheHostsOwnTexts) {
    Shown shown({568, 320});
    {
        std::string endless(5000, 'W');
        shown.panel->setTexts({.direction = ReadingDirection::rightToLeft, .sizeTitle = endless});
        endless.assign(5000, 'i');
        shown.panel->setTexts(TESMARTexts(shown.panel->texts())); // a copy of the copy
    }
    shown.host.window()->layoutIfNeeded();
    EXPECT_EQ(shown.panel->texts().sizeTitle, std::string(5000, 'W'));
    EXPECT_EQ(shown.panel->texts().reset, "Reset");
    const UIView* const size = shown.host.window()->viewWithIdentifier("fontPicker.sizeLabel");
    EXPECT_EQ(size->frame().size.width, 160); // no more than a label may have
}

TEST_F(PanelTest, EveryControlHasATargetOf44Points) {
    const Setting settings[] = {[](auto&) {}, appearance("ar"),
                                appearance("ar", 1, TESMARMirroring::panel), appearance("de", 2)};
    for (const Setting& setting : settings) {
        Shown shown({568, 320}, setting);
        UIWindow& window = *shown.host.window();
        const auto expectTarget = [&](UIView& view, CGRect rect, UIStepperHalf half) {
            if (auto* scroll = UIScrollView::enclosing(&view))
                scroll->scrollRectToVisible(view.convertRectTo(rect, scroll), false);
            const auto* stepper = dynamic_cast<UIStepper*>(&view);
            const auto hits = [&](CGPoint p) {
                return window.hitTest(p) == &view &&
                       (!stepper ||
                        stepper->halfNearest(view.convertPointFrom(p, nullptr)) == half);
            };
            CGRect seen = view.convertRectTo(rect, nullptr);
            if (auto* scroll = UIScrollView::enclosing(&view))
                seen = CGRectIntersection(seen, scroll->convertRectTo(scroll->bounds(), nullptr));
            const auto reach = [&](CGFloat dx, CGFloat dy) {
                CGFloat far = 0;
                while (hits(seen.center() + CGPoint{dx * far, dy * far}))
                    far += 0.25;
                return far;
            };
            EXPECT_GE(reach(-1, 0) + reach(1, 0), 44) << view.layoutName() << &setting - settings;
            EXPECT_GE(reach(0, -1) + reach(0, 1), 44) << view.layoutName() << &setting - settings;
        };
        for (UIView* const view : partsBelow(*shown.panel->view())) {
            if (auto* stepper = dynamic_cast<UIStepper*>(view))
                for (const auto half : {UIStepperHalf::decrement, UIStepperHalf::increment})
                    expectTarget(*view, stepper->halfRect(half), half);
            else if (!dynamic_cast<UILabel*>(view))
                expectTarget(*view, view->bounds(), UIStepperHalf::none);
        }
    }
}

// Relative luminance of a grey pixel over the card.
double luminance(std::uint32_t pixel) {
    const double value = (pixel & 255) / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

TEST_F(PanelTest, HighContrastHasRimsAndLines) {
    Shown shown({568, 480}, [](auto& panel) { panel.setContrast(TESMARContrast::high); });
    shown.host.tap(centerOf(*shown.host.window(), "textColorPicker.3")); // black
    shown.host.advance(1);
    const auto pixels = shown.pixels();
    const auto at = [&](const char* id, CGFloat x, CGFloat y) {
        const UIView* const view = shown.host.window()->viewWithIdentifier(id);
        const CGPoint p = view->convertPointTo({x, y}, nullptr);
        return pixels[static_cast<std::size_t>(p.y) * 568 + static_cast<std::size_t>(p.x)];
    };
    const double paper = luminance(at("CCLabel", 0, -10)) + 0.05;
    EXPECT_GE(paper / (luminance(at("topSeparator", 50, 0)) + 0.05), 3);
    EXPECT_GE(paper / (luminance(at("separator", 50, 0)) + 0.05), 3);
    for (const char* const id : {"fontPicker.size", "textColorOpacityStepper"})
        EXPECT_GE(paper / (luminance(at(id, 47, 14)) + 0.05), 3) << id;
    const double ring = luminance(at("textColorPicker.3", 3, 25)) + 0.05;
    EXPECT_GE(paper / ring, 3);
    EXPECT_GE(ring / 0.05, 3); // against the rim
    for (const CGFloat x : {5, 6})
        EXPECT_LT(luminance(at("textColorPicker.2", x, 25)), 0.01) << x; // white
    EXPECT_GT(luminance(at("textColorPicker.2", 7, 25)), 0.9);
}

// The rows from the first to the last with at least so many dark pixels.
struct Extent {
    Extent(const Greys& rows, int least = 1) {
        for (std::size_t y = 0; y < rows.size(); ++y)
            if (std::ranges::count_if(rows[y], [](int grey) { return grey < 100; }) >= least) {
                first = size ? first : int(y);
                size = int(y) + 1 - first;
            }
    }
    double middle() const { return first + size / 2.0; }
    int first = 0, size = 0;
};

Greys turned(const Greys& rows) {
    Greys columns(rows.front().size());
    for (const auto& row : rows)
        for (std::size_t x = 0; x < row.size(); ++x)
            columns[x].push_back(row[x]);
    return columns;
}

TEST_F(PanelTest, GlyphsAreSharpAndOnOneLineAtEveryScale) {
    for (int quarters = 4; quarters <= 16; ++quarters) {
        const CGFloat scale = quarters / 4.0;
        Shown shown(
            {568, 420}, [](auto&) {}, scale);
        shown.host.advance(2); // until the indicators have faded
        UIView& size = shown.view("fontPicker.size");
        const Greys plus = shown.greys(size, {49, -2, 43, 31}); // in the height of a chevron
        for (const auto& row : plus)
            EXPECT_EQ(std::ranges::count(row, 0) + std::ranges::count(row, 255), row.size());
        const Extent down(plus), across(turned(plus));
        const Extent bar(plus, across.size), post(turned(plus), down.size);
        EXPECT_EQ(down.size, across.size) << scale;
        EXPECT_EQ(bar.size, post.size) << scale;
        EXPECT_NEAR(bar.size, 2 * scale, 0.5) << scale;
        EXPECT_EQ(bar.middle(), down.middle()) << scale;
        EXPECT_EQ(post.middle(), across.middle()) << scale;
        EXPECT_NEAR(across.middle(), double(plus.front().size()) / 2, 0.5) << scale;
        for (const char* const id : {"fontPicker.prev", "fontPicker.next"}) {
            UIView& button = shown.view(id);
            const Extent chevron(shown.greys(button, button.bounds()));
            EXPECT_NEAR(chevron.middle(), down.middle(), 1) << scale << id;
        }
    }
}

// The plate of the background's decrement half is narrower: content is cut off 8.5 points left of
// it.
TEST_F(PanelTest, PressedGlyphsHaveAWholePlate) {
    const struct {
        const char* id;
        CGFloat middle, width; // of the plate, in the view
    } rows[] = {{"fontPicker.next", 16, 28},
                {"fontPicker.prev", 16, 28},
                {"fontPicker.size", 23.5, 43},
                {"backgroundColorOpacityStepper", 23.5, 17}};
    for (const auto& [id, middle, width] : rows) {
        Shown shown({568, 420});
        shown.host.advance(2); // until the indicators have faded
        UIView& view = shown.view(id);
        const CGRect line{0, 14, 47, 1};
        const auto before = shown.greys(view, line)[0];
        shown.host.touch(UITouchPhase::began, view.convertPointTo({middle, 15}, nullptr));
        shown.host.advance(0.3);
        const auto pressed = shown.greys(view, line)[0];
        const auto first = std::ranges::mismatch(before, pressed).in1 - before.begin();
        const auto last = std::mismatch(before.rbegin(), before.rend(), pressed.rbegin()).first;
        const auto end = last.base() - before.begin();
        EXPECT_EQ(double(first + end) / 2, middle) << id;
        EXPECT_EQ(end - first, width) << id;
        EXPECT_EQ(std::ranges::min(before), std::ranges::min(pressed)) << id; // the glyph stays
    }
}

TEST_F(PanelTest, NamesInEveryFontStandOnOneLine) {
    Shown shown(
        {568, 420}, [](auto&) {}, 3);
    auto& label = dynamic_cast<UILabel&>(shown.view("fontPicker.name"));
    std::vector<int> baselines;
    for (const std::string& name : UIFont::CCSupportedFonts()) {
        const auto style = shown.panel->CCStyleAttributes();
        style->setObject(UIFont::fontWithName(name, 20), NSFontAttributeName);
        shown.panel->setCCStyleAttributes(style);
        label.setText("iiiii");
        const Extent ink(shown.greys(label, label.bounds()));
        baselines.push_back(ink.first + ink.size);
        EXPECT_NEAR(baselines.front(), baselines.back(), 1) << name;
    }
}

} // namespace
} // namespace tesmar
