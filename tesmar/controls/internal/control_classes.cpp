#include "tesmar/controls/internal/control_classes.h"

#include "tesmar/controls/library_bundle.h"
#include "tesmar/model/internal/model_classes.h"
#include "tesmar/platform/foundation/NSBundle.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/ui/UILabel.h"
#include "tesmar/platform/ui/UIStepper.h"
#include "tesmar/resources/internal/embedded.h"

#include <mutex>

namespace tesmar {

void registerControlClasses() {
    static std::once_flag once;
    std::call_once(once, [] {
        registerModelClasses();
        UIStepper::classObject().addClassMethods(
            {method<&UIStepper::createStyledStepper>("createStyledStepper")});
        UILabel::classObject().addClassMethods(
            {method<&UILabel::createStyledLabel>("createStyledLabel"),
             method<&UILabel::getDefaultFont>("getDefaultFont")});
        UIImage::classObject().addClassMethods(
            {method<&UIImage::emptyImageForBorders>("emptyImageForBorders")});
        UIView::classObject().addClassMethods(
            {method<&UIView::loadFromTESMARNib>("loadFromTESMARNibWithNamed:bundle:")});
        NSBundle::registerBundle(
            NSBundle::bundle(std::string(TESMARBundleIdentifier), embeddedResource));
    });
}

Ref<NSBundle> TESMARHostBundle(std::string applicationIdentifier) {
    return NSBundle::bundle(std::move(applicationIdentifier), embeddedResource);
}

} // namespace tesmar
