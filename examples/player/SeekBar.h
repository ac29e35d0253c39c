// A line along which a finger moves through the video.
#pragma once

#include "tesmar/platform/ui/UIControl.h"

class SeekBar : public tesmar::UIControl {
  public:
    // 0 to 1. While a finger is on the bar, the finger has the word.
    void setProgress(double progress);
    // Where the bar stands: where the finger is, or has been last when value-changed comes. That is
    // sent when the finger lifts.
    double progress() const { return progress_; }

    void draw(tesmar::CGRect rect) override;

  protected:
    bool beginTracking(tesmar::UITouch& touch) override;
    bool continueTracking(tesmar::UITouch& touch) override;
    void endTracking(tesmar::UITouch& touch) override;

  private:
    void show(double progress);
    void follow(const tesmar::UITouch& touch);

    double progress_ = 0;
};
