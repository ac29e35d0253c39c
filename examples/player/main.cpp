// A video player that wears the caption panel.
//
//     player film.mkv                     in a window; --help tells the rest
//     player --headless pictures film.mkv the same without a screen, into PNG files
#include "Session.h"
#include "window_app.h"

#include "tesmar/platform/hosts/sdl/SDLHost.h"
#include "tesmar/tesmar.h"

#include <clocale>
#include <cstdio>
#include <exception>

using namespace tesmar;

namespace {

constexpr const char* kPicturesWithoutDisplay = "out";

void setUp(const Options& options) {
    std::setlocale(LC_ALL, "");
    std::setlocale(LC_NUMERIC, "C"); // the video engine insists
    NSBundle::setMainBundle(TESMARHostBundle("org.tesmar.player"));
    if (!options.preferences.empty())
        NSUserDefaults::standardUserDefaults()->setPreferencesPath(options.preferences);
    if (options.reducedMotion)
        setMotionSetting(MotionSetting::reduced);
}

// Whether the video could be played, too.
bool playIntoPictures(const Options& options) {
    // A session without its viewer leaves the viewer's own style alone.
    if (options.preferences.empty())
        NSUserDefaults::standardUserDefaults()->setPreferencesPath(*options.pictures +
                                                                   "/preferences.plist");
    Session session(options);
    const std::string why = session.videoFailure();
    if (!why.empty())
        std::fprintf(stderr, "player: cannot play '%s': %s\n", options.video.c_str(), why.c_str());
    session.play([](const std::string& path) { std::printf("%s\n", path.c_str()); });
    return why.empty();
}

bool run(Options options) {
    setUp(options);
    if (options.pictures)
        return playIntoPictures(options);
    try {
        playInWindow(options);
        return true;
    } catch (const SDLHost::NoDisplay& error) {
        std::fprintf(stderr, "player: %s; playing a session into pictures in %s instead\n",
                     error.what(), kPicturesWithoutDisplay);
    }
    options.pictures = kPicturesWithoutDisplay;
    return playIntoPictures(options);
}

} // namespace

int main(int argc, char** argv) {
    const auto parsed = parseOptions({argv + 1, argv + argc});
    if (std::holds_alternative<HelpWanted>(parsed)) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    if (const auto* wrong = std::get_if<UsageError>(&parsed)) {
        std::fprintf(stderr, "player: %s\n%s", wrong->message.c_str(), kUsage);
        return 2;
    }
    try {
        return run(std::get<Options>(parsed)) ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "player: %s\n", error.what());
        return 1;
    }
}
