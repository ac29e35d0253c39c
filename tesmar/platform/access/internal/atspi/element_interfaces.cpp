#include "tesmar/platform/access/internal/atspi/element_interfaces.h"

#include "tesmar/platform/access/internal/atspi/element_object.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace tesmar {
namespace {

// The node may not exist afterwards.
bool perform(const ElementNode& node, UIAccessibleAction action) {
    const std::string identifier = node.element.identifier;
    return node.actions->perform(identifier, action);
}

// --- Component ----------------------------------------------------------------------------------

void getExtents(AtkComponent* object, int* x, int* y, int* width, int* height, AtkCoordType type) {
    *x = *y = *width = *height = -1;
    if (const ElementNode* const node = elementNode(object)) {
        const CGRect frame = node->actions->frameOf(node->element.identifier, type);
        *x = static_cast<int>(std::floor(frame.minX()));
        *y = static_cast<int>(std::floor(frame.minY()));
        *width = static_cast<int>(std::ceil(frame.maxX())) - *x;
        *height = static_cast<int>(std::ceil(frame.maxY())) - *y;
    }
}

gboolean grabFocus(AtkComponent* object) {
    const ElementNode* const node = elementNode(object);
    return node && node->actions->grabFocus(std::string(node->element.identifier));
}

// --- Action -------------------------------------------------------------------------------------

const UIAccessibleAction* actionAt(AtkAction* object, int index) {
    const ElementNode* const node = elementNode(object);
    if (!node || index < 0 || static_cast<std::size_t>(index) >= node->element.actions.size())
        return nullptr;
    return &node->element.actions[static_cast<std::size_t>(index)];
}

gboolean doAction(AtkAction* object, int index) {
    const UIAccessibleAction* const action = actionAt(object, index);
    return action && perform(*elementNode(object), *action);
}

int countActions(AtkAction* object) {
    const ElementNode* const node = elementNode(object);
    return node ? static_cast<int>(node->element.actions.size()) : 0;
}

// The names that clients know.
const char* actionName(AtkAction* object, int index) {
    const UIAccessibleAction* const action = actionAt(object, index);
    if (!action)
        return nullptr;
    switch (*action) {
    case UIAccessibleAction::press:
        break;
    case UIAccessibleAction::decrease:
        return "decrement";
    case UIAccessibleAction::increase:
        return "increment";
    case UIAccessibleAction::dismiss:
        return "close";
    }
    const ElementNode* const node = elementNode(object);
    return node->element.role == UIAccessibleRole::onOffSwitch ? "toggle" : "click";
}

// --- Value --------------------------------------------------------------------------------------

const UIAccessibleElement* adjustable(AtkValue* object) {
    const ElementNode* const node = elementNode(object);
    return node && node->element.range ? &node->element : nullptr;
}

void getValue(AtkValue* object, double* value, char** text) {
    const UIAccessibleElement* const element = adjustable(object);
    *value = element ? element->range->value : 0;
    if (text)
        *text = g_strdup(element ? element->value.c_str() : "");
}

AtkRange* getRange(AtkValue* object) {
    const UIAccessibleElement* const element = adjustable(object);
    return element ? atk_range_new(element->range->minimum, element->range->maximum, nullptr)
                   : nullptr;
}

double getIncrement(AtkValue* object) {
    const UIAccessibleElement* const element = adjustable(object);
    return element ? element->range->step : 0;
}

// Step by step, as a viewer would do it; ends when a step has no effect.
void setValue(AtkValue* object, double wanted) {
    for (;;) {
        const UIAccessibleElement* const element = adjustable(object);
        if (!element || std::isnan(wanted))
            return;
        const double before = element->range->value;
        const double lacking = wanted - before;
        if (std::abs(lacking) < element->range->step / 2)
            return;
        if (!perform(*elementNode(object),
                     lacking > 0 ? UIAccessibleAction::increase : UIAccessibleAction::decrease))
            return;
        const UIAccessibleElement* const after = adjustable(object);
        if (!after || std::abs(wanted - after->range->value) >= std::abs(lacking))
            return;
    }
}

// --- Selection ----------------------------------------------------------------------------------

const ElementNode* optionAt(AtkSelection* object, int index) {
    const ElementNode* const group = elementNode(object);
    if (!group || index < 0 || static_cast<std::size_t>(index) >= group->children.size())
        return nullptr;
    const ElementNode* const child = elementNode(group->children[static_cast<std::size_t>(index)]);
    return child && child->element.role == UIAccessibleRole::option ? child : nullptr;
}

gboolean selectOption(AtkSelection* object, int index) {
    const ElementNode* const option = optionAt(object, index);
    return option && perform(*option, UIAccessibleAction::press);
}

AtkObject* refSelection(AtkSelection* object, int index) {
    const ElementNode* const group = elementNode(object);
    const ElementNode* const selected = group ? selectedOption(*group) : nullptr;
    return selected && index == 0 ? ATK_OBJECT(g_object_ref(selected->object.get())) : nullptr;
}

int countSelected(AtkSelection* object) {
    const ElementNode* const group = elementNode(object);
    return group && selectedOption(*group) ? 1 : 0;
}

gboolean isOptionSelected(AtkSelection* object, int index) {
    const ElementNode* const option = optionAt(object, index);
    return option && option->element.has(UIAccessibleStateSelected);
}

// --- Text ---------------------------------------------------------------------------------------

const char* contentOf(AtkText* object) {
    const ElementNode* const node = elementNode(object);
    return node && g_utf8_validate(node->element.name.c_str(), -1, nullptr)
               ? node->element.name.c_str()
               : "";
}

int countCharacters(AtkText* object) {
    return static_cast<int>(g_utf8_strlen(contentOf(object), -1));
}

// Of the characters from `start` to before `end`; a negative end means all.
char* getText(AtkText* object, int start, int end) {
    const int count = countCharacters(object);
    start = std::clamp(start, 0, count);
    end = end < 0 ? count : std::clamp(end, start, count);
    return g_utf8_substring(contentOf(object), start, end);
}

gunichar getCharacter(AtkText* object, int offset) {
    const bool exists = offset >= 0 && offset < countCharacters(object);
    return exists ? g_utf8_get_char(g_utf8_offset_to_pointer(contentOf(object), offset)) : 0;
}

// A text is one short line, so every larger unit than a character is all of it.
char* getUnit(AtkText* object, int offset, AtkTextGranularity unit, int* start, int* end) {
    const bool isCharacter = unit == ATK_TEXT_GRANULARITY_CHAR;
    *start = isCharacter ? offset : 0;
    *end = isCharacter ? offset + 1 : countCharacters(object);
    return getText(object, *start, *end);
}

int noCaret(AtkText*) {
    return -1;
}

} // namespace

