// UTF-8 against UTF-16, as binary property lists need it. Any thread.
#pragma once

#include <string>
#include <string_view>

namespace tesmar {

bool isValidUtf8(std::string_view text);

// A surrogate without its other half becomes three bytes of its own, which are not valid UTF-8 but
// which utf16FromUtf8 turns back.
std::string utf8FromUtf16(std::u16string_view units);

// Each byte that belongs to no character becomes U+FFFD.
std::u16string utf16FromUtf8(std::string_view text);

} // namespace tesmar
