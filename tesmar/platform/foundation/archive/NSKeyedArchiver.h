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
    // Dropped are objects without a coding, objects inside themselves, and objects more than 250
    // levels deep. If `root` itself is dropped or null, the archive decodes to null. Empty, with a
    // diagnostic, if NSKeyedUnarchiver would not read the archive: its limit is some 300 colours or
    // 24,000 bytes of text. Any thread while no other thread changes the objects.
    static std::string archivedDataWithRootObject(const Ref<NSObject>& root);
};

} // namespace tesmar
