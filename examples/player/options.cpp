#include "options.h"

#include <cxxopts.hpp>

#include <charconv>

using namespace tesmar;

namespace {

cxxopts::Options commandLine() {
    using Text = std::string;
    using cxxopts::value;
    cxxopts::Options line("player",
                          "Plays a video with captions; the caption panel changes their look.\n");
    line.set_width(100);
    line.custom_help(
        "[OPTION]... [VIDEO]\n\n"
        "Keys: c opens and closes the panel; arrows, Tab, Enter, plus, minus and Escape operate "
        "it.\n"
        "Otherwise Left and Right seek, Space pauses, f fills the screen, q quits. On a game\n"
        "controller: Y, the directional pad or the left stick, A, shoulder buttons, and B.");
    line.add_options(
        "",
        {{"auto-hide", "close the panel after this time without a touch", value<Text>(), "SECONDS"},
         {"no-remember", "keep changes of the style for this session only"},
         {"prefs", "keep the style in this file", value<Text>(), "PATH"},
         {"reduced-motion", "do without glides and fades"},
         {"headless",
          "open no window: play a short session into pictures in DIR, and keep its style there",
          value<Text>(), "DIR"},
         {"size", "size of the window in points (960x540)", value<Text>(), "WxH"},
         {"scale", "pixels per point, 0.5 to 8 (the display's)", value<Text>(), "S"},
         {"extended", "everything that the panel can offer: on or off (on)", value<Text>(),
          "WHICH"},
         {"renderer", "who draws the captions: ours or mpv (ours)", value<Text>(), "WHICH"},
         {"tv", "for a television: large, and clear of the screen's edges"},
         {"h,help", "print this text"}});
    return line;
}

std::optional<double> numberIn(const std::string& text, double low, double high) {
    double value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || !(value >= low && value <= high))
        return std::nullopt;
    return value;
}

std::optional<CGSize> parseSize(const std::string& text) {
    const std::size_t by = text.find('x');
    if (by == std::string::npos)
        return std::nullopt;
    const auto width = numberIn(text.substr(0, by), 100, 16384);
    const auto height = numberIn(text.substr(by + 1), 100, 16384);
    return width && height ? std::optional(CGSize{*width, *height}) : std::nullopt;
}

std::optional<bool> onOrOff(const std::string& text) {
    return text == "on" || text == "off" ? std::optional(text == "on") : std::nullopt;
}

std::optional<Options::Renderer> rendererNamed(const std::string& text) {
    return text == "ours"  ? std::optional(Options::Renderer::ours)
           : text == "mpv" ? std::optional(Options::Renderer::mpv)
                           : std::nullopt;
}

// The option's value, converted by `parse`, which returns std::nullopt for an invalid value. Unset
// when the option is not given.
template <class Parse>
auto valueOf(const cxxopts::ParseResult& given, const std::string& name, const char* range,
             Parse parse) {
    decltype(parse(name)) value;
    if (given.count(name) == 0)
        return value;
    const auto& text = given[name].as<std::string>();
    value = parse(text);
    if (!value)
        throw UsageError("--" + name + " must be " + range + ", not '" + text + "'");
    return value;
}

Options optionsFrom(const cxxopts::ParseResult& given) {
    const auto path = [](const std::string& text) {
        return text.empty() ? std::nullopt : std::optional(text);
    };
    Options options;
    options.autoHide = valueOf(given, "auto-hide", "from 0.1 to 86400 seconds",
                               [](const std::string& text) { return numberIn(text, 0.1, 86400); });
    options.scale = valueOf(given, "scale", "from 0.5 to 8",
                            [](const std::string& text) { return numberIn(text, 0.5, 8); });
    options.size =
        valueOf(given, "size", "WxH, each from 100 to 16384", parseSize).value_or(options.size);
    options.preferences = valueOf(given, "prefs", "a path", path).value_or("");
    options.pictures = valueOf(given, "headless", "a directory", path);
    options.remembersStyle = !given["no-remember"].as<bool>();
    options.television = given["tv"].as<bool>();
    options.isExtended = valueOf(given, "extended", "on or off", onOrOff).value_or(true);
    options.renderer =
        valueOf(given, "renderer", "ours or mpv", rendererNamed).value_or(options.renderer);
    options.reducedMotion = given["reduced-motion"].as<bool>();
    const auto& videos = given.unmatched();
    if (videos.size() > 1)
        throw UsageError("only one video can be played; '" + videos[1] + "' is too many");
    if (!videos.empty())
        options.video = videos[0];
    return options;
}

} // namespace

std::optional<Options> parseOptions(int argc, const char* const* argv) {
    try {
        const cxxopts::ParseResult given = commandLine().parse(argc, argv);
        if (given.count("help") > 0)
            return std::nullopt;
        return optionsFrom(given);
    } catch (const cxxopts::exceptions::exception& error) {
        throw UsageError(error.what());
    }
}

std::string usage() {
    return commandLine().help();
}
