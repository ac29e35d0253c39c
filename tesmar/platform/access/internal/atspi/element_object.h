// An accessible element as an object of ATK.
#pragma once

#include "tesmar/platform/ui/UIAccessibility.h"

#include <atk/atk.h>

#include <memory>
#include <string>
#include <vector>

namespace tesmar {

struct Unreference {
    void operator()(void* object) const { g_object_unref(object); }
};
using AtkPtr = std::unique_ptr<AtkObject, Unreference>;

// What the objects ask of the bridge. None of it throws.
class ElementActions {
  public:
    virtual ~ElementActions() = default;
    virtual bool perform(const std::string& identifier, UIAccessibleAction action) = 0;
    virtual bool grabFocus(const std::string& identifier) = 0;
    // On the screen, in the window system's units; relative to the window's content with
    // ATK_XY_WINDOW and to the parent with ATK_XY_PARENT.
    virtual CGRect frameOf(const std::string& identifier, AtkCoordType relativeTo) = 0;
};

// What is behind an object. An object may outlive it: clients hold objects of elements that do not
// exist any more.
struct ElementNode {
    ElementActions* actions = nullptr;
    UIAccessibleElement element{}; // without its children
    // Instead of the element's role, for the application and its window.
    AtkRole role = ATK_ROLE_INVALID;
    bool isActive = false; // of the window: has the keyboard's focus
    AtkPtr object{};       // never null
    AtkObject* parent = nullptr;
    std::vector<AtkObject*> children{}; // in reading order
};

// The node's object, with the interfaces that suit its element; the node must outlive it or be
// detached.
AtkPtr makeElementObject(ElementNode& node);
// The object is defunct from now on.
void detachElementObject(AtkObject* object);

// Of the children of a group of options, the selected one, or null.
const ElementNode* selectedOption(const ElementNode& group);
// Null for an object of another kind, and for a detached one.
ElementNode* elementNode(void* object);

} // namespace tesmar
