// The binary form of property lists, shared by its reader and its writer.
//
// A file consists of the magic, the objects, a table of their offsets, and a trailer with the
// widths of offsets and of references between objects. An object starts with a marker byte: its
// kind in the high half and a size in the low half. For kinds with a count, 15 means that the count
// follows as an integer object. All numbers are big-endian; integers of 1, 2 and 4 bytes are
// unsigned, wider ones are signed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tesmar::property_list_format {

inline constexpr std::string_view kMagic = "bplist00";

// 5 unused bytes, sort version, width of an offset, width of a reference (a byte each), then, of 8
// bytes each: the count of objects, the number of the root object, where the offset table starts.
inline constexpr std::size_t kTrailerSize = 32;

enum Marker : std::uint8_t {
    kNull = 0x00,
    kFalse = 0x08,
    kTrue = 0x09,
    kInteger = 0x10, // low half: binary logarithm of the size in bytes
    kReal = 0x20,    // the same
    kDate = 0x33,
    kData = 0x40,
    kAscii = 0x50,
    kUtf16 = 0x60,
    kUID = 0x80, // low half: size in bytes minus one
    kArray = 0xA0,
    kSet = 0xC0,
    kDictionary = 0xD0,
};

inline constexpr std::uint8_t kCountFollows = 0x0F;

} // namespace tesmar::property_list_format
