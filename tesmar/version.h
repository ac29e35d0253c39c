// The library's version, for hosts that compile against more than one.
//
// Versions are semantic (https://semver.org) and promise the host interface: whatever the headers
// declare that tesmar.h includes itself. A new major version (before 1.0: a new minor version) may
// change it; every other version only adds to it, and a program that was built against an older one
// runs with the newer library. CHANGELOG.md lists the changes.
#pragma once

#define TESMAR_VERSION_MAJOR 0
#define TESMAR_VERSION_MINOR 2
#define TESMAR_VERSION_PATCH 0
#define TESMAR_VERSION "0.2.0"
