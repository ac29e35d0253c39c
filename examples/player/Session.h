// A viewer's session with the panel, played without a screen into numbered pictures. The panel
// lives in virtual time, and the video is brought, frame by frame, to the same moment.
#pragma once

#include "Player.h"

#include "tesmar/platform/hosts/headless/HeadlessHost.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

class Session {
  public:
    // Pictures go to the directory options.pictures, which is made where it is missing.
    explicit Session(const Options& options);

    // Plays the whole session; calls `wrote` with the path of each picture. Throws
    // std::runtime_error when a picture cannot be written or a control is not to be found.
    void play(const std::function<void(const std::string&)>& wrote);
    // Why the video cannot be played; empty when it can, or there is none.
    std::string videoFailure() const;

    // Parts of the session, for whoever wants another one.
    void advance(double seconds);
    // Taps the control of that accessibility identifier, after scrolling it into view; a stepper's
    // halves are named "….decrement" and "….increment".
    void tap(const std::string& identifier);
    // Video, captions and panel as they are now. Answers the path.
    std::string writePicture(const std::string& name);

    Player& player() { return *player_; }

  private:
    void showVideo();
    void drag(tesmar::CGPoint start, tesmar::CGPoint distance);
    void scrollIntoView(const tesmar::UIView& view, const tesmar::CGRect& rect);

    std::string directory_;
    tesmar::HeadlessHost host_;
    std::unique_ptr<Video> video_;
    std::unique_ptr<Player> player_;
    double autoHide_;
    double videoTime_ = 0; // seconds
    int written_ = 0;
};
