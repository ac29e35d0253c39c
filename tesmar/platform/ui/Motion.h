// The process-wide setting of animations: full or reduced motion.
#pragma once

#include "tesmar/platform/foundation/export.h"

namespace tesmar {

// With reduced motion everything that would move reaches its end at once: cards, switches, thrown
// content, fading scroll indicators.
enum class MotionSetting { full, reduced };

// One setting for the whole process, initially full; main thread only. When it becomes reduced,
// transitions under way end at their next frame, but content that is gliding glides on to its rest.
TESMAR_API MotionSetting motionSetting();
TESMAR_API void setMotionSetting(MotionSetting setting);

} // namespace tesmar
