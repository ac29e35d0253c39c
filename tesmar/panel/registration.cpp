#include "tesmar/panel/registration.h"

#include "tesmar/panel/TESMARViewController.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/widgets/internal/widget_classes.h"

namespace tesmar {

void registerTESMAR() {
    registerWidgetClasses();
    registerClass(TESMARViewController::classObject());
}

} // namespace tesmar
