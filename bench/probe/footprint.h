// The memory that this process uses.
#pragma once

#include <cstddef>

struct Footprint {
    double rssMegabytes = 0;
    double pssMegabytes = 0;
    // Mapped shared objects except the C and C++ runtime and the loader.
    double librariesMegabytes = 0; // sum of the file sizes
    int libraries = 0;
    double executableMegabytes = 0;
};

// Reads /proc/self; a memory figure that is missing there is 0.
Footprint footprint();
