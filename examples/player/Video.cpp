#include "Video.h"

#include <mpv/client.h>
#include <mpv/render.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <initializer_list>
#include <stdexcept>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

// Identify the observed properties in their events.
enum Property : std::uint64_t {
    timeProperty = 1,
    durationProperty,
    pauseProperty,
    endProperty,
    captionProperty
};

void check(int status, const char* what) {
    if (status < 0)
        throw std::runtime_error(std::string(what) + ": " + mpv_error_string(status));
}

// Seconds before the end, where a seek still finds a frame.
constexpr double kLastFrameMargin = 0.2;

// The engine names formats by the order of bytes in memory.
constexpr const char* kPixelFormat = std::endian::native == std::endian::little ? "bgr0" : "0rgb";

// The engine's own messages for these errors are vague. Empty when the path can be read or is a
// URL.
std::string readError(std::string path) {
    if (path.starts_with("file://"))
        path.erase(0, std::strlen("file://"));
    if (path.find("://") != std::string::npos)
        return "";
    std::error_code ignored;
    switch (std::filesystem::status(path, ignored).type()) {
    case std::filesystem::file_type::directory:
        return "it is a directory";
    case std::filesystem::file_type::fifo:
    case std::filesystem::file_type::socket:
    case std::filesystem::file_type::block:
    case std::filesystem::file_type::character:
        return "it is a pipe or a device, not a video file"; // opening one may wait for ever
    default:
        break;
    }
    return access(path.c_str(), R_OK) == 0 ? "" : std::strerror(errno);
}

} // namespace

struct Video::Engine {
    explicit Engine(std::function<void()> wake) : wakeUp(std::move(wake)) {}
    ~Engine() {
        if (render)
            mpv_render_context_free(render);
        mpv_terminate_destroy(mpv);
    }

    void command(std::initializer_list<const char*> words) {
        std::vector<const char*> arguments(words);
        arguments.push_back(nullptr);
        // Errors are ignored: a seek before the file is open, for example, does no harm.
        mpv_command_async(mpv, 0, arguments.data());
    }

    void property(State& state, std::uint64_t which, const mpv_event_property& value);

    std::function<void()> wakeUp;
    mpv_handle* mpv = mpv_create();
    mpv_render_context* render = nullptr;
    bool frameIsNew = false;
    bool seekIsDone = false; // the frame of the last seek is available
};

Video::Video(Sound sound, std::function<void()> wakeUp)
    : engine_(std::make_unique<Engine>(std::move(wakeUp))) {
    mpv_handle* const mpv = engine_->mpv;
    if (!mpv)
        throw std::runtime_error("the video engine does not start (is LC_NUMERIC \"C\"?)");
    for (const auto& [name, value] : std::initializer_list<std::pair<const char*, const char*>>{
             {"config", "no"},
             {"terminal", "no"},
             {"osc", "no"},
             {"input-default-bindings", "no"},
             {"ytdl", "no"},
             {"vo", "libmpv"},
             {"hwdec", "no"},
             {"keep-open", "yes"}, // keep the last frame
             {"sid", "1"},
             {"sub-visibility", "no"}, // until drawCaptions()
         })
        check(mpv_set_option_string(mpv, name, value), name);
    if (sound == Sound::off)
        check(mpv_set_option_string(mpv, "aid", "no"), "aid");
    check(mpv_initialize(mpv), "the video engine does not start");

    const auto wake = [](void* engine) {
        if (const auto& wakes = static_cast<Engine*>(engine)->wakeUp)
            wakes();
    };
    mpv_set_wakeup_callback(mpv, wake, engine_.get());
    mpv_render_param parameters[] = {
        {MPV_RENDER_PARAM_API_TYPE, const_cast<char*>(MPV_RENDER_API_TYPE_SW)},
        {MPV_RENDER_PARAM_INVALID, nullptr}};
    check(mpv_render_context_create(&engine_->render, mpv, parameters), "no video picture");
    mpv_render_context_set_update_callback(engine_->render, wake, engine_.get());

    mpv_observe_property(mpv, timeProperty, "time-pos", MPV_FORMAT_DOUBLE);
    mpv_observe_property(mpv, durationProperty, "duration", MPV_FORMAT_DOUBLE);
    mpv_observe_property(mpv, pauseProperty, "pause", MPV_FORMAT_FLAG);
    mpv_observe_property(mpv, endProperty, "eof-reached", MPV_FORMAT_FLAG);
    mpv_observe_property(mpv, captionProperty, "sub-text", MPV_FORMAT_STRING);
}

Video::~Video() = default;

void Video::play(const std::string& path) {
    state_.failure = readError(path);
    if (state_.failure.empty())
        engine_->command({"loadfile", path.c_str()});
}

// --- Events -------------------------------------------------------------------------------------

