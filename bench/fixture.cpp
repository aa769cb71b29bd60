#include "fixture.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

namespace vok_bench {
namespace {

uint8_t clamp_byte(float v) {
    return v <= 0.0f ? 0 : v >= 255.0f ? 255 : static_cast<uint8_t>(v);
}

/* Sky-like vertical gradient, warm horizontal falloff, a few broad waves
 * standing in for objects, plus grain from a fixed xorshift sequence. */
VokBitmap make_photo() {
    VokBitmap image{};
    if (!VokBitmapBuild(&image, kWidth, kHeight)) abort();
    float column_wave[kWidth];
    for (uint32_t x = 0; x < kWidth; ++x)
        column_wave[x] = 40.0f * sinf(static_cast<float>(x) * 0.0031f) +
                         15.0f * sinf(static_cast<float>(x) * 0.021f);
    uint32_t noise = 0x9e3779b9u;
    for (uint32_t y = 0; y < kHeight; ++y) {
        const float fy = static_cast<float>(y) / kHeight;
        const float row_wave = 30.0f * cosf(static_cast<float>(y) * 0.0047f);
        uint8_t *p = image.pixels + size_t{4} * kWidth * y;
        for (uint32_t x = 0; x < kWidth; ++x, p += 4) {
            const float fx = static_cast<float>(x) / kWidth;
            noise ^= noise << 13;
            noise ^= noise >> 17;
            noise ^= noise << 5;
            const float grain = static_cast<float>(noise & 31u) - 16.0f;
            const float shape = column_wave[x] + row_wave;
            p[0] = clamp_byte(60.0f + 150.0f * fx + shape + grain);
            p[1] = clamp_byte(90.0f + 80.0f * fy + 0.6f * shape + grain);
            p[2] = clamp_byte(200.0f - 140.0f * fy - 0.5f * shape + grain);
            p[3] = 255;
        }
    }
    return image;
}

}  // namespace

const VokBitmap &pristine() {
    static const VokBitmap image = make_photo();
    return image;
}

Photo::Photo() : bitmap{} {
    if (!VokBitmapBuild(&bitmap, kWidth, kHeight) || !VokBitmapCopy(&bitmap, &pristine()))
        abort();
}

Photo::~Photo() { VokBitmapFree(&bitmap); }

void Photo::reset() { memcpy(bitmap.pixels, pristine().pixels, kBytes); }

void Photo::reset_untimed(benchmark::State &state) {
    state.PauseTiming();
    reset();
    state.ResumeTiming();
}

void report_pixels(benchmark::State &state, size_t pixels) {
    const double count = static_cast<double>(state.iterations()) * static_cast<double>(pixels);
    state.SetBytesProcessed(static_cast<int64_t>(count * 4.0));
    state.counters["MP/s"] = benchmark::Counter(count / 1e6, benchmark::Counter::kIsRate);
}

}  // namespace vok_bench
