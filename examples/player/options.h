// The player's command line.
#pragma once

#include "tesmar/platform/geometry/geometry.h"

#include <optional>
#include <stdexcept>
#include <string>

struct Options {
    std::string video; // a path or URL; empty: no video
    // Seconds after the last touch until the panel closes by itself; unset: it stays open.
    std::optional<double> autoHide;
    bool remembersStyle = true;
    std::string preferences; // a path; empty: the default one
    bool reducedMotion = false;
    // The directory for the pictures of a session without a screen; unset: play in a window.
    std::optional<std::string> pictures;
    tesmar::CGSize size{960, 540}; // points
    std::optional<double> scale;   // pixels per point; unset: the display's
    bool television = false;       // watched from the sofa
    bool isExtended = true;        // the panel: with everything that the library offers
    enum class Renderer { ours, mpv } renderer = Renderer::ours; // who draws the captions
};

// Its text is one line that names the argument at fault.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// `argv` begins with the program's name. Returns std::nullopt for --help. Throws UsageError.
std::optional<Options> parseOptions(int argc, const char* const* argv);

// What --help prints.
std::string usage();
