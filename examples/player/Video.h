// Plays a video with its sound through libmpv. The text of subtitles is in the state; they are only
// drawn after drawCaptions().
//
// All methods must be called on one thread; only the callback `wakeUp` runs on others.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class Video {
  public:
    enum class Sound { on, off };

    struct State {
        double time = 0;     // seconds
        double duration = 0; // seconds; 0 while unknown
        bool paused = false;
        bool atEnd = false;
        std::string caption; // the current subtitle; lines are separated by "\n"
        std::string failure; // the reason why the video cannot be played; empty otherwise
        bool operator==(const State&) const = default;
    };

    // `wakeUp`, which may be empty, is called on other threads when poll() or hasNewFrame() may
    // return true. Throws std::runtime_error when the video engine does not start.
    Video(Sound sound, std::function<void()> wakeUp);
    ~Video();
    Video(const Video&) = delete;
    Video& operator=(const Video&) = delete;

    // Starts to play a file or URL. Errors appear in the state, possibly later.
    void play(const std::string& path);
    const State& state() const { return state_; }
    // Updates the state; returns whether it has changed.
    bool poll();

    // At the end, starts again from the beginning.
    void togglePause();
    // Seconds, clamped to the video. Ignored until the video is open.
    void seekTo(double seconds);
    void seekBy(double seconds);

    // Has the video engine draw the captions with these of its properties; with none, initially, it
    // draws no captions.
    void drawCaptions(const std::vector<std::pair<std::string, std::string>>& properties);

    // Whether a frame has arrived since the last draw().
    bool hasNewFrame();
    // Draws the current frame into width × height pixels, with black bars where the proportions
    // differ: 0x00RRGGBB words, rows `stride` bytes apart.
    void draw(std::uint32_t* pixels, int width, int height, int stride);

    // Pauses at this moment, clamped to the video's length, and waits until its frame and caption
    // have arrived. Returns false after `timeout` seconds or a failure.
    bool showMoment(double seconds, double timeout);

  private:
    struct Engine;

    // Waits up to `timeout` seconds for an event and handles all that are pending. Returns whether
    // the state has changed.
    bool handleEvents(double timeout);
    enum class Rendering { drawn, skipped };
    void render(std::uint32_t* pixels, int width, int height, int stride, Rendering rendering);
    void set(const char* property, const std::string& value);

    State state_;
    std::unique_ptr<Engine> engine_;
};
