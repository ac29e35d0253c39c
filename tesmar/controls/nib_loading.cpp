// Loads the library's views from their interface files.
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/ui/UINib.h"
#include "tesmar/platform/ui/UIView.h"

namespace tesmar {

Ref<UIView> UIView::loadFromTESMARNib(const std::string& named, const Ref<NSBundle>& bundle) {
    const auto objects =
        UINib::nibWithNibName(named, bundle)->instantiateWithOwner(&UIView::classObject());
    if (objects.empty())
        fatalError("interface file \"" + named + ".xml\" has no top-level object");
    return as<UIView>(objects.front());
}

} // namespace tesmar
