// What the player was asked for on its command line.
#pragma once

#include "tesmar/platform/geometry/geometry.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

struct Options {
    std::string video; // empty: none
    // Seconds after the last touch at which the panel leaves by itself.
    std::optional<double> autoHide;
    bool remembersStyle = true;
    std::string preferences; // a path; empty: the usual one
    bool reducedMotion = false;
    // The directory for the pictures of a session without a screen.
    std::optional<std::string> pictures;
    tesmar::CGSize size{960, 540}; // points
    std::optional<double> scale;   // pixels per point; nothing: the display's
};

struct UsageError {
    std::string message;
};
struct HelpWanted {};

// `arguments` without the program's name.
std::variant<Options, UsageError, HelpWanted>
parseOptions(const std::vector<std::string>& arguments);

// What --help prints.
extern const char* const kUsage;
