// Stored records that mean harm, from a writer of their own: each is answered at once and in little
// memory, with a style that can be saved as it is or with none. TESMAR_SOAK=N makes N times as
// many.
#include "tesmar/model/CCConstants.h"
#include "tesmar/model/TESMARConfig.h"
#include "tesmar/platform/foundation/archive/NSKeyedArchiver.h"
#include "tesmar/platform/foundation/defaults/NSUserDefaults.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/foundation/scalars.h"
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/text/UIFont.h"
#include "tests/platform/measured.h"

#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>
#include <memory>

namespace tesmar {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr double kSlack = 40;
#elif defined(__has_feature)
constexpr double kSlack = __has_feature(address_sanitizer) ? 40 : 2;
#else
constexpr double kSlack = 2; // for other processors than the one that the millisecond is meant for
#endif

bool isSound(const NSObject& object) {
    const auto isUnit = [](double x) { return x >= 0 && x <= 1; };
    if (const auto* dictionary = dynamic_cast<const NSDictionary*>(&object))
        return std::ranges::all_of(dictionary->entries(),
                                   [](auto& entry) { return isSound(*entry.second); });
    if (const auto* c = dynamic_cast<const UIColor*>(&object))
        return isUnit(c->red()) && isUnit(c->green()) && isUnit(c->blue()) && isUnit(c->alpha());
    if (const auto* font = dynamic_cast<const UIFont*>(&object))
        return font->pointSize() > 0 && font->pointSize() <= UIFont::kLargestSize;
    const auto* number = dynamic_cast<const NSNumber*>(&object);
    return object.isa().hasCoding() && (!number || std::isfinite(number->doubleValue()));
}

std::string nextRecord(std::FILE* from) {
    unsigned char length[4];
    if (std::fread(length, 1, 4, from) != 4)
        return {};
    std::string record(length[0] << 24 | length[1] << 16 | length[2] << 8 | length[3], '\0');
    EXPECT_EQ(std::fread(record.data(), 1, record.size(), from), record.size());
    return record;
}

TEST(StoredStyle, OneThatIsTooLargeLeavesTheOneBefore) {
    NSUserDefaults::standardUserDefaults()->setPreferencesPath("/dev/null/nowhere");
    const auto style = CCConstants::CCDefaultStyleAttributes();
    TESMARConfig::saveSessionClosedCaptureStyle(style);
    const auto large = style->mutableCopy();
    large->setObject(NSString::stringWithString(std::string(60000, 'x')), "Note");
    TESMARConfig::saveSessionClosedCaptureStyle(large);
    const auto stored = TESMARConfig::sessionClosedCaptureStyle();
    ASSERT_TRUE(stored);
    EXPECT_TRUE(stored->isEqual(style.get()));
}

TEST(StoredStyle, HostileRecordsCostLittleAndComeToNothingOrToASoundStyle) {
    NSUserDefaults::standardUserDefaults()->setPreferencesPath("/dev/null/nowhere");
    TESMARConfig::sessionOrDefaultClosedCaptureStyle();
    UIFont::systemFontOfSize(1); // the fonts are read once
    const char* soak = std::getenv("TESMAR_SOAK");
    const std::string seed = soak ? std::to_string(std::time(nullptr)) : "1";
    const int wanted = 300 * (soak ? std::atoi(soak) : 1);
    const std::string command =
        "exec '" TESMAR_PYTHON "' '" TESMAR_RECORDS "' " + seed + " " + std::to_string(wanted);
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> records(::popen(command.c_str(), "r"),
                                                                  ::pclose);
    test::Cost worst;
    int count = 0, styles = 0;
    for (std::string record; !(record = nextRecord(records.get())).empty(); ++count) {
        NSUserDefaults::standardUserDefaults()->setObject(NSData::dataWithBytes(record),
                                                          "CCSessionStyleUserDefaultsKey");
        Ref<NSDictionary> style;
        test::Cost cost{1e9, 0};
        for (int i = 0; i < 10 && cost.milliseconds > 0.5; ++i) // others interrupt
            cost.milliseconds =
                std::min(cost.milliseconds, test::measured([&] {
                                                style = TESMARConfig::sessionClosedCaptureStyle();
                                            }).milliseconds);
        cost.bytes = test::measured([] { TESMARConfig::sessionClosedCaptureStyle(); }).bytes;
        cost.bytes -= std::min(cost.bytes, record.size()); // which is copied out of the store
        EXPECT_LT(cost.milliseconds, kSlack) << "record " << count << " of seed " << seed;
        EXPECT_LT(cost.bytes, 1 << 20) << "record " << count << " of seed " << seed;
        worst = {std::max(worst.milliseconds, cost.milliseconds),
                 std::max(worst.bytes, cost.bytes)};
        if (!style)
            continue;
        ++styles;
        EXPECT_TRUE(isSound(*style));
        TESMARConfig::saveSessionClosedCaptureStyle(style);
        const auto again = TESMARConfig::sessionClosedCaptureStyle();
        ASSERT_TRUE(again) << "record " << count << " of seed " << seed;
        EXPECT_TRUE(again->isEqual(style.get()));
        EXPECT_EQ(NSKeyedArchiver::archivedDataWithRootObject(again),
                  NSKeyedArchiver::archivedDataWithRootObject(style));
    }
    RecordProperty("seed", seed);
    RecordProperty("records", count);
    EXPECT_EQ(count, wanted);
    RecordProperty("styles", styles);
    RecordProperty("most microseconds", static_cast<int>(1000 * worst.milliseconds));
    RecordProperty("most bytes", static_cast<int>(worst.bytes));
    EXPECT_GT(styles, count / 10);
}

} // namespace
} // namespace tesmar
