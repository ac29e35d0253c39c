// TESMAR: a caption settings panel for any application that plays video.
//
// This one header is all that a host includes. It embeds the panel in five steps:
//
//  1. Say who you are, once:  NSBundle::setMainBundle(TESMARHostBundle("org.example.player"));
//     (the name also names the preferences file; see NSUserDefaults for another place)
//  2. Make a window over your picture:  auto window = UIWindow::windowWithSize({640, 360}, scale);
//  3. Make the panel, set it up and present it: see TESMARViewController.
//  4. Feed the window touches, wheel and keys; pump the time; show what it paints: see UIWindow.
//  5. Draw your captions with the style: NSAttributedString takes the dictionary as it is. Before
//     the panel has ever been shown, TESMARConfig::sessionOrDefaultClosedCaptureStyle() has it.
//
// Everything is in namespace tesmar and belongs to the main thread, unless a header says otherwise.
// The library owns no thread, no loop and no clock, changes nothing process-wide, and prints
// nothing but "Switch ON" and "Switch OFF" when the viewer operates the captions switch. Misuse
// that its interface is built to prevent ends the process with one line on standard error.
#pragma once

#if __cplusplus < 202002L
#error "TESMAR needs C++20 (-std=c++20)"
#endif

#include "tesmar/controls/library_bundle.h"
#include "tesmar/model/CCConstants.h"
#include "tesmar/model/TESMARConfig.h"
#include "tesmar/panel/TESMARViewController.h"
#include "tesmar/panel/registration.h"
#include "tesmar/platform/foundation/NSBundle.h"
#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/foundation/defaults/NSUserDefaults.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/scalars.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIGraphics.h"
#include "tesmar/platform/text/NSAttributedString.h"
#include "tesmar/platform/ui/Motion.h"
#include "tesmar/platform/ui/UIWindow.h"
#include "tesmar/version.h"
