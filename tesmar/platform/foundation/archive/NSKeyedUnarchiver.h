// Reads objects from a keyed archive. The bytes need not be trusted.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"

#include <string_view>

namespace tesmar {

class TESMAR_API NSKeyedUnarchiver {
  public:
    // Returns a new object of the class that the archive names, or null if any part of it cannot be
    // decoded. The caller checks the class. An archive names an object's class and its
    // superclasses; the object is made from the first of them that is registered with the object
    // runtime and has a coding (see NSObject). NSNumber objects are finite.
    //
    // Returns null for archives longer than 96 KiB and for more objects than NSKeyedArchiver would
    // write, so any input takes at most about a millisecond, a mebibyte and, in an optimised
    // build, 64 KiB of stack (which excludes what initWithCoder() of a host's classes uses).
    // NSKeyedArchiver can write every object that this returns, without loss. Any thread on which
    // the classes may be used.
    static Ref<NSObject> unarchiveObjectWithData(std::string_view bytes);
};

} // namespace tesmar
