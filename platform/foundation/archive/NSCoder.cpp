#include "tesmar/platform/foundation/archive/NSCoder.h"

#include "tesmar/platform/foundation/diagnostics.h"

namespace tesmar {
namespace {

[[noreturn]] void refuseReading() {
    fatalError("this coder can only be written to");
}
[[noreturn]] void refuseWriting() {
    fatalError("this coder can only be read from");
}

} // namespace

std::optional<bool> NSCoder::decodeBool(std::string_view) {
    refuseReading();
}
std::optional<long long> NSCoder::decodeInteger(std::string_view) {
    refuseReading();
}
std::optional<double> NSCoder::decodeDouble(std::string_view) {
    refuseReading();
}
std::optional<std::string> NSCoder::decodeString(std::string_view) {
    refuseReading();
}
std::optional<std::string> NSCoder::decodeBytes(std::string_view) {
    refuseReading();
}
std::optional<CGRect> NSCoder::decodeRect(std::string_view) {
    refuseReading();
}
Ref<NSObject> NSCoder::decodeObject(std::string_view) {
    refuseReading();
}
std::vector<Ref<NSObject>> NSCoder::decodeObjects(std::string_view) {
    refuseReading();
}
bool NSCoder::failed() const {
    refuseReading();
}

void NSCoder::encodeBool(bool, std::string_view) {
    refuseWriting();
}
void NSCoder::encodeInteger(long long, std::string_view) {
    refuseWriting();
}
void NSCoder::encodeDouble(double, std::string_view) {
    refuseWriting();
}
void NSCoder::encodeString(std::string_view, std::string_view) {
    refuseWriting();
}
void NSCoder::encodeBytes(std::string_view, std::string_view) {
    refuseWriting();
}
void NSCoder::encodeObject(const Ref<NSObject>&, std::string_view) {
    refuseWriting();
}
void NSCoder::encodeObjects(const std::vector<Ref<NSObject>>&, std::string_view) {
    refuseWriting();
}
bool NSCoder::canEncodeObject(const Ref<NSObject>&) {
    refuseWriting();
}

} // namespace tesmar
