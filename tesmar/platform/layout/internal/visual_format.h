// The visual format language: a row or column of views, written as a picture of it.
//
//     format      =  [ "H:" | "V:" ]  [ "|" gap ]  view  { gap view }  [ gap "|" ]
//     gap         =  ""  |  "-"  |  "-" length "-"  |  "-" "(" length { "," length } ")" "-"
//     view        =  "[" name [ "(" length { "," length } ")" ] "]"
//     length      =  [ "==" | "<=" | ">=" ]  ( number | name )  [ "@" ( number | name ) ]
//     number      =  [ "-" ] digits [ "." digits ]
//
// "|" is the superview. No gap means that the views touch; a bare "-" is the standard space, 8
// points between views and 20 to the superview. Names in lengths are metrics, or, in a view's
// brackets, views (whose extent is meant). After "@" stands a priority from 0 to 1000. A negative
// number needs the parentheses or a relation before it. There are no spaces.
#pragma once

#include "tesmar/platform/layout/NSLayoutConstraint.h"

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tesmar {

// Longer formats are errors.
inline constexpr std::size_t kLongestVisualFormat = 16 << 10;

struct VisualFormatError {
    std::size_t offset; // of the byte in the format where it went wrong
    std::string reason;
};

// A number, or a name that stands for one (or for a view's extent).
struct VisualFormatOperand {
    std::size_t offset = 0;
    double number = 0;
    std::string_view name; // empty for a number
};

struct VisualFormatLength {
    NSLayoutRelation relation = NSLayoutRelation::equal;
    VisualFormatOperand operand;
    std::optional<VisualFormatOperand> priority;
};

struct VisualFormatGap {
    bool isStandard = false; // a bare "-"; else no lengths mean 0
    std::vector<VisualFormatLength> lengths;
};

struct VisualFormatView {
    std::size_t offset = 0;
    std::string_view name;
    std::vector<VisualFormatLength> extents;
};

// The names are parts of the parsed text and live as long as it does.
struct VisualFormat {
    LayoutAxis axis = LayoutAxis::horizontal;
    std::vector<VisualFormatView> views; // never empty
    std::vector<VisualFormatGap> gaps;   // gaps[i] stands after views[i]
    std::optional<VisualFormatGap> gapFromSuperview;
    std::optional<VisualFormatGap> gapToSuperview;
};

// The structure alone: names are not looked up.
std::variant<VisualFormat, VisualFormatError> parseVisualFormat(std::string_view format);

std::variant<std::vector<Ref<NSLayoutConstraint>>, VisualFormatError>
constraintsFromVisualFormat(std::string_view format, NSLayoutFormatOptions options,
                            const NSLayoutConstraint::Metrics& metrics,
                            const NSLayoutConstraint::Views& views);

// One line that shows the format with a mark at the place.
std::string describe(const VisualFormatError& error, std::string_view format);

} // namespace tesmar
