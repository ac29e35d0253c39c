#include "Player.h"

#include <cmath>

using namespace tesmar;

namespace {

constexpr CGFloat kMargin = 16;                   // around captions, points
constexpr CGFloat kMinHeightForBarAndPanel = 400; // points
// Lines: captions are written for two; in a narrow picture they need a third.
constexpr int kLines = 2;
constexpr int kLinesWhenNarrow = 3;
constexpr CGFloat kNarrow = 400; // points
// The panel needs this much of the height, in points; where captions leave less, they are drawn
// above it.
constexpr CGFloat kLeftForPanel = 196;
constexpr const char* kSampleCaption = "Captions look like this.\nThe panel changes them.";

} // namespace

Player::Player(Ref<UIWindow> window, Video* video, const Options& options)
    : window_(std::move(window)), safeArea_(window_->safeAreaInsets()), video_(video),
      videoDrawsCaptions_(video && options.renderer == Options::Renderer::mpv),
      remembersStyle_(options.remembersStyle), panelShowsCaptions_(options.isExtended),
      // The first captions already have the style that the viewer chose last time.
      style_(TESMARConfig::sessionOrDefaultClosedCaptureStyle()),
      panel_(makePanel(options.isExtended)) {
    if (options.autoHide)
        panel_->setAutoHideInterval(*options.autoHide);
    panel_->setRememberChangedStyle(remembersStyle_);
    panel_->setDelegate(borrowed_.delegate());

    buildViews();
    captions_->setStyle(style_);
    setCaptionsOn(captionsAreOn_);
    showVideoState();
    layOut();
}

Player::~Player() {
    for (const Ref<UIView>& view :
         {Ref<UIView>(captions_), Ref<UIView>(controls_), Ref<UIView>(message_)})
        view->removeFromSuperview();
}

Ref<TESMARViewController> Player::makePanel(bool extended) const {
    if (!extended)
        return make<TESMARViewController>();
    auto panel = make<TESMARExtendedViewController>();
    panel->setPreview(captions_);
    return panel;
}

void Player::buildViews() {
    captions_->setAccessibilityIdentifier("captions");
    message_->setTextColor(UIColor::colorWithWhite(1, 0.75));
    message_->setTextAlignment(NSTextAlignment::center);
    message_->setUserInteractionEnabled(false);

    controls_->onPlay = [this] { togglePause(); };
    controls_->onCaptions = [this] { togglePanel(); };
    controls_->onSeek = [this](double progress) {
        video_->seekTo(progress * video_->state().duration);
    };
    const auto root = window_->rootViewController()->view();
    for (const Ref<UIView>& view :
         {Ref<UIView>(message_), Ref<UIView>(captions_), Ref<UIView>(controls_)})
        root->addSubview(view);
}

void Player::layOut() {
    const CGSize size = window_->frame().size;
    message_->setHidden(isPanelOpen());
    // In a low window the bar makes room for the panel.
    controls_->setHidden(isPanelOpen() && size.height < kMinHeightForBarAndPanel);
    const CGFloat bar = controls_->isHidden() ? 0 : ControlsBar::kHeight;
    const CGFloat barTop = size.height - bar;
    controls_->setFrame({0, barTop, size.width, ControlsBar::kHeight});
    message_->setFrame({kMargin, kMargin, std::max(0.0, size.width - 2 * kMargin), 24});

    const CGRect picture{0, 0, size.width,
                         std::max(0.0, std::min(barTop, size.height - safeArea_.bottom))};
    const CGRect room = CGRectInset(picture, {safeArea_.top, std::max(kMargin, safeArea_.left),
                                              kMargin / 2, std::max(kMargin, safeArea_.right)});
    captions_->setArea(room);
    reserveCaptionArea(room);
    window_->setSafeAreaInsets(
        {safeArea_.top, safeArea_.left, std::max(bar, safeArea_.bottom), safeArea_.right});
    window_->setCaptionArea(reserved_);
    haveVideoDrawCaptions();
    // Where the panel leaves too little room, large captions lie in front of it, unless it shows
    // them itself.
    const auto root = window_->rootViewController()->view();
    const bool isInFront = isPanelOpen() && !captionsFit_ && !panelShowsCaptions_;
    UIView* const wanted = isInFront ? window_.get() : root.get();
    if (captions_->superview() != wanted)
        wanted->addSubview(captions_);
}

