// Objects made from an interface file: an XML document that describes them (docs/interface-files.md
// tells the format).
#pragma once

#include "tesmar/platform/foundation/NSBundle.h"
#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/foundation/runtime.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tesmar {

class TESMAR_API UINib : public NSObject {
    TESMAR_CLASS

  public:
    // The interface file "<name>.xml" of `bundle` (null: the main bundle), read now. A file that is
    // not there is a fatal error.
    static Ref<UINib> nibWithNibName(const std::string& name, const Ref<NSBundle>& bundle);

    // New objects, from the top of the file to its end, with their outlets connected and woken
    // (awakeFromNib). `owner` is the class on which the loading was asked for; the file cannot
    // refer to it. A file that is not sound is a fatal error that names the place.
    std::vector<Ref<NSObject>> instantiateWithOwner(const Class* owner) const;

  private:
    std::string name_;
    std::string text_;
    Ref<NSBundle> bundle_;
};

// The same from text, with the problem instead of the fatal error: nothing where the text is not a
// sound interface file.
std::optional<std::vector<Ref<NSObject>>>
instantiateInterface(std::string_view text, const Ref<NSBundle>& bundle, std::string& problem);

} // namespace tesmar
