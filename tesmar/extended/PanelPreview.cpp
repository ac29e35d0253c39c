#include "tesmar/extended/internal/PanelPreview.h"

#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/ui/UIWindow.h"

#include <algorithm>
#include <cmath>

namespace tesmar {
namespace {

constexpr CGFloat kPictureWhite = 0.45; // stands for the picture
constexpr CGFloat kPadding = 6;         // points
constexpr CGFloat kHighest = 96;
constexpr const char* kTwoLines = "x\nx";

} // namespace

Class& PanelPreview::classObject() {
    static Class& type = *new Class("PanelPreview", &UIView::classObject(), {});
    return type;
}

bool PanelPreview::init() {
    if (!UIView::init())
        return false;
    setBackgroundColor(UIColor::colorWithWhite(kPictureWhite, 1));
    setClipsToBounds(true);
    copy_ = make<TESMARCaptionView>();
    copy_->setAccessibilityIdentifier("preview");
    copy_->setPlace(TESMARCaptionPlace::center);
    addSubview(copy_);
    height_ = NSLayoutConstraint::constraintWithItem(refTo(this), NSLayoutAttribute::height,
                                                     NSLayoutRelation::equal, nullptr,
                                                     NSLayoutAttribute::notAnAttribute, 1, 0);
    addConstraint(height_);
    setHidden(true);
    return true;
}

void PanelPreview::follow(const Ref<TESMARCaptionView>& captions) {
    captions_ = captions;
    decidedFor_ = {};
    decidedIn_ = {};
    if (!captions)
        setShown(false);
}

void PanelPreview::update(const UIView& panel) {
    const auto captions = captions_.lock();
    const UIWindow* const in = panel.window();
    if (!captions || !in || captions->window() != in)
        return;
    const CGRect place = captions->convertRectTo(captions->bounds(), nullptr);
    const CGSize size = in->frame().size;
    if (!isShown() || place != decidedFor_ || size != decidedIn_) {
        decidedFor_ = place;
        decidedIn_ = size;
        // The card: the panel itself is also laid out in all of the room, to be measured.
        const UIView& card = panel.superview() ? *panel.superview() : panel;
        const CGRect covered = card.convertRectTo(card.bounds(), nullptr);
        setShown(!CGRectIntersection(covered, place).isEmpty());
    }
    if (!isShown())
        return;
    copy_->setText(captions->shownText());
    copy_->setStyle(captions->shownStyle());
    const auto lines = NSAttributedString::attributedString(kTwoLines, captions->shownStyle());
    height_->setConstant(std::min(kHighest, std::ceil(lines->size().height + 4 * kPadding)));
}

void PanelPreview::setShown(bool shown) {
    setHidden(!shown);
    if (!shown)
        height_->setConstant(0);
}

void PanelPreview::layoutSubviews() {
    copy_->setArea(CGRectInset(bounds(), kPadding, kPadding));
}

} // namespace tesmar
