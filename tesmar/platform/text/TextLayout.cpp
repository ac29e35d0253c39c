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

double points(int pangoUnits) {
    return static_cast<double>(pangoUnits) / PANGO_SCALE;
}

// A width or height. A broken font may make pango's sum overflow.
double length(int pangoUnits) {
    return std::max(0.0, points(pangoUnits));
}

CGRect pointsRect(const PangoRectangle& r) {
    return {points(r.x), points(r.y), points(r.width), points(r.height)};
}

// Replaces the line breaks after the start of the last visible line by spaces: where the line is
// cut off by an ellipsis, they would show as symbols.
void joinLinesFrom(PangoLayout* layout, int lastLine, Fallback fallback) {
    if (const auto* line = pango_layout_get_line_readonly(layout, lastLine))
        setLayoutText(layout,
                      replaceSeparatorsBySpaces(pango_layout_get_text(layout),
                                                static_cast<std::size_t>(line->start_index)),
                      fallback);
}

// Whether the font lacks a character of the text, even one that an ellipsis replaces: the wide
// signs for missing glyphs may be why there is one.
bool lacksGlyphs(PangoLayout* layout) {
    if (!pango_layout_is_ellipsized(layout))
        return pango_layout_get_unknown_glyphs_count(layout) > 0;
    const PangoLayoutLine* const line = pango_layout_get_line_readonly(layout, 0);
    if (!line || !line->runs)
        return false;
    const auto* const run = static_cast<const PangoGlyphItem*>(line->runs->data);
    hb_font_t* const font = pango_font_get_hb_font(run->item->analysis.font);
    for (const char* at = pango_layout_get_text(layout); *at; at = g_utf8_next_char(at)) {
        hb_codepoint_t glyph = 0;
        const gunichar character = g_utf8_get_char(at);
        if (g_unichar_isgraph(character) && !hb_font_get_nominal_glyph(font, character, &glyph))
            return true;
    }
    return false;
}

PangoAlignment pangoAlignment(NSTextAlignment alignment) {
    switch (alignment) {
    case NSTextAlignment::center:
        return PANGO_ALIGN_CENTER;
    case NSTextAlignment::right:
        return PANGO_ALIGN_RIGHT;
    case NSTextAlignment::left:
        break;
    }
    return PANGO_ALIGN_LEFT;
}

PangoEllipsizeMode pangoEllipsis(NSLineBreakMode mode) {
    return mode == NSLineBreakMode::truncatingHead     ? PANGO_ELLIPSIZE_START
           : mode == NSLineBreakMode::truncatingMiddle ? PANGO_ELLIPSIZE_MIDDLE
                                                       : PANGO_ELLIPSIZE_END;
}

// Pango puts one where it breaks a word.
void forbidHyphens(PangoLayout* layout) {
    PangoAttrList* const attributes = pango_layout_get_attributes(layout);
    pango_attr_list_insert(attributes, pango_attr_insert_hyphens_new(FALSE));
    pango_layout_set_attributes(layout, attributes);
}

// Aligns a layout without a width in that one, in pango's units, if it need not wrap for that.
void alignIfNarrower(PangoLayout* layout, int width) {
    int own = 0;
    pango_layout_get_size(layout, &own, nullptr);
    if (own <= width)
        pango_layout_set_width(layout, width);
}

// The boxes of the lines that are shown, and the union of what they draw.
struct MeasuredLines {
    std::vector<CGRect> boxes;
    CGRect ink;
};

MeasuredLines measureLines(const ShapedText& text) {
    MeasuredLines lines;
    if (!text.layout)
        return lines;
    PangoLayoutIter* const line = pango_layout_get_iter(text.layout.get());
    do {
        PangoRectangle ink, box;
        pango_layout_iter_get_line_extents(line, &ink, &box);
        lines.boxes.push_back(pointsRect(box));
        if (ink.width > 0 && ink.height > 0)
            lines.ink = CGRectUnion(lines.ink, pointsRect(ink));
    } while (static_cast<int>(lines.boxes.size()) < text.lineCount &&
             pango_layout_iter_next_line(line));
    pango_layout_iter_free(line);
    return lines;
}

