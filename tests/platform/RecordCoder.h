// A coder that returns the values that a test sets, for records that the archiver never writes.
#pragma once

#include "tesmar/platform/foundation/archive/NSCoder.h"

#include <map>
#include <variant>

namespace tesmar {

class RecordCoder : public NSCoder {
  public:
    using Record = std::map<std::string, std::variant<double, std::string>, std::less<>>;
    explicit RecordCoder(Record record) : record_(std::move(record)) {}

    std::optional<long long> decodeInteger(std::string_view key) override {
        const auto number = decodeDouble(key);
        return number ? std::optional(static_cast<long long>(*number)) : std::nullopt;
    }
    std::optional<double> decodeDouble(std::string_view key) override { return find<double>(key); }
    std::optional<std::string> decodeString(std::string_view key) override {
        return find<std::string>(key);
    }

  private:
    template <class T>
    std::optional<T> find(std::string_view key) const {
        const auto found = record_.find(key);
        const T* value = found == record_.end() ? nullptr : std::get_if<T>(&found->second);
        return value ? std::optional(*value) : std::nullopt;
    }

    Record record_;
};

} // namespace tesmar
