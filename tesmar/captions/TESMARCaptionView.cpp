#include "tesmar/captions/TESMARCaptionView.h"

#include "tesmar/model/CCConstants.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIGraphics.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tesmar {
namespace {

constexpr CGFloat kDefaultSize = 17; // of the default style
constexpr CGFloat kOfPicture = 1.0 / 20;
constexpr CGFloat kSizeWithoutFont = 12; // as NSAttributedString draws it
// Of the font size: what the window exceeds the lines by, above and below, and at the sides.
constexpr CGFloat kWindowMargin = 1.0 / 6;
constexpr CGFloat kWindowSideMargin = 1.0 / 3;
constexpr CGFloat kMostLines = 100;

CGFloat fontSize(const NSDictionary& style) {
    const auto font = as<UIFont>(style.objectForKey(NSFontAttributeName));
    return font ? font->pointSize() : kSizeWithoutFont;
}

} // namespace

Class& TESMARCaptionView::classObject() {
    static Class& type = *new Class("TESMARCaptionView", &UIView::classObject(), {});
    return type;
}

bool TESMARCaptionView::initWithFrame(CGRect) {
    if (!UIView::initWithFrame({}))
        return false;
    style_ = CCConstants::CCDefaultStyleAttributes();
    setUserInteractionEnabled(false);
    return true;
}

// --- Properties ---------------------------------------------------------------------------------

void TESMARCaptionView::setText(std::string text) {
    if (text == text_)
        return;
    text_ = std::move(text);
    update();
}

void TESMARCaptionView::setStyle(const Ref<NSDictionary>& style) {
    const auto next = style ? style : CCConstants::CCDefaultStyleAttributes();
    if (next->isEqual(style_.get()))
        return;
    style_ = NSDictionary::dictionaryWithEntries(next->entries());
    update();
}

void TESMARCaptionView::setArea(CGRect area) {
    area = finiteRect(area);
    if (area == area_)
        return;
    area_ = area;
    update();
}

void TESMARCaptionView::setSafeAreaInsets(UIEdgeInsets insets) {
    insets = finiteInsets(insets);
    if (insets == safeArea_)
        return;
    safeArea_ = insets;
    update();
}

void TESMARCaptionView::setPlace(TESMARCaptionPlace place) {
    if (std::exchange(place_, place) != place)
        update();
}

void TESMARCaptionView::setSizing(TESMARCaptionSizing sizing) {
    if (std::exchange(sizing_, sizing) != sizing)
        update();
}

void TESMARCaptionView::beginSample(std::string_view sample) {
    ++samples_;
    if (std::exchange(sample_, std::string(sample)) != sample_ || samples_ == 1)
        updateSample();
}

void TESMARCaptionView::endSample() {
    if (samples_ == 0)
        return;
    if (--samples_ == 0)
        updateSample();
}

void TESMARCaptionView::updateSample() {
    if (text_.empty())
        update();
}

const std::string& TESMARCaptionView::shownText() const {
    return showsSample() ? sample_ : text_;
}

Ref<NSDictionary> TESMARCaptionView::shownStyle() const {
    if (sizing_ == TESMARCaptionSizing::points)
        return style_;
    const auto style = style_->mutableCopy();
    const auto font = as<UIFont>(style->objectForKey(NSFontAttributeName));
    const CGFloat size = fontSize(*style) / kDefaultSize * area_.size.height * kOfPicture;
    style->setObject((font ? font : UIFont::systemFontOfSize(size))->fontWithSize(size),
                     NSFontAttributeName);
    return style;
}

void TESMARCaptionView::beginCopy(const Ref<TESMARCaptionView>& copy) {
    endCopy(*copy);
    copies_.emplace_back(copy);
    updateCopy(*copy);
}

void TESMARCaptionView::endCopy(const TESMARCaptionView& copy) {
    std::erase_if(copies_, [&](const auto& weak) {
        const auto other = weak.lock();
        return !other || other.get() == &copy;
    });
}

void TESMARCaptionView::updateCopy(TESMARCaptionView& copy) const {
    copy.setText(shownText());
    copy.setStyle(shownStyle());
}

// --- Place --------------------------------------------------------------------------------------

CGRect TESMARCaptionView::room() const {
    const CGFloat side = windowMargin() / kWindowMargin * kWindowSideMargin;
    const CGRect room = CGRectInset(CGRectInset(area_, safeArea_), {0, side, 0, side});
    return {room.origin, {std::max(0.0, room.size.width), std::max(0.0, room.size.height)}};
}

