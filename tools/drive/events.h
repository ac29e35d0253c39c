// A panel and a delegate that report their callbacks as JSON.
#pragma once

#include "tesmar/extended/TESMARExtendedViewController.h"
#include "tools/drive/Command.h"
#include "tools/drive/json_values.h"

#include <functional>

namespace tesmar::drive {

// Called with the event's name and its further fields, a JSON object.
using Report = std::function<void(const char* event, Json fields)>;

// A panel of that class that reports when it appears and disappears, and where the focus is. The
// object runtime sees a Panel.
template <class Panel>
class Reporting : public Panel {
  public:
    explicit Reporting(Report report) : report_(std::move(report)) {}

    void viewWillAppear(bool animated) override {
        report_("viewWillAppear", Json::object());
        Panel::viewWillAppear(animated);
    }
    void viewDidAppear(bool animated) override {
        report_("viewDidAppear", Json::object());
        Panel::viewDidAppear(animated);
    }
    void viewDidDisappear(bool animated) override {
        report_("viewDidDisappear", Json::object());
        Panel::viewDidDisappear(animated);
    }
    void focusDidMove(const std::string& identifier) override {
        report_("focus", Json::object({{"id", identifier}}));
        Panel::focusDidMove(identifier);
    }

  private:
    const Report report_;
};

Ref<TESMARViewController> makeReportingPanel(PanelKind kind, const Report& report);

// A delegate that reports each of its calls.
class ReportingDelegate : public TESMARViewControllerDelegate {
  public:
    ReportingDelegate(Report report, const Ref<TESMARViewController>& panel)
        : report_(std::move(report)), panel_(panel) {}

    void CCSwitchValueChanged(bool on) override;
    void CCStyleAttributesChanged(const Ref<NSDictionary>& attributes) override;
    void CCViewControllerWillDisappear() override;

  private:
    Report report_;
    WeakRef<TESMARViewController> panel_;
};

} // namespace tesmar::drive
