#include "tesmar/platform/text/internal/shown_text.h"

#include "tesmar/platform/text/TextLayout.h"

#include <glib.h>

#include <algorithm>

namespace tesmar {
namespace {

enum class Omitted { start, middle, end };

Omitted omittedPart(NSLineBreakMode mode, int lineCount) {
    if (mode == NSLineBreakMode::truncatingHead && lineCount == 1)
        return Omitted::start;
    return mode == NSLineBreakMode::truncatingHead || mode == NSLineBreakMode::truncatingMiddle
               ? Omitted::middle
               : Omitted::end;
}

} // namespace

std::string truncated(std::string_view text, std::size_t limit) {
    if (text.size() <= limit)
        return std::string(text);
    std::size_t end = limit;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        --end;
    return std::string(text.substr(0, end));
}

std::string validText(std::string_view text) {
    gchar* const valid = g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()));
    std::string result(valid);
    g_free(valid);
    return result;
}

std::string shownText(const std::string& text, double pointSize, NSLineBreakMode mode,
                      int lineCount) {
    const Omitted omitted = omittedPart(mode, lineCount);
    // In any font the characters, one below or beside the other, then stay within pango's int.
    constexpr double kLargestTotalSize = 500'000; // points
    const auto most = static_cast<glong>(
        std::min<double>(TextLayout::kMostShownCharacters, kLargestTotalSize / pointSize));
    if (text.size() <= static_cast<std::size_t>(most) ||
        g_utf8_strlen(text.data(), static_cast<gssize>(text.size())) <= most)
        return text;
    const glong first = omitted == Omitted::start    ? 0
                        : omitted == Omitted::middle ? most / 2
                                                     : most;
    const char* const end = text.data() + text.size();
    const char* const firstEnd = g_utf8_offset_to_pointer(text.data(), first);
    const char* const lastStart = g_utf8_offset_to_pointer(end, first - most);
    return std::string(text.data(), firstEnd) + "\u2026" + std::string(lastStart, end);
}

std::string replaceLineBreaks(const std::string& text, std::string_view lineBreak) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
            continue;
        if (text[i] == '\n' || text[i] == '\r')
            result += lineBreak;
        else
            result += text[i];
    }
    return result;
}

std::string replaceSeparatorsBySpaces(std::string text, std::size_t from) {
    for (auto at = text.find(kLineSeparator, from); at != std::string::npos;
         at = text.find(kLineSeparator, at))
        text.replace(at, kLineSeparator.size(), 1, ' ');
    return text;
}

} // namespace tesmar
