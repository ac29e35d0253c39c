// A control with a title, an image and a background image for each of its states. The image has no
// insets of its own, and titles that are formatted in parts are not supported.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/graphics/UIImage.h"
#include "tesmar/platform/ui/UIControl.h"
#include "tesmar/platform/ui/UILabel.h"

#include <map>

namespace tesmar {

enum class UIButtonType { custom = 0, system = 1 };

// How an image shows a press: it becomes paler, or a plate in its colour lies behind it.
enum class UIButtonPressedLook { paler, plate };

class TESMAR_API UIButton : public UIControl {
    TESMAR_CLASS

  public:
    // A custom button has white titles, a system button blue ones.
    static Ref<UIButton> buttonWithType(UIButtonType type);

    // Reads, besides the control's keys, "title", "titleColor", "image" and "tintColor".
    bool initWithCoder(NSCoder& coder) override;

    // States are those of UIControlState. A state without a value of its own has the normal
    // state's.
    void setTitle(std::string title, unsigned forState);
    std::string titleForState(unsigned state) const;
    void setTitleColor(const Ref<UIColor>& color, unsigned forState);
    Ref<UIColor> titleColorForState(unsigned state) const;
    // Images are drawn in the tint colour, or in black if it is null, as it is initially.
    void setImage(const Ref<UIImage>& image, unsigned forState);
    Ref<UIImage> imageForState(unsigned state) const;
    // Stretched to the bounds, in its own colours, behind the image and the title. The normal
    // state's is paler in other states, like the image; a state's own one is not.
    void setBackgroundImage(const Ref<UIImage>& image, unsigned forState);
    Ref<UIImage> backgroundImageForState(unsigned state) const;
    const Ref<UIColor>& tintColor() const { return tintColor_; }
    void setTintColor(const Ref<UIColor>& color);
    // Initially paler. The plate fills the content.
    void setPressedLook(UIButtonPressedLook look);

    // In points; initially zero. Coordinates that are NaN or infinite are made finite. The content
    // is the image in the centre and the title; its insets enlarge the intrinsic size. Those of the
    // title only move the title, within the content.
    const UIEdgeInsets& contentEdgeInsets() const { return contentInsets_; }
    void setContentEdgeInsets(const UIEdgeInsets& insets);
    const UIEdgeInsets& titleEdgeInsets() const { return titleInsets_; }
    void setTitleEdgeInsets(const UIEdgeInsets& insets);

    // Shows the title of the present state; created at the first call. The button sets its text and
    // colour; the caller may set its font, initially the 18-point system font.
    const Ref<UILabel>& titleLabel();

    // A button with the title of its state as its name.
    void describe(UIAccessibleElement& element) const override;
    // The title plus 12 points of height, or the image, with the content's insets, or the
    // background image; at least 30 points wide.
    CGSize intrinsicContentSize() const override;
    std::optional<CGFloat> layoutBaselineBelowCenter() const override;
    void draw(CGRect rect) override;
    void layoutSubviews() override;
    UIView* hitTest(CGPoint point) override;

  protected:
    void stateChanged() override;

  private:
    void showState();
    void setImageIn(std::map<unsigned, Ref<UIImage>>& images, const Ref<UIImage>& image,
                    unsigned state);
    void setInsets(UIEdgeInsets& insets, const UIEdgeInsets& value);
    CGFloat fade() const;

    std::map<unsigned, std::string> titles_;
    std::map<unsigned, Ref<UIColor>> titleColors_;
    std::map<unsigned, Ref<UIImage>> images_;
    std::map<unsigned, Ref<UIImage>> backgroundImages_;
    UIEdgeInsets contentInsets_;
    UIEdgeInsets titleInsets_;
    Ref<UIColor> tintColor_;
    UIButtonPressedLook pressedLook_ = UIButtonPressedLook::paler;
    Ref<UILabel> titleLabel_;
};

} // namespace tesmar
