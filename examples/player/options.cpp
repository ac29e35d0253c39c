#include "options.h"

#include <charconv>
#include <cmath>

using namespace tesmar;

const char* const kUsage =
    "usage: player [OPTION]... [VIDEO]\n"
    "Plays a video with captions; the caption panel changes their look.\n"
    "\n"
    "  --auto-hide SECONDS  the panel leaves by itself when nobody touches it\n"
    "  --no-remember        changes of the style are for this session only\n"
    "  --prefs PATH         keep the style in this file\n"
    "  --reduced-motion     nothing glides or fades\n"
    "  --headless DIR       no window: play a short session into pictures in DIR,\n"
    "                       where its style is kept, too\n"
    "  --size WxH           of the window, in points (960x540)\n"
    "  --scale S            pixels per point, 0.5 to 8 (as the display has it)\n"
    "  --help               this text\n"
    "\n"
    "c or the CC button: the panel   space: pause   left, right: 5 seconds   f: full screen\n"
    "q: quit\n";

namespace {

std::optional<double> number(const std::string& text, double low, double high) {
    double value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || !(value >= low && value <= high))
        return std::nullopt;
    return value;
}

std::optional<CGSize> size(const std::string& text) {
    const std::size_t by = text.find('x');
    if (by == std::string::npos)
        return std::nullopt;
    const auto width = number(text.substr(0, by), 100, 16384);
    const auto height = number(text.substr(by + 1), 100, 16384);
    return width && height ? std::optional(CGSize{*width, *height}) : std::nullopt;
}

// False when the value does not suit the option.
bool takeValue(Options& options, const std::string& option, const std::string& value) {
    if (option == "--auto-hide")
        return (options.autoHide = number(value, 0.1, 86400)).has_value();
    if (option == "--scale")
        return (options.scale = number(value, 0.5, 8)).has_value();
    if (option == "--prefs") {
        options.preferences = value;
        return !value.empty();
    }
    if (option == "--headless") {
        options.pictures = value;
        return !value.empty();
    }
    const auto wanted = size(value); // --size
    if (wanted)
        options.size = *wanted;
    return wanted.has_value();
}

bool takesValue(const std::string& option) {
    for (const char* known : {"--auto-hide", "--prefs", "--headless", "--size", "--scale"})
        if (option == known)
            return true;
    return false;
}

} // namespace

std::variant<Options, UsageError, HelpWanted>
parseOptions(const std::vector<std::string>& arguments) {
    Options options;
    bool onlyNames = false; // after "--"
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (onlyNames || argument.size() < 2 || argument[0] != '-') {
            if (!options.video.empty())
                return UsageError{"one video at a time, not '" + argument + "' too"};
            options.video = argument;
        } else if (argument == "--") {
            onlyNames = true;
        } else if (argument == "--help" || argument == "-h") {
            return HelpWanted{};
        } else if (argument == "--no-remember") {
            options.remembersStyle = false;
        } else if (argument == "--reduced-motion") {
            options.reducedMotion = true;
        } else if (!takesValue(argument)) {
            return UsageError{"unknown option '" + argument + "'"};
        } else if (++i == arguments.size()) {
            return UsageError{argument + " needs a value"};
        } else if (!takeValue(options, argument, arguments[i])) {
            return UsageError{argument + " cannot be '" + arguments[i] + "'"};
        }
    }
    return options;
}
