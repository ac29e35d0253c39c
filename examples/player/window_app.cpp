#include "window_app.h"

#include "BackdropPicture.h"
#include "Player.h"

#include "tesmar/platform/hosts/sdl/SDLHost.h"

#include <cstdio>
#include <filesystem>

using namespace tesmar;

namespace {

constexpr double kSeekSeconds = 5;

std::string title(const Options& options) {
    return options.video.empty() ? "Player"
                                 : std::filesystem::path(options.video).filename().string();
}

class WindowApp {
  public:
    explicit WindowApp(const Options& options)
        : host_({.title = title(options),
                 .size = options.size,
                 .scale = options.scale,
                 .controllers = SDLHost::Controllers::used}) {
        if (!options.video.empty()) {
            video_ = std::make_unique<Video>(Video::Sound::on, [this] { host_.wakeUp(); });
            video_->play(options.video);
        }
        path_ = options.video;
        player_ = std::make_unique<Player>(host_.window(), video_.get(), options);
        host_.onPicture([this](const SDLHost::Picture& picture) { drawPicture(picture); });
        host_.onKey([this](const SDLHost::Key& key) { pressed(key); });
        host_.onTap([this](CGPoint) { player_->tapOnPicture(); });
        host_.onResize([this](CGSize) { player_->layOut(); });
        host_.onWake([this] { updateFromVideo(); });
        updateFromVideo();
    }

    void run() { host_.run(); }

  private:
    void drawPicture(const SDLHost::Picture& picture) {
        if (video_ && video_->state().failure.empty())
            video_->draw(picture.pixels, picture.width, picture.height, picture.stride);
        else
            drawBackdrop(picture.pixels, picture.width, picture.height, picture.stride);
    }

    void updateFromVideo() {
        if (!video_)
            return;
        video_->poll();
        player_->showVideoState();
        if (!video_->state().failure.empty() && !hasReportedFailure_) {
            hasReportedFailure_ = true;
            std::fprintf(stderr, "player: cannot play '%s': %s\n", path_.c_str(),
                         video_->state().failure.c_str());
            host_.setPictureNeedsDisplay();
        }
        if (video_->hasNewFrame())
            host_.setPictureNeedsDisplay();
    }

    // Keys that the open panel leaves to the player.
    void pressed(const SDLHost::Key& key) {
        const auto isOneOf = [&](auto... names) { return ((key.name == names) || ...); };
        if (isOneOf("Left", "Controller dpleft"))
            player_->seekBy(-kSeekSeconds);
        else if (isOneOf("Right", "Controller dpright"))
            player_->seekBy(kSeekSeconds);
        else if (key.repeated)
            return;
        else if (isOneOf("C", "Controller y"))
            player_->togglePanel();
        else if (isOneOf("Space", "Controller a"))
            player_->togglePause();
        else if (key.name == "F")
            host_.toggleFullScreen();
        else if (key.name == "Q")
            host_.quit();
    }

    SDLHost host_;
    std::unique_ptr<Video> video_; // wakes the host, so it is destroyed before it
    std::string path_;
    bool hasReportedFailure_ = false;
    std::unique_ptr<Player> player_;
};

} // namespace

void playInWindow(const Options& options) {
    WindowApp(options).run();
}
