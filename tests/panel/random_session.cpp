#include "random_session.h"

#include "soundness.h"

#include "tesmar/platform/ui/Motion.h"

#include <limits>

namespace tesmar {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kHostile[] = {kNoNumber, kInfinity, -kInfinity, 0,     -0.0,         -1,
                               1e-6,      0.3,       3,          65535, 2147483648.0, -2147483648.0,
                               1e300,     -1e300,    5e-324,     1e6};
constexpr double kTenYears = 10 * 365.25 * 86400;
constexpr double kMostPixels = 400'000; // beyond them a frame takes too long to see much
constexpr CGSize kUsual{480, 420};

struct HostError {};

CGPoint middleOf(const UIView& view) {
    return view.convertRectTo(view.bounds(), nullptr).center();
}

void addControls(const UIView& view, std::vector<const UIView*>& controls) {
    if (isLeafControl(view))
        controls.push_back(&view);
    for (const auto& child : view.subviews())
        addControls(*child, controls);
}

} // namespace

struct RandomSession::Listener : TESMARViewControllerDelegate {
    void CCSwitchValueChanged(bool) override { heard(); }
    void CCStyleAttributesChanged(const Ref<NSDictionary>&) override { heard(); }
    void CCViewControllerWillDisappear() override { heard(); }
    void heard() {
        ++calls;
        if (session)
            session->heard();
    }
    RandomSession* session = nullptr;
    int calls = 0;
};

RandomSession::RandomSession(ByteSource& bytes)
    : bytes_(bytes), now_(NSRunLoop::mainRunLoop().now()), listener_(std::make_shared<Listener>()) {
    listener_->session = this;
    replaceWindow();
    replacePanel();
    window_->presentViewController(panel_, true);
}

RandomSession::~RandomSession() {
    listener_->session = nullptr;
    setMotionSetting(MotionSetting::full);
}

bool RandomSession::step() {
    try {
        act();
    } catch (const HostError&) {
    }
    requireLegalState(*window_);
    return !ended_;
}

void RandomSession::finish() {
    listener_->session = nullptr;
    setMotionSetting(MotionSetting::full);
    window_->cancelTouches(now_);
    while (const auto top = window_->presentedViewController()) {
        top->dismissViewControllerAnimated(false);
        NSRunLoop::mainRunLoop().advanceTo(now_ += 1); // it may have been on its way already
    }
    for (const auto& weak : panels_)
        if (const auto panel = weak.lock())
            NSRunLoop::mainRunLoop().cancelPreviousPerformRequests(*panel);
    panel_ = nullptr;
    NSRunLoop::mainRunLoop().advanceTo(now_ += 20);
    requireRest(*window_);
    for (const auto& weak : panels_)
        if (!weak.expired())
            throw Unsound("a panel was never let go");

    window_->setSize(kUsual);
    window_->setScale(1);
    window_->setSafeAreaInsets({});
    window_->setCaptionArea(std::nullopt);
    const auto panel = make<TESMARViewController>();
    panel->setDelegate(listener_);
    window_->presentViewController(panel, true);
    NSRunLoop::mainRunLoop().advanceTo(now_ += 1);
    for (const char* name : {"textColorPicker.4", "CCSwitch", "resetButton", "textColorPicker.5"}) {
        const int calls = listener_->calls;
        const CGPoint at = middleOf(*window_->viewWithIdentifier(name));
        window_->touch(UITouchPhase::began, 1, at, now_);
        window_->touch(UITouchPhase::ended, 1, at, now_);
        if (listener_->calls != calls + 1)
            throw Unsound(std::string("afterwards a tap is not heard: ") + name);
    }
    panel->dismissViewControllerAnimated(false);
    NSRunLoop::mainRunLoop().advanceTo(now_ += 1);
}

// --- Decisions ----------------------------------------------------------------------------------

std::uint32_t RandomSession::below(std::uint32_t count) {
    const auto byte = bytes_.next();
    ended_ = ended_ || !byte;
    return byte.value_or(0) % count;
}

double RandomSession::hostileNumber() {
    return kHostile[below(std::size(kHostile))];
}

double RandomSession::coordinate() {
    return below(24) == 0 ? hostileNumber() : below(250) * 2.5 - 40;
}

CGPoint RandomSession::point() {
    const double x = coordinate();
    return {x, coordinate()};
}

