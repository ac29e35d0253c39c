#include "tools/drive/accessible.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tesmar::drive {
namespace {

using namespace std::string_view_literals;

// Indexed by role.
constexpr std::array kRoles{"none"sv,   "group"sv,  "dialog"sv, "heading"sv,   "text"sv,
                            "button"sv, "switch"sv, "option"sv, "adjustable"sv};
// Indexed by action.
constexpr std::array kActions{"press"sv, "decrease"sv, "increase"sv, "dismiss"sv};
constexpr std::array kStates{std::pair(UIAccessibleStateDisabled, "disabled"sv),
                             std::pair(UIAccessibleStateSelected, "selected"sv),
                             std::pair(UIAccessibleStateOn, "on"sv),
                             std::pair(UIAccessibleStateFocused, "focused"sv),
                             std::pair(UIAccessibleStateOffscreen, "offscreen"sv)};

Json describe(const UIAccessibleElement& element) {
    Json states = Json::array(), actions = Json::array();
    for (const auto& [state, name] : kStates)
        if (element.has(state))
            states.push_back(name);
    for (const UIAccessibleAction action : element.actions)
        actions.push_back(nameOf(action));
    return {{"role", kRoles.at(static_cast<std::size_t>(element.role))},
            {"name", element.name},
            {"value", element.value},
            {"states", std::move(states)},
            {"actions", std::move(actions)},
            {"frame", rounded(element.frame)},
            {"id", element.identifier},
            {"children", drive::describe(element.children)}};
}

} // namespace

Json describe(const std::vector<UIAccessibleElement>& elements) {
    Json json = Json::array();
    for (const auto& element : elements)
        json.push_back(describe(element));
    return json;
}

std::string_view nameOf(UIAccessibleAction action) {
    return kActions.at(static_cast<std::size_t>(action));
}

std::optional<UIAccessibleAction> actionNamed(std::string_view name) {
    const auto found = std::ranges::find(kActions, name);
    if (found == kActions.end())
        return std::nullopt;
    return static_cast<UIAccessibleAction>(found - kActions.begin());
}

} // namespace tesmar::drive
