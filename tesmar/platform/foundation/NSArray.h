// An immutable ordered list of objects; elements are never null.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"

#include <vector>

namespace tesmar {

class TESMAR_API NSArray : public NSObject {
    TESMAR_CLASS

  public:
    // Null elements are dropped.
    static Ref<NSArray> arrayWithObjects(std::vector<Ref<NSObject>> objects);

    const std::vector<Ref<NSObject>>& objects() const { return objects_; }

    bool initWithCoder(NSCoder& coder) override;
    bool encodeWithCoder(NSCoder& coder) const override;
    // Equal elements in the same order.
    // Collections that hold themselves can be compared; deeper than 1,000 levels they are unequal.
    bool isEqual(const NSObject* other) const override;

  private:
    std::vector<Ref<NSObject>> objects_;
};

} // namespace tesmar