// Two lines in the present style, as far as they leave room for the panel.
void Player::reserveCaptionArea(const CGRect& room) {
    const CGRect lines =
        captions_->areaForLines(room.size.width < kNarrow ? kLinesWhenNarrow : kLines);
    const CGFloat height =
        std::min(lines.size.height, std::max(0.0, room.size.height - kLeftForPanel));
    captionsFit_ = height == lines.size.height;
    reserved_ = {room.minX(), room.maxY() - height, room.size.width, height};
}

// --- The video ----------------------------------------------------------------------------------

void Player::showVideoState() {
    if (!plays()) {
        message_->setText(video_ ? "This video cannot be played"
                                 : "No video: start as player FILE");
        captions_->setText(kSampleCaption);
        controls_->showPlay(ControlsBar::Play::unavailable);
        return;
    }
    const Video::State& state = video_->state();
    message_->setText("");
    captions_->setText(state.caption);
    showCaptions();
    controls_->showPlay(state.paused || state.atEnd ? ControlsBar::Play::paused
                                                    : ControlsBar::Play::playing);
    controls_->showTime(state.time, state.duration);
}

void Player::togglePause() {
    if (plays())
        video_->togglePause();
}

void Player::seekBy(double seconds) {
    if (plays())
        video_->seekBy(seconds);
}

void Player::tapOnPicture() {
    if (isPanelOpen())
        togglePanel();
    else
        togglePause();
}

// --- The panel ----------------------------------------------------------------------------------

bool Player::isPanelOpen() const {
    return panel_->presentingViewController() && !panel_->isBeingDismissed();
}

void Player::togglePanel() {
    if (isPanelOpen()) {
        panel_->dismissViewControllerAnimated(true);
        return;
    }
    panel_->setCCEnabled(captionsAreOn_);
    window_->presentViewController(panel_, true);
    // A panel that appears shows the stored style: that is out of date unless changes are stored,
    // and else another program may have changed it.
    if (remembersStyle_)
        CCStyleAttributesChanged(panel_->CCStyleAttributes());
    else
        panel_->setCCStyleAttributes(style_->mutableCopy());
    layOut();
}

void Player::CCViewControllerWillDisappear() {
    layOut();
}

void Player::CCSwitchValueChanged(bool on) {
    setCaptionsOn(on);
}

void Player::CCStyleAttributesChanged(const Ref<NSDictionary>& attributes) {
    style_ = attributes;
    captions_->setStyle(style_);
    layOut();
}

void Player::setCaptionsOn(bool on) {
    captionsAreOn_ = on;
    controls_->showCaptionsOn(on);
    haveVideoDrawCaptions();
    showCaptions();
}

// The view stays the panel's preview, and shows its sample, also where the video has the captions.
void Player::showCaptions() {
    const bool videoShows = videoDrawsCaptions_ && plays() && !video_->state().caption.empty();
    captions_->setHidden(!captionsAreOn_ || videoShows);
}

void Player::haveVideoDrawCaptions() {
    if (!videoDrawsCaptions_)
        return;
    std::vector<std::pair<std::string, std::string>> properties;
    const CGFloat height = window_->frame().size.height;
    if (captionsAreOn_ && height > 0) {
        constexpr CGFloat kReference = 720; // what mpv's margins count in, whatever the height
        for (const auto& [name, value] :
             TESMARMpvStyle(TESMARCaptionStyleFrom(style_), height).fields)
            properties.emplace_back(name, value);
        const CGFloat margin = (height - reserved_.maxY()) * kReference / height;
        properties.emplace_back("sub-margin-y", std::to_string(std::lround(margin)));
    }
    video_->drawCaptions(properties);
}
