// The overlay over a widget on Qt's display in memory.
#include "tesmar/platform/hosts/qt/QtOverlay.h"

#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/hosts/headless/HeadlessHost.h"
#include "tesmar/platform/ui/UIControl.h"
#include "tesmar/platform/ui/UIStepper.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QWheelEvent>
#include <gtest/gtest.h>

namespace tesmar {
namespace {

QApplication& application() {
    static int count = 1;
    static char name[] = "test", *arguments[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static auto& instance = *new QApplication(count, arguments);
    return instance;
}

struct Below : QWidget {
    void mousePressEvent(QMouseEvent*) override { ++presses; }
    void keyPressEvent(QKeyEvent*) override { ++keys; }
    int presses = 0, keys = 0;
};

struct Card : UIViewController {
    std::optional<CGSize> preferredContentSize() override { return CGSize{120, 80}; }
    void viewDidLoad() override {
        view()->setBackgroundColor(UIColor::colorWithRed(1, 0, 0, 0.5));
        stepper->setFrame({10, 10, 94, 29});
        view()->addSubview(stepper);
    }
    void viewWillDisappear(bool) override { leaving(); }
    Ref<UIStepper> stepper = make<UIStepper>();
    std::function<void()> leaving = [] {};
};

class QtOverlayTest : public testing::Test {
  protected:
    QtOverlayTest() {
        below.resize(300, 200);
        input.setGeometry(0, 180, 300, 20);
        below.show();
        below.setFocus();
        run(0.05);
    }
    // Qt's loop, for that many seconds.
    static void run(double seconds) {
        QElapsedTimer timer;
        timer.start();
        do
            QApplication::processEvents(QEventLoop::AllEvents, 5);
        while (timer.elapsed() < seconds * 1000);
    }
    void present() {
        overlay->window()->presentViewController(card, false);
        run(0.05);
    }
    // To the widget that is at the place.
    void press(int x, int y) {
        QWidget* const receiver = below.childAt(x, y) ? below.childAt(x, y) : &below;
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            const QPointF at(x, y);
            QMouseEvent event(type, receiver->mapFrom(&below, at), at, Qt::LeftButton,
                              type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, {});
            QApplication::sendEvent(receiver, &event);
        }
        run(0.02);
    }
    void key(int code) {
        QKeyEvent event(QEvent::KeyPress, code, {});
        QApplication::sendEvent(QApplication::focusWidget() ? QApplication::focusWidget() : &below,
                                &event);
        run(0.02);
    }

    QApplication& qt = application(); // before any widget
    Below below;
    QLineEdit input{&below};
    std::unique_ptr<QtOverlay> overlay = std::make_unique<QtOverlay>(below);
    Ref<Card> card = make<Card>();
};

TEST_F(QtOverlayTest, ShowsWhatTheWindowPaints) {
    const QImage plain = below.grab().toImage();
    present();
    HeadlessHost other({300, 200});
    const auto same = make<Card>();
    other.window()->presentViewController(same, false);
    other.advance(0.1);
    other.render();
    const QImage shown = below.grab().toImage().convertToFormat(QImage::Format_RGB32);
    QImage expected = plain.convertToFormat(QImage::Format_RGB32);
    std::size_t at = 0;
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 300; ++x) {
            const std::uint32_t over = other.pixels()[at++];
            const QRgb under = expected.pixel(x, y), seen = shown.pixel(x, y);
            for (const int shift : {16, 8, 0}) {
                const int mixed = static_cast<int>(
                    (over >> shift & 255) + (under >> shift & 255) * (255 - (over >> 24)) / 255);
                ASSERT_NEAR(static_cast<int>(seen >> shift & 255), mixed, 2) << x << ' ' << y;
            }
        }
    below.resize(400, 300);
    run(0.05);
    EXPECT_EQ(overlay->window()->pixelSize(), (CGSize{400, 300}));
    overlay->window()->presentedViewController()->dismissViewControllerAnimated(true);
    run(0.5);
    EXPECT_EQ(below.childAt(200, 100), nullptr); // hidden
}

TEST_F(QtOverlayTest, TakesWhatTheWindowWants) {
    press(150, 100);
    key(Qt::Key_Down);
    EXPECT_EQ(below.presses + below.keys, 2); // nothing is presented
    present();
    press(170, 85); // the stepper's right half, on a card of 120 × 80 in the middle
    EXPECT_EQ(card->stepper->value() + below.presses, 2);
    press(10, 10);
    EXPECT_EQ(below.presses, 2); // beside the card
    overlay->window()->setOutsideTap(OutsideTap::dismisses);
    key(Qt::Key_Down);
    EXPECT_TRUE(overlay->window()->focus());
    EXPECT_EQ(below.keys, 1);
    input.setFocus();
    QKeyEvent letter(QEvent::KeyPress, Qt::Key_Space, {}, " ");
    QApplication::sendEvent(&input, &letter);
    EXPECT_EQ(input.text(), " "); // a text input keeps its keys
    key(Qt::Key_Escape);
    run(0.5);
    EXPECT_FALSE(overlay->window()->presentedViewController());
    present();
    press(10, 10);
    run(0.5);
    EXPECT_FALSE(overlay->window()->presentedViewController());
    EXPECT_EQ(below.presses, 2);
}

TEST_F(QtOverlayTest, SleepsWhileNothingChanges) {
    present();
    run(1);
    EXPECT_FALSE(NSRunLoop::mainRunLoop().nextDeadline());
    struct Counter : QObject {
        bool eventFilter(QObject*, QEvent* event) override {
            timers += event->type() == QEvent::Timer;
            return false;
        }
        int timers = 0;
    } counter;
    qt.installEventFilter(&counter);
    run(0.3);
    EXPECT_EQ(counter.timers, 0);
    card->stepper->setValue(3); // the host's own change wakes it
    run(0.05);
    EXPECT_EQ(counter.timers, 1);
}

TEST_F(QtOverlayTest, CallbacksMayThrowAndDestroy) {
    int failures = 0;
    overlay->onFailure([&](const std::exception_ptr&) { ++failures; });
    card->leaving = [] { throw 1; };
    present();
    key(Qt::Key_Escape);
    run(0.5);
    EXPECT_EQ(failures, 1);
    card->leaving = [&] { overlay.reset(); };
    present();
    key(Qt::Key_Escape);
    run(0.1);
    EXPECT_FALSE(overlay);
    press(150, 100);
    EXPECT_EQ(below.presses, 1);

    auto other = std::make_unique<QWidget>(); // whose end comes first
    overlay = std::make_unique<QtOverlay>(*other);
    other.reset();
    run(0.02);
    EXPECT_TRUE(overlay->window());
}

} // namespace
} // namespace tesmar
