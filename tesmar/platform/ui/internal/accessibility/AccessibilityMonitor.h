// Compares a window's accessible elements with those at the last update, and tells an observer.
#pragma once

#include "tesmar/platform/ui/UIAccessibility.h"

#include <string>
#include <vector>

namespace tesmar {

class AccessibilityMonitor {
  public:
    // Both must outlive this.
    AccessibilityMonitor(UIWindow& window, UIAccessibilityObserver& observer)
        : window_(window), observer_(observer) {}

    void announce(std::string text) { announcements_.push_back(std::move(text)); }
    void update();

  private:
    UIWindow& window_;
    UIAccessibilityObserver& observer_;
    bool isFirst_ = true;
    bool isUpdating_ = false;
    std::vector<UIAccessibleElement> known_;
    std::vector<std::string> announcements_;
};

} // namespace tesmar
