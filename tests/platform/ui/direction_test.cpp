// Reading directions, and labels that are too narrow for their text.
#include "fixture.h"

#include "tesmar/platform/ui/UILabel.h"
#include "tesmar/platform/ui/UIScrollView.h"
#include "tesmar/platform/ui/UIStepper.h"

#include <tuple>

namespace tesmar {
namespace {

using DirectionTest = UITest;

TEST_F(DirectionTest, ReadingFromRightToLeftMirrorsSteppersAndScrollViews) {
    const auto stepper = add<UIStepper>({100, 100, 94, 29});
    const auto scroll = add<UIScrollView>({100, 200, 100, 50});
    using enum UISemanticContentAttribute;
    const std::tuple<UISemanticContentAttribute, CGFloat, double, CGFloat> rows[] = {
        {unspecified, 300, 51, 0},
        {forceRightToLeft, 300, 49, 200},
        {forceRightToLeft, 250, 49, 150}, // anchored at the right edge
        {forceLeftToRight, 250, 51, 0}};
    for (const auto& [attribute, width, value, offset] : rows) {
        root().setSemanticContentAttribute(attribute);
        scroll->setContentSize({width, 50});
        scroll->setNeedsLayout();
        root().layoutIfNeeded();
        EXPECT_EQ(scroll->contentOffset().x, offset) << width;
        stepper->setValue(50);
        host.tap({180, 110}); // the right half
        EXPECT_EQ(stepper->value(), value) << width;
        EXPECT_EQ(stepper->halfRect(UIStepperHalf::increment).minX(), value > 50 ? 47 : 0);
    }
}

// A label draws what a label with the font that fits would draw.
TEST_F(DirectionTest, LabelsDrawLongTextSmaller) {
    const auto drawing = [&](CGFloat minimum, CGFloat size, CGFloat width) {
        const auto label = add<UILabel>({20, 20, width, 30});
        label->setText("opacity of text");
        label->setFont(UIFont::systemFontOfSize(size));
        label->setMinimumFontSize(minimum);
        auto drawn = picture();
        label->removeFromSuperview();
        return drawn;
    };
    TextLayout whole;
    whole.setText("opacity of text");
    const CGFloat perPoint = whole.size().width / 17;
    EXPECT_EQ(drawing(10, 17, perPoint * 12.1), drawing(0, 12, perPoint * 12.1));
    EXPECT_EQ(drawing(10, 17, perPoint * 9), drawing(0, 10, perPoint * 9)); // with an ellipsis
    EXPECT_NE(drawing(0, 17, perPoint * 12.1), drawing(0, 12, perPoint * 12.1));
}

} // namespace
} // namespace tesmar
