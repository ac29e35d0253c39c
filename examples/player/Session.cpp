#include "Session.h"

#include "BackdropPicture.h"

#include "tesmar/platform/ui/UIViewing.h"

#include <filesystem>
#include <stdexcept>

using namespace tesmar;

namespace {

// Seconds.
constexpr double kVideoTimeout = 20; // for the video engine to show a moment
constexpr double kDefaultAutoHide = 5;
constexpr double kCaptionSearchStep = 0.5;
constexpr double kPanelAnimation = 0.6;
constexpr double kDragPhase = 0.2; // each of the three parts of a drag
constexpr double kBetweenTaps = 0.4;

constexpr int kCaptionSearchSteps = 24;

Options withAutoHide(Options options) {
    options.autoHide = options.autoHide.value_or(kDefaultAutoHide);
    return options;
}

// The distance by which `inner` has to move to lie within `outer`, along one axis.
CGFloat distanceInto(CGFloat innerLow, CGFloat innerHigh, CGFloat outerLow, CGFloat outerHigh) {
    if (innerLow < outerLow)
        return outerLow - innerLow;
    return innerHigh > outerHigh ? std::max(outerHigh - innerHigh, outerLow - innerLow) : 0;
}

} // namespace

Session::Session(const Options& options)
    : directory_(options.pictures.value()), host_(options.size, options.scale.value_or(1)),
      autoHide_(options.autoHide.value_or(kDefaultAutoHide)), isExtended_(options.isExtended) {
    std::filesystem::create_directories(directory_);
    if (!options.video.empty()) {
        video_ = std::make_unique<Video>(Video::Sound::off, std::function<void()>());
        video_->play(options.video);
    }
    if (options.television)
        host_.window()->setSafeAreaInsets(safeAreaInsets(UIViewing::television));
    player_ = std::make_unique<Player>(host_.window(), video_.get(), withAutoHide(options));
    showVideo();
}

std::string Session::videoFailure() const {
    return video_ ? video_->state().failure : "";
}

// --- Time ---------------------------------------------------------------------------------------

void Session::advance(double seconds) {
    host_.advance(seconds);
    videoTime_ += seconds;
}

// Moves the video to the current time, or on to the next caption if one follows soon.
void Session::showVideo() {
    if (!video_)
        return;
    for (int step = 0; step < kCaptionSearchSteps; ++step) {
        const double moment = videoTime_ + step * kCaptionSearchStep;
        if (!video_->showMoment(moment, kVideoTimeout) || moment > video_->state().duration)
            break;
        if (!video_->state().caption.empty()) {
            videoTime_ = moment;
            break;
        }
    }
    player_->showVideoState();
}

// --- Touches ------------------------------------------------------------------------------------

// The first move passes the drag threshold at once, so that the finger does not press a control.
// The finger rests before it lifts, so that the content does not glide on.
void Session::drag(CGPoint start, CGPoint distance) {
    const auto threshold = [](CGFloat along) {
        return along == 0 ? 0 : std::copysign(UIScrollView::kDragThreshold, along);
    };
    const CGPoint dragStart = start + CGPoint{threshold(distance.x), threshold(distance.y)};
    host_.touch(UITouchPhase::began, start);
    host_.touch(UITouchPhase::moved, dragStart);
    advance(kDragPhase);
    host_.touch(UITouchPhase::moved, dragStart + distance);
    advance(kDragPhase);
    host_.touch(UITouchPhase::ended, dragStart + distance);
    advance(kDragPhase);
}

void Session::scrollIntoView(const UIView& view, const CGRect& rect) {
    const UIScrollView* const scroll = UIScrollView::enclosing(view.superview());
    if (!scroll)
        return;
    const CGRect viewport = scroll->convertRectTo(scroll->bounds(), nullptr);
    const CGRect target = view.convertRectTo(rect, nullptr);
    const CGFloat dx = distanceInto(target.minX(), target.maxX(), viewport.minX(), viewport.maxX());
    const CGFloat dy = distanceInto(target.minY(), target.maxY(), viewport.minY(), viewport.maxY());
    // One direction at a time: scrolling locks to the direction of the first move.
    if (dy != 0)
        drag(viewport.center(), {0, dy});
    if (dx != 0)
        drag(viewport.center(), {dx, 0});
}

void Session::tap(const std::string& identifier) {
    UIView& window = *host_.window();
    const auto [stepper, half] = UIStepper::halfWithIdentifier(window, identifier);
    UIView* const view = stepper ? stepper : window.viewWithIdentifier(identifier);
    if (!view)
        throw std::runtime_error("no control is called " + identifier);
    const CGRect rect = stepper ? stepper->halfRect(half) : view->bounds();
    host_.window()->layoutIfNeeded();
    scrollIntoView(*view, rect);
    host_.tap(view->convertPointTo(rect.center(), nullptr));
    host_.render(); // motions start in a frame
    advance(kBetweenTaps);
}

// --- Pictures -----------------------------------------------------------------------------------

std::string Session::writePicture(const std::string& name) {
    showVideo();
    const int width = host_.pixelWidth();
    const int height = host_.pixelHeight();
    std::vector<std::uint32_t> backdrop(host_.pixels().size());
    if (video_ && videoFailure().empty())
        video_->draw(backdrop.data(), width, height, width * 4);
    else
        drawBackdrop(backdrop.data(), width, height, width * 4);

    const std::string number = std::to_string(++picturesWritten_);
    const std::string file = (number.size() < 2 ? "0" : "") + number + "-" + name + ".png";
    std::string path = (std::filesystem::path(directory_) / file).string();
    if (!host_.writePNG(path, backdrop))
        throw std::runtime_error("cannot write " + path);
    return path;
}

void Session::playExtended(const std::function<void(const char*)>& picture) {
    tap("preset.4");
    picture("preset");

    tap("undoButton");
    tap("edgePicker.3");
    picture("edge");

    tap("windowColorPicker.6");
    picture("window");

    tap("edgePicker.0");
    tap("backgroundColorPicker.5"); // the colour of the text
    picture("hint");
}

void Session::play(const std::function<void(const std::string&)>& onPicture) {
    const auto picture = [&](const char* name) { onPicture(writePicture(name)); };
    picture("captions");

    tap("captionsButton");
    advance(kPanelAnimation);
    picture("panel");

    tap("textColorPicker.5");
    picture("text-color");

    for (int step = 0; step < 4; ++step)
        tap("textColorOpacityStepper.decrement");
    picture("text-opacity");

    tap("fontPicker.next");
    for (int step = 0; step < 3; ++step)
        tap("fontPicker.size.increment");
    picture("font");

    if (isExtended_)
        playExtended(picture);

    tap("resetButton");
    picture("reset");

    advance(autoHide_ + 1);
    picture("auto-hidden");
}
