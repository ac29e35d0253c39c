#include "tesmar/platform/foundation/archive/internal/utf.h"

#include <cstdint>

namespace tesmar {
namespace {

constexpr bool isHighSurrogate(char32_t c) {
    return c >= 0xD800 && c < 0xDC00;
}
constexpr bool isLowSurrogate(char32_t c) {
    return c >= 0xDC00 && c < 0xE000;
}

struct Decoded {
    char32_t character;
    std::size_t length; // 0: the first byte is not part of a character
};

// The character at the start of `text`, which may be a surrogate. Rejects overlong forms.
Decoded decodeFirst(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
    const std::uint8_t first = byte(0);
    if (first < 0x80)
        return {first, 1};
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length)
        return {0, 0};
    char32_t character = first & (0x7F >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80)
            return {0, 0};
        character = character << 6 | (byte(i) & 0x3F);
    }
    constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (character < kSmallest[length] || character > 0x10FFFF)
        return {0, 0};
    return {character, length};
}

void append(std::string& text, char32_t c) {
    const auto add = [&](char32_t byte) { text += static_cast<char>(byte); };
    if (c < 0x80) {
        add(c);
    } else if (c < 0x800) {
        add(0xC0 | c >> 6);
        add(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        add(0xE0 | c >> 12);
        add(0x80 | (c >> 6 & 0x3F));
        add(0x80 | (c & 0x3F));
    } else {
        add(0xF0 | c >> 18);
        add(0x80 | (c >> 12 & 0x3F));
        add(0x80 | (c >> 6 & 0x3F));
        add(0x80 | (c & 0x3F));
    }
}

} // namespace

bool isValidUtf8(std::string_view text) {
    while (!text.empty()) {
        const Decoded decoded = decodeFirst(text);
        if (decoded.length == 0 || isHighSurrogate(decoded.character) ||
            isLowSurrogate(decoded.character))
            return false;
        text.remove_prefix(decoded.length);
    }
    return true;
}

std::string utf8FromUtf16(std::u16string_view units) {
    std::string text;
    text.reserve(units.size());
    for (std::size_t i = 0; i < units.size(); ++i) {
        char32_t character = units[i];
        if (isHighSurrogate(character) && i + 1 < units.size() && isLowSurrogate(units[i + 1]))
            character = 0x10000 + ((character - 0xD800) << 10) + (units[++i] - 0xDC00u);
        append(text, character);
    }
    return text;
}

std::u16string utf16FromUtf8(std::string_view text) {
    std::u16string units;
    units.reserve(text.size());
    while (!text.empty()) {
        const Decoded decoded = decodeFirst(text);
        if (decoded.length == 0) {
            units += u'\uFFFD';
            text.remove_prefix(1);
            continue;
        }
        text.remove_prefix(decoded.length);
        if (decoded.character < 0x10000) {
            units += static_cast<char16_t>(decoded.character);
        } else {
            const char32_t offset = decoded.character - 0x10000;
            units += static_cast<char16_t>(0xD800 + (offset >> 10));
            units += static_cast<char16_t>(0xDC00 + (offset & 0x3FF));
        }
    }
    return units;
}

} // namespace tesmar