double RandomSession::eventTime() {
    const auto kind = below(128);
    if (kind == 1 && below(64) == 0)
        return now_ += kTenYears;
    return kind == 2 ? now_ - kTenYears : kind == 3 ? kNoNumber : kind == 4 ? kInfinity : now_;
}

CGPoint RandomSession::somethingOn(UIWindow& window) {
    std::vector<const UIView*> controls;
    addControls(window, controls);
    if (controls.empty() || below(8) == 0)
        return point();
    return middleOf(*controls[below(static_cast<std::uint32_t>(controls.size()))]);
}

void RandomSession::act() {
    struct Deed {
        std::uint32_t weight;
        void (RandomSession::*does)();
    };
    using S = RandomSession;
    static constexpr Deed deeds[] = {
        {14, &S::touch},        {12, &S::tap},          {6, &S::drag},        {4, &S::wheel},
        {14, &S::wait},         {1, &S::escape},        {2, &S::loseTouches}, {3, &S::resize},
        {2, &S::setAreas},      {5, &S::present},       {3, &S::dismiss},     {2, &S::replacePanel},
        {1, &S::replaceWindow}, {3, &S::setProperties}, {3, &S::assignStyle}, {1, &S::setMotion},
        {8, &S::render},        {1, &S::misrender}};
    std::uint32_t total = 0;
    for (const Deed& deed : deeds)
        total += deed.weight;
    std::uint32_t choice = below(total);
    for (const Deed& deed : deeds) {
        if (choice < deed.weight) {
            (this->*deed.does)();
            return;
        }
        choice -= deed.weight;
    }
}

// The panel calls the host, which may do anything there too.
void RandomSession::heard() {
    const auto choice = below(16);
    if (choice == 0)
        throw HostError();
    if (choice > 4 || depth_ >= 3)
        return;
    struct Deeper {
        explicit Deeper(int& d) : depth(d) { ++depth; }
        ~Deeper() { --depth; }
        int& depth;
    } const deeper(depth_);
    act();
}

// --- Deeds --------------------------------------------------------------------------------------

void RandomSession::touch() {
    const auto window = window_;
    const auto phase = static_cast<UITouchPhase>(below(4));
    const std::int64_t id =
        below(16) == 0 ? std::numeric_limits<std::int64_t>::min() + below(250) : below(3);
    const CGPoint at = below(2) == 0 ? somethingOn(*window) : point();
    window->touch(phase, id, at, eventTime());
}

void RandomSession::tap() {
    const auto window = window_;
    const CGPoint at = somethingOn(*window);
    window->touch(UITouchPhase::began, 1, at, eventTime());
    window->touch(UITouchPhase::ended, 1, at, now_);
}

void RandomSession::drag() {
    const auto window = window_;
    CGPoint at = somethingOn(*window);
    const double step = below(40) - 20.0;
    window->touch(UITouchPhase::began, 2, at, eventTime());
    for (std::uint32_t i = below(6); i > 0; --i) {
        at = below(2) == 0 ? CGPoint{at.x, at.y + step} : CGPoint{at.x + step, at.y};
        NSRunLoop::mainRunLoop().advanceTo(now_ += below(5) * 0.02);
        window->touch(UITouchPhase::moved, 2, at, eventTime());
    }
    window->touch(UITouchPhase::ended, 2, at, now_);
}

void RandomSession::wheel() {
    const auto window = window_;
    const CGPoint at = somethingOn(*window);
    const CGPoint delta = point();
    window->wheel(at, delta, eventTime());
}

void RandomSession::wait() {
    static constexpr double kWaits[] = {0, 0.001, 1.0 / 60, 0.05, 0.16, 0.3, 1, 4};
    now_ += kWaits[below(std::size(kWaits))];
    NSRunLoop::mainRunLoop().advanceTo(eventTime());
}

void RandomSession::escape() {
    window_->key(UIKey::escape, eventTime());
}

void RandomSession::loseTouches() {
    window_->cancelTouches(eventTime());
}

void RandomSession::resize() {
    const auto window = window_;
    static constexpr CGSize kSizes[] = {{320, 480}, {568, 320},     {1, 1},   {0, 0},
                                        {65535, 2}, {65535, 65535}, {40, 300}};
    static constexpr double kScales[] = {1, 1.5, 2, 0, -1, 1e-6, 1e6, kNoNumber};
    const auto choice = below(24);
    if (choice < 3)
        window->setScale(kScales[below(std::size(kScales))]);
    else if (choice < 3 + std::size(kSizes))
        window->setSize(kSizes[choice - 3]);
    else if (choice < 12)
        window->setSize({hostileNumber(), hostileNumber()});
    else
        window->setSize(kUsual);
}

