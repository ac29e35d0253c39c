#include "tesmar/platform/ui/UINib.h"

#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/ui/internal/interface_file.h"

namespace tesmar {

Class& UINib::classObject() {
    static Class& type = *new Class("UINib", &NSObject::classObject(), {});
    return type;
}

Ref<UINib> UINib::nibWithNibName(const std::string& name, const Ref<NSBundle>& bundle) {
    auto nib = make<UINib>();
    nib->name_ = name;
    nib->bundle_ = bundle ? bundle : NSBundle::mainBundle();
    const auto text = nib->bundle_->resource(name + ".xml");
    if (!text)
        fatalError("no interface file \"" + name + ".xml\" in the bundle \"" +
                   nib->bundle_->bundleIdentifier() + "\"");
    nib->text_ = *text;
    return nib;
}

std::vector<Ref<NSObject>> UINib::instantiateWithOwner(const Class*) const {
    std::string problem;
    auto objects = instantiateInterface(text_, bundle_, problem);
    if (!objects)
        fatalError("interface file \"" + name_ + ".xml\": " + problem);
    return std::move(*objects);
}

} // namespace tesmar
