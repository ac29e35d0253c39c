#include "ControlsBar.h"

#include "tesmar/platform/foundation/runtime.h"

#include <cstdio>

using namespace tesmar;

namespace {

constexpr CGFloat kPlayWidth = 68;
constexpr CGFloat kTimeWidth = 104;
constexpr CGFloat kCaptionsWidth = 56;
constexpr CGFloat kGap = 8;
constexpr CGFloat kTitleSize = 16;
// A narrower bar hides the time.
constexpr CGFloat kMinWidthForTime = 440;

Ref<UIButton> button(const char* title, const char* identifier) {
    auto button = UIButton::buttonWithType(UIButtonType::custom);
    button->setTitle(title, UIControlStateNormal);
    button->setTitleColor(UIColor::colorWithWhite(1, 0.5), UIControlStateHighlighted);
    button->titleLabel()->setFont(UIFont::systemFontOfSize(kTitleSize));
    button->setAccessibilityIdentifier(identifier);
    return button;
}

std::string minutesAndSeconds(double seconds) {
    const auto whole = static_cast<long>(finite(seconds, 0, 1e6, 0));
    char text[32];
    std::snprintf(text, sizeof text, "%ld:%02ld", whole / 60, whole % 60);
    return text;
}

} // namespace

Class& ControlsBar::classObject() {
    static Class& type = *new Class("ControlsBar", &UIView::classObject(), allocator<ControlsBar>(),
                                    {method<&ControlsBar::playTapped>("playTapped"),
                                     method<&ControlsBar::seeked>("seeked"),
                                     method<&ControlsBar::captionsTapped>("captionsTapped")});
    return type;
}

bool ControlsBar::initWithFrame(CGRect frame) {
    if (!UIView::initWithFrame(frame))
        return false;
    setBackgroundColor(UIColor::colorWithWhite(0, 0.6));
    play_ = button("Play", "playButton");
    captions_ = button("CC", "captionsButton");
    seekBar_ = make<SeekBar>();
    seekBar_->setAccessibilityIdentifier("seekBar");
    time_ = make<UILabel>();
    time_->setFont(UIFont::systemFontOfSize(13));
    time_->setTextColor(UIColor::whiteColor());
    time_->setTextAlignment(NSTextAlignment::center);
    for (const Ref<UIView>& view :
         {Ref<UIView>(play_), Ref<UIView>(seekBar_), Ref<UIView>(time_), Ref<UIView>(captions_)})
        addSubview(view);
    play_->addTarget(refTo(this), Selector("playTapped"), UIControlEventTouchUpInside);
    seekBar_->addTarget(refTo(this), Selector("seeked"), UIControlEventValueChanged);
    captions_->addTarget(refTo(this), Selector("captionsTapped"), UIControlEventTouchUpInside);
    showPlay(Play::unavailable);
    showTime(0, 0);
    return true;
}

void ControlsBar::layoutSubviews() {
    const CGFloat width = bounds().size.width;
    const bool showsTime = width >= kMinWidthForTime;
    const CGFloat captionsX = width - kCaptionsWidth;
    const CGFloat timeX = captionsX - (showsTime ? kTimeWidth + kGap : 0);
    play_->setFrame({kGap, 0, kPlayWidth, kHeight});
    seekBar_->setFrame(
        {kGap + kPlayWidth, 0, std::max(0.0, timeX - kPlayWidth - 2 * kGap), kHeight});
    time_->setHidden(!showsTime);
    time_->setFrame({timeX, 0, kTimeWidth, kHeight});
    captions_->setFrame({captionsX, 0, kCaptionsWidth, kHeight});
}

// --- State --------------------------------------------------------------------------------------

void ControlsBar::showPlay(Play play) {
    if (play == shown_)
        return;
    shown_ = play;
    play_->setTitle(play == Play::playing ? "Pause" : "Play", UIControlStateNormal);
    for (const Ref<UIView>& view :
         {Ref<UIView>(play_), Ref<UIView>(seekBar_), Ref<UIView>(time_)}) {
        view->setAlpha(play == Play::unavailable ? 0.4 : 1);
        view->setUserInteractionEnabled(play != Play::unavailable);
    }
}

void ControlsBar::showTime(double time, double duration) {
    seekBar_->setProgress(duration > 0 ? time / duration : 0);
    time_->setText(minutesAndSeconds(time) + " / " + minutesAndSeconds(duration));
}

void ControlsBar::showCaptionsOn(bool on) {
    captions_->setSelected(on); // for screen readers; the look is the colour
    captions_->setTitleColor(on ? UIColor::colorWithRed(1, 0.85, 0.2, 1)
                                : UIColor::colorWithWhite(1, 0.7),
                             UIControlStateNormal);
}

// --- Actions ------------------------------------------------------------------------------------

void ControlsBar::playTapped() {
    if (onPlay)
        onPlay();
}

void ControlsBar::seeked() {
    if (onSeek)
        onSeek(seekBar_->progress());
}

void ControlsBar::captionsTapped() {
    if (onCaptions)
        onCaptions();
}
