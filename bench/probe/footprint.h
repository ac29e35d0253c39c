// What the process takes of the machine.
#pragma once

#include <cstddef>

struct Footprint {
    double rssMegabytes = 0;
    double pssMegabytes = 0;
    // Shared objects that are mapped, beyond the C and C++ runtime and the loader.
    double librariesMegabytes = 0; // by file size
    int libraries = 0;
    double executableMegabytes = 0;
};

Footprint footprint();
