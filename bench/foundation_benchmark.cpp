// How long the everyday operations of the foundation take: a text lookup, a settings read of an
// unchanged file (the cost paid at every use of a setting), a durable settings write, and the
// parse of one language's table at start-up.
#include <benchmark/benchmark.h>

#include <unistd.h>

#include <cstdlib>

#include "localization/localization.h"
#include "services/file_contents.h"
#include "services/plist_file_store_linux.h"
#include "services/user_defaults.h"

namespace vantle {
namespace {

const Bundle& sourceBundle() {
    static const Bundle bundle(VANTLE_SOURCE_RESOURCES, {});
    return bundle;
}

std::filesystem::path scratchFile() {
    static const std::filesystem::path file = [] {
        std::string pattern = (std::filesystem::temp_directory_path() / "vantle-bench-XXXXXX").string();
        return std::filesystem::path(::mkdtemp(pattern.data())) / "defaults.plist";
    }();
    return file;
}

void textLookupWithArgument(benchmark::State& state) {
    const StringTable french = Localization::table("fr", sourceBundle());
    const StringTable english = Localization::table("en", sourceBundle());
    for (auto _ : state) {
        std::string text = Localization::format(Localization::text("s144", french, english), {describe(2)});
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(textLookupWithArgument);

void settingsReadOfUnchangedFile(benchmark::State& state) {
    PlistFileStore store(scratchFile());
    UserDefaults defaults(store);
    defaults.set("softwareBrightness", true);
    defaults.set("mutedLevels", PlistValue::Dictionary{{"sink", PlistValue::Array{0.5, 0.5}}});
    for (auto _ : state) {
        benchmark::DoNotOptimize(defaults.boolean("softwareBrightness"));
    }
}
BENCHMARK(settingsReadOfUnchangedFile);

void settingsDurableWrite(benchmark::State& state) {
    PlistFileStore store(scratchFile());
    UserDefaults defaults(store);
    bool value = false;
    for (auto _ : state) {
        value = !value;
        defaults.set("linked", value);
    }
}
BENCHMARK(settingsDurableWrite)->Unit(benchmark::kMicrosecond);

void parseOneLanguageTable(benchmark::State& state) {
    const std::string bytes = *readFileContents(sourceBundle().resourceDirectory() / "ru.lproj/Localizable.strings");
    for (auto _ : state) {
        benchmark::DoNotOptimize(parseStringsFile(bytes));
    }
}
BENCHMARK(parseOneLanguageTable)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vantle

BENCHMARK_MAIN();
