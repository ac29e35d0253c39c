// Which context views draw into.
#pragma once

#include "tesmar/platform/graphics/UIGraphics.h"

namespace tesmar {

// Makes `context` current while this exists.
class CurrentContext {
  public:
    explicit CurrentContext(CGContext& context) : context_(&context) {
        UIGraphicsPushContext(context);
    }
    // Also pops the contexts that a view's drawing pushed on top and, because it threw, left there.
    ~CurrentContext() {
        while (CGContext* const current = UIGraphicsGetCurrentContext()) {
            UIGraphicsEndImageContext();
            if (UIGraphicsGetCurrentContext() == current)
                UIGraphicsPopContext();
            if (current == context_)
                break;
        }
    }
    CurrentContext(const CurrentContext&) = delete;
    CurrentContext& operator=(const CurrentContext&) = delete;

  private:
    CGContext* context_;
};

} // namespace tesmar
