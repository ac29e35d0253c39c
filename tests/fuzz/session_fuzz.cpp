// Plays the input as a host's calls to a window with a panel.
#include "random_session.h"
#include "tesmar/tesmar.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // A path that cannot be written.
    tesmar::NSUserDefaults::standardUserDefaults()->setPreferencesPath("/dev/null/p.plist");
    std::size_t at = 0;
    tesmar::playRandomSession([&]() -> std::optional<std::uint8_t> {
        return at < size ? std::optional(data[at++]) : std::nullopt;
    });
    return 0;
}
