// Styles that libass draws, beside the library's own drawing of the same text.
#include "tests/captions/other_engines.h"

#include <ass/ass.h>

namespace tesmar {
namespace {

struct Library {
    Library() { ass_set_fonts(renderer, nullptr, "sans", ASS_FONTPROVIDER_FONTCONFIG, nullptr, 1); }
    ~Library() {
        ass_renderer_done(renderer);
        ass_library_done(library);
    }
    std::vector<std::uint32_t> draw(const std::string& styleLine) {
        std::string script = "[Script Info]\nScriptType: v4.00+\nPlayResX: 600\nPlayResY: 100\n"
                             "[V4+ Styles]\n" +
                             styleLine +
                             "\n[Events]\nDialogue: "
                             "0,0:00:00.00,0:00:09.00,S,,0,0,0,," +
                             kText + "\n";
        ASS_Track* const track = ass_read_memory(library, script.data(), script.size(), nullptr);
        ass_set_frame_size(renderer, kWidth * kScale, kHeight * kScale);
        std::vector<std::uint32_t> pixels(kWidth * kScale * kHeight * kScale, kGray);
        for (auto* image = ass_render_frame(renderer, track, 1000, nullptr); image;
             image = image->next)
            blend(*image, pixels);
        ass_free_track(track);
        return pixels;
    }
    static void blend(const ASS_Image& image, std::vector<std::uint32_t>& pixels) {
        for (int y = 0; y < image.h; ++y)
            for (int x = 0; x < image.w; ++x) {
                const int place = (image.dst_y + y) * kWidth * kScale + image.dst_x + x;
                auto& pixel = pixels[static_cast<std::size_t>(place)];
                const double alpha =
                    image.bitmap[y * image.stride + x] / 255.0 * (255 - (image.color & 255)) / 255;
                std::uint32_t mixed = 255;
                for (const int shift : {16, 8, 0}) {
                    const int over = channel(image.color, shift + 8), under = channel(pixel, shift);
                    const double mean = over * alpha + under * (1 - alpha);
                    mixed = mixed << 8 | static_cast<unsigned>(std::lround(mean));
                }
                pixel = mixed;
            }
    }
    ASS_Library* library = ass_library_init();
    ASS_Renderer* renderer = ass_renderer_init(library);
};

TEST(Libass, DrawsWhatTheLibraryDraws) {
    Library libass;
    ass_set_message_cb(
        libass.library, [](int, const char*, va_list, void*) {}, nullptr);
    compareDrawings([&](const TESMARCaptionStyle& style) {
        return libass.draw(TESMARAssStyleLine("S", TESMARAssStyle(style, kHeight, kHeight)));
    });
}

} // namespace
} // namespace tesmar
