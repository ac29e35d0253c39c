// Reads the accessible elements of a window from its views.
#pragma once

#include "tesmar/platform/ui/UIAccessibility.h"
#include "tesmar/platform/ui/UIViewController.h"

#include <set>

namespace tesmar {

class AccessibleTree {
  public:
    explicit AccessibleTree(UIWindow& window) : window_(window) {}

    std::vector<UIAccessibleElement> read();

    // An element with the view or controller that performs its actions.
    struct Found {
        UIAccessibleElement element;
        Ref<UIView> view;
        Ref<UIViewController> dialog; // for UIAccessibleAction::dismiss; null unless a dialog
    };
    // std::nullopt when there is no element of that identifier.
    std::optional<Found> find(std::string_view identifier);

  private:
    using Elements = std::vector<UIAccessibleElement>;

    // What the views above determine for those below.
    struct Context {
        UIViewController* controller = nullptr; // completes descriptions; may be null
        CGRect clip;                            // what can be seen, in the window
        bool takesTouches = true;
    };

    // `path`, the way to the view by indices of subviews, identifies views without an identifier.
    void addDialog(UIView& container, UIViewController& controller, const std::string& path,
                   Elements& to);
    // Appends the element of `view`, or those of its subviews if it has no element.
    void add(UIView& view, const Context& context, const std::string& path, Elements& to);
    void addSubviews(UIView& view, const Context& context, const std::string& path, Elements& to);
    std::string uniqueIdentifier(const std::string& own, const std::string& path);
    void note(const UIAccessibleElement& element, UIView& view, UIViewController* dialog);

    UIWindow& window_;
    std::set<std::string> identifiers_;
    std::string focused_;     // what the focus ring is on; empty for none
    std::string_view wanted_; // by find()
    std::optional<Found> found_;
};

} // namespace tesmar