void Video::Engine::property(State& state, std::uint64_t which, const mpv_event_property& value) {
    // No value: the property is unavailable now.
    const bool known = value.format != MPV_FORMAT_NONE;
    const auto number = [&] { return known ? *static_cast<double*>(value.data) : 0; };
    const auto flag = [&] { return known && *static_cast<int*>(value.data) != 0; };
    switch (which) {
    case timeProperty:
        state.time = number();
        break;
    case durationProperty:
        state.duration = number();
        break;
    case pauseProperty:
        state.paused = flag();
        break;
    case endProperty:
        state.atEnd = flag();
        break;
    case captionProperty:
        state.caption = known ? *static_cast<char**>(value.data) : "";
        break;
    default:
        break;
    }
}

bool Video::poll() {
    return handleEvents(0);
}

bool Video::handleEvents(double timeout) {
    const State before = state_;
    for (const mpv_event* event = mpv_wait_event(engine_->mpv, timeout);
         event->event_id != MPV_EVENT_NONE; event = mpv_wait_event(engine_->mpv, 0)) {
        if (event->event_id == MPV_EVENT_PROPERTY_CHANGE)
            engine_->property(state_, event->reply_userdata,
                              *static_cast<mpv_event_property*>(event->data));
        else if (event->event_id == MPV_EVENT_PLAYBACK_RESTART)
            engine_->seekIsDone = true;
        else if (event->event_id == MPV_EVENT_END_FILE) {
            const auto& end = *static_cast<mpv_event_end_file*>(event->data);
            if (end.reason == MPV_END_FILE_REASON_ERROR)
                state_.failure = mpv_error_string(end.error);
        }
    }
    return state_ != before;
}

// --- Playing ------------------------------------------------------------------------------------

void Video::set(const char* property, const std::string& value) {
    engine_->command({"set", property, value.c_str()});
}

void Video::togglePause() {
    if (state_.atEnd)
        seekTo(0);
    set("pause", state_.paused || state_.atEnd ? "no" : "yes");
}

void Video::seekTo(double seconds) {
    engine_->command({"seek", std::to_string(seconds).c_str(), "absolute+exact"});
}

void Video::seekBy(double seconds) {
    engine_->command({"seek", std::to_string(seconds).c_str(), "relative+exact"});
}

void Video::drawCaptions(const std::vector<std::pair<std::string, std::string>>& properties) {
    for (const auto& [name, value] : properties)
        set(name.c_str(), value);
    set("sub-visibility", properties.empty() ? "no" : "yes");
}

// --- Picture ------------------------------------------------------------------------------------

bool Video::hasNewFrame() {
    if (mpv_render_context_update(engine_->render) & MPV_RENDER_UPDATE_FRAME)
        engine_->frameIsNew = true;
    return engine_->frameIsNew;
}

void Video::draw(std::uint32_t* pixels, int width, int height, int stride) {
    engine_->frameIsNew = false;
    render(pixels, width, height, stride, Rendering::drawn);
}

void Video::render(std::uint32_t* pixels, int width, int height, int stride, Rendering rendering) {
    int size[] = {width, height};
    std::size_t bytes = static_cast<std::size_t>(stride);
    int waits = 0; // draw now, not when the frame is due
    int skips = rendering == Rendering::skipped;
    mpv_render_param parameters[] = {{MPV_RENDER_PARAM_SW_SIZE, size},
                                     {MPV_RENDER_PARAM_SW_FORMAT, const_cast<char*>(kPixelFormat)},
                                     {MPV_RENDER_PARAM_SW_STRIDE, &bytes},
                                     {MPV_RENDER_PARAM_SW_POINTER, pixels},
                                     {MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &waits},
                                     {MPV_RENDER_PARAM_SKIP_RENDERING, &skips},
                                     {MPV_RENDER_PARAM_INVALID, nullptr}};
    mpv_render_context_render(engine_->render, parameters);
}

bool Video::showMoment(double seconds, double timeout) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::duration<double>(timeout);
    const auto waitUntil = [&](const auto& isDone) {
        while (!isDone()) {
            if (!state_.failure.empty() || Clock::now() > end)
                return false;
            handleEvents(0.01);
        }
        return true;
    };
    set("pause", "yes");
    if (!waitUntil([&] { return state_.duration > 0 && engine_->seekIsDone; }))
        return false;
    engine_->seekIsDone = engine_->frameIsNew = false;
    seekTo(std::min(seconds, std::max(0.0, state_.duration - kLastFrameMargin)));
    const auto frameIsThere = [&] {
        // The engine waits until each frame is taken, even one that is never drawn.
        if (mpv_render_context_update(engine_->render) & MPV_RENDER_UPDATE_FRAME) {
            render(nullptr, 0, 0, 0, Rendering::skipped);
            engine_->frameIsNew = true;
        }
        return engine_->frameIsNew && engine_->seekIsDone;
    };
    if (!waitUntil(frameIsThere))
        return false;
    char* const caption = mpv_get_property_string(engine_->mpv, "sub-text");
    state_.caption = caption ? caption : "";
    mpv_free(caption);
    return true;
}
