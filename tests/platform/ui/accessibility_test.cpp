// What screen readers are told of a window, and what they do in it.
#include "fixture.h"
#include "tesmar/platform/ui/UIAccessibility.h"
#include "tesmar/platform/ui/UIButton.h"
#include "tesmar/platform/ui/UIStepper.h"
#include "tesmar/platform/ui/UISwitch.h"
#include "tesmar/platform/ui/UIWindow.h"

namespace tesmar {
namespace {

using Elements = std::vector<UIAccessibleElement>;
using enum UIAccessibleAction;

// The identifiers in reading order, children in parentheses; "!" disabled, "+" on, "~" offscreen.
std::string outline(const Elements& elements) {
    std::string text;
    for (const auto& e : elements) {
        text += (text.empty() ? "" : " ") + e.identifier;
        text += e.has(UIAccessibleStateDisabled) ? "!" : "";
        text += e.has(UIAccessibleStateOn) ? "+" : "";
        text += e.has(UIAccessibleStateOffscreen) ? "~" : "";
        text += e.children.empty() ? "" : "(" + outline(e.children) + ")";
    }
    return text;
}

struct Observer : UIAccessibilityObserver {
    void treeChanged(const Elements& tree) override { log += "tree " + outline(tree) + "; "; }
    void elementChanged(const UIAccessibleElement& before,
                        const UIAccessibleElement& after) override {
        log += after.identifier + " " + before.value + ">" + after.value + "; ";
    }
    void announced(std::string_view text) override { log += "say " + std::string(text) + "; "; }
    std::string take() { return std::exchange(log, {}); }
    std::string log;
};

class AccessibilityTest : public UITest {
  protected:
    template <class T>
    Ref<T> put(const char* identifier, CGRect frame) {
        auto view = add<T>(frame);
        view->setAccessibilityIdentifier(identifier);
        return view;
    }
    std::string outlined() { return outline(accessibleTree(*host.window())); }
    bool perform(const char* identifier, UIAccessibleAction action) {
        return performAccessibleAction(*host.window(), identifier, action, host.now());
    }
    Ref<UIViewController> present(UIModalPresentationStyle style) {
        auto controller = make<UIViewController>();
        controller->setModalPresentationStyle(style);
        host.window()->presentViewController(controller, false);
        return controller;
    }
};

TEST_F(AccessibilityTest, ElementsAreReadRowByRow) {
    const auto label = put<UILabel>("below", {0, 60, 90, 20});
    label->setText("text");
    put<UILabel>("empty", {0, 90, 90, 20});
    put<UIButton>("right", {100, 8, 60, 40});
    put<UISwitch>("left", {0, 0, 51, 31})->setOn(true);
    put<UIButton>("out", {290, 500, 60, 40});
    const auto hidden = put<UIButton>("hidden", {200, 0, 40, 40});
    hidden->setAlpha(0.005);
    put<UIStepper>("stepper", {0, 120, 94, 29});
    put<UIButton>("", {150, 120, 40, 30})->setEnabled(false);
    EXPECT_EQ(outlined(), "left+ right below "
                          "stepper(stepper.decrement! stepper.increment) /0/7! out~");
    root().setSemanticContentAttribute(UISemanticContentAttribute::forceRightToLeft);
    root().setUserInteractionEnabled(false);
    EXPECT_EQ(outlined(), "right! left!+ below "
                          "/0/7! stepper!(stepper.decrement! stepper.increment!) out!~");
}

TEST_F(AccessibilityTest, DialogsComeFirstAndCoverWhenFullScreen) {
    put<UIButton>("behind", {0, 0, 60, 40});
    present(UIModalPresentationStyle::card);
    EXPECT_EQ(outlined(), "card behind");
    const auto full = present(UIModalPresentationStyle::fullScreen);
    EXPECT_EQ(outlined(), "/2");
    EXPECT_TRUE(perform("/2", dismiss));
    EXPECT_TRUE(full->isBeingDismissed());
    EXPECT_EQ(outlined(), "card behind");
    EXPECT_FALSE(perform("/2", dismiss));
}

TEST_F(AccessibilityTest, ActionsAreTaps) {
    const auto button = put<UIButton>("button", {0, 500, 60, 40}); // out of sight
    button->addTarget(listener, Selector("down"), UIControlEventTouchDown);
    button->addTarget(listener, Selector("up"), UIControlEventTouchUpInside);
    const auto stepper = put<UIStepper>("stepper", {0, 60, 94, 29});
    stepper->setContinuous(false);
    stepper->addTarget(listener, Selector("changed"), UIControlEventValueChanged);
    const struct {
        const char* identifier;
        UIAccessibleAction action;
        bool done;
        std::string log;
    } cases[] = {
        {"button", press, true, "down up "},
        {"button", increase, false, ""},
        {"nothing", press, false, ""},
        {"", press, false, ""},
        {"stepper", decrease, false, ""}, // at its end
        {"stepper", increase, true, "changed "},
        {"stepper.increment", press, true, "changed "},
        {"stepper.decrement", press, true, "changed "},
        {"stepper", press, false, ""},
    };
    for (const auto& [identifier, action, done, log] : cases) {
        EXPECT_EQ(perform(identifier, action), done) << identifier;
        EXPECT_EQ(listener->take(), log) << identifier;
    }
    EXPECT_EQ(stepper->value(), 1);
    EXPECT_TRUE(button->isHighlighted()); // for a moment, as after a short tap
    button->setEnabled(false);
    EXPECT_FALSE(perform("button", press));
    host.touch(UITouchPhase::began, {70, 70});
    EXPECT_FALSE(perform("stepper", increase)); // under a finger
}

TEST_F(AccessibilityTest, AnObserverIsToldOfEachChangeOnce) {
    const auto stepper = put<UIStepper>("stepper", {0, 60, 94, 29});
    host.window()->announce("unheard");
    Observer observer;
    host.window()->setAccessibilityObserver(&observer);
    const std::pair<std::function<void()>, std::string> steps[] = {
        {[] {}, "tree stepper(stepper.decrement! stepper.increment); "},
        {[] {}, ""},
        {[&] { stepper->setValue(5); }, "stepper 0>5; stepper.decrement >; "},
        {[&] {
             stepper->setFrame({0, 70, 94, 29});
         },
         ""},
        {[&] { host.window()->announce("done"); }, "say done; "},
        {[&] { stepper->setHidden(true); }, "tree ; "},
    };
    for (const auto& [change, log] : steps) {
        change();
        host.window()->updateAccessibility();
        EXPECT_EQ(observer.take(), log);
    }
    host.window()->setAccessibilityObserver(nullptr);
    stepper->setHidden(false);
    host.window()->updateAccessibility();
    EXPECT_EQ(observer.take(), "");
}

} // namespace
} // namespace tesmar
