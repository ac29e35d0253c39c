#include "tesmar/platform/access/internal/atspi/AtspiBridge.h"

#include <atk-bridge.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace tesmar {
namespace {

// What ATK asks for without naming an object.
const AtspiBridge* current = nullptr;

void installRoot() {
    auto* const util = ATK_UTIL_CLASS(g_type_class_ref(ATK_TYPE_UTIL));
    util->get_root = [] { return current ? current->root() : nullptr; };
    util->get_toolkit_name = [] { return "TESMAR"; };
    util->get_toolkit_version = [] { return ""; };
}

const UIAccessibleElement* find(const std::vector<UIAccessibleElement>& elements,
                                const std::string& identifier) {
    for (const auto& element : elements) {
        if (element.identifier == identifier)
            return &element;
        if (const auto* const found = find(element.children, identifier))
            return found;
    }
    return nullptr;
}

UIAccessibleElement withoutChildren(const UIAccessibleElement& element) {
    UIAccessibleElement copy = element;
    copy.children.clear();
    return copy;
}

void notifyState(AtkObject* object, AtkStateType state, bool before, bool after) {
    if (before != after)
        atk_object_notify_state_change(object, state, after);
}

void notifyChildren(AtkObject* parent, const std::vector<AtkObject*>& before,
                    const std::vector<AtkObject*>& after) {
    const auto contains = [](const auto& list, AtkObject* object) {
        return std::ranges::find(list, object) != list.end();
    };
    for (std::size_t i = before.size(); i-- > 0;)
        if (!contains(after, before[i]))
            g_signal_emit_by_name(parent, "children-changed::remove", static_cast<guint>(i),
                                  before[i], nullptr);
    for (std::size_t i = 0; i < after.size(); ++i)
        if (!contains(before, after[i]))
            g_signal_emit_by_name(parent, "children-changed::add", static_cast<guint>(i), after[i],
                                  nullptr);
}

} // namespace

AtspiBridge::AtspiBridge(AccessibilitySource& source) : source_(source) {
    if (current)
        throw std::logic_error("there is a bridge already");
    const char* const program = g_get_prgname();
    application_.element.name = program ? program : source_.title();
    prepare(application_, ATK_ROLE_APPLICATION, nullptr);
    window_.element.name = source_.title();
    prepare(window_, ATK_ROLE_FRAME, application_.object.get());
    application_.children = {window_.object.get()};
    current = this;
    installRoot();
    if (atk_bridge_adaptor_init(nullptr, nullptr) != 0) {
        current = nullptr;
        throw std::runtime_error("no accessibility bus");
    }
    watch_ = std::make_unique<MainContextWatch>([this] { source_.wakeUp(); });
}

AtspiBridge::~AtspiBridge() {
    treeChanged({});
    g_signal_emit_by_name(root(), "children-changed::remove", 0u, window_.object.get(), nullptr);
    watch_->dispatch();
    watch_.reset();
    atk_bridge_adaptor_cleanup();
    current = nullptr;
    detachElementObject(window_.object.get());
    detachElementObject(application_.object.get());
}

void AtspiBridge::prepare(ElementNode& node, AtkRole role, AtkObject* parent) {
    node.actions = this;
    node.role = role;
    node.parent = parent;
    node.object = makeElementObject(node);
}

void AtspiBridge::turn() {
    source_.update();
    watch_->dispatch();
    watch_->arm();
    if (failure_)
        std::rethrow_exception(std::exchange(failure_, nullptr));
}

void AtspiBridge::setActive(bool windowHasFocus) {
    if (std::exchange(window_.isActive, windowHasFocus) == windowHasFocus)
        return;
    atk_object_notify_state_change(window_.object.get(), ATK_STATE_ACTIVE, windowHasFocus);
    g_signal_emit_by_name(window_.object.get(), windowHasFocus ? "activate" : "deactivate");
}

// --- Requests of clients ------------------------------------------------------------------------

bool AtspiBridge::perform(const std::string& identifier, UIAccessibleAction action) {
    return handle([&] { return source_.perform(identifier, action); });
}

bool AtspiBridge::grabFocus(const std::string& identifier) {
    return handle([&] { return source_.moveFocus(identifier); });
}

bool AtspiBridge::handle(const std::function<bool()>& request) {
    try {
        const bool done = request();
        source_.update();
        return done;
    } catch (...) {
        failure_ = std::current_exception();
        return false;
    }
}

