#include "random_session.h"

#include "soundness.h"
#include "tesmar/platform/ui/Motion.h"
#include "tesmar/tesmar.h"

#include <limits>

namespace tesmar {
namespace {

using P = UITouchPhase;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double kTenYears = 10 * 365.25 * 86400;
constexpr double kHostile[] = {kNoNumber, kInfinity,    -kInfinity,    0,     -1,     1e-6,  0.3, 3,
                               65535,     2147483648.0, -2147483648.0, 1e300, -1e300, 5e-324};
constexpr double kScales[] = {1, 1, 1.5, 2, 0, -1, 1e-6, 1e6, kNoNumber};
constexpr double kWaits[] = {0, 0.001, 1.0 / 60, 0.05, 0.16, 0.3, 1, 4};
constexpr CGSize kUsual{480, 420};
constexpr CGSize kSizes[] = {kUsual, {320, 480}, {568, 320},    {1, 1},
                             {0, 0}, {65535, 2}, {65535, 65535}};
constexpr std::int64_t kFar = std::numeric_limits<std::int64_t>::max() - 250;
constexpr double kMostPixels = 400'000; // beyond them a frame takes too long to see much

constexpr const char* kControls[] = {
    "textColorPicker.1", "CCSwitch",        "textColorOpacityStepper", "fontPicker.next",
    "fontPicker.prev",   "fontPicker.size", "backgroundColorPicker.3", "resetButton"};

struct HostError {};

CGPoint middle(const UIView& view) {
    return view.convertRectTo(view.bounds(), nullptr).center();
}

class Session {
  public:
    explicit Session(const std::function<std::optional<std::uint8_t>()>& nextByte)
        : nextByte_(nextByte) {
        listener_->session = this;
        replacePanel();
        window_->presentViewController(panel_, true);
    }
    ~Session() {
        listener_->session = nullptr;
        setMotionSetting(MotionSetting::full);
    }

    long play() {
        long events = 0;
        for (; !ended_; ++events) {
            try {
                depth_ = 0;
                act();
            } catch (const HostError&) {
            }
            requireLegalState(*window_);
        }
        return events;
    }

    void finish() {
        listener_->session = nullptr;
        setMotionSetting(MotionSetting::full);
        window_->cancelTouches(now_);
        while (const auto top = window_->presentedViewController()) {
            top->dismissViewControllerAnimated(false);
            pump(1); // it may have been on its way already
        }
        panel_ = nullptr;
        for (const auto& weak : panels_)
            if (const auto panel = weak.lock())
                NSRunLoop::mainRunLoop().cancelPreviousPerformRequests(*panel);
        pump(20);
        requireRest(*window_);
        if (NSRunLoop::mainRunLoop().nextDeadline())
            throw Unsound("something is due at rest");
        for (const auto& weak : panels_)
            if (!weak.expired())
                throw Unsound("a panel was never let go");
        window_->setSize(kUsual);
        window_->setScale(1);
        window_->setSafeAreaInsets({});
        window_->setCaptionArea(std::nullopt);
        replacePanel();
        window_->presentViewController(panel_, true);
        pump(1);
        const CGPoint at = middle(*window_->viewWithIdentifier("textColorPicker.4"));
        const int calls = listener_->calls;
        window_->touch(P::began, 1, at, now_);
        window_->touch(P::ended, 1, at, now_);
        if (listener_->calls != calls + 1)
            throw Unsound("afterwards a tap is not heard");
        panel_->dismissViewControllerAnimated(false);
        pump(1);
    }

  private:
    struct Listener : TESMARViewControllerDelegate {
        void CCSwitchValueChanged(bool) override { heard(); }
        void CCStyleAttributesChanged(const Ref<NSDictionary>&) override { heard(); }
        void CCViewControllerWillDisappear() override { heard(); }
        void heard() {
            ++calls;
            if (session)
                session->heard();
        }
        Session* session = nullptr;
        int calls = 0;
    };

    // The panel calls the host, which may do anything there too.
    void heard() {
        const auto choice = below(16);
        if (choice == 0)
            throw HostError();
        if (choice > 4 || depth_ >= 3)
            return;
        ++depth_;
        act();
        --depth_;
    }

    std::uint32_t below(std::size_t count) {
        const auto byte = nextByte_();
        ended_ = ended_ || !byte;
        return byte.value_or(0) % static_cast<std::uint32_t>(count);
    }
    template <class T, std::size_t N>
    T any(const T (&values)[N]) {
        return values[below(N)];
    }
    double number() { return below(24) == 0 ? any(kHostile) : below(250) * 2.5 - 40; }
    CGPoint point() {
        const double x = number();
        return {x, number()};
    }
    double eventTime() {
        const auto kind = below(128);
        if (kind == 1 && below(64) == 0)
            return now_ += kTenYears;
        return kind == 2 ? now_ - kTenYears : kind == 3 ? kNoNumber : kind == 4 ? kInfinity : now_;
    }
    void pump(double seconds) { NSRunLoop::mainRunLoop().advanceTo(now_ += seconds); }
    CGPoint target() { // mostly a control
        const UIView* const view = window_->viewWithIdentifier(any(kControls));
        return below(4) == 0 || !view ? point() : middle(*view);
    }

