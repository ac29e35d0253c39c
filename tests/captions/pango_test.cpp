// Styles that Pango and GStreamer draw, beside the library's own drawing of the same text, and
// those of the web.
#include "tests/captions/other_engines.h"

#include <cstdio>
#include <fstream>
#include <pango/pangocairo.h>

namespace tesmar {
namespace {

constexpr std::size_t kPixels = std::size_t{kWidth} * kScale * kHeight * kScale;

std::vector<std::uint32_t> drawWithPango(const TESMARCaptionStyle& style) {
    std::vector<std::uint32_t> pixels(kPixels, kGray);
    cairo_surface_t* const surface = cairo_image_surface_create_for_data(
        reinterpret_cast<unsigned char*>(pixels.data()), CAIRO_FORMAT_ARGB32, kWidth * kScale,
        kHeight * kScale, kWidth * kScale * 4);
    cairo_t* const cairo = cairo_create(surface);
    PangoLayout* const layout = pango_cairo_create_layout(cairo);
    pango_cairo_context_set_resolution(pango_layout_get_context(layout), 96);
    const std::string markup = TESMARPangoMarkup(TESMARPangoStyle(style, kScale), kText);
    pango_layout_set_markup(layout, markup.c_str(), -1);
    cairo_move_to(cairo, 40, 40);
    pango_cairo_show_layout(cairo, layout);
    g_object_unref(layout);
    cairo_destroy(cairo);
    cairo_surface_destroy(surface);
    return pixels;
}

// A value in the pipeline's own quotes, within those of the shell.
std::string quoted(const std::string& text) {
    std::string value = "'\"";
    for (const char c : text)
        value += c == '"' ? "\\\"" : std::string(1, c);
    return value + "\"'";
}

std::vector<std::uint32_t> drawWithGStreamer(const TESMARCaptionStyle& style) {
    std::string command =
        "gst-launch-1.0 -q videotestsrc num-buffers=1 pattern=solid-color "
        "foreground-color=0xff808080 ! video/x-raw,format=BGRx,width=" +
        std::to_string(kWidth * kScale) + ",height=" + std::to_string(kHeight * kScale) +
        " ! textoverlay text=" + quoted(TESMARPangoMarkup(TESMARPangoStyle(style, kScale), kText));
    for (const auto& [name, value] : TESMARGStreamerStyle(style, kScale).fields)
        command.append(" ").append(name).append("=").append(value);
    EXPECT_EQ(std::system((command + " ! filesink location=frame.raw").c_str()), 0);
    std::vector<std::uint32_t> pixels(kPixels);
    std::ifstream("frame.raw").read(reinterpret_cast<char*>(pixels.data()), 4 * kPixels);
    for (auto& pixel : pixels)
        pixel |= 0xff000000;
    return pixels;
}

TEST(Pango, DrawsWhatTheLibraryDraws) {
    compareDrawings(drawWithPango);
}

TEST(GStreamer, DrawsWhatTheLibraryDraws) {
    compareDrawings(drawWithGStreamer, {20}, {0.5});
}

TEST(Renderers, NothingEscapesFromTheirFields) {
    TESMARCaptionStyle style;
    style.text = {1, 0.5, 0, 0.5};
    style.points = 20;
    style.face.family = "a\"'<&\\b\n,c}";
    style.face.file = "f";
    style.edge = TextEdge::uniform;
    const auto has = [](const std::string& text, std::string_view part) {
        EXPECT_NE(text.find(part), std::string::npos) << text;
    };
    const std::string css = TESMARWebVTTCSS(TESMARWebVTTStyle(style, 2), "a b\");");
    has(css, "color: rgba(255, 128, 0, 0.5);");
    has(css, R"("a\22 '\3C &\5C b\0A ,c}", sans-serif;)");
    has(css, R"(src: url("a b\22 );"))");
    has(css, "font-size: 40px;");
    const auto ttml = TESMARTTMLStyle(style, NAN);
    has(TESMARTTMLAttributes(ttml), "tts:color=\"#FF800080\" ");
    has(TESMARTTMLAttributes(ttml), "a&quot;'&lt;&amp;\\b\n,c}, default\" tts:fontSize=\"20px\"");
    has(TESMARPangoMarkup(TESMARPangoStyle(style, 1), "<b>"), ">&lt;b&gt;</span>");
    style.window = {0, 0, 0, 1};
    style.edge = TextEdge::depressed;
    EXPECT_EQ(TESMARTTMLStyle(style, 1).losses.size(), 2u);
    const auto line = TESMARAssStyleLine("a,b\n", TESMARAssStyle(style, 100, 100));
    EXPECT_EQ(std::ranges::count(line, ','), 22); // as many fields as there are
}

} // namespace
} // namespace tesmar
