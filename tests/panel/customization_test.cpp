// What a host may put in the place of the library's own parts: delegates of any kind, and
// subclasses.
#include "panel_fixture.h"

#include "tesmar/platform/foundation/runtime.h"

#include <algorithm>
#include <array>
#include <deque>

namespace tesmar {
namespace {

constexpr const char* kEveryCall = "switch style willDisappear ";

// Uses the panel once: each call of a delegate is due once.
void use(const Ref<TESMARViewController>& panel) {
    HeadlessHost host({568, 320});
    host.window()->presentViewController(panel, false);
    for (const char* control : {"CCSwitch", "textColorPicker.5"})
        host.tap(centerOf(*host.window(), control));
    panel->dismissViewControllerAnimated(false);
}

// An object of the runtime that happens to publish the delegate's selectors.
class Listener : public NSObject {
    TESMAR_CLASS
  public:
    void switched(bool) { log.record("switch"); }
    void styled(const Ref<NSDictionary>&) { log.record("style"); }
    void disappears() { log.record("willDisappear"); }
    CallLog log;
};
Class& Listener::classObject() {
    static Class type("Listener", &NSObject::classObject(), allocator<Listener>(),
                      {method<&Listener::switched>("CCSwitchValueChanged:"),
                       method<&Listener::styled>("CCStyleAttributesChanged:"),
                       method<&Listener::disappears>("CCViewControllerWillDisappear")});
    return type;
}

TEST_F(PanelTest, DelegatesMayBeBorrowedOrBeObjectsOfTheRuntime) {
    const auto panel = make<TESMARViewController>();
    const auto listener = make<Listener>();
    const std::array<Value, 1> argument{Ref<NSObject>(listener)};
    performSelector(*panel, Selector("setDelegate:"), argument);
    EXPECT_EQ(performSelector(*panel, Selector("delegate")), argument[0]);
    use(panel);
    EXPECT_EQ(listener->log.calls, kEveryCall);

    CallLog log;
    std::optional<TESMARBorrowedDelegate> borrowed(std::in_place, log);
    panel->setDelegate(borrowed->delegate());
    use(panel);
    log.action = [&] { borrowed.reset(); }; // the next call is the last one
    use(panel);
    EXPECT_EQ(log.calls, std::string(kEveryCall) + "switch ");
}

// The panel at rest, while a stepper is pressed, and after the touch.
struct Screen {
    explicit Screen(double scale) : host({568, 320}, scale) {}
    void present() { host.window()->presentViewController(make<TESMARViewController>(), false); }
    void touch(UITouchPhase phase) {
        const CGPoint center = centerOf(*host.window(), "textColorOpacityStepper");
        host.touch(phase, center - CGPoint{30, 0});
    }
    void take() {
        host.advance(0.5);
        host.render();
        pictures.emplace_back(host.pixels().begin(), host.pixels().end());
    }
    HeadlessHost host;
    std::vector<std::vector<std::uint32_t>> pictures;
};

// Windows of different scales draw, in turn, what each draws alone, whichever was made last.
TEST_F(PanelTest, WindowsOfTwoScalesAreIndependent) {
    const auto pictures = [](const std::vector<double>& scales, std::size_t wanted) {
        std::deque<Screen> screens;
        for (const double scale : scales)
            screens.emplace_back(scale);
        for (Screen& screen : screens)
            screen.present();
        for (const auto phase : {UITouchPhase::moved, UITouchPhase::began, UITouchPhase::ended}) {
            std::ranges::for_each(screens, [&](Screen& screen) { screen.touch(phase); });
            std::ranges::for_each(screens, &Screen::take);
        }
        return screens[wanted].pictures;
    };
    for (const double scale : {1.0, 2.0, 1.5}) {
        const auto alone = pictures({scale}, 0);
        EXPECT_NE(alone[0], alone[1]);
        for (const double other : {1.0, 2.0, 3.0}) {
            EXPECT_TRUE(pictures({scale, other}, 0) == alone) << scale << " before " << other;
            EXPECT_TRUE(pictures({other, scale}, 1) == alone) << scale << " after " << other;
        }
    }
}

struct ComputedPanel : TESMARViewController {
    double autoHideInterval() const override { return 2; }
    void selfDismiss() override { log->record("selfDismiss"); }
    bool rememberChangedStyle() const override { return true; }
    Ref<TESMARViewControllerDelegate> delegate() const override { return log; }
    Ref<NSMutableDictionary> CCStyleAttributes() const override { return style; }
    void setCCStyleAttributes(const Ref<NSMutableDictionary>& attributes) override {
        style = attributes;
        TESMARViewController::setCCStyleAttributes(make<NSMutableDictionary>());
    }
    Ref<CallLog> log = std::make_shared<CallLog>();
    Ref<NSMutableDictionary> style = make<NSMutableDictionary>();
};

TEST_F(PanelTest, GoesThroughTheAccessorsOfASubclass) {
    const auto panel = make<ComputedPanel>();
    use(panel);
    EXPECT_TRUE(UIColor::redColor()->isEqual(panel->style->objectForKey("NSColor").get()));
    EXPECT_TRUE(panel->style->isEqual(TESMARConfig::sessionClosedCaptureStyle().get()));
    NSRunLoop& loop = NSRunLoop::mainRunLoop();
    loop.advanceTo(loop.now() + 2);
    EXPECT_EQ(panel->log->calls, std::string(kEveryCall) + "selfDismiss ");
}

TEST_F(PanelTest, ReportsASaveThatFails) {
    const auto panel = make<TESMARViewController>();
    panel->setRememberChangedStyle(true);
    setDiagnosticHandler({});
    for (const auto& parent : {directory, std::filesystem::path("/dev/null"), directory}) {
        NSUserDefaults::standardUserDefaults()->setPreferencesPath(parent / "saved");
        panel->resetButtonTap();
        EXPECT_EQ(panel->saveFailure().empty(), parent == directory);
    }
}

// Selecting a swatch replaces the list of swatches.
struct ComputedPicker : ColorPicker {
    struct Swatch : ColorPickerButton {
        void setSelected(bool) override { picker->setColorButtons({}); }
        ColorPicker* picker = nullptr;
    };
    const Ref<UILabel>& titleLabel() const override { return title; }
    const Ref<UIColor>& selectedColor() const override { return CCConstants::paletteColors()[2]; }
    const std::vector<Ref<ColorPickerButton>>& colorButtons() const override { return buttons; }
    void setColorButtons(std::vector<Ref<ColorPickerButton>> list) override { buttons = list; }
    Ref<UILabel> title = make<UILabel>();
    std::vector<Ref<ColorPickerButton>> buttons;
};

TEST(Widgets, GoThroughTheAccessorsOfASubclass) {
    const auto picker = makeWith<ComputedPicker>(&ColorPicker::initWithTitle, "COLOR");
    EXPECT_EQ(picker->title->text(), "COLOR");
    EXPECT_EQ(picker->title->superview(), picker.get());
    picker->setSelectedColor(nullptr);
    EXPECT_TRUE(picker->buttons[2]->isSelected());
    const auto swatch = make<ComputedPicker::Swatch>();
    swatch->setColor(UIColor::whiteColor());
    swatch->picker = picker.get();
    picker->setColorButtons({swatch, picker->buttons[0]});
    picker->setSelectedColor(nullptr);
    EXPECT_TRUE(picker->buttons.empty());
}

struct RenamingPicker : FontNamePickerView {
    std::string selectedFontName() const override { return "Other"; }
};

TEST(Widgets, TheNameShownIsThatOfTheList) {
    const auto picker = make<RenamingPicker>();
    const auto label = make<UILabel>();
    const auto button = make<UIButton>();
    picker->setFontNameLabel(label), picker->setPrevButton(button), picker->setNextButton(button);
    picker->updateFonts({"Courier"});
    picker->selectFontName("Courier");
    EXPECT_EQ(label->text(), "Courier");
    EXPECT_DEATH(picker->nextFont(), "no font name at index 1 of 1");
}

struct UnmadePicker : FontPicker {
    bool init() override { return true; }
};

TEST(Widgets, AFontPickerWithoutItsInitializerIsFatal) {
    const auto picker = make<UnmadePicker>();
    EXPECT_DEATH(picker->selectedFont(), "^tesmar: a FontPicker must be made by init");
    EXPECT_DEATH(picker->applyAppearance({}), "^tesmar: a FontPicker must be made by init");
}

} // namespace
} // namespace tesmar
