// A video player with the caption panel.
//
//     player film.mkv                      plays in a window; --help lists the options
//     player --headless pictures film.mkv  plays a short session into PNG files
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
    std::setlocale(LC_NUMERIC, "C"); // the video engine requires it
    NSBundle::setMainBundle(TESMARHostBundle("org.tesmar.player"));
    if (!options.preferences.empty())
        NSUserDefaults::standardUserDefaults()->setPreferencesPath(options.preferences);
    if (options.reducedMotion)
        setMotionSetting(MotionSetting::reduced);
}

// Returns whether the video could be played.
bool playIntoPictures(const Options& options) {
    // An automatic session must not overwrite the viewer's own style.
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
    try {
        const auto options = parseOptions(argc, argv);
        if (!options) {
            std::fputs(usage().c_str(), stdout);
            return 0;
        }
        return run(*options) ? 0 : 1;
    } catch (const UsageError& error) {
        std::fprintf(stderr, "player: %s; --help lists the options\n", error.what());
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "player: %s\n", error.what());
        return 1;
    }
}