// Leaves out the lines after the first `count`.
void limitLines(ShapedText& text, int count) {
    text.lineCount = count;
    const MeasuredLines lines = measureLines(text);
    text.ink = lines.ink;
    text.size = {};
    for (const CGRect& box : lines.boxes)
        text.size = {std::max(text.size.width, box.size.width), std::max(0.0, box.maxY())};
}

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
    GObjectPtr<PangoLayout> makeLayout(const std::string& shown, Fallback fallback) const;
    void render(cairo_t* cr, const ShapedText& s, double scale, const PixelRect& box) const;
};

GObjectPtr<PangoLayout> TextLayout::Impl::makeLayout(const std::string& shown,
                                                     Fallback fallback) const {
    const FontFace& face = *font->face();
    GObjectPtr<PangoLayout> layout = face.shaper.makeLayout(face, font->pointSize(), fallback);
    if (!layout)
        return nullptr;
    pango_layout_set_alignment(layout.get(), pangoAlignment(alignment));
    // Rounded: a width that the layout of views computes may be a little less than it should be.
    const int pangoWidth = width ? static_cast<int>(std::lround(*width * PANGO_SCALE)) : -1;
    if (lineBreakMode != NSLineBreakMode::clipping)
        pango_layout_set_width(layout.get(), pangoWidth);
    pango_layout_set_wrap(layout.get(), lineBreakMode == NSLineBreakMode::charWrapping
                                            ? PANGO_WRAP_CHAR
                                            : PANGO_WRAP_WORD_CHAR);
    const bool hasLastLine = lineCount > 1 && isTruncating(lineBreakMode);
    setLayoutText(layout.get(),
                  lineCount == 1 ? replaceLineBreaks(shown, " ")
                  : hasLastLine  ? replaceLineBreaks(shown, kLineSeparator)
                                 : shown,
                  fallback);
    if (lineBreakMode == NSLineBreakMode::charWrapping)
        forbidHyphens(layout.get());
    if (lineBreakMode == NSLineBreakMode::clipping)
        alignIfNarrower(layout.get(), pangoWidth);
    if (hasLastLine)
        joinLinesFrom(layout.get(), lineCount - 1, fallback);
    if (width && lineCount > 0 && isTruncating(lineBreakMode)) {
        pango_layout_set_ellipsize(layout.get(), pangoEllipsis(lineBreakMode));
        pango_layout_set_height(layout.get(), -lineCount);
    }
    return layout;
}

const ShapedText& TextLayout::Impl::shape() {
    if (shaped)
        return *shaped;
    const auto lock = lockShaping();
    const ShapingRequest request{text,      font->face(), font->pointSize(), width,
                                 lineCount, alignment,    lineBreakMode};
    shaped = ShapedTextCache::shared().find(request);
    if (shaped)
        return *shaped;
    auto s = std::make_shared<ShapedText>();
    s->id = nextId();
    const std::string shown = shownText(text, font->pointSize(), lineBreakMode, lineCount);
    s->layout = makeLayout(shown, Fallback::none);
    if (s->layout && lacksGlyphs(s->layout.get()))
        s->layout = makeLayout(shown, Fallback::installedFonts);
    if (s->layout) {
        PangoRectangle ink, logical;
        pango_layout_get_extents(s->layout.get(), &ink, &logical);
        s->size = {length(logical.width), length(logical.height)};
        s->baseline = points(pango_layout_get_baseline(s->layout.get()));
        s->ink = ink.width > 0 && ink.height > 0 ? pointsRect(ink) : CGRect();
        s->lineCount = pango_layout_get_line_count(s->layout.get());
        if (lineCount > 0 && s->lineCount > lineCount)
            limitLines(*s, lineCount);
        if (width && lineBreakMode == NSLineBreakMode::clipping)
            cutOffAt(*s, *width);
        s->isTruncated = shown != text || pango_layout_is_ellipsized(s->layout.get());
        s->isColored = hasColoredGlyphs(s->layout.get());
    }
    shaped = std::move(s);
    ShapedTextCache::shared().insert(request, shaped);
    return *shaped;
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
    drawGlyphs(cr, s.layout.get(), s.lineCount, isTiled ? Glyphs::inTheClip : Glyphs::all);
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
    constexpr CGFloat kLargestWidth = 100000; // pango's int counts 1024ths of a point
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
    const ShapedText& shaped = impl_->shape();
    const auto lock = lockShaping();
    return measureLines(shaped).boxes;
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
