#include "HandPainting.h"

#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/graphics/UIGraphics.h"
#include "tesmar/platform/ui/UILabel.h"
#include "tesmar/tesmar.h"

#include <algorithm>

using namespace tesmar;

namespace {

using Pixels = std::vector<std::uint32_t>;

int alpha(const Pixels& pixels, const PixelRect& area, int x, int y) {
    const auto row = static_cast<std::size_t>(y - area.y),
               column = static_cast<std::size_t>(x - area.x);
    return static_cast<int>(pixels[row * static_cast<std::size_t>(area.width) + column] >> 24);
}

// The part of `area` that is not transparent.
PixelRect inked(const Pixels& pixels, const PixelRect& area) {
    int left = area.right(), top = area.bottom(), right = area.x, bottom = area.y;
    for (int y = area.y; y < area.bottom(); ++y)
        for (int x = area.x; x < area.right(); ++x)
            if (alpha(pixels, area, x, y) > 0) {
                left = std::min(left, x), right = std::max(right, x + 1);
                top = std::min(top, y), bottom = std::max(bottom, y + 1);
            }
    return {left, top, right - left, bottom - top};
}

} // namespace

HandPainting::HandPainting(UIWindow& window)
    : window_(window), clip_(window.surfacePixels(window.bounds())) {
    const auto view = [&](const char* identifier) -> UIView& {
        return *window_.viewWithIdentifier(identifier);
    };
    const auto black = UIColor::blackColor();
    addCard();
    addView(view("CCLabel"), black);
    addSwitch();
    addSeparator("bottomSeparator");
    const PixelRect whole = clip_;
    clip_ = window_.surfacePixels(frame("containerScrollView"));
    addView(view("backgroundColorPicker.title"), black);
    addSwatches("backgroundColorPicker");
    for (const char* identifier : {"fontPicker.fontLabel", "fontPicker.prev", "fontPicker.name",
                                   "fontPicker.next", "fontPicker.sizeLabel", "fontPicker.size"})
        addView(view(identifier), black);
    addSeparator("separator");
    addView(view("textColorOpacityLabel"), black);
    addView(view("textColorOpacityStepper"), black);
    addView(view("textColorPicker.title"), black);
    addSwatches("textColorPicker");
    addFade(frame("containerScrollView"));
    clip_ = whole;
    auto& reset = dynamic_cast<UILabel&>(*view("resetButton").subviews().at(0));
    addView(reset, reset.textColor());
    addSeparator("topSeparator");
}

CGRect HandPainting::frame(const std::string& identifier) const {
    return frame(*window_.viewWithIdentifier(identifier));
}

// Views draw from their origin rounded to a pixel.
CGRect HandPainting::frame(const UIView& view) const {
    const CGRect exact = view.convertRectTo(view.bounds(), nullptr);
    const PixelRect corner = snappedToPixels({exact.origin, {}}, window_.scale());
    return {corner.x / window_.scale(), corner.y / window_.scale(), exact.size.width,
            exact.size.height};
}

void HandPainting::addFill(CGRect rect, const Ref<UIColor>& color) {
    elements_.push_back({intersection(window_.surfacePixels(rect), clip_), nullptr, color});
}

void HandPainting::addMask(CGRect rect, const Ref<UIColor>& color, const Drawing& drawing) {
    const double scale = window_.scale();
    const PixelRect area = intersection(window_.surfacePixels(rect), clip_);
    if (area.isEmpty())
        return;
    Pixels pixels(static_cast<std::size_t>(area.width) * static_cast<std::size_t>(area.height));
    CGContext context(pixels.data(), area.width, area.height, area.width * 4, scale);
    context.translate(-area.x / scale, -area.y / scale);
    UIGraphicsPushContext(context);
    drawing(context);
    UIGraphicsPopContext();
    context.finish();

    const PixelRect place = inked(pixels, area);
    if (place.isEmpty())
        return;
    cairo_surface_t* const mask =
        cairo_image_surface_create(CAIRO_FORMAT_A8, place.width, place.height);
    elements_.push_back({place, decltype(Element::mask)(mask), color});
    cairo_surface_flush(mask);
    for (int y = 0; y < place.height; ++y)
        for (int x = 0; x < place.width; ++x)
            cairo_image_surface_get_data(mask)[y * cairo_image_surface_get_stride(mask) + x] =
                static_cast<unsigned char>(alpha(pixels, area, place.x + x, place.y + y));
    cairo_surface_mark_dirty(mask);
}

