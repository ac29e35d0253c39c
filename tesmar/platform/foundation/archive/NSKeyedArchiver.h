// Writes objects as bytes: a keyed archive, which is a binary property list.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"

#include <string>

namespace tesmar {

class TESMAR_API NSKeyedArchiver {
  public:
    // The archive of `root` and all objects that it encodes; shared objects are written once.
    // Drops objects without a coding, references from an object's contents to the object itself,
    // and objects more than 80 levels deep. If `root` is dropped or null, the archive decodes to
    // null. Returns an empty string, with a diagnostic, if NSKeyedUnarchiver would reject the
    // archive: its limit is some 300 colours or 24,000 bytes of text. Any thread while no other
    // thread changes the objects.
    static std::string archivedDataWithRootObject(const Ref<NSObject>& root);
};

} // namespace tesmar
