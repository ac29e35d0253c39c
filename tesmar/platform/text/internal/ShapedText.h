// A text after shaping, and the last of them kept: panels come and go with the same words on them.
// Private to the floor; everything here is guarded by the shaping lock.
#pragma once

#include "tesmar/platform/geometry/geometry.h"
#include "tesmar/platform/text/TextLayout.h"
#include "tesmar/platform/text/internal/FontFace.h"
#include "tesmar/platform/text/internal/shaping.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tesmar {

struct ShapedText {
    GObjectPtr<PangoLayout> layout; // null when there is no font to shape with
    std::int32_t id = 0;            // names its kept pixels
    CGSize size;
    double baseline = 0;
    CGRect ink;
    bool isTruncated = false;
    bool isColored = false;
};

using ShapedTextRef = std::shared_ptr<const ShapedText>;

// All that shaping depends on.
struct ShapingRequest {
    std::string text;
    FontFaceRef face;
    CGFloat pointSize = 0;
    std::optional<CGFloat> width;
    int lineCount = 1;
    NSTextAlignment alignment = NSTextAlignment::left;

    bool operator==(const ShapingRequest&) const = default;
};

class ShapedTextCache {
  public:
    static constexpr std::size_t kMostTexts = 64;
    static constexpr std::size_t kLongestText = 128; // bytes; longer ones hardly come twice

    // Never destroyed: threads may shape until the very end of the process.
    static ShapedTextCache& shared();

    // Null when it is not kept.
    ShapedTextRef find(const ShapingRequest& request);
    void keep(const ShapingRequest& request, const ShapedTextRef& text);

  private:
    struct Entry {
        ShapingRequest request;
        ShapedTextRef text;
    };
    std::vector<Entry> entries_; // used last, kept last
};

} // namespace tesmar
