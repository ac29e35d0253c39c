#include "tesmar/panel/registration.h"

#include "tesmar/controls/internal/own_bundle.h"
#include "tesmar/model/TESMARConfig.h"
#include "tesmar/panel/TESMARViewController.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/ui/internal/platform_classes.h"

#include <mutex>

namespace tesmar {
namespace {

// The operations that the model and the controls define on classes of the toolkit.
void addClassOperations() {
    UIFont::classObject().addClassMethods(
        {method<&UIFont::CCSupportedFonts>("CCSupportedFonts"),
         method<&UIFont::systemFontFamily>("systemFontFamily"),
         method<&UIFont::fontSizesForFontName>("fontSizesForFontName:")});
    UIStepper::classObject().addClassMethods(
        {method<&UIStepper::createStyledStepper>("createStyledStepper")});
    UILabel::classObject().addClassMethods(
        {method<&UILabel::createStyledLabel>("createStyledLabel"),
         method<&UILabel::getDefaultFont>("getDefaultFont")});
    UIImage::classObject().addClassMethods(
        {method<&UIImage::emptyImageForBorders>("emptyImageForBorders")});
    UIView::classObject().addClassMethods(
        {method<&UIView::loadFromTESMARNib>("loadFromTESMARNibWithNamed:bundle:")});
}

} // namespace

void registerTESMAR() {
    static std::once_flag once;
    std::call_once(once, [] {
        registerPlatformClasses();
        addClassOperations();
        TESMARBundle();
        for (const Class* type : {&TESMARConfig::classObject(), &ColorPickerButton::classObject(),
                                  &ColorPicker::classObject(), &FontNamePickerView::classObject(),
                                  &FontPicker::classObject(), &TESMARViewController::classObject()})
            registerClass(*type);
    });
}

} // namespace tesmar
