// The commands of the script language, one on each line, and their parser. docs/drive.md describes
// the language.
#pragma once

#include "tesmar/model/PanelAppearance.h"
#include "tesmar/platform/geometry/geometry.h"
#include "tesmar/platform/ui/UIAccessibility.h"
#include "tesmar/platform/ui/UIKey.h"
#include "tesmar/platform/ui/UITouch.h"
#include "tesmar/platform/ui/UIViewController.h"
#include "tools/drive/json_values.h"

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tesmar::drive {

// Seconds of virtual time. Beyond this, adding a frame interval to a double loses precision.
inline constexpr double kMaxSessionSeconds = 1e9;

// The identifier of a view, or of one half of a stepper.
struct ViewName {
    std::string text;
};

// --- Host actions -------------------------------------------------------------------------------

struct UseWindow {
    CGSize size; // points
    double scale = 1;
};
struct UsePreferences {
    std::string path;
};
struct RestrictFonts {
    std::vector<std::string> names;
};
enum class PanelKind { plain, extended };

struct Create {
    PanelKind kind;
};
struct SetAutoHideInterval {
    double seconds; // any value, NaN included
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
struct SetLanguage {
    std::string tag; // BCP 47
};
struct SetTextScale {
    double scale;
};
struct SetContrast {
    TESMARContrast contrast;
};
struct SetMirroring {
    TESMARMirroring mirroring;
};
struct ShowCaptions {
    std::string text;
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

// --- Viewer actions -----------------------------------------------------------------------------

struct PressKey {
    UIKey key;
};
struct Advance {
    double seconds;
};
struct Tap {
    ViewName view;
};
struct Touch {
    UITouchPhase phase;
    std::variant<CGPoint, ViewName> at; // a point in the window, or the middle of a view
};
struct Drag {
    ViewName view;
    CGPoint distance; // points
    double seconds;
};
struct Reveal {
    ViewName view;
};

// --- Queries ------------------------------------------------------------------------------------

enum class Query { style, stored, sessionOrDefault, fonts, methods, tree, focus, damage, pending };

struct RunQuery {
    Query query;
};
struct QuerySizes {
    std::string fontName;
};
struct QueryView {
    ViewName view;
};
struct QueryAccessibleTree {};
struct Perform {
    std::string identifier; // of an accessible element
    UIAccessibleAction action;
};
struct TakePicture {
    std::string path;
};

using Command =
    std::variant<UseWindow, UsePreferences, RestrictFonts, Create, SetAutoHideInterval,
                 SetRememberChangedStyle, SetDelegate, SetCCEnabled, Assign, SetLanguage,
                 SetTextScale, SetContrast, SetMirroring, ShowCaptions, Present, Dismiss, Release,
                 Send, PressKey, Advance, Tap, Touch, Drag, Reveal, RunQuery, QuerySizes, QueryView,
                 QueryAccessibleTree, Perform, TakePicture>;

// Parses one line. Returns std::nullopt for a line that is blank or only a comment; throws a Fault
// that quotes the wrong word for a line that is not a command.
std::optional<Command> parseCommand(std::string_view line);

// The query's command word, which is also the key of its result.
std::string_view nameOf(Query query);

} // namespace tesmar::drive
