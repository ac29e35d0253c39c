#include "tesmar/sharing/internal/json_document.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <nlohmann/json.hpp>

namespace tesmar {
namespace {

using Json = nlohmann::json;

constexpr std::size_t kMostBytes = 64 << 10;
constexpr std::size_t kMostLevels = 8;
constexpr int kMostValues = 1000;

// The line of the token that was read last. The last character counts only when the next one is
// read: after a number, the parser has read one character too many, which may be a line break.
struct Lines {
    int line = 1;
    bool atBreak = false;
    void pass(char c) {
        line += atBreak ? 1 : 0;
        atBreak = c == '\n';
    }
};

// The parser tells its caller no places, so its input is counted.
class CountedInput {
  public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    CountedInput(const char* at, Lines& lines) : at_(at), lines_(&lines) {}
    const char& operator*() const { return *at_; }
    CountedInput& operator++() {
        lines_->pass(*at_++);
        return *this;
    }
    bool operator==(const CountedInput& other) const { return at_ == other.at_; }
    bool operator!=(const CountedInput& other) const { return at_ != other.at_; }

  private:
    const char* at_;
    Lines* lines_;
};

// "[json.exception.parse_error.101] parse error at line 1, column 2: syntax error while parsing
// value - invalid literal; last read: '...'" without the place, which the fault has, and without
// the text at fault, which may be of any length and no valid UTF-8.
std::string reasonOf(std::string_view message) {
    for (const std::string_view start : {"] ", "column ", ": "})
        if (const auto at = message.find(start); at != message.npos)
            message.remove_prefix(at + start.size());
    return std::string(message.substr(0, message.find("; last read")));
}

class TreeBuilder : public nlohmann::json_sax<Json> {
  public:
    explicit TreeBuilder(const Lines& lines) : lines_(lines) {}
    JsonNode root;

    bool null() override { return add({}); }
    bool boolean(bool) override { return add({.kind = JsonNode::Kind::boolean}); }
    bool number_integer(std::int64_t value) override { return number(static_cast<double>(value)); }
    bool number_unsigned(std::uint64_t value) override {
        return number(static_cast<double>(value));
    }
    bool number_float(double value, const std::string&) override { return number(value); }
    bool string(std::string& text) override {
        return add({.kind = JsonNode::Kind::text, .text = std::move(text)});
    }
    bool binary(Json::binary_t&) override { return false; }
    bool start_object(std::size_t) override { return open(JsonNode::Kind::object); }
    bool end_object() override { return close(); }
    bool start_array(std::size_t) override { return open(JsonNode::Kind::list); }
    bool end_array() override { return close(); }

    bool key(std::string& key) override {
        auto& keys = open_.back()->keys;
        if (std::ranges::find(keys, key) != keys.end())
            throw JsonFault{lines_.line, "an object has the same key twice"};
        keys.push_back(std::move(key));
        return true;
    }

    bool parse_error(std::size_t, const std::string&, const Json::exception& error) override {
        throw JsonFault{lines_.line, reasonOf(error.what())};
    }

  private:
    bool number(double value) { return add({.kind = JsonNode::Kind::number, .number = value}); }

    bool add(JsonNode node) {
        if (++values_ > kMostValues)
            throw JsonFault{lines_.line, "more than 1,000 values"};
        node.line = lines_.line;
        if (open_.empty())
            root = std::move(node);
        else
            open_.back()->children.push_back(std::move(node));
        return true;
    }

    bool open(JsonNode::Kind kind) {
        if (open_.size() == kMostLevels)
            throw JsonFault{lines_.line, "nested more than 8 levels deep"};
        add({.kind = kind});
        open_.push_back(open_.empty() ? &root : &open_.back()->children.back());
        return true;
    }

    bool close() {
        open_.pop_back();
        return true;
    }

    const Lines& lines_;
    std::vector<JsonNode*> open_; // from the root; what is open never moves
    int values_ = 0;
};

} // namespace

const JsonNode* JsonNode::find(std::string_view key) const {
    const auto at = std::ranges::find(keys, key);
    return at == keys.end() ? nullptr : &children[static_cast<std::size_t>(at - keys.begin())];
}

JsonNode readJson(std::string_view text) {
    if (text.size() > kMostBytes)
        throw JsonFault{1, "more than 64 KiB"};
    // The parser takes a null byte for the end of the text.
    if (const auto end = text.find('\0'); end != text.npos)
        throw JsonFault{1 + static_cast<int>(std::ranges::count(text.substr(0, end), '\n')),
                        "syntax error: a null byte"};
    Lines lines;
    TreeBuilder tree(lines);
    Json::sax_parse(CountedInput(text.data(), lines),
                    CountedInput(text.data() + text.size(), lines), &tree);
    return std::move(tree.root);
}

} // namespace tesmar
