// The time to store a style (its archive, and the preferences with and without a flush to disk) and
// to list the fonts on offer.
#include "tesmar/platform/foundation/archive/NSKeyedArchiver.h"
#include "tesmar/platform/foundation/archive/NSKeyedUnarchiver.h"
#include "tesmar/platform/foundation/defaults/NSUserDefaults.h"
#include "tesmar/platform/text/FontRegistry.h"
#include "tesmar/platform/text/UIFont.h"
#include "tesmar/tesmar.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <unistd.h>

namespace tesmar {
namespace {

Ref<NSDictionary> style() {
    return TESMARConfig::sessionOrDefaultClosedCaptureStyle();
}

void encodeStyle(benchmark::State& state) {
    const auto attributes = style();
    for (auto _ : state)
        benchmark::DoNotOptimize(NSKeyedArchiver::archivedDataWithRootObject(attributes));
}
BENCHMARK(encodeStyle)->Unit(benchmark::kMicrosecond);

void decodeStyle(benchmark::State& state) {
    const auto data = NSKeyedArchiver::archivedDataWithRootObject(style());
    for (auto _ : state)
        benchmark::DoNotOptimize(NSKeyedUnarchiver::unarchiveObjectWithData(data));
}
BENCHMARK(decodeStyle)->Unit(benchmark::kMicrosecond);

enum class Flush { no, yes };

template <Flush flush>
void save(benchmark::State& state) {
    std::string name = std::filesystem::temp_directory_path() / "tesmar-bench-XXXXXX";
    if (!mkdtemp(name.data()))
        return state.SkipWithError("no temporary directory");
    const std::filesystem::path directory = name;
    const auto defaults = NSUserDefaults::standardUserDefaults();
    defaults->setPreferencesPath((directory / "preferences.plist").string());
    const auto data = NSData::dataWithBytes(NSKeyedArchiver::archivedDataWithRootObject(style()));
    for (auto _ : state) {
        defaults->setObject(data, "style");
        if (flush == Flush::yes && !defaults->synchronize())
            state.SkipWithError("the save failed");
    }
    defaults->setPreferencesPath({});
    std::filesystem::remove_all(directory);
}
BENCHMARK(save<Flush::no>)->Name("save/unflushed")->Unit(benchmark::kMicrosecond);
BENCHMARK(save<Flush::yes>)->Name("save/flushed")->Unit(benchmark::kMicrosecond);

// With range(0) faces in the registry, among them all that the picker offers.
void supportedFonts(benchmark::State& state) {
    std::vector<std::string> names = CCConstants::CCFontsNameList();
    for (int i = static_cast<int>(names.size()); i < state.range(0); ++i)
        names.push_back("Face-" + std::to_string(i));
    FontRegistry::restrictTo(names);
    for (auto _ : state)
        benchmark::DoNotOptimize(UIFont::CCSupportedFonts());
    FontRegistry::reset();
}
BENCHMARK(supportedFonts)->RangeMultiplier(10)->Range(100, 10000)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace tesmar
