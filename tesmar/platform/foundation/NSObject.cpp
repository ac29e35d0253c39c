#include "tesmar/platform/foundation/NSObject.h"

#include "tesmar/platform/foundation/runtime.h"

namespace tesmar {

Class& NSObject::classObject() {
    static Class& type = *new Class("NSObject", nullptr, allocator<NSObject>());
    return type;
}

const Class& NSObject::isa() const {
    return classObject();
}

bool NSObject::initWithCoder(NSCoder&) {
    return init();
}

bool NSObject::encodeWithCoder(NSCoder&) const {
    return false;
}

bool NSObject::respondsToSelector(Selector selector) const {
    return isa().findMethod(selector) != nullptr;
}

} // namespace tesmar
