#include "tesmar/platform/hosts/qt/internal/OverlayWidget.h"

#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/hosts/qt/internal/QtPump.h"
#include "tesmar/platform/hosts/qt/internal/qt_keys.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScreen>
#include <QTouchEvent>
#include <QWheelEvent>

#include <cmath>
#include <span>

namespace tesmar {
namespace {

constexpr std::int64_t kMouse = -1; // the identifier of its touch
constexpr double kLatestEvent = 1;  // seconds that an event may be old; else its clock has jumped
constexpr double kNotch = 120;      // of angleDelta

CGPoint fromQt(const QPointF& point) {
    return {point.x(), point.y()};
}

// The device-independent pixels that these pixels cover, even partly.
QRect logicalRect(const PixelRect& rect, double ratio) {
    const int left = static_cast<int>(std::floor(rect.x / ratio));
    const int top = static_cast<int>(std::floor(rect.y / ratio));
    return {QPoint(left, top), QPoint(static_cast<int>(std::ceil(rect.right() / ratio)) - 1,
                                      static_cast<int>(std::ceil(rect.bottom() / ratio)) - 1)};
}

bool isTextInput(const QWidget* widget) {
    return widget && widget->testAttribute(Qt::WA_InputMethodEnabled);
}

} // namespace

OverlayWidget::OverlayWidget(QWidget& covered) : QWidget(&covered) {
    setAttribute(Qt::WA_NoSystemBackground);
    setAttribute(Qt::WA_AcceptTouchEvents);
    setFocusPolicy(Qt::NoFocus);
    setMouseTracking(true);
    hide();
    fit();
    covered.installEventFilter(this);
    QtPump::instance().add(*this);
}

OverlayWidget::~OverlayWidget() {
    retire();
}

void OverlayWidget::retire() {
    hide();
    setTakesKeys(false);
    onFailure = {};
    QtPump::instance().remove(*this);
}

void OverlayWidget::fail(const std::exception_ptr& exception) {
    if (const auto handler = onFailure) {
        handler(exception);
        return;
    }
    try {
        std::rethrow_exception(exception);
    } catch (const std::exception& failure) {
        qCritical("QtOverlay: a callback has thrown: %s", failure.what());
    } catch (...) {
        qCritical("QtOverlay: a callback has thrown");
    }
}

// --- Size and pixels ----------------------------------------------------------------------------

void OverlayWidget::fit() {
    setGeometry(parentWidget()->rect());
    const double ratio = devicePixelRatioF();
    const QSize pixels(std::max(1, qRound(width() * ratio)), std::max(1, qRound(height() * ratio)));
    if (pixels == pixels_.size() && ratio == pixels_.devicePixelRatio())
        return;
    pixels_ = QImage(pixels, QImage::Format_ARGB32_Premultiplied);
    pixels_.setDevicePixelRatio(ratio);
    surface_->setPixelSize(pixels.width(), pixels.height(), ratio);
    surface_->invalidate();
    if (const double rate = screen()->refreshRate(); rate > 0)
        NSRunLoop::mainRunLoop().setFrameInterval(1 / rate);
}

void OverlayWidget::showChanges() {
    const QPointer<OverlayWidget> self(this);
    const auto surface = surface_;
    const bool isShown = guarded([&] {
        fit();
        const auto words = reinterpret_cast<std::uint32_t*>(pixels_.bits());
        const auto count = static_cast<std::size_t>(pixels_.sizeInBytes()) / 4;
        const auto stride = static_cast<int>(pixels_.bytesPerLine());
        const auto painted = surface->render(std::span(words, count), stride);
        if (!self)
            return false;
        for (const PixelRect& rect : painted)
            update(logicalRect(rect, pixels_.devicePixelRatio()));
        return surface->presentedViewController() || !surface->visibleBounds().isEmpty();
    });
    if (!self)
        return;
    // Outside the mask, events reach the widgets below, whatever they are children of.
    const PixelRect visible = isShown ? surface->visibleBounds() : PixelRect{};
    if (!visible.isEmpty() && surface->outsideTap() == OutsideTap::ignored)
        setMask(logicalRect(visible, pixels_.devicePixelRatio()));
    else
        clearMask();
    setTakesKeys(surface->presentedViewController() != nullptr);
    if (isShown)
        raise();
    setVisible(isShown);
}

void OverlayWidget::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setClipRegion(event->region());
    painter.drawImage(QPointF(0, 0), pixels_);
}

// --- Events -------------------------------------------------------------------------------------

// Events tell the time of a clock of the window system's.
double OverlayWidget::timeOf(const QInputEvent& event) {
    const double now = QtPump::now();
    const double time = static_cast<double>(event.timestamp()) / 1000;
    const double age = now - (time + clockOffset_);
    if (!(age >= 0 && age < kLatestEvent))
        clockOffset_ = now - time;
    return time + clockOffset_;
}

