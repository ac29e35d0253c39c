// The bar at the bottom of the window: play and pause, position and duration, and the button that
// opens the caption panel.
#pragma once

#include "SeekBar.h"

#include "tesmar/platform/ui/UIButton.h"

#include <functional>
#include <optional>

class ControlsBar : public tesmar::UIView {
    TESMAR_CLASS

  public:
    static constexpr tesmar::CGFloat kHeight = 44;

    // Called when the viewer uses the controls; may be empty.
    std::function<void()> onPlay;
    std::function<void(double progress)> onSeek; // 0 to 1
    std::function<void()> onCaptions;

    enum class Play { playing, paused, unavailable };
    void showPlay(Play play);
    // Seconds.
    void showTime(double time, double duration);
    void showCaptionsOn(bool on);

    bool initWithFrame(tesmar::CGRect frame) override;
    void layoutSubviews() override;

    // Actions of the controls, called through the object runtime.
    void playTapped();
    void seeked();
    void captionsTapped();

  private:
    std::optional<Play> shown_;
    tesmar::Ref<tesmar::UIButton> play_;
    tesmar::Ref<SeekBar> seekBar_;
    tesmar::Ref<tesmar::UILabel> time_;
    tesmar::Ref<tesmar::UIButton> captions_;
};
