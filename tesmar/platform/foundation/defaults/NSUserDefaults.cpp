#include "tesmar/platform/foundation/defaults/NSUserDefaults.h"

#include "tesmar/platform/foundation/NSBundle.h"
#include "tesmar/platform/foundation/archive/internal/property_list_objects.h"
#include "tesmar/platform/foundation/archive/internal/utf.h"
#include "tesmar/platform/foundation/defaults/internal/preferences_store.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/runtime.h"

#include <cstdlib>
#include <filesystem>
#include <mutex>

namespace tesmar {
namespace {

namespace fs = std::filesystem;

// The value of an environment variable that holds a directory; only absolute paths count.
fs::path directoryFromEnvironment(const char* name) {
    const char* value = ::secure_getenv(name); // a privileged program trusts no variable
    return value && *value == '/' ? value : fs::path();
}

std::string defaultPath(const std::string& identifier) {
    fs::path directory = directoryFromEnvironment("XDG_CONFIG_HOME");
    if (directory.empty()) {
        const fs::path home = directoryFromEnvironment("HOME");
        if (home.empty())
            return {};
        directory = home / ".config";
    }
    return directory / identifier / "preferences.plist";
}

bool isFileName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

} // namespace

struct NSUserDefaults::State {
    std::mutex mutex;
    FileSystem files;
    PreferencesStore store{files};
    std::string chosenPath;
    std::string identifier;

    // The store with its current path: the environment and the main bundle may have changed.
    PreferencesStore& storeAtCurrentPath() {
        if (!chosenPath.empty()) {
            store.setPath(chosenPath);
            return store;
        }
        std::string name =
            isFileName(identifier) ? identifier : NSBundle::mainBundle()->bundleIdentifier();
        store.setPath(isFileName(name) ? defaultPath(name) : std::string());
        return store;
    }
};

Class& NSUserDefaults::classObject() {
    static Class& type = *new Class("NSUserDefaults", &NSObject::classObject(), {});
    return type;
}

NSUserDefaults::NSUserDefaults() : state_(std::make_unique<State>()) {}
NSUserDefaults::~NSUserDefaults() = default;

Ref<NSUserDefaults> NSUserDefaults::standardUserDefaults() {
    // Never destroyed: static destructors may still save preferences.
    static const auto* const defaults = new Ref<NSUserDefaults>(make<NSUserDefaults>());
    return *defaults;
}

Ref<NSObject> NSUserDefaults::objectForKey(std::string_view key) {
    std::optional<PropertyList> value;
    {
        const std::lock_guard lock(state_->mutex);
        value = state_->storeAtCurrentPath().value(key);
    }
    return value ? objectFromPropertyList(*value) : nullptr;
}

void NSUserDefaults::setObject(const Ref<NSObject>& object, std::string_view forKey) {
    if (!object) {
        removeObjectForKey(forKey);
        return;
    }
    auto value = isValidUtf8(forKey) ? propertyListFromObject(*object) : std::nullopt;
    if (!value) {
        diagnostic("NSUserDefaults: the " + std::string(object->isa().name()) + " for key \"" +
                   std::string(forKey) + "\" cannot be stored as a property list");
        return;
    }
    const std::lock_guard lock(state_->mutex);
    state_->store.setValue(std::move(value), forKey);
}

void NSUserDefaults::removeObjectForKey(std::string_view key) {
    const std::lock_guard lock(state_->mutex);
    state_->store.setValue(std::nullopt, key);
}

bool NSUserDefaults::synchronize() {
    std::string problem;
    {
        const std::lock_guard lock(state_->mutex);
        PreferencesStore& store = state_->storeAtCurrentPath();
        if (store.synchronize())
            return true;
        problem = "NSUserDefaults: \"" + store.path() + "\" was not saved: " + store.failure();
    }
    diagnostic(problem);
    return false;
}

std::string NSUserDefaults::synchronizeFailure() const {
    const std::lock_guard lock(state_->mutex);
    return state_->store.failure();
}

void NSUserDefaults::setPreferencesPath(std::string path) {
    const std::lock_guard lock(state_->mutex);
    state_->chosenPath = std::move(path);
}

std::string NSUserDefaults::preferencesPath() const {
    const std::lock_guard lock(state_->mutex);
    return state_->storeAtCurrentPath().path();
}

void NSUserDefaults::setApplicationIdentifier(std::string identifier) {
    const std::lock_guard lock(state_->mutex);
    state_->identifier = std::move(identifier);
}

} // namespace tesmar
