// A slider for the position in the video.
#pragma once

#include "tesmar/platform/ui/UIControl.h"

class SeekBar : public tesmar::UIControl {
  public:
    // 0 to 1; other numbers are clamped. Ignored while a finger is on the bar.
    void setProgress(double progress);
    // 0 to 1. Follows the finger; value-changed is sent when the finger lifts.
    double progress() const { return progress_; }

    void draw(tesmar::CGRect rect) override;
    // Percents, in steps of five.
    void describe(tesmar::UIAccessibleElement& element) const override;
    bool perform(const tesmar::UIAccessibleElement& element,
                 tesmar::UIAccessibleAction action) override;

  protected:
    bool beginTracking(tesmar::UITouch& touch) override;
    bool continueTracking(tesmar::UITouch& touch) override;
    void endTracking(tesmar::UITouch& touch) override;

  private:
    void show(double progress);
    void follow(const tesmar::UITouch& touch);

    double progress_ = 0;
};
