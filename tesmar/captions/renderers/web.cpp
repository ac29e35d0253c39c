// The style in the words of the web: CSS for WebVTT, and attributes of TTML.
#include "tesmar/captions/internal/renderer_words.h"

namespace tesmar {
namespace {

constexpr const char* kFontName = "TESMAR caption"; // in CSS, of the face that the host offers

std::string rgba(const TESMARCaptionStyle::Color& color) {
    const auto part = [](double component) { return numberText(component * 255, 0); };
    return "rgba(" + part(color.red) + ", " + part(color.green) + ", " + part(color.blue) + ", " +
           numberText(color.alpha) + ")";
}

std::string rrggbbaa(const TESMARCaptionStyle::Color& color) {
    return "#" + hexColor(color) + hexByte(color.alpha);
}

// A string of CSS: what could end it or the element around it is escaped.
std::string cssString(std::string_view text) {
    std::string quoted = "\"";
    for (const char c : text) {
        const bool isSafe = (c >= ' ' && c != '"' && c != '\\' && c != '<') || (c & 0x80) != 0;
        if (isSafe)
            quoted += c;
        else
            quoted += "\\" + hexByte(static_cast<unsigned char>(c) / 255.0) + " ";
    }
    return quoted + "\"";
}

std::string pixelSize(const TESMARCaptionStyle& style, double pixelsPerPoint) {
    return numberText(style.points * usableScale(pixelsPerPoint)) + "px";
}

void addWindowLoss(TESMARRendererStyle& words, const TESMARCaptionStyle& style) {
    if (style.window.alpha > 0)
        words.losses.emplace_back("no window behind all lines");
}

} // namespace

TESMARRendererStyle TESMARWebVTTStyle(const TESMARCaptionStyle& style, double pixelsPerPoint) {
    const std::string width = numberText(outlineWidth(style) * usableScale(pixelsPerPoint)) + "px";
    const std::string distance =
        numberText(shadowDistance(style) * usableScale(pixelsPerPoint)) + "px";
    const std::string color = rgba(style.edgeColor);
    const auto shadow = [&](const std::string& by, const std::string& blur) {
        return by + " " + by + " " + blur + " " + color;
    };
    const auto shadowAt = [&](const char* left, const char* up) {
        return left + width + " " + up + width + " 0 " + color;
    };
    std::string edge = "none";
    if (style.edge == TextEdge::dropShadow)
        edge = shadow(distance, width);
    else if (style.edge == TextEdge::raised)
        edge = shadow(width, "0");
    else if (style.edge == TextEdge::depressed)
        edge = shadow("-" + width, "0");
    else if (style.edge == TextEdge::uniform)
        edge = shadowAt("-", "-") + ", " + shadowAt("", "-") + ", " + shadowAt("-", "") + ", " +
               shadowAt("", "");
    TESMARRendererStyle words;
    words.fields = {
        {"color", rgba(style.text)},
        {"background-color", rgba(style.background)},
        {"font-family",
         cssString(kFontName) + ", " + cssString(style.face.family) + ", sans-serif"},
        {"font-size", pixelSize(style, pixelsPerPoint)},
        {"font-weight", numberText(style.face.weight, 0)},
        {"font-style", style.face.isItalic ? "italic" : "normal"},
        {"line-height", "normal"},
        {"text-shadow", edge},
    };
    addFontLoss(words, style);
    addWindowLoss(words, style);
    return words;
}

std::string TESMARWebVTTCSS(const TESMARRendererStyle& style, std::string_view fontUrl) {
    std::string css;
    if (!fontUrl.empty())
        css = "@font-face { font-family: " + cssString(kFontName) + "; src: url(" +
              cssString(fontUrl) + "); }\n";
    css += "::cue {\n";
    for (const auto& [name, value] : style.fields)
        css.append("  ").append(name).append(": ").append(value).append(";\n");
    return css + "}\n";
}

TESMARRendererStyle TESMARTTMLStyle(const TESMARCaptionStyle& style, double pixelsPerPoint) {
    const std::string width = numberText(outlineWidth(style) * usableScale(pixelsPerPoint)) + "px";
    TESMARRendererStyle words;
    words.fields = {
        {"tts:color", rrggbbaa(style.text)},
        {"tts:backgroundColor", rrggbbaa(style.background)},
        {"tts:fontFamily", style.face.family + ", default"},
        {"tts:fontSize", pixelSize(style, pixelsPerPoint)},
        {"tts:fontWeight", style.face.weight >= 600 ? "bold" : "normal"},
        {"tts:fontStyle", style.face.isItalic ? "italic" : "normal"},
        {"tts:lineHeight", "normal"},
        {"tts:textOutline",
         style.edge == TextEdge::uniform ? rrggbbaa(style.edgeColor) + " " + width : "none"},
    };
    addFontLoss(words, style);
    addWindowLoss(words, style);
    if (style.edge != TextEdge::none && style.edge != TextEdge::uniform)
        words.losses.push_back("no edge of the kind " + std::string(textEdgeName(style.edge)));
    return words;
}

std::string TESMARTTMLAttributes(const TESMARRendererStyle& style) {
    std::string attributes;
    for (const auto& [name, value] : style.fields)
        attributes += (attributes.empty() ? "" : " ") + name + "=\"" + xmlText(value) + "\"";
    return attributes;
}

} // namespace tesmar
