// Hostile stored records: each decodes in about a millisecond and a mebibyte, to null or to a style
// that can be saved again. TESMAR_SOAK=N tries N times as many.
#include "tesmar/model/CCConstants.h"
#include "tesmar/model/TESMARConfig.h"
#include "tesmar/platform/foundation/defaults/NSUserDefaults.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/foundation/scalars.h"
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/text/UIFont.h"
#include "tests/platform/measured.h"
#include "tests/platform/sanitized.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>

namespace tesmar {
namespace {

// For slower machines than the one the limit was measured on.
constexpr double kSlack = test::kSanitized ? 40 : 2;

bool isSound(const NSObject& object) {
    if (const auto* dictionary = dynamic_cast<const NSDictionary*>(&object))
        return std::ranges::all_of(dictionary->entries(),
                                   [](auto& entry) { return isSound(*entry.second); });
    if (const auto* c = dynamic_cast<const UIColor*>(&object))
        return std::ranges::all_of(std::array{c->red(), c->green(), c->blue(), c->alpha()},
                                   [](double x) { return x >= 0 && x <= 1; });
    if (const auto* font = dynamic_cast<const UIFont*>(&object))
        return font->pointSize() > 0 && font->pointSize() <= UIFont::kLargestSize;
    const auto* number = dynamic_cast<const NSNumber*>(&object);
    return object.isa().hasCoding() && (!number || std::isfinite(number->doubleValue()));
}

std::string nextRecord(std::FILE* from) {
    std::size_t size = 0;
    if (std::fscanf(from, "%zu;", &size) != 1)
        return {};
    std::string record(size, '\0');
    EXPECT_EQ(std::fread(record.data(), 1, record.size(), from), record.size());
    return record;
}

TEST(StoredStyle, HostileRecordsDecodeCheaplyToNullOrAValidStyle) {
    const auto defaults = NSUserDefaults::standardUserDefaults();
    defaults->setPreferencesPath("/dev/null/nowhere"); // values stay in memory
    TESMARConfig::sessionOrDefaultClosedCaptureStyle();
    UIFont::systemFontOfSize(1); // reads the fonts, once
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
        defaults->setObject(NSData::dataWithBytes(record), "CCSessionStyleUserDefaultsKey");
        Ref<NSDictionary> style;
        test::Cost cost{1e9, 0};
        for (int i = 0; i < 10 && cost.milliseconds > 0.5; ++i) { // until undisturbed
            const auto next =
                test::measured([&] { style = TESMARConfig::sessionClosedCaptureStyle(); });
            cost.milliseconds = std::min(cost.milliseconds, next.milliseconds);
            // Subtract the copy of the record that the store makes.
            cost.bytes = next.bytes - std::min(next.bytes, record.size());
        }
        SCOPED_TRACE("record " + std::to_string(count) + " of seed " + seed);
        EXPECT_LT(cost.milliseconds, kSlack);
        EXPECT_LT(cost.bytes, 1 << 20);
        worst.milliseconds = std::max(worst.milliseconds, cost.milliseconds);
        worst.bytes = std::max(worst.bytes, cost.bytes);
        if (!style)
            continue;
        ++styles;
        EXPECT_TRUE(isSound(*style));
        TESMARConfig::saveSessionClosedCaptureStyle(style);
        ASSERT_TRUE(style->isEqual(TESMARConfig::sessionClosedCaptureStyle().get()));
    }
    EXPECT_EQ(count, wanted);
    RecordProperty("styles", styles);
    RecordProperty("most microseconds", static_cast<int>(1000 * worst.milliseconds));
    RecordProperty("most bytes", static_cast<int>(worst.bytes));
    EXPECT_GT(styles, count / 10);
}

TEST(StoredStyle, ASaveIsFlushedAndItsFailureKnownInEveryCase) {
    std::string directory = (std::filesystem::temp_directory_path() / "style-XXXXXX").string();
    ASSERT_TRUE(::mkdtemp(directory.data()));
    const auto defaults = NSUserDefaults::standardUserDefaults();
    const auto other = make<NSUserDefaults>();
    for (const auto& store : {defaults, other})
        store->setPreferencesPath(directory + "/p.plist");
    int diagnostics = 0;
    setDiagnosticHandler([&](std::string_view) { ++diagnostics; });
    const auto text = [](std::size_t size) {
        return NSDictionary::dictionaryWithEntries(
            {{"key", NSString::stringWithString(std::string(size, 'x'))}});
    };
    TESMARConfig::saveSessionClosedCaptureStyle(text(3));
    EXPECT_EQ(TESMARConfig::saveFailure(), "");
    defaults->setObject(NSNumber::numberWith(1LL), "other");
    TESMARConfig::saveSessionClosedCaptureStyle(text(17'000'000));
    EXPECT_TRUE(other->objectForKey("other")) << "not flushed";
    EXPECT_NE(TESMARConfig::saveFailure().find("too large"), std::string::npos);
    EXPECT_TRUE(TESMARConfig::sessionClosedCaptureStyle()->isEqual(text(3).get()));
    defaults->setPreferencesPath("/dev/null/nowhere");
    TESMARConfig::saveSessionClosedCaptureStyle(text(4));
    EXPECT_NE(TESMARConfig::saveFailure().find("Not a directory"), std::string::npos);
    EXPECT_EQ(diagnostics, 2);
    setDiagnosticHandler({});
    std::filesystem::remove_all(directory);
}

} // namespace
} // namespace tesmar
