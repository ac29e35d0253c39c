#include "tesmar/platform/foundation/internal/foundation_classes.h"

#include "tesmar/platform/foundation/NSArray.h"
#include "tesmar/platform/foundation/NSBundle.h"
#include "tesmar/platform/foundation/NSDictionary.h"
#include "tesmar/platform/foundation/defaults/NSUserDefaults.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/foundation/scalars.h"

namespace tesmar {

void registerFoundationClasses() {
    for (const Class* type :
         {&NSObject::classObject(), &NSString::classObject(), &NSNumber::classObject(),
          &NSData::classObject(), &NSArray::classObject(), &NSDictionary::classObject(),
          &NSMutableDictionary::classObject(), &NSBundle::classObject(),
          &NSUserDefaults::classObject()})
        registerClass(*type);
}

} // namespace tesmar
