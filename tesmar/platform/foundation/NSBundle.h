// A set of named resources: interface files and images. Any thread; a source is asked on the thread
// that wants the resource.
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
    // Answers the bytes of the resource file of that name ("stepper-up@2x.png"), or nothing.
    using Source = std::function<std::optional<std::string>(std::string_view fileName)>;

    // `identifier` is a reverse-domain name; it also names the application's preferences when the
    // bundle is the main one. The bundle answers nothing when `source` is empty.
    static Ref<NSBundle> bundle(std::string identifier, Source source);
    // Resources are the regular files of `directory`, read when asked for.
    static Ref<NSBundle> bundleWithPath(std::string identifier, std::string directory);

    // The host application's bundle. Until setMainBundle it is named after the executable and has
    // no resources.
    static Ref<NSBundle> mainBundle();
    static void setMainBundle(const Ref<NSBundle>& bundle);

    // A bundle that was made known with registerBundle, or null.
    static Ref<NSBundle> bundleWithIdentifier(std::string_view identifier);
    static void registerBundle(const Ref<NSBundle>& bundle);

    const std::string& bundleIdentifier() const { return identifier_; }
    // Names with a path separator in them are never found.
    std::optional<std::string> resource(std::string_view fileName) const;

  private:
    std::string identifier_;
    Source source_;
};

} // namespace tesmar
