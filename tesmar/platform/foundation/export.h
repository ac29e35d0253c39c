// Marks what the shared library exports; other symbols are hidden.
#pragma once

#define TESMAR_API __attribute__((visibility("default")))
