#include "tesmar/platform/ui/UIViewController.h"

#include "tesmar/platform/foundation/NSBundle.h"
#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/internal/main_thread.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/ui/UINib.h"
#include "tesmar/platform/ui/internal/PresentationStack.h"

namespace tesmar {

Class& UIViewController::classObject() {
    static Class& type =
        *new Class("UIViewController", &NSObject::classObject(), allocator<UIViewController>(),
                   {method<&UIViewController::setView>("setView:")});
    return type;
}

UIViewController::UIViewController() {
    assertMainThread("UIViewController");
}
UIViewController::~UIViewController() {
    assertMainThread("~UIViewController");
    adoptView(nullptr);
}

bool UIViewController::initWithNibName(const std::optional<std::string>& nibName,
                                       const Ref<NSBundle>& bundle) {
    nibName_ = nibName;
    bundle_ = bundle;
    return true;
}

bool UIViewController::initWithCoder(NSCoder& coder) {
    nibName_ = coder.decodeString("nibName");
    return true;
}

const Ref<UIView>& UIViewController::view() {
    assertMainThread("UIViewController::view");
    // `loading_` stops a loadView that calls view() from recursing.
    if (!view_ && !loading_) {
        loading_ = true;
        try {
            loadView();
        } catch (...) {
            loading_ = false;
            adoptView(nullptr); // incomplete: the next call loads it again
            throw;
        }
        loading_ = false;
        if (!view_)
            fatalError("loadView of " + std::string(isa().name()) + " has set no view");
        viewDidLoad();
    }
    return view_;
}

void UIViewController::setView(const Ref<UIView>& view) {
    assertMainThread("UIViewController::setView");
    adoptView(view);
}

void UIViewController::adoptView(const Ref<UIView>& view) {
    if (view_ && view_->controller_ == this)
        view_->controller_ = nullptr;
    if (view)
        view->controller_ = this;
    view_ = view;
}

void UIViewController::loadView() {
    if (nibName_) {
        const auto objects =
            UINib::nibWithNibName(*nibName_, bundle_)->instantiateWithOwner(&isa());
        adoptView(objects.empty() ? nullptr : as<UIView>(objects.front()));
        return;
    }
    adoptView(make<UIView>());
}

void UIViewController::presentViewController(const Ref<UIViewController>& controller, bool animated,
                                             Completion completion) {
    assertMainThread("UIViewController::presentViewController");
    if (!controller || controller.get() == this)
        return;
    if (!stack_) {
        diagnostic("a controller that is not on a window cannot present");
        return;
    }
    if (controller->stack_ && controller->stack_ != stack_) {
        diagnostic("a controller that is presented already cannot be presented");
        return;
    }
    stack_->present(controller, refTo(this), animated, std::move(completion));
}

void UIViewController::dismissViewControllerAnimated(bool animated, Completion completion) {
    assertMainThread("UIViewController::dismissViewControllerAnimated");
    if (!stack_)
        return;
    const auto self = refTo(this);
    if (const auto presented = stack_->presentedBy(*this))
        stack_->dismiss(*presented, animated, std::move(completion));
    else
        stack_->dismiss(*this, animated, std::move(completion));
}

Ref<UIViewController> UIViewController::presentedViewController() const {
    return stack_ ? stack_->presentedBy(*this) : nullptr;
}

Ref<UIViewController> UIViewController::presentingViewController() const {
    return stack_ ? stack_->presenterOf(*this) : nullptr;
}

bool UIViewController::isBeingDismissed() const {
    return stack_ && stack_->isDismissing(*this);
}

} // namespace tesmar
