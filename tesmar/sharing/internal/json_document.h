// A small JSON text as a tree whose nodes know their lines.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tesmar {

struct JsonNode {
    enum class Kind { null, boolean, number, text, list, object };

    Kind kind = Kind::null;
    int line = 1;
    double number = 0;
    std::string text{};
    std::vector<std::string> keys{}; // of an object, no two the same; one for each child
    std::vector<JsonNode> children{};

    // Null if this is no object, or has no such key.
    const JsonNode* find(std::string_view key) const;
};

// Thrown by what reads a text: the first line at fault, from 1, and the reason.
struct JsonFault {
    int line = 1;
    std::string reason;
};

// Throws a JsonFault for anything that is not one JSON value in valid UTF-8, for duplicate keys,
// and for more than 64 KiB, 8 levels or 1,000 values, which bound time and memory.
JsonNode readJson(std::string_view text);

} // namespace tesmar
