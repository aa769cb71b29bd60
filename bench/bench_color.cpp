/* Colour and compositing passes over the 12-megapixel fixture. */
#include <cstdint>

#include "fixture.h"
#include "vok/color.h"
#include "vok/tonal.h"

namespace {

VokHistMap s_curve() {
    VokHistMap map;
    for (int c = 0; c < 3; ++c)
        for (int v = 0; v < 256; ++v) map.table[c][v] = static_cast<uint8_t>(v < 128 ? v * v / 128 : 255 - (255 - v) * (255 - v) / 128);
    return map;
}

void BM_HistogramTransform(benchmark::State &state) {
    vok_bench::Photo photo;
    const VokHistMap map = s_curve();
    for (auto _ : state) VokBitmapHistogramTransform(&photo.bitmap, &map);
    vok_bench::report_pixels(state);
}
BENCHMARK(BM_HistogramTransform)->Unit(benchmark::kMillisecond);

void BM_ColorMatrixDiagonal(benchmark::State &state) {
    vok_bench::Photo photo;
    VokColorMatrix m = VokColorMatrixIdentity;
    VokColorMatrixBrightnessContrast(&m, 1.1f, 1.2f);
    for (auto _ : state) VokBitmapColorMatrixTransform(&photo.bitmap, &m);
    vok_bench::report_pixels(state);
}
BENCHMARK(BM_ColorMatrixDiagonal)->Unit(benchmark::kMillisecond);

void BM_ColorMatrixGeneral(benchmark::State &state) {
    vok_bench::Photo photo;
    VokColorMatrix m = VokColorMatrixIdentity;
    VokColorMatrixAdjSaturation(&m, 1.3f);
    VokColorMatrixContrast(&m, 0.1f);
    for (auto _ : state) {
        photo.reset_untimed(state);
        VokBitmapColorMatrixTransform(&photo.bitmap, &m);
    }
    vok_bench::report_pixels(state);
}
BENCHMARK(BM_ColorMatrixGeneral)->Unit(benchmark::kMillisecond);

void BM_BlendBitmap(benchmark::State &state) {
    vok_bench::Photo photo;
    const VokBlendMode mode = static_cast<VokBlendMode>(state.range(0));
    for (auto _ : state) {
        photo.reset_untimed(state);
        VokBitmapBlendBitmap(&photo.bitmap, &vok_bench::pristine(), mode, 0.75f);
    }
    vok_bench::report_pixels(state);
}
BENCHMARK(BM_BlendBitmap)
    ->ArgName("mode")
    ->Arg(kVokBlendNormal)
    ->Arg(kVokBlendMultiply)
    ->Arg(kVokBlendOverlay)
    ->Arg(kVokBlendSoft)
    ->Unit(benchmark::kMillisecond);

void BM_BlendWithColor(benchmark::State &state) {
    vok_bench::Photo photo;
    for (auto _ : state) {
        VokColor color = {230, 140, 60, 255};
        VokBitmapBlendWithColor(&photo.bitmap, &color, kVokBlendOverlay, 0.5f);
    }
    vok_bench::report_pixels(state);
}
BENCHMARK(BM_BlendWithColor)->Unit(benchmark::kMillisecond);

void BM_IntensityMap(benchmark::State &state) {
    vok_bench::Photo photo;
    const VokHistMap map = s_curve();
    for (auto _ : state) {
        photo.reset_untimed(state);
        VokBitmapIntensityMap(&photo.bitmap, &map, kVokBlendNormal, 0.8);
    }
    vok_bench::report_pixels(state);
}
BENCHMARK(BM_IntensityMap)->Unit(benchmark::kMillisecond);

void BM_ConvertRGBToLAB(benchmark::State &state) {
    vok_bench::Photo photo;
    for (auto _ : state) {
        photo.reset_untimed(state);
        VokBitmapConvertRGBToLAB(&photo.bitmap);
    }
    vok_bench::report_pixels(state);
}
BENCHMARK(BM_ConvertRGBToLAB)->Unit(benchmark::kMillisecond);

void BM_BlendBitmapMask(benchmark::State &state) {
    vok_bench::Photo photo, layer;
    VokHistMap invert;
    for (int v = 0; v < 256; ++v) invert.table[0][v] = invert.table[1][v] = invert.table[2][v] = static_cast<uint8_t>(255 - v);
    VokBitmapHistogramTransform(&layer.bitmap, &invert);
    VokBitmap mask;
    VokBitmapBuild(&mask, 400, 300);
    for (uint32_t i = 0; i < 400u * 300u; ++i) mask.pixels[4 * i + 3] = static_cast<uint8_t>(i % 400 * 255 / 399);
    for (auto _ : state)
        VokBitmapBlendBitmapMask(&photo.bitmap, &vok_bench::pristine(), &layer.bitmap, &mask, kVokBlendNormal);
    VokBitmapFree(&mask);
    vok_bench::report_pixels(state);
}
BENCHMARK(BM_BlendBitmapMask)->Unit(benchmark::kMillisecond);

}  // namespace
