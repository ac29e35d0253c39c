#include "tesmar/platform/hosts/qt/internal/QtPump.h"

#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/hosts/qt/internal/OverlayWidget.h"

#include <QPointer>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace tesmar {
// Never destroyed: that could happen in the middle of a turn, or after the application's end.
QtPump& QtPump::instance() {
    static auto* const pump = new QtPump;
    return *pump;
}

double QtPump::now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

QtPump::QtPump() {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, [this] { turn(); });
}

void QtPump::add(OverlayWidget& overlay) {
    if (overlays_.empty()) {
        NSRunLoop::mainRunLoop().noteTime(now());
        NSRunLoop::mainRunLoop().setWakeHandler([this] { timer_.start(0); });
    }
    overlays_.push_back(&overlay);
    timer_.start(0);
}

void QtPump::remove(OverlayWidget& overlay) {
    if (std::erase(overlays_, &overlay) == 0 || !overlays_.empty())
        return;
    NSRunLoop::mainRunLoop().setWakeHandler({});
    timer_.stop();
}

// Any callback may destroy overlays.
void QtPump::turn() {
    std::vector<QPointer<OverlayWidget>> overlays(overlays_.begin(), overlays_.end());
    if (overlays.empty())
        return;
    overlays.front()->guarded([] { NSRunLoop::mainRunLoop().advanceTo(now()); });
    for (const auto& overlay : overlays)
        if (overlay)
            overlay->showChanges();
    const auto due = NSRunLoop::mainRunLoop().nextDeadline();
    if (due && !overlays_.empty())
        timer_.start(static_cast<int>(std::ceil(std::clamp((*due - now()) * 1000, 0.0, 1e9))));
}

} // namespace tesmar
