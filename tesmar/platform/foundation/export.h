// Marks what the shared library exports; other symbols are hidden.
//
// Toolkit: may change with any version.
#pragma once

#define TESMAR_API __attribute__((visibility("default")))
