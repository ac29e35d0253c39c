// The library's own resources: interface files and images, compiled into it.
#pragma once

#include "tesmar/platform/foundation/NSBundle.h"

#include <string>
#include <string_view>

namespace tesmar {

inline constexpr std::string_view TESMARBundleIdentifier = "org.tesmar.TESMAR";

// A main bundle for a host that has no resources of its own: the application's identifier (a
// reverse-domain name, which also names its preferences) with the library's images. Without these
// images the steppers wear the toolkit's own plain look. See NSBundle::setMainBundle.
TESMAR_API Ref<NSBundle> TESMARHostBundle(std::string applicationIdentifier);

} // namespace tesmar
