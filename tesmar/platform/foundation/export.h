// What the shared library shows to its users; everything else is hidden.
#pragma once

#define TESMAR_API __attribute__((visibility("default")))
