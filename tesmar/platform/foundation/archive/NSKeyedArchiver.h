// Objects as bytes: a keyed archive in the form of a binary property list.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"

#include <string>

namespace tesmar {

class TESMAR_API NSKeyedArchiver {
  public:
    // The archive of `root` and of everything that it encodes. An object that is met twice is
    // written once. Left out are objects without a coding, objects inside themselves, and those
    // more than 250 objects deep; when that is the root itself, the archive decodes to null. Empty,
    // with a diagnostic, when there is more than NSKeyedUnarchiver would read: some 300 colours, or
    // 24,000 bytes of text.
    // Any thread, as long as nobody changes the objects.
    static std::string archivedDataWithRootObject(const Ref<NSObject>& root);
};

} // namespace tesmar
