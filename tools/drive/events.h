// Reports what happens to the panel, as it happens.
#pragma once

#include "tesmar/panel/TESMARViewController.h"
#include "tools/drive/answers.h"

#include <functional>

namespace tesmar::drive {

// Takes an event and what there is to say about it.
using Report = std::function<void(const char* event, Json fields)>;

// The panel, reporting its comings and goings. To the object runtime it is a TESMARViewController.
class ReportingPanel : public TESMARViewController {
  public:
    // Before the panel is presented.
    void setReport(Report report) { report_ = std::move(report); }

    void viewWillAppear(bool animated) override;
    void viewDidAppear(bool animated) override;
    void viewDidDisappear(bool animated) override;

  private:
    Report report_;
};

// A delegate that reports every call.
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
