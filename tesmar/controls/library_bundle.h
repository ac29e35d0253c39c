// The resources that are compiled into the library: interface files and images.
#pragma once

#include "tesmar/platform/foundation/NSBundle.h"

#include <string>
#include <string_view>

namespace tesmar {

// The identifier of the library's own bundle, for NSBundle::bundleWithIdentifier.
inline constexpr std::string_view TESMARBundleIdentifier = "org.tesmar.TESMAR";

// A new bundle for NSBundle::setMainBundle, for a host that has no resources of its own: the
// library's images under the application's identifier (a reverse-domain name, which also names its
// preferences). Without these images in the main bundle the steppers have a plain look. Any thread.
TESMAR_API Ref<NSBundle> TESMARHostBundle(std::string applicationIdentifier);

} // namespace tesmar
