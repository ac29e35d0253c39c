// Where hosts keep the style themselves, instead of in the preferences. Any thread.
#pragma once

#include "tesmar/platform/foundation/NSDictionary.h"

#include <functional>
#include <memory>

namespace tesmar {

struct StyleStore {
    std::function<Ref<NSDictionary>()> load;
    std::function<void(const Ref<NSDictionary>&)> save;
};

// Null when both are empty. One alone is a fatal error of `setter`.
std::shared_ptr<const StyleStore>
makeStyleStore(const char* setter, std::function<Ref<NSDictionary>()> load,
               std::function<void(const Ref<NSDictionary>&)> save);

// The store of all panels, or null. Within a call of its functions the current thread gets null.
std::shared_ptr<const StyleStore> sharedStyleStore();

// What the store holds, as a new dictionary; null for none.
Ref<NSDictionary> loadStyle(const StyleStore& store);
// Gives the store a copy.
void saveStyle(const StyleStore& store, const Ref<NSDictionary>& style);

// The style of a panel with a store of its own, in the order that TESMARConfig.h tells.
Ref<NSDictionary> styleOrDefault(const StyleStore& store);

} // namespace tesmar
