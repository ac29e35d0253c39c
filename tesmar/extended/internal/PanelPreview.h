// What the host's captions show, in the panel itself, where the panel covers them. It has no height
// otherwise.
#pragma once

#include "tesmar/captions/TESMARCaptionView.h"

namespace tesmar {

class PanelPreview : public UIView {
    TESMAR_CLASS

  public:
    bool init() override;

    // Follows `captions` until it is given null. The panel and the captions must be in one window
    // for the panel to cover them.
    void follow(const Ref<TESMARCaptionView>& captions);
    // Shows the captions if `panel`, a view in the window, covers them. To be called after each
    // layout. Once shown, they stay until the window or their own place changes: they may
    // themselves be why the panel has become larger.
    void update(const UIView& panel);
    bool isShown() const { return !isHidden(); }

    void layoutSubviews() override;

  private:
    void setShown(bool shown);

    WeakRef<TESMARCaptionView> captions_;
    Ref<TESMARCaptionView> copy_;
    Ref<NSLayoutConstraint> height_;
    CGRect decidedFor_; // the place of the captions
    CGSize decidedIn_;  // the window
};

} // namespace tesmar