bool OverlayWidget::event(QEvent* event) {
    switch (event->type()) {
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        event->setAccepted(touch(*event));
        return true;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
        event->setAccepted(mouse(*event));
        return true;
    case QEvent::Wheel:
        event->setAccepted(wheel(*event));
        return true;
    case QEvent::Leave:
        guarded([surface = surface_] { surface->endHover(); });
        return true;
    default:
        return QWidget::event(event);
    }
}

bool OverlayWidget::touch(QEvent& event) {
    auto& touches = static_cast<QTouchEvent&>(event);
    const auto surface = surface_;
    const double time = timeOf(touches);
    if (event.type() == QEvent::TouchCancel)
        return guarded([&] { surface->cancelTouches(time); });
    const QPointer<OverlayWidget> self(this);
    bool isTaken = false;
    for (const auto& point : touches.points()) {
        const auto phase = point.state() == QEventPoint::Pressed    ? UITouchPhase::began
                           : point.state() == QEventPoint::Released ? UITouchPhase::ended
                                                                    : UITouchPhase::moved;
        if (self && guarded([&] {
                return surface->touch(phase, point.id(), fromQt(point.position()), time);
            }))
            isTaken = true;
    }
    return isTaken;
}

bool OverlayWidget::mouse(QEvent& event) {
    auto& mouse = static_cast<QMouseEvent&>(event);
    const CGPoint point = fromQt(mouse.position());
    const auto surface = surface_;
    const double time = timeOf(mouse);
    const auto pass = [&](UITouchPhase phase) {
        return guarded(
            [&] { return surface->touch(phase, kMouse, point, time, UITouchSource::mouse); });
    };
    const QPointer<OverlayWidget> self(this);
    const bool isLeft = mouse.button() == Qt::LeftButton;
    if (event.type() == QEvent::MouseMove) {
        const bool isTaken = mouseIsTaken_ && pass(UITouchPhase::moved);
        if (self)
            guarded([&] { surface->hover(point); });
        return isTaken || surface->wantsTouchAt(point);
    }
    if (event.type() != QEvent::MouseButtonRelease) {
        const bool isTaken = isLeft && pass(UITouchPhase::began);
        if (self)
            mouseIsTaken_ = isTaken;
        return isTaken || (!isLeft && surface->wantsTouchAt(point));
    }
    const bool wasTaken = isLeft && std::exchange(mouseIsTaken_, false);
    if (wasTaken)
        pass(UITouchPhase::ended);
    if (self)
        guarded([&] { surface->hover(point); });
    return wasTaken;
}

bool OverlayWidget::wheel(QEvent& event) {
    const auto& wheel = static_cast<QWheelEvent&>(event);
    const QPointF notches = QPointF(wheel.angleDelta()) / kNotch * UIWindow::kWheelNotch;
    const QPointF delta = wheel.pixelDelta().isNull() ? notches : QPointF(wheel.pixelDelta());
    return guarded([&, surface = surface_] {
        return surface->wheel(fromQt(wheel.position()), fromQt(delta), timeOf(wheel));
    });
}

// --- Keys ---------------------------------------------------------------------------------------

void OverlayWidget::setTakesKeys(bool takes) {
    if (std::exchange(takesKeys_, takes) == takes)
        return;
    if (takes)
        QApplication::instance()->installEventFilter(this);
    else
        QApplication::instance()->removeEventFilter(this);
}

bool OverlayWidget::eventFilter(QObject* object, QEvent* event) {
    if (object == parentWidget() &&
        (event->type() == QEvent::Resize || event->type() == QEvent::Show))
        guarded([this] { fit(); });
    const bool isKey =
        event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    const auto* const receiver = qobject_cast<QWidget*>(object);
    const bool isElsewhere = QApplication::activePopupWidget() || QApplication::activeModalWidget();
    if (!takesKeys_ || !isKey || isElsewhere || !receiver || receiver->window() != window())
        return false;
    auto& press = *static_cast<QKeyEvent*>(event);
    const auto meaning = meaningOf(press);
    if (!meaning || (*meaning != UIKey::back && isTextInput(QApplication::focusWidget())))
        return false;
    if (event->type() == QEvent::ShortcutOverride) { // the key itself follows
        event->accept();
        return true;
    }
    const auto repeat = press.isAutoRepeat() ? UIKeyRepeat::repeated : UIKeyRepeat::pressed;
    return guarded(
        [&, surface = surface_] { return surface->key(*meaning, repeat, timeOf(press)); });
}

} // namespace tesmar
