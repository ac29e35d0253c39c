// Objects from the bytes of a keyed archive, which may come from anywhere.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"

#include <string_view>

namespace tesmar {

class TESMAR_API NSKeyedUnarchiver {
  public:
    // A new object of whatever class the archive names, or null when any part of it cannot be
    // decoded: the caller checks the class. Of the classes that the archive gives for an object,
    // the first is made that is registered with the object runtime and has a coding (see NSObject);
    // the foundation's own are registered here. Numbers in it are finite.
    //
    // Archives longer than 96 KiB, or that hold more than NSKeyedArchiver would write, are null:
    // whatever the bytes, the answer takes less than a millisecond and a mebibyte. What is not null
    // NSKeyedArchiver writes again whole. Any thread on which the classes concerned may be used.
    static Ref<NSObject> unarchiveObjectWithData(std::string_view bytes);
};

} // namespace tesmar
