// The widget of an overlay: a child of the covered widget, as large as it.
#pragma once

#include "tesmar/platform/ui/UIWindow.h"

#include <QImage>
#include <QPointer>
#include <QWidget>

#include <exception>
#include <functional>

class QInputEvent;

namespace tesmar {

class OverlayWidget final : public QWidget {
  public:
    explicit OverlayWidget(QWidget& covered);
    ~OverlayWidget() override;

    const Ref<UIWindow>& surface() const { return surface_; }
    std::function<void(std::exception_ptr)> onFailure;

    // Runs `work`, whose exceptions must not pass through Qt. Returns its result, or false after an
    // exception. This widget may be gone afterwards.
    template <class Work>
    bool guarded(const Work& work) {
        const QPointer<OverlayWidget> self(this);
        try {
            if constexpr (std::is_void_v<decltype(work())>)
                return work(), true;
            else
                return work();
        } catch (...) {
            if (self)
                fail(std::current_exception());
            return false;
        }
    }

    // Hides the widget for good; it may be in the middle of an event, so it is destroyed later.
    void retire();
    // Paints what is out of date, and shows or hides the widget.
    void showChanges();

  protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void fail(const std::exception_ptr& exception);
    void fit();
    void setTakesKeys(bool takes);
    double timeOf(const QInputEvent& event);
    bool touch(QEvent& event);
    bool mouse(QEvent& event);
    bool wheel(QEvent& event);

    Ref<UIWindow> surface_ = UIWindow::windowWithSize({1, 1});
    QImage pixels_;
    double clockOffset_ = 0; // from the events' clock to the pump's, seconds
    bool takesKeys_ = false;
    bool mouseIsTaken_ = false;
};

} // namespace tesmar
