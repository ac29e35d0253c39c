// The subscription of a function to changes of the style that TESMARConfig returns.
#pragma once

#include "tesmar/platform/foundation/export.h"

#include <memory>

namespace tesmar {

struct StyleSubscription;

// Returned by TESMARConfig::addStyleListener(). Destroying it, or assigning another to it,
// unsubscribes the function, which may do so itself; the function is then destroyed, at the latest
// when it returns. On the thread that subscribed.
class TESMAR_API TESMARStyleListener {
  public:
    // Without a function.
    TESMARStyleListener();
    ~TESMARStyleListener();
    TESMARStyleListener(TESMARStyleListener&&) noexcept;
    TESMARStyleListener& operator=(TESMARStyleListener&& other) noexcept;

  private:
    friend class TESMARConfig;
    explicit TESMARStyleListener(std::shared_ptr<StyleSubscription> subscription);

    std::shared_ptr<StyleSubscription> subscription_;
};

} // namespace tesmar
