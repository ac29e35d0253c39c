// A set of named resources: interface files and images. Any thread; the source is called on the
// thread that calls resource().
#pragma once

#include "tesmar/platform/foundation/NSObject.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tesmar {

class TESMAR_API NSBundle : public NSObject {
    TESMAR_CLASS

  public:
    ~NSBundle() override;

    // Returns the bytes of the file of that name ("stepper-up@2x.png"), or std::nullopt.
    using Source = std::function<std::optional<std::string>(std::string_view fileName)>;

    // `identifier` is a reverse-domain name; that of the main bundle also names the application's
    // preferences. With an empty `source` the bundle has no resources.
    static Ref<NSBundle> bundle(std::string identifier, Source source);
    // The resources are the regular files of `directory`, at most 96 MiB each, read at each call
    // of resource().
    static Ref<NSBundle> bundleWithPath(std::string identifier, std::string directory);

    // The host application's bundle. Unless set, its identifier is the name of the executable and
    // it has no resources.
    static Ref<NSBundle> mainBundle();
    // Null restores that default.
    static void setMainBundle(const Ref<NSBundle>& bundle);

    // The bundle last registered under this identifier, or null.
    static Ref<NSBundle> bundleWithIdentifier(std::string_view identifier);
    // A null bundle is a fatal error.
    static void registerBundle(const Ref<NSBundle>& bundle);

    const std::string& bundleIdentifier() const { return identifier_; }
    // std::nullopt if there is no such resource. Names with a path separator are never found.
    std::optional<std::string> resource(std::string_view fileName) const;

  private:
    std::string identifier_;
    Source source_;
};

} // namespace tesmar
