// Shaped text, and a cache of it: panels show the same words again and again. Guarded by the
// shaping lock.
#pragma once

#include "tesmar/platform/geometry/geometry.h"
#include "tesmar/platform/text/TextLayout.h"
#include "tesmar/platform/text/internal/FontFace.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tesmar {

// Lengths are in points.
struct ShapedText {
    std::vector<TypesetLine> lines; // none on a machine without fonts
    std::int32_t id = 0;            // unique, for keys of cached surfaces
    CGSize size;
    double baseline = 0;             // of the first line, from the top
    CGRect ink;                      // relative to the top left corner
    std::optional<double> clipWidth; // what is drawn beyond it is cut off
    bool isLeftToRight = true;       // the first line
    bool isTruncated = false;
    bool isColored = false; // some of its fonts have coloured glyphs
};

using ShapedTextRef = std::shared_ptr<const ShapedText>;

// Everything that shaping depends on; see TextLayout.
struct ShapingRequest {
    std::string text;
    FontFaceRef face;
    CGFloat pointSize = 0;
    std::optional<CGFloat> width;
    int lineCount = 1;
    NSTextAlignment alignment = NSTextAlignment::left;
    NSLineBreakMode lineBreakMode = NSLineBreakMode::truncatingTail;

    bool operator==(const ShapingRequest&) const = default;
};

class ShapedTextCache {
  public:
    static constexpr std::size_t kCapacity = 64;           // texts
    static constexpr std::size_t kLongestCachedText = 128; // bytes; longer ones rarely repeat

    // Never destroyed: threads may shape text until the process ends.
    static ShapedTextCache& shared();

    // Null if it is not cached.
    ShapedTextRef find(const ShapingRequest& request);
    // Evicts the least recently used text when the cache is full.
    void insert(const ShapingRequest& request, const ShapedTextRef& text);

  private:
    struct Entry {
        ShapingRequest request;
        ShapedTextRef text;
    };
    std::vector<Entry> entries_; // most recently used last
};

} // namespace tesmar
