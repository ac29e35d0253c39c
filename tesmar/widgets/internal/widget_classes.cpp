#include "tesmar/widgets/internal/widget_classes.h"

#include "tesmar/controls/internal/control_classes.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/widgets/ColorPicker.h"
#include "tesmar/widgets/FontPicker.h"

#include <mutex>

namespace tesmar {

void registerWidgetClasses() {
    static std::once_flag once;
    std::call_once(once, [] {
        registerControlClasses();
        for (const Class* type : {&ColorPickerButton::classObject(), &ColorPicker::classObject(),
                                  &FontNamePickerView::classObject(), &FontPicker::classObject()})
            registerClass(*type);
    });
}

} // namespace tesmar