CGRect AtspiBridge::frameOf(const std::string& identifier, AtkCoordType relativeTo) {
    try {
        const CGRect screen = source_.screenFrame();
        CGRect frame{{}, screen.size};
        if (!identifier.empty()) {
            const auto tree = source_.tree();
            const auto* const element = find(tree, identifier);
            const CGFloat scale = source_.unitsPerPoint();
            const CGRect r = element ? element->frame : CGRect{};
            frame = {r.minX() * scale, r.minY() * scale, r.size.width * scale,
                     r.size.height * scale};
        }
        return relativeTo == ATK_XY_SCREEN ? frame.offsetBy(screen.origin) : frame;
    } catch (...) {
        failure_ = std::current_exception();
        return {};
    }
}

// --- Changes ------------------------------------------------------------------------------------

void AtspiBridge::adopt(const Elements& elements, ElementNode& parent, Nodes& former,
                        std::vector<ChangedParent>& changed) {
    Children objects;
    for (const auto& element : elements) {
        auto& node = nodes_[element.identifier];
        const auto known = former.find(element.identifier);
        if (known != former.end() && known->second->element.role == element.role) {
            node = std::move(known->second);
            former.erase(known);
            node->parent = parent.object.get();
            adopt(element.children, *node, former, changed);
        } else {
            node = std::make_unique<ElementNode>();
            node->element = withoutChildren(element);
            prepare(*node, ATK_ROLE_INVALID, parent.object.get());
            std::vector<ChangedParent> unknownToClients;
            adopt(element.children, *node, former, unknownToClients);
        }
        objects.push_back(node->object.get());
    }
    if (objects != parent.children)
        changed.emplace_back(parent.object.get(), std::exchange(parent.children, objects));
}

void AtspiBridge::treeChanged(const Elements& tree) {
    auto former = std::exchange(nodes_, {});
    std::vector<ChangedParent> changed;
    adopt(tree, window_, former, changed);
    for (const auto& [parent, before] : changed)
        notifyChildren(parent, before, elementNode(parent)->children);
    for (const auto& [identifier, gone] : former)
        detachElementObject(gone->object.get());
}

void AtspiBridge::elementChanged(const UIAccessibleElement& before,
                                 const UIAccessibleElement& after) {
    const auto found = nodes_.find(after.identifier);
    if (found == nodes_.end())
        return;
    ElementNode& node = *found->second;
    AtkObject* const object = node.object.get();
    node.element = withoutChildren(after);
    if (before.name != after.name)
        g_object_notify(G_OBJECT(object), "accessible-name");
    if (after.range && (before.range != after.range || before.value != after.value))
        g_object_notify(G_OBJECT(object), "accessible-value"); // the bridge ignores "value-changed"
    const auto changed = [&](UIAccessibleState state, AtkStateType as) {
        notifyState(object, as, before.has(state), after.has(state));
    };
    changed(UIAccessibleStateOn, ATK_STATE_CHECKED);
    changed(UIAccessibleStateFocused, ATK_STATE_FOCUSED);
    const auto changedToFalse = [&](UIAccessibleState state, AtkStateType as) {
        notifyState(object, as, !before.has(state), !after.has(state));
    };
    changedToFalse(UIAccessibleStateDisabled, ATK_STATE_ENABLED);
    changedToFalse(UIAccessibleStateDisabled, ATK_STATE_SENSITIVE);
    changedToFalse(UIAccessibleStateOffscreen, ATK_STATE_SHOWING);
    if (after.role == UIAccessibleRole::button)
        changed(UIAccessibleStateSelected, ATK_STATE_PRESSED);
    if (after.role == UIAccessibleRole::option &&
        before.has(UIAccessibleStateSelected) != after.has(UIAccessibleStateSelected)) {
        changed(UIAccessibleStateSelected, ATK_STATE_CHECKED);
        if (after.has(UIAccessibleStateSelected))
            g_signal_emit_by_name(node.parent, "selection-changed");
    }
}

void AtspiBridge::announced(std::string_view text) {
    g_signal_emit_by_name(window_.object.get(), "announcement", std::string(text).c_str());
}

} // namespace tesmar

extern "C" __attribute__((visibility("default"))) tesmar::AccessibilityBridge*
tesmar_make_accessibility_bridge_2(tesmar::AccessibilitySource& source) {
    try {
        return new tesmar::AtspiBridge(source);
    } catch (const std::exception&) {
        return nullptr;
    }
}
