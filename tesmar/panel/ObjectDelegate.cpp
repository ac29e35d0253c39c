#include "tesmar/panel/internal/ObjectDelegate.h"

#include "tesmar/platform/foundation/runtime.h"

#include <array>

namespace tesmar {
namespace {

constexpr const char* kSwitch = "CCSwitchValueChanged:";
constexpr const char* kStyle = "CCStyleAttributesChanged:";
constexpr const char* kDisappear = "CCViewControllerWillDisappear";

} // namespace

bool ObjectDelegate::fits(const NSObject& object) {
    for (const char* const selector : {kSwitch, kStyle, kDisappear})
        if (!object.respondsToSelector(Selector(selector)))
            return false;
    return true;
}

void ObjectDelegate::CCSwitchValueChanged(bool on) {
    performSelector(*object_, Selector(kSwitch), std::array<Value, 1>{on});
}

void ObjectDelegate::CCStyleAttributesChanged(const Ref<NSDictionary>& attributes) {
    performSelector(*object_, Selector(kStyle), std::array<Value, 1>{attributes});
}

void ObjectDelegate::CCViewControllerWillDisappear() {
    performSelector(*object_, Selector(kDisappear));
}

} // namespace tesmar
