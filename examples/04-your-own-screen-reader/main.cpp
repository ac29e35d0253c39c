// Prints what a screen reader would say of the panel, and operates it as one does. A host's own
// bridge to the desktop's screen readers looks like this.
//
//     04-your-own-screen-reader
#include "tesmar/platform/ui/UIAccessibility.h"
#include "tesmar/tesmar.h"

#include <cstdio>

using namespace tesmar;

void say(const UIAccessibleElement& element, int depth = 0) {
    std::printf("%*s%s%s%s%s\n", 2 * depth, "", element.name.c_str(),
                element.value.empty() ? "" : ", ", element.value.c_str(),
                element.has(UIAccessibleStateSelected) ? ", selected" : "");
}

void sayAll(const std::vector<UIAccessibleElement>& elements, int depth = 0) {
    for (const auto& element : elements) {
        say(element, depth);
        sayAll(element.children, depth + 1);
    }
}

struct Reader : UIAccessibilityObserver {
    void treeChanged(const Elements& tree) override { sayAll(tree); }
    void elementChanged(const UIAccessibleElement&, const UIAccessibleElement& now) override {
        say(now);
    }
    void announced(std::string_view text) override {
        std::printf("%.*s\n", int(text.size()), text.data());
    }
};

int main() {
    NSBundle::setMainBundle(TESMARHostBundle("org.tesmar.example"));
    const auto window = UIWindow::windowWithSize({640, 360});
    window->presentViewController(make<TESMARViewController>(), false);

    Reader reader;
    window->setAccessibilityObserver(&reader);
    window->updateAccessibility(); // in every turn of the host's loop
    performAccessibleAction(*window, "textColorOpacityStepper", UIAccessibleAction::decrease, 0);
    window->updateAccessibility();
    performAccessibleAction(*window, "resetButton", UIAccessibleAction::press, 0);
    window->updateAccessibility();
    window->setAccessibilityObserver(nullptr); // before the reader is destroyed
}
