// The panel while a screen reader observes its window.
#include "panel_fixture.h"
#include "tesmar/platform/ui/UIAccessibility.h"

namespace tesmar {
namespace {

struct Reader : UIAccessibilityObserver {
    void treeChanged(const Elements&) override { heard += "tree; "; }
    void elementChanged(const UIAccessibleElement&, const UIAccessibleElement& now) override {
        heard += now.name + (now.has(UIAccessibleStateSelected) ? " selected" : "") +
                 (now.value.empty() ? "; " : ", " + now.value + "; ");
    }
    void announced(std::string_view text) override { heard += std::string(text) + "! "; }
    std::string heard;
};

class ReaderTest : public PanelTest {
  protected:
    ReaderTest() {
        panel->setAutoHideInterval(4);
        host.window()->presentViewController(panel, false);
    }
    bool isOpen() const { return panel->presentingViewController() != nullptr; }
    std::string heardAfter(const char* identifier, UIAccessibleAction action) {
        EXPECT_TRUE(performAccessibleAction(*host.window(), identifier, action, host.now()));
        host.window()->updateAccessibility();
        return std::exchange(reader.heard, {});
    }

    HeadlessHost host{{568, 360}};
    Ref<TESMARViewController> panel = make<TESMARViewController>();
    Reader reader;
};

TEST_F(ReaderTest, AutoHideWaits) {
    host.advance(3);
    host.window()->setAccessibilityObserver(&reader);
    host.advance(60);
    EXPECT_TRUE(isOpen());
    panel->setAutoHideWaitsForReaders(false);
    panel->resetButtonTap();
    host.advance(3);
    EXPECT_TRUE(isOpen());
    panel->setAutoHideWaitsForReaders(true);
    panel->resetButtonTap();
    host.advance(60);
    host.window()->setAccessibilityObserver(nullptr);
    host.advance(3);
    EXPECT_TRUE(isOpen());
    host.advance(2);
    EXPECT_FALSE(isOpen());
    EXPECT_FALSE(NSRunLoop::mainRunLoop().nextDeadline());
}

TEST_F(ReaderTest, EachChangeIsHeardOnce) {
    using enum UIAccessibleAction;
    host.window()->setAccessibilityObserver(&reader);
    host.window()->updateAccessibility();
    reader.heard.clear();
    EXPECT_EQ(heardAfter("textColorPicker.4", press),
              "Text colour, white, 3 of 8; Text colour, yellow selected, 5 of 8; ");
    EXPECT_EQ(heardAfter("textColorOpacityStepper", decrease),
              "Text opacity, 90 percent; Text opacity, increase; ");
    EXPECT_EQ(heardAfter("CCSwitch", press), "Closed captions, on; ");
    EXPECT_EQ(heardAfter("fontPicker.size", increase), "Font size, 20 points; ");
    EXPECT_EQ(heardAfter("resetButton", press),
              "Text colour, white selected, 3 of 8; Text colour, yellow, 5 of 8; "
              "Font size, 17 points; Text opacity, 100 percent; Text opacity, increase; "
              "Reset to the default style! ");
    EXPECT_EQ(heardAfter("card", dismiss), "tree; ");
}

} // namespace
} // namespace tesmar
