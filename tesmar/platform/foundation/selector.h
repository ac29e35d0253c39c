// The name of an operation in the object runtime, such as "setEnabled:".
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/foundation/export.h"

#include <algorithm>
#include <string_view>

namespace tesmar {

// Cheap to copy and compare: equal names share one text, which is stored until the process ends.
// Any thread.
class TESMAR_API Selector {
  public:
    explicit Selector(std::string_view name);

    std::string_view name() const { return name_; }
    // The number of colons in the name.
    std::size_t argumentCount() const {
        return static_cast<std::size_t>(std::count(name_.begin(), name_.end(), ':'));
    }
    bool operator==(const Selector& other) const { return name_.data() == other.name_.data(); }

  private:
    std::string_view name_;
};

} // namespace tesmar
