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

namespace {

// A three-stop colour gradient with two opacity stops.
struct BenchGradient {
    VokColorStop colors[3] = {{{20, 40, 160, 255}, 0}, {{240, 200, 40, 255}, 55}, {{250, 80, 60, 255}, 100}};
    VokOpacityStop opacities[2] = {{1.0, 0}, {0.6, 100}};
    VokGradient gradient = {colors, opacities, 3, 2};
};

}  // namespace

static void BM_GradientMapApply(benchmark::State &state) {
    vok_bench::Photo photo;
    BenchGradient g;
    for (auto _ : state) {
        photo.reset_untimed(state);
        VokGradientMapApply(&photo.bitmap, &g.gradient, static_cast<uint32_t>(state.range(0)), 0,
                            kVokBlendOverlay, 0.8);
    }
    vok_bench::report_pixels(state);
}
// Variables: 0 intensity, 2 red channel.
BENCHMARK(BM_GradientMapApply)->Arg(0)->Arg(2)->Unit(benchmark::kMillisecond);

static void BM_GradientApply(benchmark::State &state) {
    vok_bench::Photo photo;
    BenchGradient g;
    VokGradientShapeParams params;
    VokGradientShapeParamsInit(&params);
    params.gradientShape = static_cast<int32_t>(state.range(0));
    params.angle = 0.3;
    params.vignetteSize = 0.8;
    for (auto _ : state) {
        photo.reset_untimed(state);
        VokGradientApply(&photo.bitmap, &params, &g.gradient, kVokBlendScreen, 0.9);
    }
    vok_bench::report_pixels(state);
}
// Shapes: 0 linear, 2 vignette-masked linear.
BENCHMARK(BM_GradientApply)->Arg(0)->Arg(2)->Unit(benchmark::kMillisecond);

static void BM_GradientFlareApply(benchmark::State &state) {
    vok_bench::Photo photo;
    BenchGradient g;
    double transform[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    double params[16] = {-4.0, 1.0, 0.1, -0.1, 0.2, 0.0};
    VokGradientFlareParams record;
    VokGradientFlareParamsInit(&record);
    record.shape = static_cast<int32_t>(state.range(0));
    record.transform = transform;
    record.params = params;
    record.gradient = &g.gradient;
    record.aspectMode = 0;
    record.wrapMode = 2;
    if (record.shape == 14) params[0] = 0.5;
    for (auto _ : state) {
        photo.reset_untimed(state);
        g.opacities[0].opacity = 1.0;
        g.opacities[1].opacity = 0.6;
        VokGradientFlareApply(&photo.bitmap, &record);
    }
    vok_bench::report_pixels(state);
}
// Shapes: 2 circle, 3 gaussian, 14 spiral.
BENCHMARK(BM_GradientFlareApply)->Arg(2)->Arg(3)->Arg(14)->Unit(benchmark::kMillisecond);

// Mosaics at their default cell size (146 pixels on 12 megapixels) and at 16.
static void BM_Mosaic(benchmark::State &state, void (*mosaic)(VokBitmap *, float)) {
    vok_bench::Photo photo;
    const float size = static_cast<float>(state.range(0));
    for (auto _ : state) {
        photo.reset_untimed(state);
        mosaic(&photo.bitmap, size);
    }
    vok_bench::report_pixels(state);
}
BENCHMARK_CAPTURE(BM_Mosaic, Pixelate, VokBlurModesPixelateProcessor)->Arg(0)->Arg(16)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Mosaic, Triangles, VokBlurModesTrianglesProcessor)->Arg(0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Mosaic, Circles, VokBlurModesCirclesProcessor)->Arg(0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Mosaic, Diamonds, VokBlurModesDiamondsProcessor)->Arg(0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Mosaic, Houndstooth, VokBlurModesHoundstoothProcessor)->Arg(0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Mosaic, Chevrons, VokBlurModesChevronsProcessor)->Arg(0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Mosaic, Sines, VokBlurModesSinesProcessor)->Arg(0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Mosaic, Scales, VokBlurModesScalesProcessor)->Arg(0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Mosaic, Bricks, VokBlurModesBricksProcessor)->Arg(0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Mosaic, Voronoi, VokBlurModesVoronoi)->Arg(0)->Arg(16)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Mosaic, Hearts, VokBlurModesHeartsProcessor)->Arg(0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Mosaic, Hexagons, VokBlurModesHexagons)->Arg(0)->Unit(benchmark::kMillisecond);

// The uniform box filter: the same cost at any radius (amount 10: 1 pixel, 1000: 175).
static void BM_UniformSharpen(benchmark::State &state, void (*pass)(VokBitmap *, float)) {
    vok_bench::Photo photo;
    const float amount = static_cast<float>(state.range(0));
    for (auto _ : state) pass(&photo.bitmap, -amount);
    vok_bench::report_pixels(state);
}
BENCHMARK_CAPTURE(BM_UniformSharpen, X, VokConvolutionEffectsUniformSharpenX)->Arg(10)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_UniformSharpen, Y, VokConvolutionEffectsUniformSharpenY)->Arg(10)->Arg(1000)->Unit(benchmark::kMillisecond);

// Each border style on 12 megapixels (vignette 15 included for comparison).
static void BM_BorderStyle(benchmark::State &state) {
    vok_bench::Photo photo;
    VokBorderParams params;
    VokBorderInitParams(&params);
    params.style = static_cast<uint32_t>(state.range(0));
    params.color = {250, 245, 238, 255};
    for (auto _ : state) {
        photo.reset_untimed(state);
        VokBorders(&photo.bitmap, &params);
    }
    vok_bench::report_pixels(state);
}
BENCHMARK(BM_BorderStyle)->DenseRange(kVokBorderHalftone, kVokBorderViewfinder)->Unit(benchmark::kMillisecond);

static void BM_FractalTexture(benchmark::State &state) {
    vok_bench::Photo photo;
    for (auto _ : state) {
        photo.reset_untimed(state);
        VokFractalTextureApply(&photo.bitmap, static_cast<uint32_t>(state.range(0)), 0.6f, 7u);
    }
    vok_bench::report_pixels(state);
}
BENCHMARK(BM_FractalTexture)->DenseRange(kVokTextureGrain, kVokTextureDust)->Unit(benchmark::kMillisecond);
