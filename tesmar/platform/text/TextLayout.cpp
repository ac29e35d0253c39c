#include "tesmar/platform/text/TextLayout.h"

#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/graphics/internal/CGContextImpl.h"
#include "tesmar/platform/text/UIFont.h"
#include "tesmar/platform/text/internal/FontFace.h"
#include "tesmar/platform/text/internal/ShapedText.h"
#include "tesmar/platform/text/internal/glyphs.h"
#include "tesmar/platform/text/internal/shown_text.h"
#include "tesmar/platform/text/internal/text_edge.h"

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

using SurfaceWords = std::array<std::int32_t, 6>;

SurfaceWords textKey(SurfaceKind kind, const ShapedText& text, double scale) {
    return {static_cast<std::int32_t>(kind), text.id, keyWord(scale), 0, 0, 0};
}

std::int32_t nextId() {
    static std::atomic<std::int32_t> last{0};
    return ++last;
}

// The device pixels that the characters may touch, relative to the layout's top left corner.
PixelRect inkBox(const ShapedText& text, double scale) {
    if (text.ink.isEmpty())
        return {};
    const auto pixel = [scale](double v, int margin) {
        return static_cast<int>(std::floor(v * scale)) + margin;
    };
    const int left = pixel(text.ink.minX(), -1), top = pixel(text.ink.minY(), -1);
    const PixelRect box{left, top, pixel(text.ink.maxX(), 2) - left,
                        pixel(text.ink.maxY(), 2) - top};
    if (text.clipWidth)
        return intersection(box, {0, top, pixel(*text.clipWidth, 0), box.height});
    return box;
}

PixelRect insetPixels(const PixelRect& r, int by) {
    return {r.x + by, r.y + by, r.width - 2 * by, r.height - 2 * by};
}

// Such a box in device pixels of the context.
PixelRect placed(const PixelRect& box, const CGContext& context, CGPoint origin) {
    const PixelRect corner =
        context.pixels({finiteCoordinate(origin.x), finiteCoordinate(origin.y), 0, 0});
    return {corner.x + box.x, corner.y + box.y, box.width, box.height};
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
    SurfacePtr coverage(const ShapedText& s, double scale, const PixelRect& box,
                        const PixelRect& area) const;
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

// What the characters cover of `area`, as an A8 surface; `box` is that of render(). Shares cached
// pictures with the text itself, unless that has colours of its own. Null if there is no memory.
SurfacePtr TextLayout::Impl::coverage(const ShapedText& s, double scale, const PixelRect& box,
                                      const PixelRect& area) const {
    SurfacePtr whole = emptySurface(CAIRO_FORMAT_A8, area.width, area.height);
    if (!whole)
        return nullptr;
    const auto key = textKey(s.isColored ? SurfaceKind::textEdge : SurfaceKind::text, s, scale);
    const std::unique_ptr<cairo_t, CairoDeleter> cr(cairo_create(whole.get()));
    forEachCachedTile(
        key, box, intersection(box, area), CAIRO_FORMAT_A8,
        [&](cairo_t* c) { render(c, s, scale, box); },
        [&](cairo_surface_t* surface, const PixelRect& tile) {
            cairo_set_source_surface(cr.get(), surface, tile.x - area.x, tile.y - area.y);
            cairo_paint(cr.get());
        });
    return whole;
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

CGRect TextLayout::edgeBounds(TextEdge edge) const {
    const CGRect ink = inkBounds();
    if (ink.isEmpty() || edge == TextEdge::none)
        return {};
    // At scales above 1, a reach is at most as large in points.
    const EdgeReach reach = edgeReach(edge, impl_->font->pointSize());
    return {ink.minX() - reach.left, ink.minY() - reach.top,
            ink.size.width + reach.left + reach.right, ink.size.height + reach.top + reach.bottom};
}

void TextLayout::drawEdge(CGContext& context, CGPoint origin, TextEdge edge, const UIColor& color,
                          CGFloat textAlpha) const {
    const ShapedText& shaped = impl_->shape();
    CGContext::Impl& painter = context.impl();
    const double scale = painter.scale, fontSize = impl_->font->pointSize() * scale;
    const PixelRect ink = inkBox(shaped, scale);
    if (edge == TextEdge::none || ink.isEmpty())
        return;
    const int margin = edgeMargin(edge, fontSize);
    const PixelRect box = insetPixels(ink, -margin);
    // Whole 255ths, so that a text that fades has a limited number of pictures.
    const auto alpha = static_cast<std::int32_t>(
        std::lround(finite(textAlpha, 0, 1, 0) * painter.state.alpha * 255));
    SurfaceWords key = textKey(SurfaceKind::textEdge, shaped, scale);
    key[3] = static_cast<std::int32_t>(edge);
    key[4] = alpha;
    const auto render = [&](cairo_t* cr) {
        cairo_surface_t* const mask = cairo_get_target(cr);
        double x = 0, y = 0; // of the tile, in the box
        cairo_device_to_user(cr, &x, &y);
        const PixelRect tile{box.x + static_cast<int>(x), box.y + static_cast<int>(y),
                             cairo_image_surface_get_width(mask),
                             cairo_image_surface_get_height(mask)};
        const SurfacePtr glyphs = impl_->coverage(shaped, scale, ink, insetPixels(tile, -margin));
        if (glyphs)
            renderEdge(mask, glyphs.get(), edge, fontSize, alpha / 255.0);
    };
    painter.paintCached(key, placed(box, context, origin), CAIRO_FORMAT_A8,
                        Paint::of(color).withAlpha(painter.state.alpha), render);
}

void TextLayout::draw(CGContext& context, CGPoint origin, const UIColor& color) const {
    const ShapedText& shaped = impl_->shape();
    CGContext::Impl& painter = context.impl();
    const double scale = painter.scale;
    const PixelRect box = inkBox(shaped, scale);
    if (box.isEmpty())
        return;
    const PixelRect place = placed(box, context, origin);

    SurfaceWords key = textKey(SurfaceKind::text, shaped, scale);
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
