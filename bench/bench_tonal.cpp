/* Tonal adjustment on 12 megapixels: the five sliders, local contrast and
 * night enhancement, and the combined adjustment in its table and per-pixel
 * forms. The sliders work on a drifting image (their cost does not depend on
 * the levels); the local operations restore the photo first. */
#include "fixture.h"
#include "vok/tonal.h"

namespace {

void run_slider(benchmark::State &state, void (*slider)(VokBitmap *, int32_t, double),
                double amount) {
    vok_bench::Photo photo;
    for (auto _ : state) slider(&photo.bitmap, 0, amount);
    vok_bench::report_pixels(state);
}

template <typename Operation>
void run_restored(benchmark::State &state, Operation operation) {
    vok_bench::Photo photo;
    for (auto _ : state) {
        photo.reset_untimed(state);
        operation(&photo.bitmap);
    }
    vok_bench::report_pixels(state);
}

}  // namespace

static void BM_ToolBrightness(benchmark::State &state) { run_slider(state, VokToolBrightness, 40.0); }
static void BM_ToolContrast(benchmark::State &state) { run_slider(state, VokToolContrast, 40.0); }
static void BM_ToolSaturation(benchmark::State &state) { run_slider(state, VokToolSaturation, 40.0); }
static void BM_ToolWarmth(benchmark::State &state) { run_slider(state, VokToolWarmth, 40.0); }
static void BM_ToolSharpness(benchmark::State &state) { run_slider(state, VokToolSharpness, 0.5); }
BENCHMARK(BM_ToolBrightness)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ToolContrast)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ToolSaturation)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ToolWarmth)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ToolSharpness)->Unit(benchmark::kMillisecond);

static void BM_LocalContrastEnhance(benchmark::State &state) {
    run_restored(state, VokLocalContrastEnhance);
}
static void BM_NightEnhance(benchmark::State &state) { run_restored(state, VokNightEnhance); }
BENCHMARK(BM_LocalContrastEnhance)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_NightEnhance)->Unit(benchmark::kMillisecond);

// Without saturation the adjustment folds into one table; with it, one
// per-pixel pass of map, matrix and blend.
static void BM_AdjustCombinedTable(benchmark::State &state) {
    run_restored(state, [](VokBitmap *bitmap) {
        VokToolAdjustBrightnessContrastWarmthSaturation(bitmap, -15.0, 40.0, 0.0, 0.0, 0, 1.0f);
    });
}
static void BM_AdjustCombinedPerPixel(benchmark::State &state) {
    run_restored(state, [](VokBitmap *bitmap) {
        VokToolAdjustBrightnessContrastWarmthSaturation(bitmap, -15.0, 40.0, 30.0, 25.0, 0, 0.8f);
    });
}
BENCHMARK(BM_AdjustCombinedTable)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_AdjustCombinedPerPixel)->Unit(benchmark::kMillisecond);

// The automatic enhancements measure the photo, so each starts from it.
static void BM_LabCorrect(benchmark::State &state) {
    run_restored(state, [](VokBitmap *b) { VokLabCorrect(b, 1.0f); });
}
static void BM_VaryingContrast(benchmark::State &state) {
    run_restored(state, [](VokBitmap *b) { VokVaryingContrast(b, 1.0f); });
}
static void BM_AutoColorsFadeMaxColor(benchmark::State &state) {
    const VokColor warm = {255, 236, 206, 255};
    run_restored(state, [&warm](VokBitmap *b) { VokAutoColorsFadeMaxColor(b, 1.0, &warm); });
}
BENCHMARK(BM_LabCorrect)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_VaryingContrast)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_AutoColorsFadeMaxColor)->Unit(benchmark::kMillisecond);
