// Writes a style in the words of other caption renderers, for hosts whose video engine draws the
// captions itself:
//
//     const auto style = TESMARCaptionStyleFrom(panel->CCStyleAttributes());
//     const auto words = TESMARMpvStyle(style, window->frame().size.height);
//     for (const auto& [name, value] : words.fields)
//         mpv_set_property_string(mpv, name.c_str(), value.c_str());
//     for (const auto& loss : words.losses)
//         std::printf("captions: %s\n", loss.c_str());
//
// A style's size is in points of the host's window. A height that is passed is clamped to 1…100000,
// or counts as 360 if it is NaN. All functions may be called by any thread; none fails.
// docs/renderers.md shows each engine's pictures beside the library's own.
#pragma once

#include "tesmar/captions/TESMARCaptionStyle.h"

#include <string>
#include <string_view>
#include <vector>

namespace tesmar {

struct TESMARRendererStyle {
    struct Field {
        std::string name;
        std::string value;
        bool operator==(const Field&) const = default;
    };
    std::vector<Field> fields; // in the renderer's own order
    // What the renderer can't show of this style: English, each without a full stop, for a log.
    std::vector<std::string> losses;
};

// mpv's properties. `windowHeight` is that of the window which mpv draws into, in points; write
// again when it changes. They apply at once and keep the cue that is shown. All are set each time,
// so that nothing remains of an earlier style. The font is found by its name: its file must be
// installed, or in the directory that mpv's own options name.
TESMAR_API TESMARRendererStyle TESMARMpvStyle(const TESMARCaptionStyle& style, double windowHeight);

enum class TESMARAssBox {
    perLine, // a box for each line, without edges
    perCue   // one box around all lines
};

// The fields of a style of libass, from Fontname to Encoding, in the order of its default format:
// centred at the bottom, with margins of a twentieth of the height. `pictureHeight` is the
// picture's in points, `playResY` the script's.
TESMAR_API TESMARRendererStyle TESMARAssStyle(const TESMARCaptionStyle& style, double pictureHeight,
                                              double playResY,
                                              TESMARAssBox box = TESMARAssBox::perLine);
// The line of a script that defines the style of that name: "Style: NAME,…".
TESMAR_API std::string TESMARAssStyleLine(std::string_view name, const TESMARRendererStyle& style);

// The rest draws into pixels or units of CSS: `pixelsPerPoint` is how many of them a point of the
// host's window has; clamped to 0.01…100, and 1 if it is NaN.

// The attributes of a span of Pango's markup, for layouts with 96 dots per inch.
TESMAR_API TESMARRendererStyle TESMARPangoStyle(const TESMARCaptionStyle& style,
                                                double pixelsPerPoint);
// "<span …>TEXT</span>": the fields of TESMARPangoStyle around the text, which is escaped.
TESMAR_API std::string TESMARPangoMarkup(const TESMARRendererStyle& style, std::string_view text);

// The properties of GStreamer's textoverlay; its texts come as TESMARPangoMarkup with
// TESMARPangoStyle. Pixels are the video's.
TESMAR_API TESMARRendererStyle TESMARGStreamerStyle(const TESMARCaptionStyle& style,
                                                    double pixelsPerPoint);

// The declarations of CSS for ::cue. Write them again when the video's size changes.
TESMAR_API TESMARRendererStyle TESMARWebVTTStyle(const TESMARCaptionStyle& style,
                                                 double pixelsPerPoint);
// The rule, and before it that of the font at `fontUrl` (TESMARCaptionStyle::face has its file),
// unless that is empty.
TESMAR_API std::string TESMARWebVTTCSS(const TESMARRendererStyle& style, std::string_view fontUrl);

// Attributes of TTML and IMSC, in the namespace of tts; lengths are in pixels of the root's extent.
TESMAR_API TESMARRendererStyle TESMARTTMLStyle(const TESMARCaptionStyle& style,
                                               double pixelsPerPoint);
// The fields as attributes, with one space between them.
TESMAR_API std::string TESMARTTMLAttributes(const TESMARRendererStyle& style);

} // namespace tesmar
