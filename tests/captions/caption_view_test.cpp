// Where captions stand, what a change of them repaints, and the sample.
#include "tesmar/captions/TESMARCaptionView.h"
#include "tesmar/platform/hosts/headless/HeadlessHost.h"
#include "tesmar/platform/text/UIFont.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace tesmar {
namespace {

struct Captions {
    Captions() {
        host.window()->rootViewController()->view()->addSubview(view);
        setSize(20);
        view->setArea({0, 0, 300, 200});
    }
    void setSize(CGFloat size) {
        view->setStyle(NSDictionary::dictionaryWithEntries(
            {{std::string(NSBackgroundColorAttributeName), UIColor::blueColor()},
             {std::string(NSFontAttributeName), UIFont::systemFontOfSize(size)}}));
    }
    // The rectangle that the background of the captions covers.
    CGRect box() {
        host.render();
        CGRect box;
        for (int i = 0; i < 300 * 200; ++i)
            if (host.pixels()[static_cast<std::size_t>(i)] == 0xFF0000FF)
                box = CGRectUnion(box, CGRect(i % 300, std::floor(i / 300.0), 1, 1));
        return box;
    }
    HeadlessHost host{{300, 200}};
    Ref<TESMARCaptionView> view = make<TESMARCaptionView>();
};

TEST(CaptionView, StandsAtItsPlaceWithAsManyLinesAsFit) {
    using enum TESMARCaptionPlace;
    // x and y: which edge of the box is at which edge of the room, or 0 for the middle.
    const struct {
        const char* text;
        CGFloat size;
        TESMARCaptionPlace place;
        int lines, x, y;
    } cases[] = {
        {"Hello", 30, bottom, 1, 0, 1},
        {"Hello\nthere", 20, bottom, 2, 0, 1},
        {"words enough to need a second line of this room", 20, top, 2, 0, -1},
        {"Hello", 20, left, 1, -1, 0},
        {"Hello\nthere", 20, center, 2, 0, 0},
        {"Hello", 20, right, 1, 1, 0},
        {"a\nb\nc\nd\ne\nf\ng\nh\ni\nj", 30, bottom, 4, 0, 1},
    };
    const CGRect room{20, 10, 260, 160};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        Captions captions;
        captions.setSize(c.size);
        captions.view->setSafeAreaInsets({10, 20, 30, 20});
        captions.view->setPlace(c.place);
        captions.view->setText(c.text);
        const CGRect box = captions.box();
        EXPECT_NEAR(box.size.height, c.lines * UIFont::systemFontOfSize(c.size)->lineHeight(), 2);
        const CGFloat x[] = {box.minX() - room.minX(), box.midX() - room.midX(),
                             box.maxX() - room.maxX()};
        const CGFloat y[] = {box.minY() - room.minY(), box.midY() - room.midY(),
                             box.maxY() - room.maxY()};
        EXPECT_NEAR(x[c.x + 1], 0, 1.5);
        EXPECT_NEAR(y[c.y + 1], 0, 1.5);
    }
}

TEST(CaptionView, MeasuresTheSizeInPointsOrByThePicture) {
    Captions captions;
    captions.setSize(17);
    captions.view->setText("x");
    captions.view->setSizing(TESMARCaptionSizing::picture);
    EXPECT_NEAR(captions.box().size.height, UIFont::systemFontOfSize(200.0 / 20)->lineHeight(), 1);
    EXPECT_NEAR(captions.view->areaForLines(2).size.height,
                std::ceil(2 * UIFont::systemFontOfSize(200.0 / 20)->lineHeight()), 1);
}

TEST(CaptionView, RepaintsWhatTextCovers) {
    Captions captions;
    captions.view->setText("One");
    captions.host.render();
    captions.view->setText("One");
    captions.view->setStyle(captions.view->shownStyle()->mutableCopy());
    captions.view->setArea({0, 0, 300, 200});
    EXPECT_FALSE(captions.host.window()->needsRender());
    captions.view->setText("Two");
    const auto repainted = captions.host.render();
    ASSERT_FALSE(repainted.empty());
    for (const PixelRect& r : repainted)
        EXPECT_TRUE(r.x > 100 && r.right() < 200 && r.y > 160) << r.x << ' ' << r.right();
}

TEST(CaptionView, HostileTextsStayInBounds) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const std::string& text :
         {std::string(10000, 'x'), std::string(10000, '\n'), std::string("\xff\xfe\x80 \xc3"),
          std::string("\u202eabc \u05d0\u05d1 123 \u0627\u0644")}) {
        Captions captions;
        captions.view->setText(text);
        captions.view->setArea({50, 50, 100, 100});
        captions.host.render();
        EXPECT_TRUE(CGRect(50, 50, 100, 100).contains(captions.view->frame().origin));
        EXPECT_LE(captions.view->frame().maxY(), 150);
        captions.view->setArea({nan, nan, -5, nan});
        captions.host.render();
        captions.view->setStyle(NSDictionary::dictionaryWithEntries(
            {{std::string(NSFontAttributeName), UIFont::systemFontOfSize(1e-300)}}));
        captions.host.render();
    }
}

TEST(CaptionView, ShowsASampleInThePlaceOfNoText) {
    Captions captions;
    captions.view->beginSample("Sample");
    captions.view->beginSample(TESMARSampleCaption("pt_br"));
    EXPECT_EQ(captions.view->shownText(), TESMARSampleCaption("pt-BR"));
    captions.view->setText("Real");
    EXPECT_EQ(captions.view->shownText(), "Real");
    captions.view->setText("");
    captions.view->endSample();
    EXPECT_TRUE(captions.view->showsSample());
    captions.view->endSample();
    captions.view->endSample();
    EXPECT_TRUE(captions.box().isEmpty());
}

} // namespace
} // namespace tesmar
