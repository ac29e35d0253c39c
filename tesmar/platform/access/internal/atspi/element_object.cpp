#include "tesmar/platform/access/internal/atspi/element_object.h"

#include "tesmar/platform/access/internal/atspi/element_interfaces.h"

#include <algorithm>
#include <array>

namespace tesmar {
namespace {

struct ElementObject {
    AtkObject base;
    ElementNode* node; // null once detached
};

struct ElementObjectClass {
    AtkObjectClass base;
};

AtkObjectClass* parentClass = nullptr;

AtkRole roleOf(UIAccessibleRole role) {
    switch (role) {
    case UIAccessibleRole::none:
        break;
    case UIAccessibleRole::group:
        return ATK_ROLE_GROUPING;
    case UIAccessibleRole::dialog:
        return ATK_ROLE_DIALOG;
    case UIAccessibleRole::heading:
        return ATK_ROLE_HEADING;
    case UIAccessibleRole::text:
        return ATK_ROLE_LABEL;
    case UIAccessibleRole::button:
        return ATK_ROLE_PUSH_BUTTON;
    case UIAccessibleRole::onOffSwitch:
        return ATK_ROLE_TOGGLE_BUTTON;
    case UIAccessibleRole::option:
        return ATK_ROLE_RADIO_BUTTON;
    case UIAccessibleRole::adjustable:
        return ATK_ROLE_SPIN_BUTTON;
    }
    return ATK_ROLE_PANEL;
}

// --- The class ----------------------------------------------------------------------------------

const char* getName(AtkObject* object) {
    const ElementNode* const node = elementNode(object);
    return node ? node->element.name.c_str() : nullptr;
}

AtkObject* getParent(AtkObject* object) {
    const ElementNode* const node = elementNode(object);
    return node ? node->parent : nullptr;
}

int countChildren(AtkObject* object) {
    const ElementNode* const node = elementNode(object);
    return node ? static_cast<int>(node->children.size()) : 0;
}

AtkObject* refChild(AtkObject* object, int index) {
    const ElementNode* const node = elementNode(object);
    if (!node || index < 0 || static_cast<std::size_t>(index) >= node->children.size())
        return nullptr;
    return ATK_OBJECT(g_object_ref(node->children[static_cast<std::size_t>(index)]));
}

int indexInParent(AtkObject* object) {
    const ElementNode* const node = elementNode(object);
    const ElementNode* const parent = node ? elementNode(node->parent) : nullptr;
    if (!parent)
        return 0;
    const auto found = std::ranges::find(parent->children, object);
    return found == parent->children.end() ? -1
                                           : static_cast<int>(found - parent->children.begin());
}

AtkStateSet* refStates(AtkObject* object) {
    AtkStateSet* const states = parentClass->ref_state_set(object);
    const auto add = [&](AtkStateType state, bool has = true) {
        if (has)
            atk_state_set_add_state(states, state);
    };
    const ElementNode* const node = elementNode(object);
    if (!node) {
        add(ATK_STATE_DEFUNCT);
        return states;
    }
    const UIAccessibleElement& element = node->element;
    const bool isSwitch = element.role == UIAccessibleRole::onOffSwitch;
    const bool isOption = element.role == UIAccessibleRole::option;
    add(ATK_STATE_VISIBLE);
    add(ATK_STATE_SHOWING, !element.has(UIAccessibleStateOffscreen));
    add(ATK_STATE_ENABLED, !element.has(UIAccessibleStateDisabled));
    add(ATK_STATE_SENSITIVE, !element.has(UIAccessibleStateDisabled));
    add(ATK_STATE_FOCUSABLE, !element.actions.empty() && node->children.empty());
    add(ATK_STATE_FOCUSED, element.has(UIAccessibleStateFocused));
    add(ATK_STATE_ACTIVE, node->isActive);
    add(ATK_STATE_PRESSED,
        element.role == UIAccessibleRole::button && element.has(UIAccessibleStateSelected));
    add(ATK_STATE_CHECKABLE, isSwitch || isOption);
    add(ATK_STATE_CHECKED,
        element.has(UIAccessibleStateOn) || (isOption && element.has(UIAccessibleStateSelected)));
    return states;
}

AtkAttribute* attribute(const char* name, const std::string& value) {
    auto* const made = g_new(AtkAttribute, 1);
    *made = {g_strdup(name), g_strdup(value.c_str())};
    return made;
}

AtkAttributeSet* getAttributes(AtkObject* object) {
    const ElementNode* const node = elementNode(object);
    AtkAttributeSet* set = nullptr;
    if (!node)
        return set;
    const UIAccessibleElement& element = node->element;
    set = g_slist_prepend(set, attribute("id", element.identifier));
    if (element.role == UIAccessibleRole::heading)
        set = g_slist_prepend(set, attribute("level", "2"));
    if (element.count > 0) {
        set = g_slist_prepend(set, attribute("posinset", std::to_string(element.position)));
        set = g_slist_prepend(set, attribute("setsize", std::to_string(element.count)));
    }
    return set;
}

void initClass(void* type, void*) {
    parentClass = static_cast<AtkObjectClass*>(g_type_class_peek_parent(type));
    auto* const object = static_cast<AtkObjectClass*>(type);
    object->get_name = getName;
    object->get_parent = getParent;
    object->get_n_children = countChildren;
    object->ref_child = refChild;
    object->get_index_in_parent = indexInParent;
    object->ref_state_set = refStates;
    object->get_attributes = getAttributes;
}

GType registerType(const char* name, GType parent,
                   const std::vector<ElementInterface>& interfaces) {
    const GTypeInfo info{sizeof(ElementObjectClass),
                         nullptr,
                         nullptr,
                         parent == ATK_TYPE_OBJECT ? initClass : nullptr,
                         nullptr,
                         nullptr,
                         sizeof(ElementObject),
                         0,
                         nullptr,
                         nullptr};
    const GType type = g_type_register_static(parent, name, &info, GTypeFlags{});
    for (const auto& [interface, init] : interfaces) {
        const GInterfaceInfo with{init, nullptr, nullptr};
        g_type_add_interface_static(type, interface, &with);
    }
    return type;
}

GType elementType() {
    static const GType type =
        registerType("TesmarElement", ATK_TYPE_OBJECT, {componentInterface()});
    return type;
}

GType typeFor(UIAccessibleRole role) {
    static const GType control = registerType("TesmarControl", elementType(), {actionInterface()});
    static const GType adjustable = registerType("TesmarAdjustable", control, {valueInterface()});
    static const GType group = registerType("TesmarGroup", elementType(), {selectionInterface()});
    static const GType text = registerType("TesmarText", elementType(), {textInterface()});
    static const GType window = registerType("TesmarWindow", elementType(), {windowInterface()});
    switch (role) {
    case UIAccessibleRole::none:
        return window;
    case UIAccessibleRole::group:
        return group;
    case UIAccessibleRole::heading:
    case UIAccessibleRole::text:
        return text;
    case UIAccessibleRole::adjustable:
        return adjustable;
    default:
        return control;
    }
}

} // namespace

ElementNode* elementNode(void* object) {
    return G_TYPE_CHECK_INSTANCE_TYPE(object, elementType())
               ? static_cast<ElementObject*>(object)->node
               : nullptr;
}

AtkPtr makeElementObject(ElementNode& node) {
    AtkPtr object(ATK_OBJECT(g_object_new(typeFor(node.element.role), nullptr)));
    reinterpret_cast<ElementObject*>(object.get())->node = &node;
    const AtkRole role = node.role != ATK_ROLE_INVALID ? node.role : roleOf(node.element.role);
    atk_object_set_role(object.get(), role);
    atk_object_set_accessible_id(object.get(), node.element.identifier.c_str());
    return object;
}

void detachElementObject(AtkObject* object) {
    reinterpret_cast<ElementObject*>(object)->node = nullptr;
    atk_object_notify_state_change(object, ATK_STATE_DEFUNCT, TRUE);
}

const ElementNode* selectedOption(const ElementNode& group) {
    for (AtkObject* const child : group.children)
        if (const ElementNode* const node = elementNode(child);
            node && node->element.role == UIAccessibleRole::option &&
            node->element.has(UIAccessibleStateSelected))
            return node;
    return nullptr;
}

} // namespace tesmar
