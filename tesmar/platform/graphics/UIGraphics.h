// The stack of drawing contexts of the current thread. Its top is the current context: the one that
// views draw into. A window pushes its context while it paints; an image context is pushed to draw
// a new image. Each thread has a stack of its own.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/geometry/geometry.h"

namespace tesmar {

class CGContext;
class UIImage;

// Null when the stack is empty. The stack owns image contexts, and no others.
TESMAR_API CGContext* UIGraphicsGetCurrentContext();
// The caller owns `context`, which must exist until it is popped.
TESMAR_API void UIGraphicsPushContext(CGContext& context);
// Does nothing when the stack is empty, or when an image context is on top.
TESMAR_API void UIGraphicsPopContext();

// Pushes an image context: a new picture, transparent or, if `opaque`, black. `size` is in points,
// rounded up to whole pixels; `scale` is in pixels per point, clamped to 0.1…16. 0 means that of
// the current context, so that an image made while a window paints is sharp in that window, or
// without one UIImage::mainScreenScale(); both are rounded up to a whole number: whole points are
// then whole pixels. If the size is empty, not finite or larger than an image may be, the context
// draws nothing and yields no image.
TESMAR_API void UIGraphicsBeginImageContextWithOptions(CGSize size, bool opaque, CGFloat scale);
// A new image, a copy of what has been drawn so far. Null when the top of the stack is not an image
// context, or is one that draws nothing.
TESMAR_API Ref<UIImage> UIGraphicsGetImageFromCurrentImageContext();
// Pops the image context. Does nothing when the top of the stack is not an image context.
TESMAR_API void UIGraphicsEndImageContext();

} // namespace tesmar
