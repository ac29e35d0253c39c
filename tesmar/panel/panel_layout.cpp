// The layout of the panel: a fixed header row, and controls below it that scroll.
#include "tesmar/model/CCConstants.h"
#include "tesmar/panel/TESMARViewController.h"
#include "tesmar/panel/internal/panel_style.h"

namespace tesmar {
namespace {

using Parts = UIView::NamedViews;

constexpr CGFloat kSystemLabelSize = 17;
constexpr CGFloat kSystemTitleSize = 18;
constexpr CGFloat kCaptionsLabelSize = 24;
constexpr CGFloat kResetTitleSize = 19;
constexpr double kMaximumOpacitySteps = 10;

Ref<UIFont> fontOr(const Ref<UIFont>& font, CGFloat systemSize) {
    return font ? font : UIFont::systemFontOfSize(systemSize);
}

Ref<UIColor> resetColor(CGFloat alpha) {
    return UIColor::colorWithRed(0.694, 0.129, 0.141, alpha);
}

// Tests and tools find the parts by their names.
void addParts(UIView& to, const Parts& parts) {
    for (const auto& [name, view] : parts) {
        view->setTranslatesAutoresizingMaskIntoConstraints(false);
        view->setAccessibilityIdentifier(name);
        to.addSubview(view);
    }
}

} // namespace

Ref<UIColor> separatorColor(TESMARContrast contrast) {
    return contrast == TESMARContrast::high ? UIColor::colorWithWhite(0.4, 1)
                                            : UIColor::colorWithRed(0.827, 0.827, 0.827, 1);
}

Ref<UIFont> captionsLabelFont(double textScale) {
    return fontOr(UIFont::fontWithName("HelveticaNeue-Light", kCaptionsLabelSize * textScale),
                  kSystemLabelSize * textScale);
}

Ref<UIFont> resetTitleFont(double textScale) {
    return fontOr(UIFont::fontWithName("HelveticaNeue-Regular", kResetTitleSize * textScale),
                  kSystemTitleSize * textScale);
}

Ref<UIView> TESMARViewController::createSeparatorView() {
    auto separator = make<UIView>();
    separator->setBackgroundColor(separatorColor(TESMARContrast::normal));
    separator->setTranslatesAutoresizingMaskIntoConstraints(false);
    return separator;
}

void TESMARViewController::setupView() {
    const auto label = make<UILabel>();
    label->setText(std::string(CCConstants::Label::CCSwitchLabel()));
    label->setFont(captionsLabelFont(1));

    wire(*CCSwitch_, UIControlEventValueChanged, "CCSwitchValueDidChange:");

    const auto reset = UIButton::buttonWithType(UIButtonType::custom);
    reset->setTitle(std::string(CCConstants::Label::ButtonReset()), UIControlStateNormal);
    reset->setTitleColor(resetColor(1), UIControlStateNormal);
    reset->setTitleColor(resetColor(0.5), UIControlStateHighlighted);
    if (const auto& title = reset->titleLabel())
        title->setFont(resetTitleFont(1));
    wire(*reset, UIControlEventTouchUpInside, "resetButtonTap");

    const Parts parts{{"CCLabel", label},
                      {"CCSwitch", CCSwitch_},
                      {"resetButton", reset},
                      {"containerScrollView", createScrollView()},
                      {"topSeparator", createSeparatorView()},
                      {"bottomSeparator", createSeparatorView()}};
    addParts(*view(), parts);
    view()->addConstraintsWithVisualFormats(
        {{"|-20-[CCLabel]-20-[CCSwitch]->=20-[resetButton]-20-|", NSLayoutFormatAlignAllCenterY},
         {"|-20-[containerScrollView]-20-|"},
         {"|-20-[topSeparator]-20-|"},
         {"|-20-[bottomSeparator]-20-|"},
         {"V:|-15-[CCLabel]-15-[topSeparator(1)]-0-[containerScrollView]-0-"
          "[bottomSeparator(1)]-15-|"}},
        parts);
}

Ref<UIView> TESMARViewController::createScrollView() {
    auto scrollView = make<UIScrollView>();
    scrollView->setTranslatesAutoresizingMaskIntoConstraints(false);
    scrollView->setShowsVerticalScrollIndicator(false);
    scrollView->setDelegate(refTo(this));

    wire(*textColorPicker_, UIControlEventValueChanged, "ccColorChanged");
    wire(*fontPicker_, UIControlEventValueChanged, "fontChanged");

    const auto textOpacityLabel = UILabel::createStyledLabel();
    textOpacityLabel->setText(std::string(CCConstants::Label::LabelTextColorOpacity()));
    textColorOpacityStepper_->setMaximumValue(kMaximumOpacitySteps);
    wire(*textColorOpacityStepper_, UIControlEventValueChanged, "ccColorChanged");

    const auto separator = createSeparatorView();

    wire(*backgroundColorPicker_, UIControlEventValueChanged, "bgColorChanged");
    const auto backgroundOpacityLabel = UILabel::createStyledLabel();
    backgroundOpacityLabel->setText(
        std::string(CCConstants::Label::LabelTextBackgroundColorOpacity()));
    backgroundColorOpacityStepper_->setMaximumValue(kMaximumOpacitySteps);
    wire(*backgroundColorOpacityStepper_, UIControlEventValueChanged, "bgColorChanged");

    const Parts parts{{"textColorPicker", textColorPicker_},
                      {"fontPicker", fontPicker_},
                      {"textColorOpacityLabel", textOpacityLabel},
                      {"textColorOpacityStepper", textColorOpacityStepper_},
                      {"separator", separator},
                      {"backgroundColorPicker", backgroundColorPicker_},
                      {"backgroundColorOpacityLabel", backgroundOpacityLabel},
                      {"backgroundColorOpacityStepper", backgroundColorOpacityStepper_}};
    addParts(*scrollView, parts);
    // The separator, pinned to both edges, makes the content 400 points wide. The background
    // stepper starts left of the content's edge, so that its symbol lines up with the views above.
    scrollView->addConstraintsWithVisualFormats(
        {{"|-0-[separator(400)]-0-|"},
         {"|-0-[fontPicker]-35-[textColorOpacityLabel]", NSLayoutFormatAlignAllTop},
         {"|-0-[fontPicker]-20-[textColorOpacityStepper]-0-|"},
         {"V:[textColorOpacityLabel]-2-[textColorOpacityStepper]"},
         {"V:|-15-[textColorPicker]-10-[fontPicker]-10-[separator(1)]-15-"
          "[backgroundColorPicker]-10-[backgroundColorOpacityLabel]",
          NSLayoutFormatAlignAllLeft},
         {"V:[backgroundColorOpacityLabel]-2-[backgroundColorOpacityStepper]-20-|"},
         {"|-(-15)-[backgroundColorOpacityStepper]"}},
        parts);
    return scrollView;
}

// Null if a subclass has laid the panel out without one.
UIScrollView* TESMARViewController::scrollView() const {
    return UIScrollView::enclosing(textColorPicker_.get());
}

std::optional<CGSize> TESMARViewController::preferredContentSize() {
    const auto* const scroll = scrollView();
    if (!scroll)
        return std::nullopt;
    const CGSize all = view()->frame().size;
    const CGSize visible = scroll->frame().size;
    const CGSize content = scroll->contentSize();
    return CGSize{all.width - visible.width + content.width,
                  all.height - visible.height + content.height};
}

void TESMARViewController::wire(UIControl& control, unsigned events, std::string_view action) {
    control.addTarget(refTo(this), Selector(action), events);
}

} // namespace tesmar