ElementInterface componentInterface() {
    return {ATK_TYPE_COMPONENT, [](void* type, void*) {
                auto* const component = static_cast<AtkComponentIface*>(type);
                component->get_extents = getExtents;
                component->grab_focus = grabFocus;
            }};
}

ElementInterface windowInterface() {
    return {ATK_TYPE_WINDOW, [](void*, void*) {}}; // has signals only
}

ElementInterface actionInterface() {
    return {ATK_TYPE_ACTION, [](void* type, void*) {
                auto* const action = static_cast<AtkActionIface*>(type);
                action->do_action = doAction;
                action->get_n_actions = countActions;
                action->get_name = actionName;
            }};
}

ElementInterface valueInterface() {
    return {ATK_TYPE_VALUE, [](void* type, void*) {
                auto* const value = static_cast<AtkValueIface*>(type);
                value->get_value_and_text = getValue;
                value->get_range = getRange;
                value->get_increment = getIncrement;
                value->set_value = setValue;
            }};
}

ElementInterface selectionInterface() {
    return {ATK_TYPE_SELECTION, [](void* type, void*) {
                auto* const selection = static_cast<AtkSelectionIface*>(type);
                selection->add_selection = selectOption;
                selection->ref_selection = refSelection;
                selection->get_selection_count = countSelected;
                selection->is_child_selected = isOptionSelected;
            }};
}

ElementInterface textInterface() {
    return {ATK_TYPE_TEXT, [](void* type, void*) {
                auto* const text = static_cast<AtkTextIface*>(type);
                text->get_text = getText;
                text->get_character_count = countCharacters;
                text->get_character_at_offset = getCharacter;
                text->get_string_at_offset = getUnit;
                text->get_caret_offset = noCaret;
            }};
}

} // namespace tesmar
