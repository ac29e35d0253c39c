#include "tesmar/platform/ui/internal/platform_classes.h"

#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/graphics/UIImage.h"
#include "tesmar/platform/layout/NSLayoutConstraint.h"
#include "tesmar/platform/text/NSAttributedString.h"
#include "tesmar/platform/text/UIFont.h"
#include "tesmar/platform/ui/UIButton.h"
#include "tesmar/platform/ui/UIScrollView.h"
#include "tesmar/platform/ui/UIStepper.h"
#include "tesmar/platform/ui/UISwitch.h"
#include "tesmar/platform/ui/UIWindow.h"

#include <mutex>

namespace tesmar {

void registerPlatformClasses() {
    static std::once_flag once;
    std::call_once(once, [] {
        for (const Class* type :
             {&UIColor::classObject(), &UIImage::classObject(), &UIFont::classObject(),
              &NSAttributedString::classObject(), &NSLayoutConstraint::classObject(),
              &UIView::classObject(), &UIControl::classObject(), &UILabel::classObject(),
              &UIButton::classObject(), &UISwitch::classObject(), &UIStepper::classObject(),
              &UIScrollView::classObject(), &UIWindow::classObject(),
              &UIViewController::classObject()})
            registerClass(*type);
    });
}

} // namespace tesmar
