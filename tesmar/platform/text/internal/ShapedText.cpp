#include "tesmar/platform/text/internal/ShapedText.h"

#include <algorithm>

namespace tesmar {

ShapedTextCache& ShapedTextCache::shared() {
    static auto* cache = new ShapedTextCache;
    return *cache;
}

ShapedTextRef ShapedTextCache::find(const ShapingRequest& request) {
    const auto matches = [&](const Entry& e) { return e.request == request; };
    auto found = std::ranges::find_if(entries_, matches);
    // Labels are shaped without a width first, to be measured. One line that starts on the left is
    // the same in every width that it fits into, unless its ink is cut off there.
    if (found == entries_.end() && request.width && request.lineCount == 1 &&
        request.alignment == NSTextAlignment::left &&
        request.lineBreakMode != NSLineBreakMode::clipping) {
        ShapingRequest unlimited = request;
        unlimited.width.reset();
        found = std::ranges::find_if(entries_, [&](const Entry& e) {
            return e.request == unlimited && e.text->size.width <= *request.width &&
                   e.text->isLeftToRight;
        });
    }
    if (found == entries_.end())
        return nullptr;
    std::rotate(found, found + 1, entries_.end());
    return entries_.back().text;
}

void ShapedTextCache::insert(const ShapingRequest& request, const ShapedTextRef& text) {
    if (request.text.size() > kLongestCachedText)
        return;
    if (entries_.size() == kCapacity)
        entries_.erase(entries_.begin());
    entries_.push_back({request, text});
}

} // namespace tesmar
