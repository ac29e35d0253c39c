#include "random_session.h"

#include "host_parts.h"
#include "invariants.h"
#include "tesmar/platform/ui/UIAccessibility.h"

#include <limits>
#include <set>

namespace tesmar {
namespace {

using P = UITouchPhase;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kTenYears = 10 * 365.25 * 86400;
constexpr double kHostile[] = {kNaN,  kInfinity,    -kInfinity,    0,     -1,     1e-6,  0.3, 3,
                               65535, 2147483648.0, -2147483648.0, 1e300, -1e300, 5e-324};
constexpr double kScales[] = {1, 1, 1.5, 2, 0, -1, 1e-6, 1e6, kNaN};
constexpr double kWaits[] = {0, 0.001, 1.0 / 60, 0.05, 0.16, 0.3, 1, 4};
constexpr CGSize kUsual{480, 420};
constexpr CGSize kSizes[] = {kUsual, {320, 480}, {568, 320},    {1, 1},
                             {0, 0}, {65535, 2}, {65535, 65535}};
constexpr OutsideTap kOutsideTaps[] = {OutsideTap::dismisses, OutsideTap::ignored};
constexpr MotionSetting kMotions[] = {MotionSetting::full, MotionSetting::reduced};
constexpr const char* kLanguages[] = {"en", "ar", "de", "he"};
constexpr TESMARMirroring kMirrorings[] = {TESMARMirroring::controls, TESMARMirroring::panel};
constexpr TESMARContrast kContrasts[] = {TESMARContrast::normal, TESMARContrast::high};
constexpr std::int64_t kFar = std::numeric_limits<std::int64_t>::max() - 250;
constexpr double kMaximumPixels = 400'000; // larger windows are not painted, to save time

constexpr const char* kControls[] = {
    "textColorPicker.1", "CCSwitch",        "textColorOpacityStepper", "fontPicker.next",
    "fontPicker.prev",   "fontPicker.size", "backgroundColorPicker.3", "resetButton",
    "preset.4",          "edgePicker.3",    "windowColorPicker.2",     "windowColorOpacityStepper",
    "undoButton",        "legibilityHint"};

class Session {
  public:
    explicit Session(const std::function<std::optional<std::uint8_t>()>& nextByte)
        : nextByte_(nextByte) {
        log_->action = [this] { callBack(); };
        replacePanel();
        window_->presentViewController(panel_, true);
    }
    ~Session() { disconnect(); }

    void play() {
        while (!ended_) {
            try {
                depth_ = 0;
                act();
            } catch (const HostError&) {
            }
            requireValidState(*window_);
        }
        finish();
    }

  private:
    void finish() {
        disconnect();
        dismissAll(*window_, [this](double seconds) { pump(seconds); });
        panel_ = nullptr;
        for (const auto& weak : panels_)
            if (const auto panel = weak.lock())
                NSRunLoop::mainRunLoop().cancelPreviousPerformRequests(*panel);
        pump(20);
        requireIdle(*window_);
        for (const auto& weak : panels_)
            if (!weak.expired())
                throw InvariantViolated("a panel was not released");
        window_->setSize(kUsual);
        window_->setScale(1);
        window_->setSafeAreaInsets({});
        window_->setCaptionArea(std::nullopt);
        replacePanel();
        window_->presentViewController(panel_, true);
        pump(1);
        log_->calls.clear();
        tap(*window_, centerOf(*window_, "textColorPicker.4"), now_);
        if (log_->calls != "style ")
            throw InvariantViolated("a new panel in the same window ignores a tap");
    }

    // In a callback of the panel the host may do anything.
    void callBack() {
        const auto choice = below(16);
        if (choice == 0)
            throw HostError();
        if (choice > 4 || depth_ >= 3)
            return;
        ++depth_;
        act();
        --depth_;
    }
    void disconnect() {
        log_->action = {};
        setMotionSetting(MotionSetting::full);
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
        return kind == 2 ? now_ - kTenYears : kind == 3 ? kNaN : kind == 4 ? kInfinity : now_;
    }
    void pump(double seconds) { NSRunLoop::mainRunLoop().advanceTo(now_ += seconds); }
    CGPoint target() { // usually a control
        const char* const control = any(kControls);
        return below(4) == 0 ? point() : centerOf(*window_, control);
    }

