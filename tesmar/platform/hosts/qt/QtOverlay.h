// A UIWindow over a widget of Qt 6:
//
//     QtOverlay overlay(*videoWidget);
//     overlay.window()->presentViewController(panel, true);
//
// It covers the widget, follows its size, scale and screen, and paints only what changes. While it
// presents a controller it takes touches, the mouse, the wheel and keys; what the window does not
// want goes to the widgets below it, and no widget loses the focus: while a text input has it, the
// overlay takes no key but Escape. While nothing is presented it is hidden, and costs nothing: no
// timer runs. A point is a device-independent pixel of Qt.
//
// All overlays of a process share one timer, which pumps the main run loop with seconds of the
// system's monotonic clock, and set its wake handler. Made and used on the thread of the
// QApplication, which must exist.
//
// Exceptions of the host's callbacks do not pass through Qt: see onFailure(). The host may destroy
// the overlay in any of them, and the widget under it with deleteLater().
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/ui/UIWindow.h"

#include <exception>
#include <functional>
#include <memory>

class QWidget;

namespace tesmar {

class TESMAR_API QtOverlay {
  public:
    // `covered` may be destroyed first: the overlay then shows nothing any more.
    explicit QtOverlay(QWidget& covered);
    ~QtOverlay();
    QtOverlay(const QtOverlay&) = delete;
    QtOverlay& operator=(const QtOverlay&) = delete;

    // The overlay sets its size and scale.
    const Ref<UIWindow>& window() const;
    // Gets what a callback of the host has thrown. Without one, qCritical() says so, and the
    // program goes on.
    void onFailure(std::function<void(std::exception_ptr)> handler);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace tesmar
