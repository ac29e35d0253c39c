// Makes objects from an interface file, an XML document (format: docs/interface-files.md).
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/foundation/NSBundle.h"
#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/foundation/runtime.h"

#include <string>
#include <vector>

namespace tesmar {

class TESMAR_API UINib : public NSObject {
    TESMAR_CLASS

  public:
    // Reads the interface file "<name>.xml" of `bundle`, or of the main bundle if null. A missing
    // file is a fatal error.
    static Ref<UINib> nibWithNibName(const std::string& name, const Ref<NSBundle>& bundle);

    // New top-level objects in the order of the file. All outlets are connected, and awakeFromNib()
    // has been called on every object. `owner` is the class that loads the file; the file cannot
    // refer to it. An invalid file is a fatal error that names the byte offset.
    std::vector<Ref<NSObject>> instantiateWithOwner(const Class* owner) const;

  private:
    std::string name_;
    std::string text_;
    Ref<NSBundle> bundle_;
};

} // namespace tesmar
