// The process-wide setting of animations: full or reduced motion.
#pragma once

#include "tesmar/platform/foundation/export.h"

namespace tesmar {

// With reduced motion everything that would move reaches its end at once: cards, switches, thrown
// content, fading scroll indicators.
enum class MotionSetting { full, reduced };

// One setting for the whole process, full at the start; main thread only. Motion that is under way
// when it becomes reduced ends at its next frame.
TESMAR_API MotionSetting motionSetting();
TESMAR_API void setMotionSetting(MotionSetting setting);

} // namespace tesmar
