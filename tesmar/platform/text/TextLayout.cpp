#include "tesmar/platform/text/TextLayout.h"

#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/graphics/internal/CGContextImpl.h"
#include "tesmar/platform/text/UIFont.h"
#include "tesmar/platform/text/internal/FontFace.h"
#include "tesmar/platform/text/internal/ShapedText.h"
#include "tesmar/platform/text/internal/glyphs.h"
#include "tesmar/platform/text/internal/shown_text.h"

#include <array>
#include <atomic>
#include <bit>

namespace tesmar {
namespace {

void cutOffAt(ShapedText& text, double width) {
    text.clipWidth = width;
    text.size.width = std::min(text.size.width, width);
    text.ink = CGRectIntersection(text.ink, {0, text.ink.minY(), width, text.ink.size.height});
}

// A number as part of a cache key.
std::int32_t keyWord(double v) {
    return std::bit_cast<std::int32_t>(static_cast<float>(v));
}

std::int32_t nextId() {
    static std::atomic<std::int32_t> last{0};
    return ++last;
}

} // namespace

struct TextLayout::Impl {
    std::string text;
    Ref<UIFont> font = UIFont::systemFontOfSize(17);
    std::optional<CGFloat> width;
    int lineCount = 1;
    NSTextAlignment alignment = NSTextAlignment::left;
    NSLineBreakMode lineBreakMode = NSLineBreakMode::truncatingTail;

    // The result of shaping the above; null when out of date.
    ShapedTextRef shaped;

