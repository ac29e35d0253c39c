#include "tesmar/platform/text/internal/ShapedText.h"

#include <algorithm>

namespace tesmar {

ShapedTextCache& ShapedTextCache::shared() {
    static auto* cache = new ShapedTextCache;
    return *cache;
}

ShapedTextRef ShapedTextCache::find(const ShapingRequest& request) {
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [&](const Entry& e) { return e.request == request; });
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
