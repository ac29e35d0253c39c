// The player without its window: captions over the picture, a bar of controls, and the caption
// panel. It owns the captions' state: whether they are on, and their style.
#pragma once

#include "ControlsBar.h"
#include "Video.h"
#include "options.h"

#include "tesmar/tesmar.h"

class Player : private tesmar::TESMARViewControllerDelegate {
  public:
    // Adds its views to `window`. `video` must outlive the player; null when there is no video.
    Player(tesmar::Ref<tesmar::UIWindow> window, Video* video, const Options& options);
    ~Player() override;
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    // Call when the window's size has changed.
    void layOut();
    // Call when the video's state may have changed.
    void showVideoState();

    void togglePanel();
    void togglePause();
    void seekBy(double seconds);
    // A tap outside all controls. Closes an open panel, or else pauses or resumes the video.
    void tapOnPicture();

    // True from the call that opens the panel to the one that closes it.
    bool isPanelOpen() const;

  private:
    void CCSwitchValueChanged(bool on) override;
    void CCStyleAttributesChanged(const tesmar::Ref<tesmar::NSDictionary>& attributes) override;
    void CCViewControllerWillDisappear() override;

    bool plays() const { return video_ && video_->state().failure.empty(); }
    tesmar::Ref<tesmar::TESMARViewController> makePanel(bool extended) const;
    void buildViews();
    void reserveCaptionArea(const tesmar::CGRect& room);
    void setCaptionsOn(bool on);
    void showCaptions();
    void haveVideoDrawCaptions();

    tesmar::Ref<tesmar::UIWindow> window_;
    const tesmar::UIEdgeInsets safeArea_; // of the window, without the bar
    Video* video_;
    bool captionsAreOn_ = true;
    bool videoDrawsCaptions_;
    bool remembersStyle_;
    bool panelShowsCaptions_; // where it covers them
    tesmar::Ref<tesmar::NSDictionary> style_;

    tesmar::Ref<tesmar::TESMARCaptionView> captions_ = tesmar::make<tesmar::TESMARCaptionView>();
    // The part of the picture at its bottom that the panel keeps clear of.
    tesmar::CGRect reserved_;
    bool captionsFit_ = true; // into it
    tesmar::Ref<ControlsBar> controls_ = tesmar::make<ControlsBar>();
    tesmar::Ref<tesmar::UILabel> message_ = tesmar::make<tesmar::UILabel>();
    const tesmar::Ref<tesmar::TESMARViewController> panel_;
    // This player owns the panel, which must not own it in turn.
    const tesmar::TESMARBorrowedDelegate borrowed_{*this};
};
