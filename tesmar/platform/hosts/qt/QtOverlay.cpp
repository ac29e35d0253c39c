#include "tesmar/platform/hosts/qt/QtOverlay.h"

#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/hosts/qt/internal/OverlayWidget.h"
#include "tesmar/platform/hosts/qt/internal/QtPump.h"

#include <QPointer>

namespace tesmar {

struct QtOverlay::State {
    explicit State(QWidget& covered)
        : widget(new OverlayWidget(covered)), surface(widget->surface()) {}
    QPointer<OverlayWidget> widget; // null once the covered widget, which owns it, is gone
    Ref<UIWindow> surface;
};

QtOverlay::QtOverlay(QWidget& covered) : state_(std::make_unique<State>(covered)) {}

QtOverlay::~QtOverlay() {
    if (state_->widget) {
        state_->widget->retire();
        state_->widget->deleteLater();
    }
}

const Ref<UIWindow>& QtOverlay::window() const {
    NSRunLoop::mainRunLoop().noteTime(QtPump::now()); // what the host starts begins now
    return state_->surface;
}

void QtOverlay::onFailure(std::function<void(std::exception_ptr)> handler) {
    if (state_->widget)
        state_->widget->onFailure = std::move(handler);
}

} // namespace tesmar