void RandomSession::setAreas() {
    const auto window = window_;
    const double a = coordinate(), b = coordinate(), c = coordinate(), d = coordinate();
    switch (below(4)) {
    case 0:
        window->setSafeAreaInsets({a, b, c, d});
        break;
    case 1:
        window->setCaptionArea(CGRect(a, b, c, d));
        break;
    case 2:
        window->setSafeAreaInsets({});
        window->setCaptionArea(std::nullopt);
        break;
    default:
        window->setOutsideTap(below(2) == 0 ? OutsideTap::dismisses : OutsideTap::ignored);
    }
}

void RandomSession::present() {
    const bool animated = below(3) != 0;
    const auto completion = [weak = std::weak_ptr<Listener>(listener_)] {
        if (const auto listener = weak.lock())
            listener->heard();
    };
    window_->presentViewController(panel_, animated, completion);
}

void RandomSession::dismiss() {
    const auto panel = panel_;
    panel->dismissViewControllerAnimated(below(3) != 0);
}

void RandomSession::replacePanel() {
    std::erase_if(panels_, [](const auto& weak) { return weak.expired(); });
    panel_ = make<TESMARViewController>();
    panel_->setDelegate(listener_);
    panels_.push_back(panel_);
}

void RandomSession::replaceWindow() {
    window_ = UIWindow::windowWithSize(kUsual);
    pixels_.clear();
}

void RandomSession::setProperties() {
    const auto panel = panel_;
    static constexpr double kIntervals[] = {0.01, 1, 3};
    switch (below(5)) {
    case 0:
        panel->setAutoHideInterval(hostileNumber());
        break;
    case 1:
        panel->setAutoHideInterval(kIntervals[below(std::size(kIntervals))]);
        break;
    case 2: // saving costs time: it is turned off sooner than on
        panel->setRememberChangedStyle(below(16) == 0);
        break;
    case 3:
        panel->setCCEnabled(below(2) == 0);
        break;
    default:
        panel->setDelegate(below(4) == 0 ? nullptr : listener_);
    }
}

void RandomSession::assignStyle() {
    const auto style = make<NSMutableDictionary>();
    const auto color = [this] {
        const double r = hostileNumber(), g = hostileNumber(), b = hostileNumber();
        return UIColor::colorWithRed(r, g, b, below(11) / 10.0);
    };
    if (below(3) != 0)
        style->setObject(color(), NSForegroundColorAttributeName);
    if (below(3) != 0)
        style->setObject(color(), NSBackgroundColorAttributeName);
    if (const auto font = UIFont::fontWithName(UIFont::systemFontFamily(), hostileNumber()))
        style->setObject(font, NSFontAttributeName);
    if (below(8) == 0)
        style->setObject(make<NSObject>(), NSFontAttributeName);
    panel_->setCCStyleAttributes(style);
}

void RandomSession::setMotion() {
    setMotionSetting(below(4) == 0 ? MotionSetting::reduced : MotionSetting::full);
}

// --- Pixels -------------------------------------------------------------------------------------

void RandomSession::render() {
    const auto window = window_;
    const CGSize size = window->pixelSize();
    if (size.width * size.height > kMostPixels)
        return pixels_.clear();
    const auto count = static_cast<std::size_t>(size.width * size.height);
    if (pixels_.size() != count) // the window knows that it has another size
        pixels_.assign(count, 0);
    if (window->needsRender())
        window->render(pixels_.data(), static_cast<int>(size.width) * 4);
    if (below(8) == 0 && window == window_ && window->pixelSize() == size)
        requireSamePicture(*window, pixels_);
}

// Pixels that are none, and rows too short for the surface: nothing is painted, nor forgotten.
void RandomSession::misrender() {
    const auto window = window_;
    const int width = static_cast<int>(window->pixelSize().width);
    const int strides[] = {0, -4, width * 4 - 4, width * 4 + 2};
    if (!window->render(nullptr, width * 4).empty())
        throw Unsound("it painted on nothing");
    std::uint32_t pixel = 0;
    if (!window->render(&pixel, strides[below(4)]).empty())
        throw Unsound("it painted on rows that are too short");
}

} // namespace tesmar
