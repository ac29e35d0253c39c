// The player in a desktop window.
#pragma once

#include "options.h"

// Runs until the viewer quits. Throws SDLHost::NoDisplay where there is none.
void playInWindow(const Options& options);
