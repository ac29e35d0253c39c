// Any bytes as what a host does to a window with a panel.
#include "tesmar/tests/panel/random_session.h"

#include <span>

namespace {

class GivenBytes : public tesmar::ByteSource {
  public:
    explicit GivenBytes(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
    std::optional<std::uint8_t> next() override {
        if (bytes_.empty())
            return std::nullopt;
        const auto byte = bytes_.front();
        bytes_ = bytes_.subspan(1);
        return byte;
    }

  private:
    std::span<const std::uint8_t> bytes_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Nowhere that could be saved to.
    tesmar::NSUserDefaults::standardUserDefaults()->setPreferencesPath(
        "/dev/null/preferences.plist");
    GivenBytes bytes({data, size});
    tesmar::RandomSession session(bytes);
    while (session.step()) {
    }
    session.finish();
    return 0;
}
