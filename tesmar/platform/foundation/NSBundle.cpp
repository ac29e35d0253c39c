#include "tesmar/platform/foundation/NSBundle.h"

#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/internal/regular_file.h"
#include "tesmar/platform/foundation/runtime.h"

#include <filesystem>
#include <map>
#include <mutex>

namespace tesmar {
namespace {

// More than the PNG of the largest image.
constexpr std::size_t kLargestResource = 96 << 20;

std::string executableName() {
    std::error_code error;
    const auto path = std::filesystem::read_symlink("/proc/self/exe", error);
    return error || path.filename().empty() ? "application" : path.filename().string();
}

struct Registry {
    std::mutex mutex;
    Ref<NSBundle> main;
    std::map<std::string, Ref<NSBundle>, std::less<>> known;
};

Registry& registry() {
    // Never destroyed: static destructors may still save preferences.
    static auto* const instance = new Registry;
    return *instance;
}

} // namespace

Class& NSBundle::classObject() {
    static Class& type = *new Class("NSBundle", &NSObject::classObject(), {});
    return type;
}

Ref<NSBundle> NSBundle::bundle(std::string identifier, Source source) {
    auto bundle = make<NSBundle>();
    bundle->identifier_ = std::move(identifier);
    bundle->source_ = std::move(source);
    return bundle;
}

Ref<NSBundle> NSBundle::bundleWithPath(std::string identifier, std::string directory) {
    return bundle(std::move(identifier), [directory = std::filesystem::path(std::move(directory))](
                                             std::string_view fileName) {
        return readRegularFile(directory / fileName, kLargestResource);
    });
}

Ref<NSBundle> NSBundle::mainBundle() {
    Registry& r = registry();
    const std::lock_guard lock(r.mutex);
    if (!r.main)
        r.main = bundle(executableName(), {});
    return r.main;
}

void NSBundle::setMainBundle(const Ref<NSBundle>& bundle) {
    Registry& r = registry();
    auto replaced = bundle; // destroyed after unlocking: its source may own anything
    const std::lock_guard lock(r.mutex);
    r.main.swap(replaced);
}

Ref<NSBundle> NSBundle::bundleWithIdentifier(std::string_view identifier) {
    Registry& r = registry();
    const std::lock_guard lock(r.mutex);
    const auto found = r.known.find(identifier);
    return found == r.known.end() ? nullptr : found->second;
}

void NSBundle::registerBundle(const Ref<NSBundle>& bundle) {
    if (!bundle)
        fatalError("NSBundle::registerBundle: the bundle is null");
    Registry& r = registry();
    auto replaced = bundle;
    const std::lock_guard lock(r.mutex);
    r.known[bundle->bundleIdentifier()].swap(replaced);
}

NSBundle::~NSBundle() = default;

std::optional<std::string> NSBundle::resource(std::string_view fileName) const {
    if (!source_ || fileName.empty() || fileName.find('/') != std::string_view::npos)
        return std::nullopt;
    return source_(fileName);
}

} // namespace tesmar
