// The library in destructors of static and thread-local objects and in handlers of atexit.
#include "tesmar/controls/library_bundle.h"
#include "tesmar/model/CCConstants.h"
#include "tesmar/panel/registration.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/graphics/UIGraphics.h"
#include "tesmar/platform/graphics/UIImage.h"
#include "tesmar/platform/layout/NSLayoutConstraint.h"
#include "tesmar/platform/text/NSAttributedString.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <malloc.h>
#include <thread>

namespace tesmar {
namespace {

// Uses constants, class tables and resources, measures text and draws a picture; returns results.
std::string useEverything() {
    UIGraphicsBeginImageContextWithOptions({80, 40}, false, 2);
    CGContext& context = *UIGraphicsGetCurrentContext();
    context.setFillColor(*CCConstants::paletteColors().front());
    context.fillRoundedRect({2, 2, 76, 36}, 9);
    const auto style = CCConstants::CCDefaultStyleAttributes();
    const auto text = NSAttributedString::attributedString("AV", style);
    text->drawInRect(context, {4, 4, 70, 30});
    const auto image = UIGraphicsGetImageFromCurrentImageContext();
    UIGraphicsEndImageContext();
    const std::string results = *image->PNGData() + std::to_string(text->size().width) +
                                CCConstants::CCFontsNameList().at(0) +
                                *TESMARHostBundle("exit")->resource("stepper-up.png");
    return classNamed("NSLayoutConstraint") ? results : "";
}

std::string expected; // empty: nothing happens at exit

void check() {
    if (!expected.empty() && useEverything() != expected)
        std::_Exit(1);
}

struct ChecksAtEnd {
    ~ChecksAtEnd() { check(); }
};
const ChecksAtEnd outlivesStatics;

[[noreturn]] void useAtExit() {
    ::mallopt(M_PERTURB, 0xAA); // overwrites freed memory
    registerTESMAR();
    std::atexit(check); // runs after what is registered later: the library's statics
    static thread_local ChecksAtEnd outlivesThreadLocals;
    static thread_local const ChecksAtEnd* const used = &outlivesThreadLocals;
    const auto useThread = [] { return used ? useEverything() : ""; };
    expected = useThread();
    for (int i = 0; i < 3; ++i)
        std::thread(useThread).join();
    std::exit(expected.empty() ? 2 : 0);
}

TEST(Exit, EverythingWorksUntilTheProcessEnds) {
    EXPECT_EXIT(useAtExit(), testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace tesmar
