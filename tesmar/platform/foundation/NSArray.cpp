#include "tesmar/platform/foundation/NSArray.h"

#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/internal/comparison.h"
#include "tesmar/platform/foundation/runtime.h"

#include <algorithm>

namespace tesmar {

Class& NSArray::classObject() {
    static Class& type = *new Class("NSArray", &NSObject::classObject(), allocator<NSArray>());
    return type;
}

Ref<NSArray> NSArray::arrayWithObjects(std::vector<Ref<NSObject>> objects) {
    auto array = make<NSArray>();
    std::erase(objects, nullptr);
    array->objects_ = std::move(objects);
    return array;
}

bool NSArray::initWithCoder(NSCoder& coder) {
    objects_ = coder.decodeObjects("NS.objects");
    return !coder.failed();
}

bool NSArray::encodeWithCoder(NSCoder& coder) const {
    coder.encodeObjects(objects_, "NS.objects");
    return true;
}

bool NSArray::isEqual(const NSObject* other) const {
    const auto* list = dynamic_cast<const NSArray*>(other);
    return list && compareCollections(*this, *list, [&] {
               return std::equal(objects_.begin(), objects_.end(), list->objects_.begin(),
                                 list->objects_.end(),
                                 [](const auto& a, const auto& b) { return a->isEqual(b.get()); });
           });
}

} // namespace tesmar
