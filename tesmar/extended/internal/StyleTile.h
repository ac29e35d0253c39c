// A tile with a sample of text in a caption style, on grey that stands for the picture; on a larger
// light grey shape while it is selected. A tap does not select the tile; its owner does.
#pragma once

#include "tesmar/model/PanelAppearance.h"
#include "tesmar/platform/text/NSAttributedString.h"
#include "tesmar/platform/ui/UIButton.h"

namespace tesmar {

class StyleTile : public UIButton {
    TESMAR_CLASS

  public:
    enum class Shape { disc, rounded };

    // `frame` is square.
    bool initWithShape(CGRect frame, Shape shape);

    // Draws `text` in the middle, in the attributes of `style`; its font's size is clamped so that
    // it fits the tile.
    void setSample(std::string text, const NSDictionary& style);
    // Initially normal.
    void setContrast(TESMARContrast contrast);

    void setSelected(bool selected) override;
    std::vector<UIFocusCell> focusCells() const override;
    void draw(CGRect rect) override;

  private:
    void fill(CGContext& context, const CGRect& rect, const UIColor& color) const;
    CGFloat cornerRadius(const CGRect& rect) const;
    CGRect plate() const;
    void drawSample(CGContext& context) const;

    Shape shape_ = Shape::disc;
    TESMARContrast contrast_ = TESMARContrast::normal;
    Ref<NSAttributedString> sample_;
};

} // namespace tesmar