    Impl() = default;
    ~Impl() { invalidate(); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    void invalidate() {
        if (!shaped)
            return;
        const auto lock = lockShaping();
        shaped.reset();
    }

    // Sets a property; invalidates only if it changes.
    template <class T>
    void set(T& member, const T& value) {
        if (member == value)
            return;
        invalidate();
        member = value;
    }

    // Shapes the text if that is out of date.
    const ShapedText& shape();
    ShapedTextRef shapeAnew() const;
    void render(cairo_t* cr, const ShapedText& s, double scale, const PixelRect& box) const;
};

const ShapedText& TextLayout::Impl::shape() {
    while (!shaped) {
        shaped = shapeAnew();
        reportMissingTypesetter(); // its handler may change this layout
    }
    return *shaped;
}

ShapedTextRef TextLayout::Impl::shapeAnew() const {
    const auto lock = lockShaping();
    const ShapingRequest request{text,      font->face(), font->pointSize(), width,
                                 lineCount, alignment,    lineBreakMode};
    if (auto known = ShapedTextCache::shared().find(request))
        return known;
    auto s = std::make_shared<ShapedText>();
    s->id = nextId();
    const std::string shown = shownText(text, font->pointSize(), lineBreakMode, lineCount);
    const FontFace& face = *font->face();
    TypesetText typeset = face.typesetter.typeset(
        face, {shown, font->pointSize(), width, lineCount, alignment, lineBreakMode});
    for (const TypesetLine& line : typeset.lines)
        s->size = {std::max(s->size.width, line.box.size.width), std::max(0.0, line.box.maxY())};
    s->baseline = typeset.lines.empty() ? 0 : typeset.lines.front().baseline;
    s->ink = inkOf(typeset.lines);
    if (width && lineBreakMode == NSLineBreakMode::clipping)
        cutOffAt(*s, *width);
    s->isLeftToRight = typeset.isLeftToRight;
    s->isTruncated = shown != text || typeset.isEllipsized;
    s->isColored = hasColoredGlyphs(typeset.lines);
    s->lines = std::move(typeset.lines);
    ShapedTextCache::shared().insert(request, s);
    return s;
}

// Draws so that the top left corner of `box`, in device pixels relative to the layout's top left
// corner, is at the origin of `cr`.
void TextLayout::Impl::render(cairo_t* cr, const ShapedText& s, double scale,
                              const PixelRect& box) const {
    const auto lock = lockShaping();
    // Rounds the first baseline to a whole pixel at every scale.
    const double baseline = s.baseline * scale;
    cairo_translate(cr, -box.x, std::round(baseline) - baseline - box.y);
    cairo_scale(cr, scale, scale);
    const bool isTiled = box.width > kTileSide || box.height > kTileSide;
    drawGlyphs(cr, s.lines, isTiled ? Glyphs::inTheClip : Glyphs::all);
}

TextLayout::TextLayout() : impl_(std::make_unique<Impl>()) {}
TextLayout::~TextLayout() = default;
TextLayout::TextLayout(TextLayout&&) noexcept = default;
TextLayout& TextLayout::operator=(TextLayout&&) noexcept = default;

void TextLayout::setText(std::string_view text) {
    if (text == impl_->text)
        return;
    impl_->set(impl_->text, validText(truncated(text, kLargestText)));
}

const std::string& TextLayout::text() const {
    return impl_->text;
}

void TextLayout::setFont(const Ref<UIFont>& font) {
    const Ref<UIFont> chosen = font ? font : UIFont::systemFontOfSize(17);
    if (chosen->face() != impl_->font->face() || !chosen->isEqual(impl_->font.get()))
        impl_->invalidate();
    impl_->font = chosen;
}

void TextLayout::setWidth(std::optional<CGFloat> width) {
    constexpr CGFloat kLargestWidth = 100000; // typesetters count 1024ths of a point in an int
    impl_->set(impl_->width,
               width ? std::optional(finite(*width, 0, kLargestWidth, 0)) : std::nullopt);
}

void TextLayout::setLineCount(int lines) {
    impl_->set(impl_->lineCount, std::max(lines, 0));
}

void TextLayout::setLineBreakMode(NSLineBreakMode mode) {
    impl_->set(impl_->lineBreakMode, mode);
}

void TextLayout::setAlignment(NSTextAlignment alignment) {
    impl_->set(impl_->alignment, alignment);
}

CGSize TextLayout::size() const {
    return impl_->shape().size;
}
CGFloat TextLayout::baseline() const {
    return impl_->shape().baseline;
}
bool TextLayout::isTruncated() const {
    return impl_->shape().isTruncated;
}

CGRect TextLayout::inkBounds() const {
    const CGRect& ink = impl_->shape().ink;
    // Antialiased edges and rounding to whole pixels add a little.
    return ink.isEmpty() ? CGRect() : CGRectInset(ink, -1.5, -1.5);
}

std::vector<CGRect> TextLayout::lineBoxes() const {
    std::vector<CGRect> boxes;
    for (const TypesetLine& line : impl_->shape().lines)
        boxes.push_back(line.box);
    return boxes;
}

void TextLayout::draw(CGContext& context, CGPoint origin, const UIColor& color) const {
    const ShapedText& shaped = impl_->shape();
    if (shaped.ink.isEmpty())
        return;
    CGContext::Impl& painter = context.impl();
    const double scale = painter.scale;
    const PixelRect corner =
        context.pixels({finiteCoordinate(origin.x), finiteCoordinate(origin.y), 0, 0});
    const auto pixel = [scale](double v, int margin) {
        return static_cast<int>(std::floor(v * scale)) + margin;
    };
    const int left = pixel(shaped.ink.minX(), -1), top = pixel(shaped.ink.minY(), -1);
    PixelRect box{left, top, pixel(shaped.ink.maxX(), 2) - left, pixel(shaped.ink.maxY(), 2) - top};
    if (shaped.clipWidth)
        box = intersection(box, {0, top, pixel(*shaped.clipWidth, 0), box.height});
    if (box.isEmpty())
        return;
    const PixelRect place{corner.x + box.x, corner.y + box.y, box.width, box.height};

    std::array<std::int32_t, 6> key{
        static_cast<std::int32_t>(SurfaceKind::text), shaped.id, keyWord(scale), 0, 0, 0};
    const Paint paint = Paint::of(color).withAlpha(painter.state.alpha);
    if (!shaped.isColored) {
        painter.paintCached(key, place, CAIRO_FORMAT_A8, paint,
                            [&](cairo_t* cr) { impl_->render(cr, shaped, scale, box); });
        return;
    }
    // Glyphs without colours of their own have the text's colour in the cached picture.
    key[3] = keyWord(color.red());
    key[4] = keyWord(color.green());
    key[5] = keyWord(color.blue());
    painter.paintCached(key, place, CAIRO_FORMAT_ARGB32, paint, [&](cairo_t* cr) {
        cairo_set_source_rgb(cr, color.red(), color.green(), color.blue());
        impl_->render(cr, shaped, scale, box);
    });
}

} // namespace tesmar
