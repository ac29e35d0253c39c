// A panel and a delegate that report their callbacks as JSON.
#pragma once

#include "tesmar/panel/TESMARViewController.h"
#include "tools/drive/json_values.h"

#include <functional>

namespace tesmar::drive {

// Called with the event's name and its further fields, a JSON object.
using Report = std::function<void(const char* event, Json fields)>;

// A panel that reports when it appears and disappears, and where the focus is. The object runtime
// sees a TESMARViewController.
class ReportingPanel : public TESMARViewController {
  public:
    // Required before the panel is presented.
    void setReport(Report report) { report_ = std::move(report); }

    void viewWillAppear(bool animated) override;
    void viewDidAppear(bool animated) override;
    void viewDidDisappear(bool animated) override;
    void focusDidMove(const std::string& identifier) override;

  private:
    Report report_;
};

// A delegate that reports each of its calls.
class ReportingDelegate : public TESMARViewControllerDelegate {
  public:
    ReportingDelegate(Report report, const Ref<ReportingPanel>& panel)
        : report_(std::move(report)), panel_(panel) {}

    void CCSwitchValueChanged(bool on) override;
    void CCStyleAttributesChanged(const Ref<NSDictionary>& attributes) override;
    void CCViewControllerWillDisappear() override;

  private:
    Report report_;
    WeakRef<ReportingPanel> panel_;
};

} // namespace tesmar::drive
