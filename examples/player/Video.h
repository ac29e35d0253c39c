// A video with its sound and its subtitles' text, played by libmpv. It draws the picture only: the
// captions are ours.
//
// Belongs to one thread, but for the `wakeUp` that it is given.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

class Video {
  public:
    enum class Sound { on, off };

    struct State {
        double time = 0;     // seconds
        double duration = 0; // 0 while it is not known
        bool paused = false;
        bool atEnd = false;
        std::string caption; // what is being said; lines are separated by "\n"
        std::string failure; // why it cannot be played; empty while all is well
        bool operator==(const State&) const = default;
    };

    // `wakeUp` is called from another thread when poll() or hasNewFrame() may have news.
    Video(Sound sound, std::function<void()> wakeUp);
    ~Video();
    Video(const Video&) = delete;
    Video& operator=(const Video&) = delete;

    // Starts to play the file. What goes wrong shows in the state, later.
    void play(const std::string& path);
    const State& state() const { return state_; }
    // Brings the state up to date; true when it has changed.
    bool poll();

    void togglePause();
    void seekTo(double seconds);
    void seekBy(double seconds);

    // Whether draw() would show another picture than last time.
    bool hasNewFrame();
    // Draws the frame, with black bars where the shape is another. 0x00RRGGBB words; `stride` bytes
    // from row to row.
    void draw(std::uint32_t* pixels, int width, int height, int stride);

    // Pauses at the exact moment, or at the end, and waits, `patience` seconds at most, until its
    // picture and its caption are there. False when they do not come.
    bool showMoment(double seconds, double patience);

  private:
    struct Engine;

    // Handles what has happened, after waiting `patience` seconds at most for something to happen.
    bool waitForNews(double patience);
    enum class Rendering { drawn, skipped };
    void render(std::uint32_t* pixels, int width, int height, int stride, Rendering rendering);
    void set(const char* property, const std::string& value);

    State state_;
    std::string path_;
    std::unique_ptr<Engine> engine_;
};
