#include "tesmar/platform/ui/Motion.h"

namespace tesmar {
namespace {

MotionSetting& setting() {
    static MotionSetting value = MotionSetting::full;
    return value;
}

} // namespace

MotionSetting motionSetting() {
    return setting();
}

void setMotionSetting(MotionSetting value) {
    setting() = value;
}

} // namespace tesmar
