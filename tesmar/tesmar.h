// TESMAR: a caption settings panel for any application that plays video.
//
// A host includes this one header. It embeds the panel in five steps:
//
//  1. Set the main bundle, once:  NSBundle::setMainBundle(TESMARHostBundle("org.example.player"));
//     (the identifier also names the preferences file; NSUserDefaults can set another path)
//  2. Make a window over your picture:  auto window = UIWindow::windowWithSize({640, 360}, scale);
//  3. Make the panel, set it up and present it: see TESMARViewController.
//  4. Pass touches, wheel and keys to the window, advance the time, and show the pixels that the
//     window paints: see UIWindow.
//  5. Draw your captions with the style: NSAttributedString takes the dictionary as it is. Before
//     the panel is first shown, TESMARConfig::sessionOrDefaultClosedCaptureStyle() returns it.
//
// Everything is in namespace tesmar and must be used on the main thread, unless a header says
// otherwise. The main thread is the first that uses the user interface; when it has ended, the next
// one that does is. The library owns no thread, no loop and no clock, and changes no process-wide
// state. It prints nothing but "Switch ON" and "Switch OFF" when the viewer operates the captions
// switch. The shared library stays in memory once it is loaded, also after dlclose(). Misuse, as
// the headers describe it, is a fatal error: one line on standard error, then abort().
#pragma once

#if __cplusplus < 202002L
#error "TESMAR needs C++20 (-std=c++20)"
#endif

#include "tesmar/captions/TESMARCaptionStyle.h"
#include "tesmar/captions/TESMARCaptionView.h"
#include "tesmar/captions/renderers/TESMARRenderers.h"
#include "tesmar/controls/library_bundle.h"
#include "tesmar/extended/TESMARExtendedTexts.h"
#include "tesmar/extended/TESMARExtendedViewController.h"
#include "tesmar/extended/TESMARStylePreset.h"
#include "tesmar/model/CCConstants.h"
#include "tesmar/model/PanelAppearance.h"
#include "tesmar/model/TESMARConfig.h"
#include "tesmar/model/TESMARStyleListener.h"
#include "tesmar/model/TESMARTexts.h"
#include "tesmar/panel/TESMARViewController.h"
#include "tesmar/panel/TESMARViewControllerDelegate.h"
#include "tesmar/panel/registration.h"
#include "tesmar/platform/foundation/NSBundle.h"
#include "tesmar/platform/foundation/NSDictionary.h"
#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/foundation/defaults/NSUserDefaults.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/scalars.h"
#include "tesmar/platform/geometry/geometry.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/graphics/UIGraphics.h"
#include "tesmar/platform/text/FontDescription.h"
#include "tesmar/platform/text/NSAttributedString.h"
#include "tesmar/platform/text/NSTextAlignment.h"
#include "tesmar/platform/text/UIFont.h"
#include "tesmar/platform/ui/Motion.h"
#include "tesmar/platform/ui/UIKey.h"
#include "tesmar/platform/ui/UITouch.h"
#include "tesmar/platform/ui/UIView.h"
#include "tesmar/platform/ui/UIViewController.h"
#include "tesmar/platform/ui/UIWindow.h"
#include "tesmar/sharing/TESMARStyleJSON.h"
#include "tesmar/sharing/TESMARStyleWatch.h"
#include "tesmar/version.h"
