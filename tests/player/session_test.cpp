// The session without a screen, over a video that the test makes.
#include "Session.h"
#include "player_fixture.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sys/stat.h>

namespace tesmar {
namespace {

// A minute of grey with a caption from its first second on, in the file video.mkv.
bool makeVideo(const std::string& directory) {
    std::ofstream(directory + "/captions.srt") << "1\n00:00:01,000 --> 00:00:59,000\nMMMMMMMM\n";
    const std::string command =
        "cd '" + directory +
        "' && ffmpeg -v error -nostdin -y -f lavfi -i color=c=gray:s=64x36:r=10:d=60 "
        "-i captions.srt -c:v mpeg4 -c:s subrip video.mkv";
    return std::system(command.c_str()) == 0;
}

std::vector<Ref<UIImage>> play(Session& session) {
    std::vector<Ref<UIImage>> pictures;
    session.play([&](const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(file), {}};
        pictures.push_back(UIImage::imageWithPNGData(bytes, 1));
    });
    return pictures;
}

using Test = bool (*)(int red, int green);

constexpr Test kWhite = [](int red, int green) { return red > 230 && green > 230; };
constexpr Test kReddish = [](int red, int green) { return red > green + 40; };
constexpr Test kPureRed = [](int red, int green) { return red > 240 && green < 16; };

// The pixels around the caption, in the lowest `rows`, that pass the test. The controls there have
// none.
int count(const UIImage& image, int rows, Test test) {
    int found = 0;
    for (int y = image.pixelHeight() - rows; y < image.pixelHeight(); ++y)
        for (int x = 184; x < 384; ++x)
            found += test(image.pixel(x, y) >> 16 & 0xFF, image.pixel(x, y) >> 8 & 0xFF);
    return found;
}

using SessionTest = PlayerFixture;

TEST_F(SessionTest, ShowsEachStepOnTheVideosCaptions) {
    ASSERT_TRUE(makeVideo(directory_));
    options_.video = directory_ + "/video.mkv";
    options_.isExtended = false;
    Session session(options_);
    const auto pictures = play(session);
    ASSERT_EQ(session.videoFailure(), "");
    const struct {
        const char* name;
        bool white, reddish, pureRed; // the caption
        bool open;                    // the panel
    } cases[] = {
        {"captions", true, false, false, false},    {"panel", true, false, false, true},
        {"text colour", false, true, true, true},   {"opacity", false, true, false, true},
        {"font", false, true, false, true},         {"reset", true, false, false, true},
        {"auto-hidden", true, false, false, false},
    };
    ASSERT_EQ(pictures.size(), std::size(cases));
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        SCOPED_TRACE(cases[i].name);
        ASSERT_NE(pictures[i], nullptr);
        const int rows = cases[i].open ? 50 : 80; // below the card, or with the bar
        EXPECT_EQ(count(*pictures[i], rows, kWhite) > 50, cases[i].white);
        EXPECT_EQ(count(*pictures[i], rows, kReddish) > 50, cases[i].reddish);
        EXPECT_EQ(count(*pictures[i], rows, kPureRed) > 50, cases[i].pureRed);
        // A point of the card without content.
        EXPECT_EQ((pictures[i]->pixel(284, 20) & 0xFF) > 200, cases[i].open);
    }
    // A larger font.
    EXPECT_GT(count(*pictures[4], 80, kReddish), 1.5 * count(*pictures[3], 80, kReddish));
    EXPECT_NEAR(pictures[0]->pixel(4, 4) >> 8 & 0xFF, 128, 6); // the grey of the video
}

TEST_F(SessionTest, ContinuesWithoutAVideoThatCannotBePlayed) {
    std::ofstream(directory_ + "/noise.mkv") << "this is no video";
    const std::string pipe = directory_ + "/pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string& video :
         {directory_ + "/missing.mkv", directory_ + "/noise.mkv", directory_, pipe,
          "file://" + pipe, std::string("/dev/zero")}) {
        SCOPED_TRACE(video);
        options_.video = video;
        Session session(options_);
        EXPECT_NE(session.videoFailure(), "");
        EXPECT_EQ(play(session).size(), 11u); // with the extended panel's
    }
}

} // namespace
} // namespace tesmar
