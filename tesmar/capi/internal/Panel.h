// A panel with its surface, and the handles by which C knows it.
#pragma once

#include "tesmar/capi/internal/boundary.h"
#include "tesmar/capi/tesmar.h"
#include "tesmar/panel/TESMARViewController.h"
#include "tesmar/panel/TESMARViewControllerDelegate.h"
#include "tesmar/platform/ui/UIWindow.h"

#include <memory>

namespace tesmar::capi {

class Panel final : private TESMARViewControllerDelegate {
  public:
    Panel(const tesmar_panel_options& options, const tesmar_panel_callbacks& callbacks);
    ~Panel() override;

    UIWindow& window() { return *window_; }
    TESMARViewController& controller() { return *controller_; }
    const Ref<TESMARViewController>& controllerRef() const { return controller_; }

    tesmar_panel* handle() const { return handle_; }
    void didDisappear();
    // From then on no callback is called.
    void retire() { callbacks_ = {}; }

  private:
    void CCSwitchValueChanged(bool on) override;
    void CCStyleAttributesChanged(const Ref<NSDictionary>& attributes) override;
    void CCViewControllerWillDisappear() override;
    Ref<NSDictionary> loadStyle();
    void saveStyle(const Ref<NSDictionary>& attributes);

    tesmar_panel* const handle_;
    tesmar_panel_callbacks callbacks_;
    Ref<UIWindow> window_;
    Ref<TESMARViewController> controller_;
    TESMARBorrowedDelegate borrowed_{*this};
};

// Of the panels that are not destroyed. Owner's thread only.
void addPanel(const std::shared_ptr<Panel>& panel);
// Fails if there is no such panel.
std::shared_ptr<Panel> findPanel(tesmar_panel* handle);
// Null if there is no such panel.
std::shared_ptr<Panel> removePanel(tesmar_panel* handle);

// A function of the interface that runs `work` with a panel.
template <class Work>
int withPanel(tesmar_panel* handle, const Work& work) noexcept {
    return guard(Caller::owner, [&] { return work(*findPanel(handle)); });
}

} // namespace tesmar::capi
