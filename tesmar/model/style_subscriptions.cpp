#include "tesmar/model/internal/style_subscriptions.h"

#include "tesmar/model/TESMARStyleListener.h"
#include "tesmar/platform/foundation/internal/FirstException.h"

#include <mutex>
#include <thread>
#include <vector>

namespace tesmar {
namespace {

using Subscriptions = std::vector<std::weak_ptr<StyleSubscription>>;

struct Registry {
    struct Entry {
        std::thread::id thread;
        std::weak_ptr<StyleSubscription> subscription; // used on its thread only
    };
    std::mutex mutex;
    std::vector<Entry> entries;

    Subscriptions ofThisThread() {
        const std::lock_guard lock(mutex);
        Subscriptions own;
        for (const auto& [thread, subscription] : entries)
            if (thread == std::this_thread::get_id() && !subscription.expired())
                own.push_back(subscription);
        return own;
    }
};

Registry& registry() {
    static auto* const instance = new Registry; // never destroyed
    return *instance;
}

// How often tellStyle() was called on this thread.
unsigned& rounds() {
    thread_local unsigned count = 0;
    return count;
}

} // namespace

bool hasStyleSubscriptions() {
    return !registry().ofThisThread().empty();
}

void addStyleSubscription(const std::shared_ptr<StyleSubscription>& subscription) {
    Registry& list = registry();
    const std::lock_guard lock(list.mutex);
    std::erase_if(list.entries, [](const auto& each) { return each.subscription.expired(); });
    list.entries.push_back({std::this_thread::get_id(), subscription});
}

void tellStyle(const Ref<NSDictionary>& style) {
    const unsigned round = ++rounds();
    FirstException exception;
    for (const auto& each : registry().ofThisThread()) {
        const auto subscription = each.lock();
        if (!subscription || !subscription->subscribed || style->isEqual(subscription->known.get()))
            continue;
        subscription->known = style;
        exception.run([&] { subscription->function(style); });
        if (rounds() != round)
            break;
    }
    exception.rethrow();
}

TESMARStyleListener::TESMARStyleListener() = default;
TESMARStyleListener::~TESMARStyleListener() {
    if (subscription_)
        subscription_->subscribed = false;
}
TESMARStyleListener::TESMARStyleListener(TESMARStyleListener&&) noexcept = default;

// The previous function is destroyed last: its destructor may use this object.
TESMARStyleListener& TESMARStyleListener::operator=(TESMARStyleListener&& other) noexcept {
    const TESMARStyleListener previous(std::move(*this));
    subscription_ = std::move(other.subscription_);
    return *this;
}

TESMARStyleListener::TESMARStyleListener(std::shared_ptr<StyleSubscription> subscription)
    : subscription_(std::move(subscription)) {}

} // namespace tesmar
