// Conversion between UTF-8 and UTF-16 for binary property lists. Any thread.
#pragma once

#include <string>
#include <string_view>

namespace tesmar {

bool isValidUtf8(std::string_view text);

// An unpaired surrogate becomes three bytes, which are not valid UTF-8 but which utf16FromUtf8
// converts back.
std::string utf8FromUtf16(std::u16string_view units);

// Each byte that is not part of a character becomes U+FFFD.
std::u16string utf16FromUtf8(std::string_view text);

} // namespace tesmar
