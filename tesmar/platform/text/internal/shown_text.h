// Prepares text for shaping: valid, of limited length, and with line breaks as the layout needs
// them.
#pragma once

#include "tesmar/platform/text/NSLineBreakMode.h"

#include <string>
#include <string_view>

namespace tesmar {

inline constexpr std::string_view kLineSeparator = "\u2028";

inline bool isTruncating(NSLineBreakMode mode) {
    return mode >= NSLineBreakMode::truncatingHead;
}

// Cuts off at a character boundary. `limit` is in bytes.
std::string truncated(std::string_view text, std::size_t limit);

// Replaces invalid UTF-8.
std::string validText(std::string_view text);

// The part of valid UTF-8 that is shaped, with an ellipsis where the rest is left out.
std::string shownText(const std::string& text, double pointSize, NSLineBreakMode mode,
                      int lineCount);

// Replaces each LF, CR and CR LF. Pango applies a limit of lines to each paragraph, so the text has
// to become one paragraph.
std::string replaceLineBreaks(const std::string& text, std::string_view lineBreak);

// Replaces line separators from byte `from` on.
std::string replaceSeparatorsBySpaces(std::string text, std::size_t from);

} // namespace tesmar
