// A scripted session with the panel, played without a screen into numbered pictures. The player
// runs in virtual time; for each picture the video is moved to the same moment.
#pragma once

#include "Player.h"

#include "tesmar/platform/hosts/headless/HeadlessHost.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

class Session {
  public:
    // Pictures go to the directory options.pictures, which must be set and is created if missing.
    // Throws std::filesystem::filesystem_error when that fails.
    explicit Session(const Options& options);

    // Plays the whole session; calls `onPicture` with the path of each picture that it has written.
    // Throws std::runtime_error when a picture cannot be written or a control is missing.
    void play(const std::function<void(const std::string&)>& onPicture);
    // The reason why the video cannot be played; empty when it can, or there is none.
    std::string videoFailure() const;

  private:
    void advance(double seconds);
    void showVideo();
    // Taps the control with that accessibility identifier, or the half of a stepper
    // ("….decrement", "….increment"), after scrolling it into view.
    void tap(const std::string& identifier);
    void scrollIntoView(const tesmar::UIView& view, const tesmar::CGRect& rect);
    void drag(tesmar::CGPoint start, tesmar::CGPoint distance);
    // The steps that only the extended panel has.
    void playExtended(const std::function<void(const char*)>& picture);
    // Writes the video, the captions and the panel; returns the path.
    std::string writePicture(const std::string& name);

    std::string directory_;
    tesmar::HeadlessHost host_;
    std::unique_ptr<Video> video_;
    std::unique_ptr<Player> player_;
    double autoHide_;
    const bool isExtended_;
    double videoTime_ = 0; // seconds
    int picturesWritten_ = 0;
};
