// The caption panel over a widget of Qt, with a caption in the chosen style.
//
//     06-panel-over-qt
//
// C opens the panel, Escape closes it.
#include "tesmar/platform/hosts/qt/QtOverlay.h"
#include "tesmar/tesmar.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QWidget>

#include <functional>

using namespace tesmar;

namespace {

// Stands in for a video: a gradient from top to bottom.
class Picture : public QWidget {
  public:
    std::function<void()> onCaptionsKey;
    std::function<void(QSize)> onSize;

  private:
    void paintEvent(QPaintEvent*) override {
        QLinearGradient dusk(0, 0, 0, height());
        dusk.setColorAt(0, QColor(20, 24, 70));
        dusk.setColorAt(1, QColor(180, 104, 70));
        QPainter(this).fillRect(rect(), dusk);
    }
    void resizeEvent(QResizeEvent*) override { onSize(size()); }
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_C)
            onCaptionsKey();
    }
};

class Listener : public TESMARViewControllerDelegate {
  public:
    explicit Listener(Ref<TESMARCaptionView> captions) : captions_(std::move(captions)) {}
    void CCSwitchValueChanged(bool on) override { captions_->setHidden(!on); }
    void CCStyleAttributesChanged(const Ref<NSDictionary>& style) override {
        captions_->setStyle(style);
    }
    void CCViewControllerWillDisappear() override {}

  private:
    Ref<TESMARCaptionView> captions_;
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    NSBundle::setMainBundle(TESMARHostBundle("org.tesmar.example"));
    Picture picture;
    QtOverlay overlay(picture);
    const auto captions = make<TESMARCaptionView>();
    captions->setStyle(TESMARConfig::sessionOrDefaultClosedCaptureStyle());
    captions->setText("Captions look like this.\nThe panel changes them: press C.");
    overlay.window()->rootViewController()->view()->addSubview(captions);
    overlay.window()->setOutsideTap(OutsideTap::dismisses);
    const auto panel = make<TESMARExtendedViewController>();
    panel->setDelegate(std::make_shared<Listener>(captions));
    panel->setRememberChangedStyle(true);
    panel->setPreview(captions);
    panel->setCCEnabled(true);
    picture.onCaptionsKey = [&] {
        if (!overlay.window()->presentedViewController())
            overlay.window()->presentViewController(panel, true);
    };
    picture.onSize = [&](QSize size) {
        captions->setArea(CGRect(16, 16, size.width() - 32, size.height() - 32));
        overlay.window()->setCaptionArea(captions->areaForLines(2));
    };
    picture.resize(800, 450);
    picture.show();
    return QApplication::exec();
}
