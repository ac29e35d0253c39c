// The session without a screen, over a video made on the spot.
#include "Session.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace tesmar {
namespace {

class SessionTest : public testing::Test {
  protected:
    void SetUp() override {
        std::setlocale(LC_NUMERIC, "C");
        NSBundle::setMainBundle(TESMARHostBundle("org.tesmar.player-test"));
        directory_ = testing::TempDir() + "player-session-" +
                     testing::UnitTest::GetInstance()->current_test_info()->name();
        std::filesystem::remove_all(directory_);
        std::filesystem::create_directories(directory_);
        options_.pictures = directory_ + "/pictures";
        options_.size = {568, 320};
        options_.preferences = directory_ + "/preferences.plist";
        NSUserDefaults::standardUserDefaults()->setPreferencesPath(options_.preferences);
    }
    void TearDown() override { std::filesystem::remove_all(directory_); }

    // A minute of grey with a subtitle from its first second on. False without ffmpeg.
    bool makeVideo() {
        options_.video = directory_ + "/video.mkv";
        std::ofstream(directory_ + "/captions.srt")
            << "1\n00:00:01,000 --> 00:00:59,000\nMMMMMMMM\n";
        const std::string command =
            "cd '" + directory_ +
            "' && ffmpeg -v error -nostdin -y -f lavfi -i "
            "color=c=gray:s=64x36:r=10:d=60 -i captions.srt -c:v mpeg4 -c:s subrip video.mkv";
        return std::system(command.c_str()) == 0;
    }

    std::vector<Ref<UIImage>> playedPictures(Session& session) {
        std::vector<Ref<UIImage>> pictures;
        session.play([&](const std::string& path) {
            std::ifstream file(path, std::ios::binary);
            const std::string bytes{std::istreambuf_iterator<char>(file), {}};
            pictures.push_back(UIImage::imageWithPNGData(bytes, 1));
        });
        return pictures;
    }

    std::string directory_;
    Options options_;
};

// Pixels around the caption, in the middle of the foot of the picture. The controls, where they are
// seen, show nothing so white or red there.
int count(const Ref<UIImage>& image, bool (*wanted)(int red, int green)) {
    int found = 0;
    for (int y = image->pixelHeight() - 80; y < image->pixelHeight(); ++y)
        for (int x = 184; x < 384; ++x)
            found += wanted(image->pixel(x, y) >> 16 & 0xFF, image->pixel(x, y) >> 8 & 0xFF);
    return found;
}

bool isWhite(int red, int green) {
    return red > 230 && green > 230;
}
bool isReddish(int red, int green) {
    return red > green + 40;
}

TEST_F(SessionTest, ShowsEachStepOnTheVideosCaptions) {
    if (!makeVideo())
        GTEST_SKIP() << "ffmpeg is not there, or made no video";
    Session session(options_);
    const auto pictures = playedPictures(session);
    ASSERT_EQ(session.videoFailure(), "");
    ASSERT_EQ(pictures.size(), 7u);
    for (const auto& picture : pictures)
        ASSERT_NE(picture, nullptr);
    enum { captions, panel, textColor, opacity, font, reset, hidden };

    EXPECT_NEAR(pictures[captions]->pixel(4, 4) >> 8 & 0xFF, 128, 6); // the video is grey
    for (const int white : {captions, panel, reset, hidden})
        EXPECT_GT(count(pictures[white], isWhite), 50) << white;
    for (const int red : {textColor, opacity, font}) {
        EXPECT_EQ(count(pictures[red], isWhite), 0) << red;
        EXPECT_GT(count(pictures[red], isReddish), 50) << red;
    }
    EXPECT_GT(count(pictures[font], isReddish), 1.5 * count(pictures[opacity], isReddish));
    const auto pure = [](int red, int green) { return red > 240 && green < 16; };
    EXPECT_GT(count(pictures[textColor], pure), 50);
    EXPECT_EQ(count(pictures[opacity], pure), 0);

    // A spot of the card where nothing stands.
    for (const int open : {panel, textColor, opacity, font, reset})
        EXPECT_GT(pictures[open]->pixel(284, 20) & 0xFF, 200u) << open;
    EXPECT_LT(pictures[hidden]->pixel(284, 20) & 0xFF, 200u);
    EXPECT_FALSE(session.player().isPanelOpen());
}

TEST_F(SessionTest, GoesOnWithoutAVideoThatCannotBePlayed) {
    std::ofstream(directory_ + "/noise.mkv") << "this is no video";
    for (const char* name : {"/missing.mkv", "/noise.mkv", ""}) {
        SCOPED_TRACE(name);
        options_.video = directory_ + name;
        Session session(options_);
        EXPECT_NE(session.videoFailure(), "");
        EXPECT_EQ(playedPictures(session).size(), 7u);
    }
}

} // namespace
} // namespace tesmar