    void act() {
        const auto w = window_; // a callback may replace both
        const auto p = panel_;
        auto choice = below(102);
        const CGPoint at = target(), other = point();
        const double time = eventTime();
        const UIEdgeInsets insets{at.x, at.y, other.x, other.y};
        const std::optional area(CGRect(at.x, at.y, other.y, other.x));
        const struct {
            std::uint32_t weight;
            std::function<void()> perform;
        } actions[] = {
            {14, [&] { touch(*w, at, time); }},
            {12, [&] { tap(*w, at, time); }},
            {6, [&] { drag(*w, at, time); }},
            {3, [&] { w->wheel(at, other, time); }},
            {1, [&] { w->hover(at); }},
            {14, [&] { pump(any(kWaits)), NSRunLoop::mainRunLoop().advanceTo(time); }},
            {6, [&] { w->key(key(), static_cast<UIKeyRepeat>(below(2)), time); }},
            {3, [&] { pressKeyAndLook(); }},
            {4, [&] { listenAndOperate(*w, time); }},
            {2, [&] { w->cancelTouches(time); }},
            {1, [&] { w->setScale(any(kScales)); }},
            {2, [&] { w->setSize(below(4) == 0 ? area->size : any(kSizes)); }},
            {1, [&] { w->setSafeAreaInsets(below(2) == 0 ? insets : UIEdgeInsets()); }},
            {1, [&] { w->setCaptionArea(below(2) == 0 ? area : std::nullopt); }},
            {1, [&] { w->setOutsideTap(any(kOutsideTaps)), setMotionSetting(any(kMotions)); }},
            {5, [&] { w->presentViewController(p, below(3) != 0); }},
            {3, [&] { p->dismissViewControllerAnimated(below(3) != 0); }},
            {3, [&] { replacePanel(); }},
            {2, [&] { window_ = UIWindow::windowWithSize(kUsual); }},
            {1, [&] { p->setAutoHideInterval(below(2) == 0 ? any(kHostile) : any(kWaits)); }},
            {1, [&] { p->setRememberChangedStyle(below(32) == 0); }}, // saving takes time
            {1, [&] { p->setDelegate(below(4) == 0 ? nullptr : log_), p->setCCEnabled(below(2)); }},
            {3, [&] { p->setCCStyleAttributes(style(at, other)->mutableCopy()); }},
            {2, [&] { setAppearance(*p); }},
            {10, [&] { render(*w); }},
        };
        const auto* action = actions;
        for (; choice >= action->weight; ++action)
            choice -= action->weight;
        action->perform();
    }

