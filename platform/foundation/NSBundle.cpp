#include "tesmar/platform/foundation/NSBundle.h"

#include "tesmar/platform/foundation/regular_file.h"
#include "tesmar/platform/foundation/runtime.h"

#include <filesystem>
#include <map>

namespace tesmar {
namespace {

// More than the PNG of the largest image.
constexpr std::size_t kLargestResource = 96 << 20;

std::string executableName() {
    std::error_code error;
    const auto path = std::filesystem::read_symlink("/proc/self/exe", error);
    return error || path.filename().empty() ? "application" : path.filename().string();
}

Ref<NSBundle>& mainBundleSlot() {
    static Ref<NSBundle> bundle;
    return bundle;
}

auto& knownBundles() {
    static std::map<std::string, Ref<NSBundle>, std::less<>> bundles;
    return bundles;
}

} // namespace

Class& NSBundle::classObject() {
    static Class type("NSBundle", &NSObject::classObject(), {},
                      {method<&NSBundle::bundleIdentifier>("bundleIdentifier")},
                      {method<&NSBundle::mainBundle>("mainBundle"),
                       method<&NSBundle::bundleWithIdentifier>("bundleWithIdentifier:")});
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
    auto& slot = mainBundleSlot();
    if (!slot)
        slot = bundle(executableName(), {});
    return slot;
}

void NSBundle::setMainBundle(const Ref<NSBundle>& bundle) {
    mainBundleSlot() = bundle;
}

Ref<NSBundle> NSBundle::bundleWithIdentifier(std::string_view identifier) {
    const auto found = knownBundles().find(identifier);
    return found == knownBundles().end() ? nullptr : found->second;
}

void NSBundle::registerBundle(const Ref<NSBundle>& bundle) {
    knownBundles()[bundle->bundleIdentifier()] = bundle;
}

std::optional<std::string> NSBundle::resource(std::string_view fileName) const {
    if (!source_ || fileName.empty() || fileName.find('/') != std::string_view::npos)
        return std::nullopt;
    return source_(fileName);
}

} // namespace tesmar