// The sheet's edges, where its corners and its shadow are, as masks; the rest as one rectangle.
void HandPainting::addCard() {
    const CGRect card = frame("card");
    const CGFloat corner = 14, blur = 16, top = card.minY() + corner, bottom = card.maxY() - corner;
    const auto black = UIColor::blackColor();
    const auto shade = UIColor::colorWithWhite(0, 0.45), paper = UIColor::whiteColor();
    const auto shadow = [&](CGContext& c) { c.drawShadow(card, corner, blur, {0, 4}, *black); };
    const auto sheet = [&](CGContext& c) { c.fillRoundedRect(card, corner); };
    const CGRect around = CGRectInset(card, -24, -24);
    const auto band = [&](CGFloat left, CGFloat from, CGFloat right, CGFloat to) {
        return CGRect(left, from, right - left, to - from);
    };
    addMask(band(around.minX(), around.minY(), around.maxX(), top), shade, shadow);
    addMask(band(around.minX(), bottom, around.maxX(), around.maxY()), shade, shadow);
    addMask(band(around.minX(), top, card.minX(), bottom), shade, shadow);
    addMask(band(card.maxX(), top, around.maxX(), bottom), shade, shadow);
    addMask(band(card.minX(), card.minY(), card.maxX(), top), paper, sheet);
    addFill(band(card.minX(), top, card.maxX(), bottom), paper);
    addMask(band(card.minX(), bottom, card.maxX(), card.maxY()), paper, sheet);
}

// Switched off, as it is in the measured frames.
void HandPainting::addSwitch() {
    const CGRect track = frame("CCSwitch");
    const CGRect thumb(track.minX() + 2, track.minY() + 2, 27, 27);
    const auto black = UIColor::blackColor();
    addMask(track, UIColor::colorWithRed(0.52, 0.52, 0.54, 1),
            [&](CGContext& c) { c.fillRoundedRect(track, track.size.height / 2); });
    const CGRect mark = CGRect(34, 10, 11, 11).offsetBy(track.origin);
    addMask(mark, UIColor::whiteColor(), [&](CGContext& c) { c.fillRoundedFrame(mark, 5.5, 2); });
    addMask(CGRectInset(thumb, -5, -5), UIColor::colorWithWhite(0, 0.35), [&](CGContext& c) {
        c.drawShadow(thumb, 13.5, 3, {0, 1}, *black);
    });
    addMask(thumb, UIColor::whiteColor(), [&](CGContext& c) { c.fillRoundedRect(thumb, 13.5); });
}

// At the bottom, where the scroll view hides content in the measured frames.
void HandPainting::addFade(CGRect scrollView) {
    const CGFloat length = 16, pixel = 1 / window_.scale();
    const PixelRect edges = snappedToPixels(scrollView, window_.scale());
    const CGFloat bottom = edges.bottom() * pixel;
    const int lines = floorToInt(length / pixel);
    for (int line = 0; line < lines; ++line) {
        const CGRect place(edges.x * pixel, bottom - (line + 1) * pixel, edges.width * pixel,
                           pixel);
        addFill(place, UIColor::colorWithWhite(1, 1 - (line + 0.5) / lines));
    }
}

void HandPainting::addSeparator(const std::string& identifier) {
    addFill(frame(identifier), window_.viewWithIdentifier(identifier)->backgroundColor());
}

void HandPainting::addView(UIView& view, const Ref<UIColor>& color) {
    const CGRect place = frame(view);
    addMask(CGRectInset(place, -8, -8), color, [&](CGContext& context) {
        context.translate(place.minX(), place.minY());
        view.draw(view.bounds());
    });
}

void HandPainting::addSwatches(const std::string& picker) {
    for (int i = 0; i < 8; ++i) {
        const std::string identifier = picker + "." + std::to_string(i);
        const auto& swatch =
            dynamic_cast<const ColorPickerButton&>(*window_.viewWithIdentifier(identifier));
        const CGRect place = frame(identifier), disc = CGRectInset(place, 5, 5);
        if (swatch.isSelected())
            addMask(place, UIColor::colorWithWhite(0.831, 1),
                    [&](CGContext& c) { c.fillEllipse(place); });
        addMask(place, UIColor::grayColor(), [&](CGContext& c) { c.strokeEllipse(disc); });
        addMask(place, swatch.color(), [&](CGContext& c) { c.fillEllipse(disc); });
    }
}

void HandPainting::paint(std::uint32_t* pixels, int stride,
                         std::span<const PixelRect> damage) const {
    const CGSize size = window_.pixelSize();
    cairo_surface_t* const surface = cairo_image_surface_create_for_data(
        reinterpret_cast<unsigned char*>(pixels), CAIRO_FORMAT_ARGB32, static_cast<int>(size.width),
        static_cast<int>(size.height), stride);
    cairo_t* const cr = cairo_create(surface);
    for (const PixelRect& part : damage) {
        cairo_rectangle(cr, part.x, part.y, part.width, part.height);
        cairo_clip(cr);
        cairo_set_operator(cr, CAIRO_OPERATOR_CLEAR);
        cairo_paint(cr);
        cairo_set_operator(cr, CAIRO_OPERATOR_OVER);
        for (const auto& [place, mask, color] : elements_) {
            if (intersection(place, part).isEmpty())
                continue;
            cairo_set_source_rgba(cr, color->red(), color->green(), color->blue(), color->alpha());
            if (mask) {
                cairo_mask_surface(cr, mask.get(), place.x, place.y);
            } else {
                cairo_rectangle(cr, place.x, place.y, place.width, place.height);
                cairo_fill(cr);
            }
        }
        cairo_reset_clip(cr);
    }
    cairo_destroy(cr);
    cairo_surface_finish(surface);
    cairo_surface_destroy(surface);
}
