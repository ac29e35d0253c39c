// What the host's captions show, in the panel itself, where the panel covers them. It has no height
// otherwise.
#pragma once

#include "tesmar/captions/TESMARCaptionView.h"
#include "tesmar/platform/ui/UIViewController.h"

namespace tesmar {

class PanelPreview : public UIView {
    TESMAR_CLASS

  public:
    bool init() override;

    // Follows `captions` until it is given null, and is hidden at first.
    void follow(const Ref<TESMARCaptionView>& captions);
    // What of the panel is where, in points.
    struct Surroundings {
        CGSize size; // that the panel prefers
        UIModalPresentationStyle style;
        CGFloat beside; // the height of all that does not scroll, now or possibly later
    };
    // Shows the captions if a panel covers them in this view's window, and has room for them beside
    // its controls. Once shown, they stay until the window or the picture changes, so that no
    // change of the style moves the controls up again.
    void decide(const Surroundings& panel);
    CGFloat height() const { return height_->constant(); }

    void layoutSubviews() override;

  private:
    void setHeight(CGFloat height);

    WeakRef<TESMARCaptionView> captions_;
    Ref<TESMARCaptionView> copy_;
    Ref<NSLayoutConstraint> height_; // 0 where it is hidden
    CGRect decidedIn_;               // the room for cards
    CGRect decidedFor_;              // the picture
};

} // namespace tesmar
