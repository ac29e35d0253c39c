// Parses visual formats; NSLayoutConstraint.h describes the language. Looks no names up.
#pragma once

#include "tesmar/platform/layout/LayoutItem.h"
#include "tesmar/platform/layout/NSLayoutConstraint.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tesmar {

// In bytes. Bounds the work and the number of constraints for formats from interface files.
inline constexpr std::size_t kMaxVisualFormatLength = 16 << 10;

struct VisualFormatError {
    std::size_t offset; // in the format, in bytes; at most its length
    std::string reason;
};

// A number, or the name of a metric or a view.
struct VisualFormatOperand {
    std::size_t offset = 0;
    double number = 0;
    std::string_view name; // empty: `number` applies
};

struct VisualFormatLength {
    NSLayoutRelation relation = NSLayoutRelation::equal;
    VisualFormatOperand operand;
    std::optional<VisualFormatOperand> priority;
};

struct VisualFormatGap {
    bool isStandard = false; // "-" alone; otherwise a gap without lengths is 0
    std::vector<VisualFormatLength> lengths;
};

struct VisualFormatView {
    std::size_t offset = 0;
    std::string_view name;
    std::vector<VisualFormatLength> extents;
};

// The names point into the parsed text.
struct VisualFormat {
    LayoutAxis axis = LayoutAxis::horizontal;
    std::vector<VisualFormatView> views; // never empty
    std::vector<VisualFormatGap> gaps;   // gaps[i] is between views[i] and views[i + 1]
    std::optional<VisualFormatGap> gapFromSuperview;
    std::optional<VisualFormatGap> gapToSuperview;
};

// Throws VisualFormatError.
VisualFormat parseVisualFormat(std::string_view format);

} // namespace tesmar
