#include "tesmar/model/TESMARConfig.h"

#include "tesmar/model/CCConstants.h"
#include "tesmar/model/internal/style_store.h"
#include "tesmar/model/internal/style_subscriptions.h"
#include "tesmar/platform/foundation/archive/NSKeyedArchiver.h"
#include "tesmar/platform/foundation/archive/NSKeyedUnarchiver.h"
#include "tesmar/platform/foundation/defaults/NSUserDefaults.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/foundation/scalars.h"
#include "tesmar/platform/ui/internal/platform_classes.h"

#include <mutex>
#include <utility>

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

// Something of the host's, which one thread may replace while others use it.
template <class T>
class Given {
  public:
    std::shared_ptr<const T> get() {
        const std::lock_guard lock(mutex_);
        return current_;
    }
    void set(std::shared_ptr<const T> value) {
        const std::lock_guard lock(mutex_);
        current_.swap(value); // the replaced one is destroyed without the lock
    }

  private:
    std::mutex mutex_;
    std::shared_ptr<const T> current_; // null without one
};

Given<TESMARConfig::StyleSource>& source() {
    static auto* const instance = new Given<TESMARConfig::StyleSource>; // never destroyed
    return *instance;
}

Given<StyleStore>& store() {
    static auto* const instance = new Given<StyleStore>; // never destroyed
    return *instance;
}

// Marks that the current thread runs a function of the host.
class Inside {
  public:
    explicit Inside(bool& flag) : flag_(flag), before_(std::exchange(flag, true)) {}
    ~Inside() { flag_ = before_; }
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;

  private:
    bool& flag_;
    bool before_;
};

thread_local bool insideSource = false;
thread_local bool insideStore = false;

Ref<NSDictionary> copyOf(const Ref<NSDictionary>& style) {
    return style ? NSDictionary::dictionaryWithEntries(style->entries()) : nullptr;
}

// Null if there is no source, if it returns none, and within the source itself.
Ref<NSDictionary> styleOfSource() {
    const auto current = source().get();
    if (!current || insideSource)
        return nullptr;
    const Inside inside(insideSource);
    return copyOf((*current)());
}

Ref<NSDictionary> firstOf(const std::function<Ref<NSDictionary>()>& stored) {
    if (auto given = styleOfSource())
        return given;
    auto style = stored();
    return style ? style : CCConstants::CCDefaultStyleAttributes();
}

void setFailure(std::string reason) {
    LastSave& last = lastSave();
    const std::lock_guard lock(last.mutex);
    last.failure = std::move(reason);
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

std::shared_ptr<const StyleStore>
makeStyleStore(const char* setter, std::function<Ref<NSDictionary>()> load,
               std::function<void(const Ref<NSDictionary>&)> save) {
    if (!load != !save)
        fatalError(std::string(setter) + ": one of the two functions is empty");
    return load ? std::make_shared<const StyleStore>(StyleStore{std::move(load), std::move(save)})
                : nullptr;
}

std::shared_ptr<const StyleStore> sharedStyleStore() {
    return insideStore ? nullptr : store().get();
}

Ref<NSDictionary> loadStyle(const StyleStore& from) {
    const Inside inside(insideStore);
    return copyOf(from.load());
}

void saveStyle(const StyleStore& to, const Ref<NSDictionary>& style) {
    const Inside inside(insideStore);
    to.save(copyOf(style));
}

Ref<NSDictionary> styleOrDefault(const StyleStore& from) {
    return firstOf([&] { return loadStyle(from); });
}

Ref<NSDictionary> TESMARConfig::sessionClosedCaptureStyle() {
    if (const auto given = sharedStyleStore())
        return loadStyle(*given);
    registerPlatformClasses();
    const auto stored = NSUserDefaults::standardUserDefaults()->objectForKey(
        CCConstants::CCSessionStyleUserDefaultsKey());
    const auto record = as<NSData>(stored);
    if (!record)
        return nullptr;
    return as<NSDictionary>(NSKeyedUnarchiver::unarchiveObjectWithData(record->bytes()));
}

void TESMARConfig::saveSessionClosedCaptureStyle(const Ref<NSDictionary>& attributes) {
    setFailure("exception"); // in case one ends the save
    if (const auto given = sharedStyleStore()) {
        saveStyle(*given, attributes);
        setFailure({});
        refresh();
        return;
    }
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
    return firstOf(sessionClosedCaptureStyle);
}

void TESMARConfig::setStyleSource(StyleSource function) {
    source().set(function ? std::make_shared<const StyleSource>(std::move(function)) : nullptr);
}

void TESMARConfig::setStyleStore(std::function<Ref<NSDictionary>()> load,
                                 std::function<void(const Ref<NSDictionary>&)> save) {
    store().set(makeStyleStore("TESMARConfig::setStyleStore", std::move(load), std::move(save)));
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
