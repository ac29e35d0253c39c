// The player in a desktop window.
#pragma once

#include "options.h"

// Returns when the viewer quits. Throws SDLHost::NoDisplay when there is no display.
void playInWindow(const Options& options);
