#include "tesmar/extended/internal/PanelPreview.h"

#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/ui/UIControl.h"
#include "tesmar/platform/ui/UIWindow.h"

#include <algorithm>
#include <cmath>

namespace tesmar {
namespace {

constexpr CGFloat kPictureWhite = 0.45; // stands for the picture
constexpr CGFloat kPadding = 6;         // points
constexpr CGFloat kHighest = 96;
constexpr CGFloat kLowest = 34; // one line of the default size
constexpr CGFloat kOfRoom = 0.25;
constexpr int kCoveredLines = 2;

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
    if (const auto before = captions_.lock())
        before->endCopy(*copy_);
    captions_ = captions;
    if (captions)
        captions->beginCopy(copy_);
    setHeight(0);
}

void PanelPreview::decide(const Surroundings& panel) {
    const auto captions = captions_.lock();
    const UIWindow* const in = window();
    if (!captions || !in || captions->window() != in)
        return setHeight(0);
    const CGRect room = in->cardRoom();
    if (!isHidden() && room == decidedIn_ && captions->area() == decidedFor_)
        return;
    decidedIn_ = room;
    decidedFor_ = captions->area();
    const CGRect lines = captions->areaForLines(kCoveredLines);
    const CGRect covered = in->presentedFrame(panel.style, panel.size);
    if (CGRectIntersection(covered, captions->superview()->convertRectTo(lines, nullptr)).isEmpty())
        return setHeight(0);
    const CGFloat height = std::min({kHighest, room.size.height * kOfRoom,
                                     room.size.height - panel.beside - UIControl::kTouchTarget});
    setHeight(height < kLowest ? 0 : std::floor(height));
}

void PanelPreview::setHeight(CGFloat height) {
    setHidden(height == 0);
    if (height_->constant() != height)
        height_->setConstant(height);
}

void PanelPreview::layoutSubviews() {
    copy_->setArea(CGRectInset(bounds(), kPadding, kPadding));
}

} // namespace tesmar