    void act() {
        const auto w = window_; // a call back may replace them
        const auto p = panel_;
        const auto choice = below(88);
        const CGPoint at = target(), other = point();
        const double time = eventTime();
        if (choice < 14) {
            w->touch(static_cast<P>(below(4)), below(16) == 0 ? -kFar - below(250) : below(3), at,
                     time);
        } else if (choice < 26) {
            w->touch(P::began, 1, at, time), w->touch(P::ended, 1, at, now_);
        } else if (choice < 32) {
            w->touch(P::began, 2, at, time);
            CGPoint to = at;
            for (auto i = below(6); i > 0; --i) {
                (below(2) == 0 ? to.x : to.y) += below(40) - 20.0;
                pump(below(5) * 0.02), w->touch(P::moved, 2, to, eventTime());
            }
            w->touch(P::ended, 2, to, now_);
        } else if (choice < 36) {
            w->wheel(at, other, time);
        } else if (choice < 50) {
            pump(any(kWaits)), NSRunLoop::mainRunLoop().advanceTo(time);
        } else if (choice < 51) {
            w->key(UIKey::escape, time);
        } else if (choice < 53) {
            w->cancelTouches(time);
        } else if (choice < 54) {
            w->setScale(any(kScales));
        } else if (choice < 56) {
            w->setSize(below(4) == 0 ? CGSize{other.x, other.y} : any(kSizes));
        } else if (choice < 59) {
            w->setSafeAreaInsets(below(2) == 0 ? UIEdgeInsets{at.x, at.y, other.x, other.y}
                                               : UIEdgeInsets{});
            w->setCaptionArea(below(2) == 0 ? std::optional(CGRect(at.x, at.y, other.y, other.x))
                                            : std::nullopt);
            w->setOutsideTap(below(2) == 0 ? OutsideTap::dismisses : OutsideTap::ignored);
            setMotionSetting(below(4) == 0 ? MotionSetting::reduced : MotionSetting::full);
        } else if (choice < 64) {
            w->presentViewController(p, below(3) != 0, [l = listener_] { l->heard(); });
        } else if (choice < 67) {
            p->dismissViewControllerAnimated(below(3) != 0);
        } else if (choice < 70) {
            replacePanel();
        } else if (choice < 72) {
            window_ = UIWindow::windowWithSize(kUsual);
        } else if (choice < 75) {
            p->setAutoHideInterval(below(2) == 0 ? any(kHostile) : any(kWaits));
            p->setRememberChangedStyle(below(32) == 0); // saving takes time
            p->setCCEnabled(below(2) == 0);
            p->setDelegate(below(4) == 0 ? nullptr : listener_);
        } else if (choice < 78) {
            const auto style = make<NSMutableDictionary>();
            style->setObject(UIColor::colorWithRed(at.x, at.y, other.x, other.y),
                             NSForegroundColorAttributeName);
            if (const auto font = UIFont::fontWithName(UIFont::systemFontFamily(), any(kHostile)))
                style->setObject(font, NSFontAttributeName);
            p->setCCStyleAttributes(style);
        } else {
            render(*w);
        }
    }

    void replacePanel() {
        std::erase_if(panels_, [](const auto& weak) { return weak.expired(); });
        panel_ = make<TESMARViewController>();
        panel_->setDelegate(listener_);
        panels_.push_back(panel_);
    }

    void render(UIWindow& window) {
        const CGSize size = window.pixelSize();
        const int stride = static_cast<int>(size.width) * 4;
        std::uint32_t pixel = 0;
        const int tooShort[] = {0, -4, stride - 4, stride + 2};
        if (!window.render(nullptr, stride).empty() ||
            !window.render(&pixel, any(tooShort)).empty())
            throw Unsound("it painted on nothing, or on rows that are too short");
        if (size.width * size.height > kMostPixels || &window != window_.get())
            return;
        if (&window != painted_ || size != paintedSize_)
            pixels_.assign(static_cast<std::size_t>(size.width * size.height), 0);
        painted_ = &window;
        paintedSize_ = size;
        window.render(pixels_.data(), stride);
        if (below(8) == 0 && &window == window_.get() && window.pixelSize() == size)
            requireSamePicture(window, pixels_);
    }

    const std::function<std::optional<std::uint8_t>()>& nextByte_;
    bool ended_ = false;
    int depth_ = 0; // of calls back
    double now_ = NSRunLoop::mainRunLoop().now();
    Ref<UIWindow> window_ = UIWindow::windowWithSize(kUsual);
    Ref<TESMARViewController> panel_;
    std::vector<WeakRef<TESMARViewController>> panels_; // all that there were
    Ref<Listener> listener_ = std::make_shared<Listener>();
    std::vector<std::uint32_t> pixels_;
    const UIWindow* painted_ = nullptr;
    CGSize paintedSize_;
};

} // namespace

long playRandomSession(const std::function<std::optional<std::uint8_t>()>& nextByte) {
    Session session(nextByte);
    const long events = session.play();
    session.finish();
    return events;
}

} // namespace tesmar
