#include "SeekBar.h"

#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIGraphics.h"
#include "tesmar/platform/ui/UIAccessibility.h"
#include "tesmar/platform/ui/UITouch.h"

#include <algorithm>
#include <cmath>
#include <string>

using namespace tesmar;

namespace {

constexpr CGFloat kLine = 4;   // points thick
constexpr CGFloat kKnob = 14;  // points across
constexpr double kStep = 0.05; // of the video, for screen readers

} // namespace

void SeekBar::setProgress(double progress) {
    if (!isTracking())
        show(progress);
}

void SeekBar::show(double progress) {
    progress = finite(progress, 0, 1, 0);
    // Half a point is too small a change to redraw for.
    const bool moves = std::abs(progress - progress_) * bounds().size.width >= 0.5;
    if (!moves && progress != 0 && progress != 1)
        return;
    progress_ = progress;
    setNeedsDisplay();
}

void SeekBar::draw(CGRect) {
    CGContext& context = *UIGraphicsGetCurrentContext();
    const CGFloat length = std::max(0.0, bounds().size.width - kKnob);
    const CGFloat knob = kKnob / 2 + length * progress_;
    const CGFloat top = bounds().midY() - kLine / 2;
    context.setFillColor(*UIColor::colorWithWhite(1, 0.35));
    context.fillRoundedRect({kKnob / 2, top, length, kLine}, kLine / 2);
    context.setFillColor(*UIColor::whiteColor());
    context.fillRoundedRect({kKnob / 2, top, knob - kKnob / 2, kLine}, kLine / 2);
    context.fillEllipse({knob - kKnob / 2, bounds().midY() - kKnob / 2, kKnob, kKnob});
}

void SeekBar::describe(UIAccessibleElement& element) const {
    UIControl::describe(element);
    const double percent = std::round(progress_ * 100);
    element.role = UIAccessibleRole::adjustable;
    element.name = "Position";
    element.value = std::to_string(std::lround(percent)) + " percent";
    element.range = {percent, 0, 100, kStep * 100};
    element.actions = {UIAccessibleAction::decrease, UIAccessibleAction::increase};
}

bool SeekBar::perform(const UIAccessibleElement&, UIAccessibleAction action) {
    const double step = action == UIAccessibleAction::increase ? kStep : -kStep;
    const double progress = std::clamp(progress_ + step, 0.0, 1.0);
    const CGFloat length = std::max(0.0, bounds().size.width - kKnob);
    return tap({kKnob / 2 + length * progress, bounds().midY()});
}

bool SeekBar::beginTracking(UITouch& touch) {
    follow(touch);
    return true;
}

bool SeekBar::continueTracking(UITouch& touch) {
    follow(touch);
    return true;
}

void SeekBar::endTracking(UITouch& touch) {
    follow(touch);
    sendActionsForControlEvents(UIControlEventValueChanged);
}

void SeekBar::follow(const UITouch& touch) {
    const CGFloat length = std::max(1.0, bounds().size.width - kKnob);
    show((touch.locationIn(*this).x - kKnob / 2) / length);
}