// The window behind the lines stays in the room, too.
CGFloat TESMARCaptionView::windowMargin() const {
    const auto window = as<UIColor>(style_->objectForKey(TESMARWindowColorAttributeName));
    return window && window->alpha() > 0 ? fontSize(*shownStyle()) * kWindowMargin : 0;
}

NSTextAlignment TESMARCaptionView::alignment() const {
    if (place_ == TESMARCaptionPlace::left)
        return NSTextAlignment::left;
    return place_ == TESMARCaptionPlace::right ? NSTextAlignment::right : NSTextAlignment::center;
}

// With as many lines as fit, but at least one.
Ref<NSAttributedString> TESMARCaptionView::fitted(const std::string& text) const {
    const CGFloat available = room().size.height - 2 * windowMargin();
    const auto style = shownStyle();
    auto string = NSAttributedString::attributedString(text, style);
    const auto overflows = [&] { return string->size(room().size.width).height > available; };
    if (!overflows())
        return string;
    const CGFloat line = NSAttributedString::attributedString("x", style)->size().height;
    const CGFloat lines = finite(std::floor(available / line), 1, kMostLines, 1);
    // Characters of other scripts may be higher.
    for (int count = static_cast<int>(lines); count >= 1; --count) {
        string = NSAttributedString::attributedString(text, style, count);
        if (!overflows())
            break;
    }
    return string;
}

// As wide as the room: lines are aligned in it.
CGRect TESMARCaptionView::placed(CGSize size) const {
    const CGRect r = room();
    const CGFloat margin = windowMargin();
    CGFloat y = r.midY() - size.height / 2;
    if (place_ == TESMARCaptionPlace::bottom)
        y = r.maxY() - margin - size.height;
    else if (place_ == TESMARCaptionPlace::top)
        y = r.minY() + margin;
    return {r.minX(), y, r.size.width, size.height};
}

CGRect TESMARCaptionView::areaForLines(int lines) const {
    std::string text = "x";
    for (int line = 1; line < std::clamp(lines, 1, 100); ++line)
        text += "\nx";
    const auto string = NSAttributedString::attributedString(std::move(text), shownStyle());
    const CGFloat height =
        std::min(std::ceil(string->size().height) + 2 * windowMargin(), room().size.height);
    CGRect rows = placed({0, height});
    if (place_ == TESMARCaptionPlace::bottom)
        rows.origin.y += windowMargin();
    else if (place_ == TESMARCaptionPlace::top)
        rows.origin.y -= windowMargin();
    return rows;
}

void TESMARCaptionView::update() {
    const std::string& text = shownText();
    setNeedsDisplay(); // where the old text is
    shown_ = text.empty() ? nullptr : fitted(text);
    const CGFloat height = shown_ ? std::min(shown_->size(room().size.width).height,
                                             room().size.height - 2 * windowMargin())
                                  : 0;
    const CGRect lines = placed({0, std::max(0.0, height)});
    const CGRect ink = shown_ ? shown_->drawingBounds(lines.size.width, alignment()) : CGRect();
    // The frame is what the text covers, so that nothing else is painted again.
    const CGFloat left = std::clamp(ink.minX(), 0.0, lines.size.width);
    const CGFloat right = std::clamp(ink.maxX(), left, lines.size.width);
    // A single line that is higher than the room.
    const bool isCut = shown_ && shown_->size(lines.size.width).height > lines.size.height;
    overflow_ = {std::max(0.0, -ink.minY()), std::max(0.0, left - ink.minX()),
                 std::max(0.0, ink.maxY() - lines.size.height), std::max(0.0, ink.maxX() - right)};
    setClipsToBounds(isCut);
    setFrame({lines.minX() + left, lines.minY(), right - left, lines.size.height});
    setNeedsDisplay();
    for (const auto& weak : copies_)
        if (const auto copy = weak.lock())
            updateCopy(*copy);
}

void TESMARCaptionView::draw(CGRect) {
    CGContext* const context = UIGraphicsGetCurrentContext();
    if (!context || !shown_)
        return;
    const CGFloat left = frame().minX() - room().minX();
    shown_->drawInRect(*context, {-left, 0, room().size.width, bounds().size.height}, alignment());
}

} // namespace tesmar
