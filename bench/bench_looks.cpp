/* The bundled looks on the 12-megapixel photo (one case per look, MP/s and
 * the number of steps), loading the largest description, and the vignette
 * and flare engines on their own. */
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fixture.h"
#include "vok/effects.h"
#include "vok/generators.h"

namespace {

namespace fs = std::filesystem;

std::string read_text(const fs::path &path) {
    std::ifstream file(path);
    return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
}

std::vector<fs::path> bundled_looks() {
    std::vector<fs::path> looks;
    std::error_code ec;
    for (fs::directory_iterator it(VOK_EXAMPLES_DIR "/effects", ec), end; !ec && it != end;
         it.increment(ec))
        if (it->path().extension() == ".json") looks.push_back(it->path());
    std::sort(looks.begin(), looks.end());
    return looks;
}

void run_look(benchmark::State &state, const std::string &text, size_t steps) {
    VokJsonValue effect = TESKLoadEffect(text.c_str());
    if (effect == nullptr) {
        state.SkipWithError("the description does not load");
        return;
    }
    VokEffectParams params;
    VokEffectInitParams(&params);
    vok_bench::Photo photo;
    for (auto _ : state) {
        photo.reset_untimed(state);
        TESKRunEffect(effect, &photo.bitmap, &params);
    }
    TESKUnloadEffect(&effect);
    state.counters["steps"] = static_cast<double>(steps);
    vok_bench::report_pixels(state);
}

void load_largest(benchmark::State &state, const std::string &text) {
    for (auto _ : state) {
        VokJsonValue effect = TESKLoadEffect(text.c_str());
        benchmark::DoNotOptimize(effect);
        TESKUnloadEffect(&effect);
    }
    state.counters["bytes"] = static_cast<double>(text.size());
}

const bool registered = [] {
    std::string largest;
    for (const fs::path &path : bundled_looks()) {
        const std::string text = read_text(path);
        if (text.size() > largest.size()) largest = text;
        size_t steps = 0;
        // One "name" key per processor object.
        for (size_t at = text.find("\"name\""); at != std::string::npos;
             at = text.find("\"name\"", at + 1))
            ++steps;
        benchmark::RegisterBenchmark(("BM_Look/" + path.stem().string()).c_str(), run_look, text,
                                     steps)
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::RegisterBenchmark("BM_LoadLargestLook", load_largest, largest)
        ->Unit(benchmark::kMicrosecond);
    return true;
}();

}  // namespace

static void BM_Vignette(benchmark::State &state) {
    vok_bench::Photo photo;
    VokBorderParams border;
    VokBorderInitParams(&border);
    border.color = VokColor{30, 20, 10, 220};
    border.blendMode = static_cast<VokBlendMode>(state.range(0));
    border.scale = 1.3;
    for (auto _ : state) {
        photo.reset_untimed(state);
        VokBorders(&photo.bitmap, &border);
    }
    vok_bench::report_pixels(state);
}
BENCHMARK(BM_Vignette)->Arg(kVokBlendMultiply)->Arg(kVokBlendColor)->Unit(benchmark::kMillisecond);

static void BM_Flare(benchmark::State &state) {
    vok_bench::Photo photo;
    const uint32_t type = static_cast<uint32_t>(state.range(0));
    for (auto _ : state) {
        photo.reset_untimed(state);
        VokFlare(&photo.bitmap, 0.6f, VokColor{255, 200, 140, 200}, type, 0.7f, 0.3f, 1.0f, 1.0f,
                 kVokBlendScreen, 1.0);
    }
    vok_bench::report_pixels(state);
}
BENCHMARK(BM_Flare)
    ->Arg(kVokFlareGaussianThing3)
    ->Arg(kVokFlareStardom)
    ->Arg(kVokFlareLobes)
    ->Arg(kVokFlareCross)
    ->Arg(kVokFlareBlobFlare)
    ->Unit(benchmark::kMillisecond);

// Every named preset through "legacyProcessor" on 12 megapixels.
static void BM_LegacyPreset(benchmark::State &state) {
    const std::string name = TESKLegacyPresetName(static_cast<uint32_t>(state.range(0)));
    const std::string json = R"({"identifier":"p","processors":[{"name":"legacyProcessor",)"
                             R"("parameters":{"legacyName":")" + name + R"("}}]})";
    VokJsonValue effect = TESKLoadEffect(json.c_str());
    VokEffectParams params;
    VokEffectInitParams(&params);
    vok_bench::Photo photo;
    for (auto _ : state) {
        photo.reset_untimed(state);
        TESKRunEffect(effect, &photo.bitmap, &params);
    }
    TESKUnloadEffect(&effect);
    state.SetLabel(name);
    vok_bench::report_pixels(state);
}
BENCHMARK(BM_LegacyPreset)->DenseRange(0, 37)->Unit(benchmark::kMillisecond);
