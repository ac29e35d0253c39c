// The captions, in the viewer's style, at the foot of the room that they are given.
#pragma once

#include "tesmar/tesmar.h"

class CaptionView : public tesmar::UIView {
  public:
    // The room's share at the foot of the picture that captions of any style on offer may need: the
    // panel stays clear of it, and does not move when the style changes.
    static tesmar::CGRect reservedArea(const tesmar::CGRect& room);

    // Lines are separated by "\n". Empty shows nothing.
    void setText(std::string text);
    // As the panel gives it.
    void setStyle(const tesmar::Ref<tesmar::NSDictionary>& style);
    // The text stands at the bottom of `room` (superview's coordinates), broken at its width, and
    // grows upwards. More than the room can hold loses its end.
    void setRoom(tesmar::CGRect room);

    bool initWithFrame(tesmar::CGRect frame) override;
    void draw(tesmar::CGRect rect) override;
    tesmar::UIEdgeInsets drawingOverflow() const override;

  private:
    void update();

    std::string text_;
    tesmar::Ref<tesmar::NSDictionary> style_;
    tesmar::CGRect room_;
    tesmar::Ref<tesmar::NSAttributedString> shown_;
};
