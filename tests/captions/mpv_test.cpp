// Styles that mpv draws, beside the library's own drawing of the same text.
#include "tests/captions/other_engines.h"

#include <mpv/client.h>
#include <mpv/render.h>

#include <fstream>

namespace tesmar {
namespace {

struct Player {
    Player() {
        std::ofstream("cue.srt") << "1\n00:00:00,000 --> 00:01:00,000\n" << kText << "\n";
        for (const auto& [name, value] : std::initializer_list<std::pair<const char*, const char*>>{
                 {"config", "no"}, {"vo", "libmpv"}, {"pause", "yes"}, {"sub-files", "cue.srt"}})
            mpv_set_option_string(mpv, name, value);
        EXPECT_EQ(mpv_initialize(mpv), 0);
        mpv_render_param api[] = {
            {MPV_RENDER_PARAM_API_TYPE, const_cast<char*>(MPV_RENDER_API_TYPE_SW)}, {}};
        EXPECT_EQ(mpv_render_context_create(&render, mpv, api), 0);
        const char* load[] = {"loadfile", "av://lavfi:color=c=0x808080:size=600x100:duration=9",
                              nullptr};
        EXPECT_EQ(mpv_command(mpv, load), 0);
        while (mpv_wait_event(mpv, 5)->event_id != MPV_EVENT_PLAYBACK_RESTART) {
        }
    }
    ~Player() {
        mpv_render_context_free(render);
        mpv_terminate_destroy(mpv);
    }
    std::vector<std::uint32_t> draw(const TESMARRendererStyle& words) {
        for (const auto& [name, value] : words.fields)
            EXPECT_EQ(mpv_set_property_string(mpv, name.c_str(), value.c_str()), 0) << name;
        std::vector<std::uint32_t> pixels(kWidth * kScale * kHeight * kScale);
        int size[] = {kWidth * kScale, kHeight * kScale};
        std::size_t stride = kWidth * kScale * 4;
        char format[] = "bgr0";
        mpv_render_param picture[] = {{MPV_RENDER_PARAM_SW_SIZE, size},
                                      {MPV_RENDER_PARAM_SW_FORMAT, format},
                                      {MPV_RENDER_PARAM_SW_STRIDE, &stride},
                                      {MPV_RENDER_PARAM_SW_POINTER, pixels.data()},
                                      {}};
        mpv_render_context_update(render);
        EXPECT_EQ(mpv_render_context_render(render, picture), 0);
        for (auto& pixel : pixels)
            pixel |= 0xff000000;
        return pixels;
    }
    mpv_handle* mpv = mpv_create();
    mpv_render_context* render = nullptr;
};

TEST(Mpv, DrawsWhatTheLibraryDraws) {
    Player player;
    compareDrawings([&](const TESMARCaptionStyle& style) {
        return player.draw(TESMARMpvStyle(style, kHeight));
    });
}

} // namespace
} // namespace tesmar
