#include "tesmar/platform/foundation/archive/NSCoder.h"

#include "tesmar/platform/foundation/diagnostics.h"

namespace tesmar {
namespace {

[[noreturn]] void refuse() {
    fatalError("this coder can only be read from");
}

} // namespace

void NSCoder::encodeBool(bool, std::string_view) {
    refuse();
}
void NSCoder::encodeInteger(long long, std::string_view) {
    refuse();
}
void NSCoder::encodeDouble(double, std::string_view) {
    refuse();
}
void NSCoder::encodeString(std::string_view, std::string_view) {
    refuse();
}
void NSCoder::encodeBytes(std::string_view, std::string_view) {
    refuse();
}
void NSCoder::encodeObject(const Ref<NSObject>&, std::string_view) {
    refuse();
}
void NSCoder::encodeObjects(const std::vector<Ref<NSObject>>&, std::string_view) {
    refuse();
}
bool NSCoder::canEncodeObject(const Ref<NSObject>&) {
    refuse();
}

} // namespace tesmar