    void touch(UIWindow& w, CGPoint at, double time) {
        const auto phase = static_cast<P>(below(4));
        w.touch(phase, below(16) == 0 ? -kFar - below(250) : below(3), at, time);
    }
    UIKey key() { return static_cast<UIKey>(below(12)); }
    // Without interference, a key leaves the focus where the viewer sees it.
    void pressKeyAndLook() {
        const auto w = window_;
        const auto action = std::exchange(log_->action, {});
        w->cancelTouches(now_);
        const auto isLive = [&](const auto& c) { return c && !c->isBeingDismissed(); };
        const auto before = w->presentedViewController();
        const bool wasLive = isLive(before);
        w->key(key(), UIKeyRepeat::pressed, now_);
        pump(1);
        log_->action = action;
        const auto focus = w->focus();
        const auto top = w->presentedViewController();
        const CGSize size = w->frame().size;
        const bool hasRoom = size.width >= 300 && size.height >= 300 && !w->captionArea() &&
                             w->safeAreaInsets() == UIEdgeInsets();
        if (wasLive && top == before && isLive(top) && hasRoom &&
            (!focus || focus->frame.isEmpty()))
            throw InvariantViolated("the focus cannot be seen");
    }
    // As a screen reader, which is sometimes not there.
    void listenAndOperate(UIWindow& w, double time) {
        if (below(4) == 0)
            w.setAccessibilityObserver(below(2) == 0 ? nullptr : &reader_);
        w.updateAccessibility();
        std::vector<UIAccessibleElement> all = accessibleTree(w);
        std::set<std::string> identifiers;
        for (std::size_t i = 0; i < all.size(); ++i) { // grows by the children
            const auto element = all[i];
            all.insert(all.end(), element.children.begin(), element.children.end());
            if (!identifiers.insert(element.identifier).second || element.name.empty())
                throw InvariantViolated("unnamed or twice in the tree: " + element.identifier);
        }
        if (all.empty())
            return;
        const auto element = all[below(all.size())];
        if (!element.actions.empty())
            performAccessibleAction(w, element.identifier,
                                    element.actions[below(element.actions.size())], time);
    }
    void tap(UIWindow& w, CGPoint at, double time) {
        w.touch(P::began, 1, at, time), w.touch(P::ended, 1, at, now_);
    }
    void drag(UIWindow& w, CGPoint to, double time) {
        w.touch(P::began, 2, to, time);
        for (auto i = below(6); i > 0; --i) {
            (below(2) == 0 ? to.x : to.y) += below(40) - 20.0;
            pump(below(5) * 0.02), w.touch(P::moved, 2, to, eventTime());
        }
        w.touch(P::ended, 2, to, now_);
    }
    Ref<NSDictionary> style(CGPoint a, CGPoint b) {
        const auto font = UIFont::fontWithName(UIFont::systemFontFamily(), any(kHostile));
        return NSDictionary::dictionaryWithEntries({{std::string(NSForegroundColorAttributeName),
                                                     UIColor::colorWithRed(a.x, a.y, b.x, b.y)},
                                                    {std::string(NSFontAttributeName), font}});
    }
    void setAppearance(TESMARViewController& panel) {
        panel.setLanguage(any(kLanguages));
        panel.setTextScale(below(2) == 0 ? 1 : number() / 200);
        panel.setMirroring(any(kMirrorings));
        panel.setContrast(any(kContrasts));
    }
    void replacePanel() {
        isExtended_ = !isExtended_;
        panel_ = isExtended_ ? make<TESMARExtendedViewController>() : make<TESMARViewController>();
        panel_->setDelegate(log_);
        panels_.push_back(panel_);
    }

    void render(UIWindow& window) {
        const CGSize size = window.pixelSize();
        const int stride = static_cast<int>(size.width) * 4;
        const int strides[] = {0, -4, stride - 4, stride + 2}; // too short or not in whole pixels
        if (!window.render(pixels_, any(strides)).empty())
            throw InvariantViolated("it painted into rows that are too short");
        if (size.width * size.height > kMaximumPixels || &window != window_.get())
            return;
        if (&window != painted_ || size != paintedSize_)
            pixels_.assign(static_cast<std::size_t>(size.width * size.height), 0);
        painted_ = &window;
        paintedSize_ = size;
        window.render(pixels_, stride);
        if (below(8) == 0 && &window == window_.get() && window.pixelSize() == size)
            requireFullyPainted(window, pixels_);
    }

    const std::function<std::optional<std::uint8_t>()>& nextByte_;
    bool ended_ = false;
    int depth_ = 0; // of nested callbacks
    double now_ = NSRunLoop::mainRunLoop().now();
    Ref<UIWindow> window_ = UIWindow::windowWithSize(kUsual);
    Ref<TESMARViewController> panel_;
    std::vector<WeakRef<TESMARViewController>> panels_; // all that were made
    bool isExtended_ = false;
    const std::shared_ptr<CallLog> log_ = std::make_shared<CallLog>();
    struct Reader : UIAccessibilityObserver {
        void treeChanged(const Elements&) override {}
        void elementChanged(const UIAccessibleElement&, const UIAccessibleElement&) override {}
        void announced(std::string_view) override {}
    } reader_;
    std::vector<std::uint32_t> pixels_;
    const UIWindow* painted_ = nullptr;
    CGSize paintedSize_;
};

} // namespace

void playRandomSession(const std::function<std::optional<std::uint8_t>()>& nextByte) {
    Session(nextByte).play();
}

} // namespace tesmar
