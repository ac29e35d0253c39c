#include "tesmar/platform/ui/UIControlListener.h"

#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/ui/UIControl.h"

#include <utility>

namespace tesmar {
namespace {

class FunctionTarget final : public NSObject {
    TESMAR_CLASS

  public:
    void call(UIControl& sender) {
        if (subscribed)
            function(sender);
    }

    std::function<void(UIControl&)> function;
    bool subscribed = true; // false while the function still runs after it has unsubscribed
};

Class& FunctionTarget::classObject() {
    static Class& type = *new Class("FunctionTarget", &NSObject::classObject(), {},
                                    {method<&FunctionTarget::call>("call:")});
    return type;
}

} // namespace

UIControlListener::UIControlListener(std::function<void(UIControl&)> function) {
    const auto target = alloc<FunctionTarget>();
    target->function = std::move(function);
    target_ = target;
}

UIControlListener::~UIControlListener() {
    if (target_)
        static_cast<FunctionTarget&>(*target_).subscribed = false;
}

UIControlListener& UIControlListener::operator=(UIControlListener&& other) noexcept {
    const UIControlListener previous(std::move(*this));
    target_ = std::move(other.target_);
    return *this;
}

UIControlListener UIControl::addListener(unsigned events,
                                         std::function<void(UIControl&)> function) {
    if (!function)
        fatalError("UIControl::addListener: the function is empty");
    UIControlListener listener(std::move(function));
    addTarget(listener.target_, Selector("call:"), events);
    return listener;
}

} // namespace tesmar
