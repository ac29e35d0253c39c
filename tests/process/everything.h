// Everything of the library that any thread may use, at any time.
#pragma once

#include "tesmar/controls/library_bundle.h"
#include "tesmar/model/CCConstants.h"
#include "tesmar/panel/registration.h"
#include "tesmar/platform/foundation/archive/NSKeyedArchiver.h"
#include "tesmar/platform/foundation/defaults/NSUserDefaults.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/graphics/UIGraphics.h"
#include "tesmar/platform/graphics/UIImage.h"
#include "tesmar/platform/text/NSAttributedString.h"
#include "tesmar/widgets/FontNamePickerView.h"

namespace tesmar {

// Uses constants, class tables, resources and the preferences, measures text and draws a picture.
// Returns the results, and the addresses of objects that must be made once.
inline std::string useEverything() {
    std::string seen;
    const std::initializer_list<const void*> made = {
        &CCConstants::CCFontsNameList(), &CCConstants::paletteColors(),
        CCConstants::font().get(),       CCConstants::CCDefaultStyleAttributes().get(),
        NSBundle::mainBundle().get(),    NSUserDefaults::standardUserDefaults().get()};
    for (const void* address : made)
        seen += std::to_string(reinterpret_cast<std::uintptr_t>(address)) + ' ';
    for (const auto& name : UIFont::CCSupportedFonts())
        for (const CGFloat size : UIFont::fontSizesForFontName(name))
            seen += name + std::to_string(UIFont::fontWithName(name, size)->lineHeight()) + ' ';
    registerTESMAR();
    const auto style = fromValue<Ref<NSDictionary>>(performClassSelector(
        *classNamed("TESMARConfig"), Selector("sessionOrDefaultClosedCaptureStyle")));
    UIGraphicsBeginImageContextWithOptions({80, 40}, false, 2);
    CGContext& context = *UIGraphicsGetCurrentContext();
    context.setFillColor(*CCConstants::paletteColors()[5]);
    context.fillRoundedRect({2, 2, 76, 36}, 9);
    NSAttributedString::attributedString("AV", style)->drawInRect(context, {4, 4, 70, 30});
    seen += *UIGraphicsGetImageFromCurrentImageContext()->PNGData();
    UIGraphicsEndImageContext();
    seen += std::to_string(NSAttributedString::attributedString("AV", style)->size().width);
    return seen + FontNamePickerView::nibName() +
           *TESMARHostBundle("org.tesmar.everything")->resource("stepper-up.png") +
           NSKeyedArchiver::archivedDataWithRootObject(style);
}

} // namespace tesmar
