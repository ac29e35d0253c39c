#include "tesmar/platform/ui/internal/accessibility/AccessibleTree.h"

#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/foundation/internal/main_thread.h"
#include "tesmar/platform/ui/UIWindow.h"
#include "tesmar/platform/ui/internal/PresentationStack.h"
#include "tesmar/platform/ui/internal/accessibility/reading_order.h"

#include <utility>

namespace tesmar {
namespace {

constexpr double kMinAlpha = 0.01;
constexpr CGFloat kMinVisible = 0.01; // points; a smaller remainder is a rounding error

bool isSeen(const UIView& view) {
    return !view.isHidden() && view.alpha() >= kMinAlpha;
}

// Whether the views in an element of that role are elements of their own. Those of the others are
// parts of it, as a button's title is.
bool contains(UIAccessibleRole role) {
    return role == UIAccessibleRole::none || role == UIAccessibleRole::group ||
           role == UIAccessibleRole::dialog || role == UIAccessibleRole::adjustable;
}

void disable(UIAccessibleElement& element) {
    element.states |= UIAccessibleStateDisabled;
    for (auto& child : element.children)
        disable(child);
}

// An element or its parts.
void markFocus(UIAccessibleElement& element, const std::string& focused) {
    if (!focused.empty() && element.identifier == focused)
        element.states |= UIAccessibleStateFocused;
    for (auto& part : element.children)
        markFocus(part, focused);
}

void setOffscreen(UIAccessibleElement& element, const CGRect& clip) {
    const CGSize visible = CGRectIntersection(element.frame, clip).size;
    if (visible.width < kMinVisible || visible.height < kMinVisible)
        element.states |= UIAccessibleStateOffscreen;
    for (auto& child : element.children)
        setOffscreen(child, clip);
}

} // namespace

std::vector<UIAccessibleElement> AccessibleTree::read() {
    if (const auto focus = window_.focus(); focus && focus->isShown)
        focused_ = focus->identifier;
    Elements elements;
    const auto views = window_.subviews();
    for (auto view = views.rbegin(); view != views.rend(); ++view) {
        const std::string path = "/" + std::to_string(views.rend() - view - 1);
        const auto controller = window_.presentations_->controllerIn(**view);
        if (!controller) {
            const Context context{window_.rootViewController().get(), window_.bounds()};
            add(**view, context, path, elements);
            continue;
        }
        if (window_.presentations_->isDismissing(*controller))
            continue;
        addDialog(**view, *controller, path, elements);
        if (controller->modalPresentationStyle() == UIModalPresentationStyle::fullScreen)
            break; // covers those behind
    }
    return elements;
}

std::optional<AccessibleTree::Found> AccessibleTree::find(std::string_view identifier) {
    wanted_ = identifier;
    read();
    return std::exchange(found_, std::nullopt);
}

// A container is not faded out when its controller has just been presented, and is to be announced.
void AccessibleTree::addDialog(UIView& container, UIViewController& controller,
                               const std::string& path, Elements& to) {
    UIView& content = *controller.view();
    UIAccessibleElement dialog;
    dialog.role = UIAccessibleRole::dialog;
    dialog.identifier = uniqueIdentifier(container.accessibilityIdentifier(), path);
    dialog.frame = container.convertRectTo(container.bounds(), nullptr);
    if (window_.presentedViewController().get() == &controller)
        dialog.actions = {UIAccessibleAction::dismiss};
    controller.describe(content, dialog);
    const Context context{&controller, CGRectIntersection(dialog.frame, window_.bounds())};
    addSubviews(content, context, dialog.identifier, dialog.children);
    note(dialog, content, &controller);
    to.push_back(std::move(dialog));
}

void AccessibleTree::add(UIView& view, const Context& context, const std::string& path,
                         Elements& to) {
    if (!isSeen(view))
        return;
    UIAccessibleElement element;
    element.frame = view.convertRectTo(view.bounds(), nullptr);
    element.identifier = view.accessibilityIdentifier();
    view.describe(element);
    if (context.controller)
        context.controller->describe(view, element);

    Context inside = context;
    inside.takesTouches = context.takesTouches && view.takesTouches();
    if (view.clipsToBounds())
        inside.clip = CGRectIntersection(context.clip, element.frame);
    if (element.role == UIAccessibleRole::none) {
        addSubviews(view, inside, path, to);
        return;
    }
    element.identifier = uniqueIdentifier(element.identifier, path);
    for (auto& part : element.children)
        part.identifier = uniqueIdentifier(element.identifier + part.identifier, "");
    markFocus(element, focused_);
    const bool takesNoTouches = !inside.takesTouches && !element.actions.empty();
    if (takesNoTouches)
        disable(element);
    setOffscreen(element, context.clip);
    if (contains(element.role))
        addSubviews(view, inside, element.identifier, element.children);
    note(element, view, nullptr);
    to.push_back(std::move(element));
}

void AccessibleTree::addSubviews(UIView& view, const Context& context, const std::string& path,
                                 Elements& to) {
    std::vector<CGRect> frames;
    for (const auto& child : view.subviews())
        frames.push_back(child->frame());
    const auto order =
        view.layoutIsRightToLeft() ? ReadingOrder::rightToLeft : ReadingOrder::leftToRight;
    for (const std::size_t i : readingOrder(frames, order))
        add(*view.subviews()[i], context, path + "/" + std::to_string(i), to);
}

std::string AccessibleTree::uniqueIdentifier(const std::string& own, const std::string& path) {
    std::string identifier = own.empty() ? path : own;
    for (int i = 1; !identifiers_.insert(identifier).second; ++i)
        identifier = own + path + "#" + std::to_string(i);
    return identifier;
}

void AccessibleTree::note(const UIAccessibleElement& element, UIView& view,
                          UIViewController* dialog) {
    if (wanted_.empty() || found_)
        return;
    if (element.identifier == wanted_) {
        found_ = {element, refTo(&view), refTo(dialog)};
        return;
    }
    for (const auto& part : element.children)
        if (part.identifier == wanted_) { // one that the view has described itself
            found_ = {part, refTo(&view), nullptr};
            return;
        }
}

std::vector<UIAccessibleElement> accessibleTree(UIWindow& window) {
    assertMainThread("accessibleTree");
    window.layoutIfNeeded();
    return AccessibleTree(window).read();
}

bool performAccessibleAction(UIWindow& window, std::string_view identifier,
                             UIAccessibleAction action, double time) {
    assertMainThread("performAccessibleAction");
    const auto self = refTo(&window);
    NSRunLoop::mainRunLoop().noteTime(time);
    window.layoutIfNeeded();
    const auto found = AccessibleTree(window).find(identifier);
    if (!found || !found->element.offers(action) || found->element.has(UIAccessibleStateDisabled))
        return false;
    if (!found->dialog)
        return found->view->perform(found->element, action);
    found->dialog->dismissViewControllerAnimated(true);
    return true;
}

} // namespace tesmar
