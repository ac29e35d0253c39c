// Pumps the main run loop for all overlays of the process with one timer, which runs only while
// there is something to do.
#pragma once

#include <QTimer>

#include <vector>

namespace tesmar {

class OverlayWidget;

class QtPump {
  public:
    static QtPump& instance();
    // Sets the run loop's wake handler with the first overlay, and removes it with the last.
    void add(OverlayWidget& overlay);
    void remove(OverlayWidget& overlay);
    // Seconds of the system's monotonic clock.
    static double now();

  private:
    QtPump();
    void turn();

    QTimer timer_;
    std::vector<OverlayWidget*> overlays_;
};

} // namespace tesmar
