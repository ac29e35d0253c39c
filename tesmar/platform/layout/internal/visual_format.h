// Turns visual formats into constraints; NSLayoutConstraint.h describes the language.
#pragma once

#include "tesmar/platform/layout/NSLayoutConstraint.h"
#include "tesmar/platform/layout/internal/visual_format_parser.h"

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tesmar {

// Like NSLayoutConstraint::constraintsWithVisualFormat(), but returns an error instead of ending
// the process.
std::variant<std::vector<Ref<NSLayoutConstraint>>, VisualFormatError>
constraintsFromVisualFormat(std::string_view format, NSLayoutFormatOptions options,
                            const NSLayoutConstraint::Metrics& metrics,
                            const NSLayoutConstraint::Views& views);

// Returns a one-line message that shows the format with a mark at the error's offset.
std::string describe(const VisualFormatError& error, std::string_view format);

} // namespace tesmar
