#include "tools/drive/events.h"

namespace tesmar::drive {

namespace {

template <class Panel>
Ref<TESMARViewController> makeReporting(const Report& report) {
    auto panel = std::make_shared<Reporting<Panel>>(report);
    return panel->init() ? panel : nullptr;
}

} // namespace

Ref<TESMARViewController> makeReportingPanel(PanelKind kind, const Report& report) {
    return kind == PanelKind::extended ? makeReporting<TESMARExtendedViewController>(report)
                                       : makeReporting<TESMARViewController>(report);
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
