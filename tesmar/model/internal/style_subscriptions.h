// The functions that are told when the style changes. Any thread.
#pragma once

#include "tesmar/platform/foundation/NSDictionary.h"

#include <functional>
#include <memory>

namespace tesmar {

struct StyleSubscription {
    std::function<void(const Ref<NSDictionary>&)> function;
    Ref<NSDictionary> known; // the style that it was last told, or that there was when it began
    bool subscribed = true;  // false while the function still runs after it has unsubscribed
};

// Whether the current thread has a subscription.
bool hasStyleSubscriptions();
// For the current thread, as long as the caller keeps it.
void addStyleSubscription(const std::shared_ptr<StyleSubscription>& subscription);
// Calls the functions of the current thread that do not know `style` yet. They may do anything;
// when one of them has caused another call of this, the rest has been told there. All are called,
// even if some throw; the first exception is thrown at the end.
void tellStyle(const Ref<NSDictionary>& style);

} // namespace tesmar
