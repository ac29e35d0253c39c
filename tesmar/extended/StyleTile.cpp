#include "tesmar/extended/internal/StyleTile.h"

#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIGraphics.h"

#include <algorithm>

namespace tesmar {
namespace {

constexpr CGFloat kPlateInset = 5;
constexpr CGFloat kRimWidth = 1;
constexpr CGFloat kStrongRimWidth = 2;
constexpr CGFloat kPlateRadius = 8;
constexpr CGFloat kPlateWhite = 0.45; // white and black text have the same contrast on it
constexpr CGFloat kSelectionWhite = 0.831;
constexpr CGFloat kStrongSelectionWhite = 0.4;
// Of the font, in points.
constexpr CGFloat kSmallestSample = 11;
constexpr CGFloat kLargestSample = 22;
constexpr CGFloat kDefaultSample = 17;

} // namespace

Class& StyleTile::classObject() {
    static Class& type = *new Class("StyleTile", &UIButton::classObject(), {});
    return type;
}

bool StyleTile::initWithShape(CGRect frame, Shape shape) {
    shape_ = shape;
    return UIButton::initWithFrame(frame);
}

void StyleTile::setSample(std::string text, const NSDictionary& style) {
    const auto shown = style.mutableCopy();
    const auto font = as<UIFont>(style.objectForKey(NSFontAttributeName));
    const CGFloat size = font ? font->pointSize() : kDefaultSample;
    shown->setObject((font ? font : UIFont::systemFontOfSize(size))
                         ->fontWithSize(std::clamp(size, kSmallestSample, kLargestSample)),
                     NSFontAttributeName);
    sample_ = NSAttributedString::attributedString(std::move(text), shown);
    setNeedsDisplay();
}

void StyleTile::setContrast(TESMARContrast contrast) {
    contrast_ = contrast;
    setNeedsDisplay();
}

void StyleTile::setSelected(bool selected) {
    UIButton::setSelected(selected);
    setNeedsDisplay();
}

CGRect StyleTile::plate() const {
    return CGRectInset(bounds(), kPlateInset, kPlateInset);
}

CGFloat StyleTile::cornerRadius(const CGRect& rect) const {
    if (shape_ == Shape::disc)
        return rect.size.width / 2;
    return kPlateRadius + plate().minX() - rect.minX();
}

std::vector<UIFocusCell> StyleTile::focusCells() const {
    return {{.rect = bounds(), .cornerRadius = cornerRadius(bounds())}};
}

void StyleTile::fill(CGContext& context, const CGRect& rect, const UIColor& color) const {
    context.setFillColor(color);
    context.fillRoundedRect(rect, cornerRadius(rect));
}

void StyleTile::draw(CGRect) {
    CGContext* const context = UIGraphicsGetCurrentContext();
    if (!context)
        return;
    const bool isStrong = contrast_ == TESMARContrast::high;
    if (isSelected())
        fill(*context, bounds(),
             *UIColor::colorWithWhite(isStrong ? kStrongSelectionWhite : kSelectionWhite, 1));
    fill(*context, plate(), *UIColor::colorWithWhite(kPlateWhite, 1));
    context->setFillColor(isStrong ? *UIColor::blackColor() : *UIColor::grayColor());
    context->fillRoundedFrame(plate(), cornerRadius(plate()),
                              isStrong ? kStrongRimWidth : kRimWidth);
    drawSample(*context);
    // A finger covers most of the tile, so what shows the press covers all of it.
    if (isHighlighted())
        fill(*context, plate(), *UIColor::colorWithWhite(0, 0.25));
}

void StyleTile::drawSample(CGContext& context) const {
    if (!sample_)
        return;
    const CGSize size = sample_->size();
    const CGPoint center = bounds().center();
    context.saveGState();
    context.clipToPixels(intersection(context.clipPixels(), context.pixels(bounds())));
    sample_->drawInRect(context, {center.x - size.width / 2, center.y - size.height / 2,
                                  std::ceil(size.width), size.height});
    context.restoreGState();
}

} // namespace tesmar
