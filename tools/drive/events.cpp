#include "tools/drive/events.h"

namespace tesmar::drive {

void ReportingPanel::viewWillAppear(bool animated) {
    report_("viewWillAppear", Json::object());
    TESMARViewController::viewWillAppear(animated);
}

void ReportingPanel::viewDidAppear(bool animated) {
    report_("viewDidAppear", Json::object());
    TESMARViewController::viewDidAppear(animated);
}

void ReportingPanel::viewDidDisappear(bool animated) {
    report_("viewDidDisappear", Json::object());
    TESMARViewController::viewDidDisappear(animated);
}

void ReportingPanel::focusDidMove(const std::string& identifier) {
    report_("focus", Json::object({{"id", identifier}}));
    TESMARViewController::focusDidMove(identifier);
}

void ReportingDelegate::CCSwitchValueChanged(bool on) {
    report_("CCSwitchValueChanged:", Json::object({{"on", on}}));
}

void ReportingDelegate::CCStyleAttributesChanged(const Ref<NSDictionary>& attributes) {
    const auto panel = panel_.lock();
    report_("CCStyleAttributesChanged:",
            Json::object({{"style", fromDictionary(attributes)},
                          {"same", panel && panel->CCStyleAttributes() == attributes}}));
}

void ReportingDelegate::CCViewControllerWillDisappear() {
    report_("CCViewControllerWillDisappear", Json::object());
}

} // namespace tesmar::drive
