#include "CaptionView.h"

#include <algorithm>

using namespace tesmar;

namespace {

// Lines: captions are written for two; in a narrow picture they need a third.
constexpr int kLines = 2;
constexpr int kLinesWhenNarrow = 3;
constexpr CGFloat kNarrow = 400; // points
// The panel needs this much of the height, in points; where captions leave less, they are drawn
// above it.
constexpr CGFloat kLeftForPanel = 196;
// Points; script fonts draw outside their line boxes.
constexpr CGFloat kOverflow = 24;

} // namespace

CGFloat CaptionView::neededHeight() const {
    const int count = room_.size.width < kNarrow ? kLinesWhenNarrow : kLines;
    std::string lines = "x";
    for (int line = 1; line < count; ++line)
        lines += "\nx";
    return std::ceil(NSAttributedString::attributedString(lines, style_)->size().height);
}

CGFloat CaptionView::availableHeight() const {
    return std::max(0.0, room_.size.height - kLeftForPanel);
}

CGRect CaptionView::reservedArea() const {
    const CGFloat height = std::min(neededHeight(), availableHeight());
    return {room_.minX(), room_.maxY() - height, room_.size.width, height};
}

bool CaptionView::fitsIntoReservedArea() const {
    return neededHeight() <= availableHeight();
}

bool CaptionView::initWithFrame(CGRect frame) {
    if (!UIView::initWithFrame(frame))
        return false;
    setUserInteractionEnabled(false);
    setAccessibilityIdentifier("captions");
    return true;
}

void CaptionView::setText(std::string text) {
    if (text == text_)
        return;
    text_ = std::move(text);
    update();
}

void CaptionView::setStyle(const Ref<NSDictionary>& style) {
    style_ = style;
    update();
}

void CaptionView::setRoom(CGRect room) {
    room_ = room;
    update();
}

void CaptionView::update() {
    shown_ = text_.empty() ? nullptr : NSAttributedString::attributedString(text_, style_);
    const CGFloat wanted = shown_ ? shown_->size(room_.size.width).height : 0;
    const CGFloat height = std::min(wanted, room_.size.height);
    setFrame({room_.minX(), room_.maxY() - height, room_.size.width, height});
    setNeedsDisplay();
}

void CaptionView::draw(CGRect) {
    if (shown_)
        shown_->drawInRect(*UIGraphicsGetCurrentContext(), bounds(), NSTextAlignment::center);
}

UIEdgeInsets CaptionView::drawingOverflow() const {
    return {kOverflow, kOverflow, kOverflow, kOverflow};
}
