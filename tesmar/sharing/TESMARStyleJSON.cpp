#include "tesmar/sharing/TESMARStyleJSON.h"

#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/archive/internal/utf.h"
#include "tesmar/platform/foundation/scalars.h"
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/text/NSAttributedString.h"
#include "tesmar/platform/text/TextEdge.h"
#include "tesmar/platform/text/UIFont.h"
#include "tesmar/sharing/internal/json_document.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>

namespace tesmar {
namespace {

using Kind = JsonNode::Kind;

constexpr double kVersion = 1;
constexpr std::size_t kLongestFontName = 255; // bytes
constexpr double kByte = 255;                 // the value of a full byte of "#rrggbb"

struct ColorMember {
    std::string_view name, key; // in the text, in the dictionary
};
constexpr std::array<ColorMember, 4> kColors{{{"text", NSForegroundColorAttributeName},
                                              {"background", NSBackgroundColorAttributeName},
                                              {"edgeColor", TESMAREdgeColorAttributeName},
                                              {"window", TESMARWindowColorAttributeName}}};

// "#rrggbb", rounded.
std::string hexOf(const UIColor& color) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string hex = "#";
    for (const CGFloat component : {color.red(), color.green(), color.blue()}) {
        const auto byte = static_cast<unsigned>(std::lround(component * kByte));
        hex += digits[byte / 16];
        hex += digits[byte % 16];
    }
    return hex;
}

bool isFontName(std::string_view name) {
    return !name.empty() && name.size() <= kLongestFontName && isValidUtf8(name) &&
           std::ranges::none_of(name, [](unsigned char c) { return c < ' ' || c == 0x7f; });
}

bool isEdge(std::string_view name) {
    return textEdgeName(textEdgeNamed(name)) == name;
}

// --- Writing ------------------------------------------------------------------------------------

// The shortest text that reads as the same number, whatever the locale.
std::string textOf(double number) {
    std::array<char, 32> text{};
    return {text.data(), std::to_chars(text.begin(), text.end(), number).ptr};
}

// A text without control characters.
std::string quoted(std::string_view text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\')
            quoted += '\\';
        quoted += c;
    }
    return quoted += '"';
}

std::string textOf(const UIColor& color) {
    std::string text = "{\"color\": " + quoted(hexOf(color));
    const auto isExact = [](double component) {
        return static_cast<double>(std::lround(component * kByte)) / kByte == component;
    };
    if (color.space() == UIColor::Space::gray)
        text += ", \"white\": " + textOf(color.white());
    else if (!isExact(color.red()) || !isExact(color.green()) || !isExact(color.blue()))
        text += ", \"rgb\": [" + textOf(color.red()) + ", " + textOf(color.green()) + ", " +
                textOf(color.blue()) + "]";
    return text + ", \"opacity\": " + textOf(color.alpha()) + "}";
}

// --- Reading ------------------------------------------------------------------------------------

[[noreturn]] void refuse(const JsonNode& node, const std::string& reason) {
    throw JsonFault{node.line, reason};
}

const JsonNode& member(const JsonNode& object, std::string_view key, const std::string& path) {
    if (object.kind != Kind::object)
        refuse(object, path + " must be an object");
    const JsonNode* const found = object.find(key);
    if (!found)
        refuse(object, path + " has no \"" + std::string(key) + "\"");
    return *found;
}

double fraction(const JsonNode& node, const std::string& path) {
    if (node.kind != Kind::number || !(node.number >= 0 && node.number <= 1))
        refuse(node, path + " must be a number from 0 to 1");
    return node.number;
}

std::optional<unsigned> colorOf(std::string_view hex) {
    unsigned bytes = 0;
    if (hex.size() != 7 || hex[0] != '#')
        return std::nullopt;
    const auto [end, error] = std::from_chars(hex.data() + 1, hex.data() + hex.size(), bytes, 16);
    return error == std::errc() && end == hex.data() + hex.size() ? std::optional(bytes)
                                                                  : std::nullopt;
}

// What the text says beside "color" must round to it: other programs read only that.
void expectMatch(const JsonNode& node, const std::string& path, const UIColor& exact,
                 const UIColor& color) {
    if (hexOf(exact) != hexOf(color))
        refuse(node, path + " does not round to " + hexOf(color));
}

