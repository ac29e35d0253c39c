#include "tesmar/model/TESMARConfig.h"

#include "tesmar/model/CCConstants.h"
#include "tesmar/model/internal/style_subscriptions.h"
#include "tesmar/platform/foundation/archive/NSKeyedArchiver.h"
#include "tesmar/platform/foundation/archive/NSKeyedUnarchiver.h"
#include "tesmar/platform/foundation/defaults/NSUserDefaults.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/foundation/scalars.h"
#include "tesmar/platform/ui/internal/platform_classes.h"

#include <mutex>

namespace tesmar {
namespace {

struct LastSave {
    std::mutex mutex;
    std::string failure;
};

LastSave& lastSave() {
    static auto* const instance = new LastSave; // never destroyed
    return *instance;
}

struct Source {
    std::mutex mutex;
    std::shared_ptr<const TESMARConfig::StyleSource> current; // null without one
};

Source& source() {
    static auto* const instance = new Source; // never destroyed
    return *instance;
}

// Null if there is no source, if it returns none, and within the source itself.
Ref<NSDictionary> styleOfSource() {
    thread_local bool asking = false;
    std::shared_ptr<const TESMARConfig::StyleSource> current;
    {
        const std::lock_guard lock(source().mutex);
        current = source().current;
    }
    if (!current || asking)
        return nullptr;
    asking = true;
    const auto style = [&] {
        const struct Asked {
            ~Asked() { asking = false; }
        } asked;
        return (*current)();
    }();
    return style ? NSDictionary::dictionaryWithEntries(style->entries()) : nullptr;
}

} // namespace

Class& TESMARConfig::classObject() {
    static Class& type =
        *new Class("TESMARConfig", &NSObject::classObject(), allocator<TESMARConfig>(), {},
                   {method<&TESMARConfig::sessionClosedCaptureStyle>("sessionClosedCaptureStyle"),
                    method<&TESMARConfig::saveSessionClosedCaptureStyle>(
                        "saveSessionClosedCaptureStyleWithAttributes:"),
                    method<&TESMARConfig::sessionOrDefaultClosedCaptureStyle>(
                        "sessionOrDefaultClosedCaptureStyle")});
    return type;
}

Ref<NSDictionary> TESMARConfig::sessionClosedCaptureStyle() {
    registerPlatformClasses();
    const auto stored = NSUserDefaults::standardUserDefaults()->objectForKey(
        CCConstants::CCSessionStyleUserDefaultsKey());
    const auto record = as<NSData>(stored);
    if (!record)
        return nullptr;
    return as<NSDictionary>(NSKeyedUnarchiver::unarchiveObjectWithData(record->bytes()));
}

void TESMARConfig::saveSessionClosedCaptureStyle(const Ref<NSDictionary>& attributes) {
    const auto setFailure = [](std::string reason) {
        LastSave& last = lastSave();
        const std::lock_guard lock(last.mutex);
        last.failure = std::move(reason);
    };
    setFailure("exception"); // in case one ends the save
    const auto defaults = NSUserDefaults::standardUserDefaults();
    const auto key = CCConstants::CCSessionStyleUserDefaultsKey();
    std::string failure;
    if (!attributes) {
        defaults->removeObjectForKey(key);
    } else if (std::string record = NSKeyedArchiver::archivedDataWithRootObject(attributes);
               !record.empty()) {
        defaults->setObject(NSData::dataWithBytes(std::move(record)), key);
    } else {
        failure = "the style is too large to be archived";
    }
    if (!defaults->synchronize())
        failure = defaults->synchronizeFailure();
    setFailure(std::move(failure));
    refresh();
}

std::string TESMARConfig::saveFailure() {
    LastSave& last = lastSave();
    const std::lock_guard lock(last.mutex);
    return last.failure;
}

Ref<NSDictionary> TESMARConfig::sessionOrDefaultClosedCaptureStyle() {
    if (auto given = styleOfSource())
        return given;
    const auto stored = sessionClosedCaptureStyle();
    return stored ? stored : CCConstants::CCDefaultStyleAttributes();
}

void TESMARConfig::setStyleSource(StyleSource function) {
    auto replaced = function ? std::make_shared<const StyleSource>(std::move(function)) : nullptr;
    const std::lock_guard lock(source().mutex);
    source().current.swap(replaced);
}

TESMARStyleListener
TESMARConfig::addStyleListener(std::function<void(const Ref<NSDictionary>& style)> function) {
    if (!function)
        fatalError("TESMARConfig::addStyleListener: the function is empty");
    const auto subscription = std::make_shared<StyleSubscription>();
    subscription->function = std::move(function);
    subscription->known = sessionOrDefaultClosedCaptureStyle();
    addStyleSubscription(subscription);
    return TESMARStyleListener(subscription);
}

void TESMARConfig::refresh() {
    if (hasStyleSubscriptions())
        tellStyle(sessionOrDefaultClosedCaptureStyle());
}

} // namespace tesmar
