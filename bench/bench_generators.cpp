/* Generated effects on the 12-megapixel fixture: noise, the box-hybrid
 * filter, gradients, gradient maps and gradient flares. */
#include "fixture.h"
#include "vok/generators.h"

static void BM_AddNoise(benchmark::State &state) {
    vok_bench::Photo photo;
    for (auto _ : state) {
        photo.reset_untimed(state);
        VokBitmapAddNoise(&photo.bitmap, 0.1f, 42u);
    }
    vok_bench::report_pixels(state);
}
BENCHMARK(BM_AddNoise)->Unit(benchmark::kMillisecond);

static void BM_BoxHybridSharpen(benchmark::State &state) {
    vok_bench::Photo photo;
    const float amount = static_cast<float>(state.range(0));
    for (auto _ : state) {
        photo.reset_untimed(state);
        VokConvolutionEffectBoxHybridSharpen(&photo.bitmap, amount);
    }
    vok_bench::report_pixels(state);
}
BENCHMARK(BM_BoxHybridSharpen)->Arg(100)->Arg(-100)->Unit(benchmark::kMillisecond);
