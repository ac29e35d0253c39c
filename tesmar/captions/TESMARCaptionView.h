// Draws the host's captions in the viewer's style over its picture, and a sample caption in their
// place while a panel asks for it.
//
//     auto captions = make<TESMARCaptionView>();
//     window->rootViewController()->view()->addSubview(captions);
//     captions->setArea({0, 0, 640, 360});         // the picture, in points
//     captions->setStyle(panelsDictionary);        // at the start, and at every change
//     captions->setText("Hello\nthere");           // at every caption; "" between them
//
// The view sets its own frame. Every change shows in the next frame and repaints only what the old
// and the new text cover; setting what is set already does nothing. Main thread only.
#pragma once

#include "tesmar/platform/text/NSAttributedString.h"
#include "tesmar/platform/ui/UIView.h"

#include <string>
#include <string_view>
#include <vector>

namespace tesmar {

// Where in the picture the captions are. At the bottom and the top they are centred; the other
// three are half-way up.
enum class TESMARCaptionPlace { bottom, top, left, center, right };

// What the font's size in the style means.
enum class TESMARCaptionSizing {
    points,
    picture, // the default style's 17 points are a twentieth of the picture's height
};

// Two lines with ascenders, descenders, digits and accents, in the language that is closest to a
// BCP 47 tag (see TESMARTexts::closestLanguage). Any thread.
TESMAR_API std::string_view TESMARSampleCaption(std::string_view languageTag);

class TESMAR_API TESMARCaptionView : public UIView {
    TESMAR_CLASS

  public:
    // The frame is ignored.
    bool initWithFrame(CGRect frame) override;

    // UTF-8 (see TextLayout::setText), lines separated by "\n"; empty shows nothing. Lines are
    // broken at the area's width. Those that do not fit its height are left out, from the last one,
    // and an ellipsis says so.
    const std::string& text() const { return text_; }
    void setText(std::string text);
    // The attributes of NSAttributedString; initially, and when null is set, the default style.
    // The dictionary is copied.
    void setStyle(const Ref<NSDictionary>& style);
    // The picture, in the superview's coordinates; initially empty.
    CGRect area() const { return area_; }
    void setArea(CGRect area);
    // Margins of the area that captions keep clear of, in points; initially zero.
    void setSafeAreaInsets(UIEdgeInsets insets);
    // Initially at the bottom, and in points.
    void setPlace(TESMARCaptionPlace place);
    void setSizing(TESMARCaptionSizing sizing);

    // The part of the superview that `lines` lines in the present style take, as wide as the area
    // and as high as it at most: what a host passes to UIWindow::setCaptionArea.
    CGRect areaForLines(int lines) const;

    // --- The sample -----------------------------------------------------------------------------

    // Shows `sample` while there is no text, until endSample() has been called as often as this.
    // The last sample counts.
    void beginSample(std::string_view sample);
    void endSample();
    bool showsSample() const { return text_.empty() && samples_ > 0; }
    // What is shown: the text, the sample, or nothing.
    const std::string& shownText() const;
    // The style in which it is shown, with the size that it has.
    Ref<NSDictionary> shownStyle() const;

    // Makes `copy` show the same text, in the same style and size, in an area and at a place of its
    // own, until endCopy() or the end of either view: a hidden view's copy, too.
    void beginCopy(const Ref<TESMARCaptionView>& copy);
    void endCopy(const TESMARCaptionView& copy);

    void draw(CGRect rect) override;
    UIEdgeInsets drawingOverflow() const override { return overflow_; }

  private:
    CGRect room() const;
    CGFloat windowMargin() const;
    NSTextAlignment alignment() const;
    Ref<NSAttributedString> fitted(const std::string& text) const;
    CGRect placed(CGSize size) const;
    void update();
    void updateSample();
    void updateCopy(TESMARCaptionView& copy) const;

    std::string text_;
    std::string sample_;
    int samples_ = 0;
    Ref<NSDictionary> style_;
    CGRect area_;
    UIEdgeInsets safeArea_;
    TESMARCaptionPlace place_ = TESMARCaptionPlace::bottom;
    TESMARCaptionSizing sizing_ = TESMARCaptionSizing::points;

    Ref<NSAttributedString> shown_; // null for nothing
    UIEdgeInsets overflow_;
    std::vector<WeakRef<TESMARCaptionView>> copies_;
};

} // namespace tesmar
