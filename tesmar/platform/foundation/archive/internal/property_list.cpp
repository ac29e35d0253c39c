#include "tesmar/platform/foundation/archive/internal/property_list.h"

namespace tesmar {

PropertyList::PropertyList(Dictionary value)
    : value_(std::make_shared<const Dictionary>(std::move(value))) {}

const PropertyList* PropertyList::find(std::string_view key) const {
    if (const auto* dictionary = get<Dictionary>())
        for (const Entry& entry : *dictionary)
            if (*entry.key.get<std::string>() == key)
                return &entry.value;
    return nullptr;
}

} // namespace tesmar
