// The caption settings panel with everything else that a viewer may choose: edges of characters, a
// window behind the caption, more sizes, the font styles of the broadcast standard, presets, undo,
// and a hint where captions would be hard to read.
//
//     auto panel = make<TESMARExtendedViewController>();  // in the place of TESMARViewController
//
// A preset or a reset replaces the whole style, with all that the host has put into it.
//
// The style has up to three entries more than the panel's (see NSAttributedString, which draws all
// of them): TESMAREdgeAttributeName, TESMAREdgeColorAttributeName, which the host sets, and
// TESMARWindowColorAttributeName. They are saved with the others, and a program with an older
// version of the library ignores them. Main thread only.
#pragma once

#include "tesmar/captions/TESMARCaptionView.h"
#include "tesmar/extended/TESMARExtendedTexts.h"
#include "tesmar/extended/TESMARStylePreset.h"
#include "tesmar/panel/TESMARViewController.h"

#include <vector>

namespace tesmar {

class ExtendedFontPicker;
class LegibilityHint;
class PanelPreview;
class TileRow;
struct StyleAttributes;

// What the panel offers beyond the plain one. Bits.
enum class TESMARExtension : unsigned {
    none = 0,
    presets = 1,     // a row of whole styles above all other rows
    edges = 2,       // a row of five edges
    window = 4,      // colour and opacity of the box behind the whole caption
    sizes = 8,       // nine sizes, from 50 to 200 % of the default
    fontStyles = 16, // before the panel's own fonts, as far as this machine has them
    undo = 32,       // in the place of the reset button, after a reset or a preset
    legibility = 64, // one line below the controls, while the style is hard to read
    all = 127,
};
constexpr TESMARExtension operator|(TESMARExtension a, TESMARExtension b) {
    return static_cast<TESMARExtension>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
constexpr bool contains(TESMARExtension set, TESMARExtension element) {
    return (static_cast<unsigned>(set) & static_cast<unsigned>(element)) ==
           static_cast<unsigned>(element);
}

class TESMAR_API TESMARExtendedViewController : public TESMARViewController {
    TESMAR_CLASS

  public:
    TESMARExtendedViewController();
    ~TESMARExtendedViewController() override;

    // --- For the host ---------------------------------------------------------------------------

    // Initially all. Rows that are not offered leave no gap. Counts when the view is loaded, at the
    // first presentation; later calls are ignored with a diagnostic.
    void setExtensions(TESMARExtension extensions);
    TESMARExtension extensions() const { return extensions_; }
    // The host's own presets, which follow the six that come with the panel. As setExtensions(),
    // they count when the view is loaded. A preset without a style is left out.
    void setHostPresets(std::vector<TESMARStylePreset> presets);
    // The texts of the rows above, for a host with texts of its own (see setTexts()). The strings
    // must exist as long as the panel. Without this call they are in the panel's language if there
    // is one.
    void setExtendedTexts(const TESMARExtendedTexts& texts);
    // The view of the host's captions, or null, as initially. While the panel is shown, a sample in
    // the panel's language stands there whenever the host has no caption. Where the panel covers
    // two lines of that view, a copy of what it shows stands in the panel, above the scrolling
    // part, if that leaves enough room for the controls; this is decided when the panel appears and
    // when the window's size, safe area or caption area changes. The panel owns the view. Counts
    // from the next appearance on.
    void setPreview(const Ref<TESMARCaptionView>& captions) { preview_ = captions; }
    // Whether the reset button's place offers undo.
    bool canUndo() const { return undoStyle_ != nullptr; }

    // --- The panel ------------------------------------------------------------------------------

    void setCCStyleAttributes(const Ref<NSMutableDictionary>& attributes) override;
    void setupView() override;
    void viewWillAppear(bool animated) override;
    void viewWillDisappear(bool animated) override;
    void viewDidDisappear(bool animated) override;
    void surroundingsDidChange() override;
    void describe(const UIView& view, UIAccessibleElement& element) override;
    void resetButtonTap() override;

    // --- Actions of the controls ----------------------------------------------------------------

    virtual void presetChosen();
    virtual void edgeChanged();
    virtual void windowColorChanged();
    virtual void windowOpacityChanged();
    virtual void undoButtonTap();
    virtual void legibilityHintTap();

  protected:
    void didUpdateClosedCaptureStyle() override;
    void applyAppearance() override;

  private:
    explicit TESMARExtendedViewController(Ref<ExtendedFontPicker> fontPicker);
    bool offers(TESMARExtension extension) const { return contains(extensions_, extension); }
    const TESMARExtendedTexts& extendedTexts() const;
    void addPresets();
    void addEdgeAndWindow();
    void addUndoButton();
    void applyExtendedAppearance();
    void setWindow(const Ref<UIColor>& color);
    void rememberForUndo();
    void replaceStyle(const NSDictionary& style);
    // Brings the rows of this class up to date with the style.
    void showExtendedStyle();
    void showPreset(const StyleAttributes& style);
    void showUndo();
    void beginPreview();
    void endPreview();
    std::string_view sampleCaption() const;
    std::string_view presetName(std::size_t index) const;

    TESMARExtension extensions_ = TESMARExtension::all;
    std::vector<TESMARStylePreset> hostPresets_;
    std::vector<Ref<NSDictionary>> presetStyles_; // of the tiles
    const TESMARExtendedTexts* ownTexts_ = nullptr;

    // The style before the last change, while undo is offered; null otherwise.
    Ref<NSDictionary> undoStyle_;
    // The same for the change that is under way.
    Ref<NSDictionary> nextUndoStyle_;

    const Ref<ExtendedFontPicker> extendedFontPicker_;
    // Null where the extension is not offered.
    Ref<TileRow> presets_;
    Ref<TileRow> edges_;
    Ref<ColorPicker> windowColorPicker_;
    Ref<UILabel> windowOpacityLabel_;
    Ref<UIStepper> windowOpacityStepper_; // its value is ten times the opacity
    std::vector<Ref<UIView>> separators_; // above these two
    Ref<UIButton> undoButton_;
    Ref<LegibilityHint> hint_;
    Ref<PanelPreview> panelPreview_;

    Ref<TESMARCaptionView> preview_;
    Ref<TESMARCaptionView> shownPreview_; // of the present appearance
};

} // namespace tesmar
