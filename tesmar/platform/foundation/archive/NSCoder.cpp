#include "tesmar/platform/foundation/archive/NSCoder.h"

#include "tesmar/platform/foundation/diagnostics.h"

namespace tesmar {
namespace {

[[noreturn]] void rejectWriting() {
    fatalError("this coder can only be read from");
}

} // namespace

void NSCoder::encodeBool(bool, std::string_view) {
    rejectWriting();
}
void NSCoder::encodeInteger(long long, std::string_view) {
    rejectWriting();
}
void NSCoder::encodeDouble(double, std::string_view) {
    rejectWriting();
}
void NSCoder::encodeString(std::string_view, std::string_view) {
    rejectWriting();
}
void NSCoder::encodeBytes(std::string_view, std::string_view) {
    rejectWriting();
}
void NSCoder::encodeObject(const Ref<NSObject>&, std::string_view) {
    rejectWriting();
}
void NSCoder::encodeObjects(const std::vector<Ref<NSObject>>&, std::string_view) {
    rejectWriting();
}
bool NSCoder::canEncodeObject(const Ref<NSObject>&) {
    rejectWriting();
}

} // namespace tesmar
