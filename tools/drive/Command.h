// The script language: one line, one command. Knows no panel; docs/drive.md describes it for users.
#pragma once

#include "tesmar/platform/geometry/geometry.h"
#include "tesmar/platform/ui/UITouch.h"
#include "tesmar/platform/ui/UIViewController.h"
#include "tools/drive/answers.h"

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tesmar::drive {

// Seconds; further on, frames are too short to move a clock.
inline constexpr double kLongestSession = 1e9;

// Names a view, or a half of a stepper.
struct ViewName {
    std::string text;
};

// --- What a host does ---------------------------------------------------------------------------

struct UseWindow {
    CGSize size; // points
    double scale = 1;
};
struct UsePreferences {
    std::string path;
};
struct OfferFaces {
    std::vector<std::string> names;
};
struct Create {};
struct SetAutoHideInterval {
    double seconds; // any, not-a-number included
};
struct SetRememberChangedStyle {
    bool remember;
};
struct SetDelegate {
    bool present;
};
struct SetCCEnabled {
    bool enabled;
};
struct Assign {
    Json attributes;
};
struct Present {
    UIModalPresentationStyle style;
};
struct Dismiss {};
struct Release {};
struct Send {
    std::string selector;
    std::vector<std::variant<Json, ViewName>> arguments;
};

// --- What a viewer does -------------------------------------------------------------------------

struct PressEscape {};
struct Advance {
    double seconds;
};
struct Tap {
    ViewName view;
};
struct Touch {
    UITouchPhase phase;
    std::variant<CGPoint, ViewName> at; // in the window, points
};
struct Drag {
    ViewName view;
    CGPoint distance; // points
    double seconds;
};
struct Reveal {
    ViewName view;
};

// --- Questions ----------------------------------------------------------------------------------

enum class Question { style, stored, sessionOrDefault, fonts, methods, tree, damage, pending };

struct Ask {
    Question question;
};
struct AskSizes {
    std::string fontName;
};
struct AskView {
    ViewName view;
};
struct TakePicture {
    std::string path;
};

using Command = std::variant<UseWindow, UsePreferences, OfferFaces, Create, SetAutoHideInterval,
                             SetRememberChangedStyle, SetDelegate, SetCCEnabled, Assign, Present,
                             Dismiss, Release, Send, PressEscape, Advance, Tap, Touch, Drag, Reveal,
                             Ask, AskSizes, AskView, TakePicture>;

// Nothing for a line that is blank or only a comment; a Fault that shows what is wrong for one that
// is no command.
std::optional<Command> parseCommand(std::string_view line);

// The word of a question, under which it is answered.
std::string_view wordOf(Question question);

} // namespace tesmar::drive
