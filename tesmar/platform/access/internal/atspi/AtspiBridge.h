// Serves a window's accessible elements to AT-SPI clients through ATK.
#pragma once

#include "tesmar/platform/access/internal/AccessibilityBridge.h"
#include "tesmar/platform/access/internal/atspi/MainContextWatch.h"
#include "tesmar/platform/access/internal/atspi/element_object.h"

#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace tesmar {

// One at a time: ATK has one root in a process.
class AtspiBridge final : public AccessibilityBridge, private ElementActions {
  public:
    // Throws when the bus cannot be reached.
    explicit AtspiBridge(AccessibilitySource& source);
    ~AtspiBridge() override;

    void turn() override;
    void setActive(bool windowHasFocus) override;

    void treeChanged(const Elements& tree) override;
    void elementChanged(const UIAccessibleElement& before,
                        const UIAccessibleElement& after) override;
    void announced(std::string_view text) override;

    AtkObject* root() const { return application_.object.get(); }

  private:
    bool handle(const std::function<bool()>& request);
    using Children = std::vector<AtkObject*>;
    using Nodes = std::map<std::string, std::unique_ptr<ElementNode>>; // by identifier

    bool perform(const std::string& identifier, UIAccessibleAction action) override;
    bool grabFocus(const std::string& identifier) override;
    CGRect frameOf(const std::string& identifier, AtkCoordType relativeTo) override;

    void prepare(ElementNode& node, AtkRole role, AtkObject* parent);
    // A parent that clients know, with its former children.
    using ChangedParent = std::pair<AtkObject*, Children>;
    // Makes the elements the children of `parent`: moves their nodes from `former` to nodes_, and
    // makes those that are missing. Appends to `changed`.
    void adopt(const Elements& elements, ElementNode& parent, Nodes& former,
               std::vector<ChangedParent>& changed);

    AccessibilitySource& source_;
    ElementNode application_;
    ElementNode window_;
    Nodes nodes_;
    std::exception_ptr failure_; // of the source, during a client's request
    std::unique_ptr<MainContextWatch> watch_;
};

} // namespace tesmar
