// Draws the captions in the viewer's style, at the bottom of the area that they may use.
#pragma once

#include "tesmar/tesmar.h"

class CaptionView : public tesmar::UIView {
  public:
    // The part of the room, at its bottom, that two lines in the present style need (three in a
    // narrow picture), as far as it leaves room for the panel. In the superview's coordinates.
    tesmar::CGRect reservedArea() const;
    bool fitsIntoReservedArea() const;

    // Lines are separated by "\n". An empty text shows nothing.
    void setText(std::string text);
    // The panel's dictionary of text attributes.
    void setStyle(const tesmar::Ref<tesmar::NSDictionary>& style);
    // The area that the captions may use, in the superview's coordinates. Text is broken at its
    // width and grows upwards from its bottom; lines beyond its height are cut off at the end.
    void setRoom(tesmar::CGRect room);

    bool initWithFrame(tesmar::CGRect frame) override;
    void draw(tesmar::CGRect rect) override;
    tesmar::UIEdgeInsets drawingOverflow() const override;

  private:
    void update();
    tesmar::CGFloat neededHeight() const;    // points
    tesmar::CGFloat availableHeight() const; // points

    std::string text_;
    tesmar::Ref<tesmar::NSDictionary> style_;
    tesmar::CGRect room_;
    tesmar::Ref<tesmar::NSAttributedString> shown_;
};
