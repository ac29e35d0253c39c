#include "Session.h"

#include "BackdropPicture.h"

#include <filesystem>
#include <stdexcept>

using namespace tesmar;

namespace {

constexpr double kPatience = 20;       // seconds, for the video engine
constexpr double kDefaultAutoHide = 5; // seconds
constexpr double kCaptionStep = 0.5;   // seconds between looks for a caption
constexpr int kCaptionLooks = 24;
constexpr double kPanelArrives = 0.6; // seconds
constexpr double kDragSeconds = 0.2;  // of each third of a drag
constexpr double kBetweenTaps = 0.4;  // seconds

Options withAutoHide(Options options) {
    options.autoHide = options.autoHide.value_or(kDefaultAutoHide);
    return options;
}

// How far `inner` has to move to lie within `outer`, along one axis.
CGFloat way(CGFloat innerLow, CGFloat innerHigh, CGFloat outerLow, CGFloat outerHigh) {
    if (innerLow < outerLow)
        return outerLow - innerLow;
    return innerHigh > outerHigh ? std::max(outerHigh - innerHigh, outerLow - innerLow) : 0;
}

} // namespace

Session::Session(const Options& options)
    : directory_(options.pictures.value()), host_(options.size, options.scale.value_or(1)),
      autoHide_(options.autoHide.value_or(kDefaultAutoHide)) {
    std::filesystem::create_directories(directory_);
    if (!options.video.empty()) {
        video_ = std::make_unique<Video>(Video::Sound::off, std::function<void()>());
        video_->play(options.video);
    }
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

// From the present moment on to the next one at which something is said; a silent video stays at
// the present moment.
void Session::showVideo() {
    if (!video_)
        return;
    for (int look = 0; look < kCaptionLooks; ++look) {
        const double moment = videoTime_ + look * kCaptionStep;
        if (!video_->showMoment(moment, kPatience) || moment > video_->state().duration)
            break;
        if (!video_->state().caption.empty()) {
            videoTime_ = moment;
            break;
        }
    }
    player_->showVideoState();
}

// --- Fingers ------------------------------------------------------------------------------------

// A finger that sets off at once, or it would press what lies below it, and rests before its lift,
// or it would throw the content.
void Session::drag(CGPoint start, CGPoint distance) {
    const auto hold = [](CGFloat way) {
        return way == 0 ? 0 : std::copysign(UIScrollView::kDragThreshold, way);
    };
    const CGPoint taken = start + CGPoint{hold(distance.x), hold(distance.y)};
    host_.touch(UITouchPhase::began, start);
    host_.touch(UITouchPhase::moved, taken);
    advance(kDragSeconds);
    host_.touch(UITouchPhase::moved, taken + distance);
    advance(kDragSeconds);
    host_.touch(UITouchPhase::ended, taken + distance);
    advance(kDragSeconds);
}

void Session::scrollIntoView(const UIView& view, const CGRect& rect) {
    const UIScrollView* const scroll = UIScrollView::enclosing(view.superview());
    if (!scroll)
        return;
    const CGRect port = scroll->convertRectTo(scroll->bounds(), nullptr);
    const CGRect target = view.convertRectTo(rect, nullptr);
    const CGFloat dx = way(target.minX(), target.maxX(), port.minX(), port.maxX());
    const CGFloat dy = way(target.minY(), target.maxY(), port.minY(), port.maxY());
    // One direction at a time, as thumbs do.
    if (dy != 0)
        drag(port.center(), {0, dy});
    if (dx != 0)
        drag(port.center(), {dx, 0});
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

    const std::string file = "0" + std::to_string(++written_) + "-" + name + ".png";
    const std::string path = (std::filesystem::path(directory_) / file).string();
    if (!host_.writePNG(path, backdrop))
        throw std::runtime_error("cannot write " + path);
    return path;
}

void Session::play(const std::function<void(const std::string&)>& wrote) {
    const auto picture = [&](const char* name) { wrote(writePicture(name)); };
    picture("captions");

    tap("captionsButton");
    advance(kPanelArrives);
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

    tap("resetButton");
    picture("reset");

    advance(autoHide_ + 1);
    picture("auto-hidden");
}
