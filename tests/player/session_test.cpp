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

    // Six seconds of grey with a subtitle from the second one on. False without ffmpeg.
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

// How much of the caption's letters is seen: pixels nearer to yellow than anything else there.
int count(const UIImage& image, bool (*wanted)(int red, int green, int blue)) {
    int found = 0;
    for (int y = image.pixelHeight() - 100; y < image.pixelHeight() - 44; ++y)
        for (int x = 0; x < image.pixelWidth(); ++x) {
            const std::uint32_t p = image.pixel(x, y);
            found += wanted(p >> 16 & 0xFF, p >> 8 & 0xFF, p & 0xFF);
        }
    return found;
}

bool isWhite(int red, int green, int blue) {
    return red > 230 && green > 230 && blue > 230;
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
    const auto color = CCConstants::paletteColors()[5];
    enum { captions, panel, textColor, opacity, font, reset, hidden };

    // The video is grey, its caption white on a darker box.
    const std::uint32_t corner = pictures[captions]->pixel(4, 4);
    EXPECT_NEAR(corner >> 8 & 0xFF, 128, 6);
    EXPECT_GT(count(*pictures[captions], isWhite), 50);
    EXPECT_LT(count(*pictures[textColor], isWhite), 5);
    EXPECT_GT(count(*pictures[reset], isWhite), 50);
    const auto cardMiddle = [&](int which) { return pictures[which]->pixel(284, 20) & 0xFF; };
    EXPECT_GT(cardMiddle(panel), 200u);
    EXPECT_GT(cardMiddle(reset), 200u);
    EXPECT_LT(cardMiddle(hidden), 200u);
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
