#include "CaptionView.h"

#include <algorithm>

using namespace tesmar;

namespace {

// Points; the largest size that the panel offers for most fonts.
constexpr CGFloat kLargestSize = 30;
// Lines: captions are written for two; in a narrow picture they need a third.
constexpr int kLines = 2;
constexpr int kLinesWhenNarrow = 3;
constexpr CGFloat kNarrow = 400; // points
// The largest part of the height for captions: in a small window the panel needs the rest.
constexpr CGFloat kLargestShare = 0.25;
// Points; script fonts draw outside their line boxes.
constexpr CGFloat kOverflow = 24;

} // namespace

CGRect CaptionView::reservedArea(const CGRect& room) {
    const int count = room.size.width < kNarrow ? kLinesWhenNarrow : kLines;
    const CGFloat lines = count * UIFont::systemFontOfSize(kLargestSize)->lineHeight();
    const CGFloat height = std::min(std::ceil(lines), std::floor(room.size.height * kLargestShare));
    return {room.minX(), room.maxY() - height, room.size.width, height};
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
