#include "tesmar/platform/ui/internal/accessibility/AccessibilityMonitor.h"

#include <map>
#include <utility>

namespace tesmar {
namespace {

using Elements = std::vector<UIAccessibleElement>;

bool sameStructure(const Elements& a, const Elements& b) {
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (a[i].identifier != b[i].identifier || a[i].role != b[i].role ||
            !sameStructure(a[i].children, b[i].children))
            return false;
    return true;
}

bool saysTheSame(const UIAccessibleElement& a, const UIAccessibleElement& b) {
    return a.name == b.name && a.value == b.value && a.states == b.states &&
           a.position == b.position && a.count == b.count && a.range == b.range;
}

using ById = std::map<std::string_view, const UIAccessibleElement*>;

void index(const Elements& elements, ById& to) {
    for (const auto& element : elements) {
        to[element.identifier] = &element;
        index(element.children, to);
    }
}

using Change = std::pair<const UIAccessibleElement*, const UIAccessibleElement*>;

void collectChanges(const ById& before, const Elements& after, std::vector<Change>& changes) {
    for (const auto& element : after) {
        const auto known = before.find(element.identifier);
        if (known != before.end() && !saysTheSame(*known->second, element))
            changes.emplace_back(known->second, &element);
        collectChanges(before, element.children, changes);
    }
}

} // namespace

// What callbacks change is reported by the next update.
void AccessibilityMonitor::update() {
    if (isUpdating_)
        return;
    struct Updating {
        explicit Updating(bool& flag) : flag_(flag) { flag_ = true; }
        ~Updating() { flag_ = false; }
        bool& flag_;
    } const updating(isUpdating_);
    const Elements before = std::exchange(known_, accessibleTree(window_));
    const auto announcements = std::exchange(announcements_, {});
    if (std::exchange(isFirst_, false) || !sameStructure(before, known_))
        observer_.treeChanged(known_);
    if (before != known_) {
        ById known;
        index(before, known);
        std::vector<Change> changes;
        collectChanges(known, known_, changes);
        for (const auto& [old, now] : changes)
            observer_.elementChanged(*old, *now);
    }
    for (const auto& text : announcements)
        observer_.announced(text);
}

} // namespace tesmar
