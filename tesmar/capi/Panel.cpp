#include "tesmar/capi/internal/Panel.h"

#include "tesmar/capi/internal/StyleSnapshot.h"
#include "tesmar/capi/internal/boundary.h"
#include "tesmar/extended/TESMARExtendedViewController.h"

#include <cstdint>
#include <unordered_map>

namespace tesmar::capi {
namespace {

using Panels = std::unordered_map<tesmar_panel*, std::shared_ptr<Panel>>;

// Left at the end of the process: by then what panels need may be gone.
Panels& panels() {
    static auto* const instance = new Panels;
    return *instance;
}

// A number rather than an address, so that a stale handle never names another panel.
tesmar_panel* newHandle() {
    static std::uintptr_t last = 0;
    return reinterpret_cast<tesmar_panel*>(++last); // NOLINT(performance-no-int-to-ptr)
}

// Tells the panel of that handle, if it still exists, that its view has gone.
template <class Base>
class Watched final : public Base {
  public:
    void setHandle(tesmar_panel* handle) { handle_ = handle; }

    void viewDidDisappear(bool animated) override {
        Base::viewDidDisappear(animated);
        if (const auto found = panels().find(handle_); found != panels().end())
            std::shared_ptr(found->second)->didDisappear();
    }

  private:
    tesmar_panel* handle_ = nullptr;
};

template <class Base>
Ref<TESMARViewController> makeWatched(tesmar_panel* handle) {
    auto controller = make<Watched<Base>>();
    controller->setHandle(handle);
    return controller;
}

} // namespace

Panel::Panel(const tesmar_panel_options& options, const tesmar_panel_callbacks& callbacks)
    : handle_(newHandle()), callbacks_(callbacks), window_(UIWindow::windowWithSize({1, 1})),
      controller_(options.flags & TESMAR_PANEL_EXTENDED
                      ? makeWatched<TESMARExtendedViewController>(handle_)
                      : makeWatched<TESMARViewController>(handle_)) {
    window_->setPixelSize(options.width, options.height, options.scale);
    controller_->setDelegate(borrowed_.delegate());
    if (callbacks_.load_style)
        controller_->setStyleStore([this] { return loadStyle(); },
                                   [this](const Ref<NSDictionary>& style) { saveStyle(style); });
}

Panel::~Panel() {
    controller_->setStyleStore({}, {});
}

void Panel::CCSwitchValueChanged(bool on) {
    if (callbacks_.captions_changed)
        callbacks_.captions_changed(handle_, on ? 1 : 0, callbacks_.user);
}

void Panel::CCStyleAttributesChanged(const Ref<NSDictionary>& attributes) {
    if (callbacks_.style_changed)
        callbacks_.style_changed(handle_, snapshotOf(attributes).get(), callbacks_.user);
}

void Panel::CCViewControllerWillDisappear() {
    if (callbacks_.will_disappear)
        callbacks_.will_disappear(handle_, callbacks_.user);
}

void Panel::didDisappear() {
    if (callbacks_.did_disappear)
        callbacks_.did_disappear(handle_, callbacks_.user);
}

Ref<NSDictionary> Panel::loadStyle() {
    if (!callbacks_.load_style)
        return nullptr;
    const StyleRef style(callbacks_.load_style(handle_, callbacks_.user));
    return style ? style->attributes : nullptr;
}

void Panel::saveStyle(const Ref<NSDictionary>& attributes) {
    if (callbacks_.save_style)
        callbacks_.save_style(handle_, snapshotOf(attributes).get(), callbacks_.user);
}

void addPanel(const std::shared_ptr<Panel>& panel) {
    reserveReleases(panels().size() + 1);
    panels().emplace(panel->handle(), panel);
}

std::shared_ptr<Panel> findPanel(tesmar_panel* handle) {
    const auto found = panels().find(handle);
    require(found != panels().end(), "there is no such panel, or no longer");
    return found->second;
}

std::shared_ptr<Panel> removePanel(tesmar_panel* handle) {
    const auto found = panels().find(handle);
    if (found == panels().end())
        return nullptr;
    auto panel = std::move(found->second);
    panels().erase(found);
    return panel;
}

} // namespace tesmar::capi