Ref<UIColor> readColor(const JsonNode& node, const std::string& path) {
    const JsonNode& hex = member(node, "color", path);
    const auto bytes = hex.kind == Kind::text ? colorOf(hex.text) : std::nullopt;
    if (!bytes)
        refuse(hex, path + ".color must be a text like \"#ffff00\"");
    const auto component = [&](int shift) { return (*bytes >> shift & 0xff) / kByte; };
    const JsonNode* const opacity = node.find("opacity");
    const double alpha = opacity ? fraction(*opacity, path + ".opacity") : 1;
    auto color = UIColor::colorWithRed(component(16), component(8), component(0), alpha);

    const JsonNode* const white = node.find("white");
    const JsonNode* const rgb = node.find("rgb");
    if (white && rgb)
        refuse(*rgb, path + " has both \"white\" and \"rgb\"");
    if (white) {
        auto exact = UIColor::colorWithWhite(fraction(*white, path + ".white"), alpha);
        expectMatch(*white, path + ".white", *exact, *color);
        return exact;
    }
    if (rgb) {
        const std::string name = path + ".rgb";
        if (rgb->kind != Kind::list || rgb->children.size() != 3)
            refuse(*rgb, name + " must be a list of three numbers");
        const auto& parts = rgb->children;
        auto exact = UIColor::colorWithRed(fraction(parts[0], name), fraction(parts[1], name),
                                           fraction(parts[2], name), alpha);
        expectMatch(*rgb, name, *exact, *color);
        return exact;
    }
    return color;
}

// Makes a font as a record does, which keeps the name of a face that is missing.
class FontCoder : public NSCoder {
  public:
    FontCoder(std::string name, double size) : name_(std::move(name)), size_(size) {}
    std::optional<std::string> decodeString(std::string_view) override { return name_; }
    std::optional<double> decodeDouble(std::string_view) override { return size_; }

  private:
    std::string name_;
    double size_;
};

Ref<UIFont> readFont(const JsonNode& node) {
    const JsonNode& name = member(node, "name", "font");
    if (name.kind != Kind::text || !isFontName(name.text))
        refuse(name, "font.name must be a text of 1 to 255 bytes without control characters");
    const JsonNode& size = member(node, "size", "font");
    if (size.kind != Kind::number || !(size.number > 0 && size.number <= UIFont::kLargestSize))
        refuse(size, "font.size must be a number above 0, at most 1000");
    FontCoder coder(name.text, size.number);
    return makeWith<UIFont>(&UIFont::initWithCoder, coder);
}

Ref<NSString> readEdge(const JsonNode& node) {
    if (node.kind != Kind::text || !isEdge(node.text))
        refuse(node, "edge must be \"none\", \"raised\", \"depressed\", \"uniform\" or "
                     "\"dropShadow\"");
    return NSString::stringWithString(node.text);
}

Ref<NSDictionary> readStyle(const JsonNode& root) {
    const JsonNode& version = member(root, "version", "the style");
    if (version.kind != Kind::number || version.number != kVersion)
        refuse(version, "version must be 1");
    NSDictionary::Entries style;
    for (const auto& [name, key] : kColors)
        if (const JsonNode* const color = root.find(name))
            style.emplace(key, readColor(*color, std::string(name)));
    if (const JsonNode* const font = root.find("font"))
        style.emplace(NSFontAttributeName, readFont(*font));
    if (const JsonNode* const edge = root.find("edge"))
        style.emplace(TESMAREdgeAttributeName, readEdge(*edge));
    return NSDictionary::dictionaryWithEntries(std::move(style));
}

} // namespace

std::string styleToJSON(const NSDictionary& style) {
    std::string text = "{\n  \"version\": " + textOf(kVersion);
    const auto add = [&](std::string_view name, const std::string& value) {
        text += ",\n  " + quoted(name) + ": " + value;
    };
    for (const auto& [name, key] : kColors)
        if (const auto color = as<UIColor>(style.objectForKey(key)))
            add(name, textOf(*color));
    const auto font = as<UIFont>(style.objectForKey(NSFontAttributeName));
    if (font && isFontName(font->fontName()))
        add("font", "{\"name\": " + quoted(font->fontName()) +
                        ", \"size\": " + textOf(font->pointSize()) + "}");
    const auto edge = as<NSString>(style.objectForKey(TESMAREdgeAttributeName));
    if (edge && isEdge(edge->text()))
        add("edge", quoted(edge->text()));
    return text + "\n}\n";
}

TESMARStyleFromJSON styleFromJSON(std::string_view text) {
    try {
        return {readStyle(readJson(text)), {}};
    } catch (const JsonFault& fault) {
        return {nullptr, "line " + std::to_string(fault.line) + ": " + fault.reason};
    }
}

} // namespace tesmar
