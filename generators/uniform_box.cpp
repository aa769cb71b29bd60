// Uniform box filters along one axis from running sums (cost independent of
// the radius), and a motion blur along any angle.
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "core/bitmap_checks.h"
#include "core/numeric.h"
#include "generators/fixed_sine.h"
#include "vok/generators.h"

namespace {

// Radii past this cover any line many times over; the bound keeps the sums small.
constexpr int64_t kMaxRadius = int64_t{1} << 20;

int64_t box_radius(const VokBitmap *bitmap, float amount) {
    const double s = static_cast<float>(bitmap->width + bitmap->height) * 2.5e-5 * amount;
    const int64_t r = vok::trunc_to<int64_t>(s < 0.0 ? -s : s);
    return r > kMaxRadius ? kMaxRadius : r;
}

// Filters every line of `count` lines of `length` pixels, `step` bytes apart
// along a line and `line_step` bytes from line to line, through `scratch`
// (one line of pixels).
void filter_lines(uint8_t *first, uint32_t count, uint32_t length, size_t step, size_t line_step,
                  int64_t r, bool sharpen, uint8_t *scratch) {
    const int64_t last = static_cast<int64_t>(length) - 1, width = 2 * r + 1;
    for (uint32_t line = 0; line < count; ++line, first += line_step) {
        for (uint32_t i = 0; i < length; ++i) memcpy(scratch + 4 * size_t{i}, first + i * step, 4);
        for (int c = 0; c < 3; ++c) {
            auto in = [&](int64_t i) -> uint64_t {
                return scratch[4 * (i < 0 ? 0 : i > last ? last : i) + c];
            };
            // Window of x = 0: r + 1 copies of the first pixel and r to its right.
            uint64_t sum = static_cast<uint64_t>(r + 1) * in(0);
            const int64_t inside = r < last ? r : last;
            for (int64_t i = 1; i <= inside; ++i) sum += in(i);
            sum += static_cast<uint64_t>(r - inside) * in(last);
            uint8_t *out = first + c;
            for (int64_t x = 0; x <= last; ++x, out += step) {
                const int64_t blurred = static_cast<int64_t>((sum + width / 2) / width);
                const int64_t o = in(x);
                const int64_t v = sharpen ? (3 * o - blurred + 1) / 2 : blurred;
                *out = static_cast<uint8_t>(v < 0 ? 0 : v > 255 ? 255 : v);
                sum += in(x + r + 1) - in(x - r);
            }
        }
    }
}

void uniform_pass(VokBitmap *bitmap, float amount, bool rows) {
    if (!vok::usable(bitmap) || !(amount == amount)) return;
    const int64_t r = box_radius(bitmap, amount);
    if (r == 0) return;
    const uint32_t length = rows ? bitmap->width : bitmap->height;
    uint8_t *scratch = static_cast<uint8_t *>(malloc(size_t{4} * length));
    if (scratch == nullptr) return;
    const size_t row_bytes = size_t{4} * bitmap->width;
    if (rows)
        filter_lines(bitmap->pixels, bitmap->height, length, 4, row_bytes, r, amount > 0, scratch);
    else
        filter_lines(bitmap->pixels, bitmap->width, length, row_bytes, 4, r, amount > 0, scratch);
    free(scratch);
}

// Angles in 65536ths of a turn, sines and cosines scaled by 2^16.
constexpr int64_t kTurn = 65536, kUnit = 65536;

}  // namespace

extern "C" {

void VokConvolutionEffectsUniformSharpenX(VokBitmap *bitmap, float amount) {
    uniform_pass(bitmap, amount, true);
}

void VokConvolutionEffectsUniformSharpenY(VokBitmap *bitmap, float amount) {
    uniform_pass(bitmap, amount, false);
}

void VokConvolutionEffectsMotionBlur(VokBitmap *bitmap, float length, float angle) {
    if (!vok::usable(bitmap) || !std::isfinite(length) || !std::isfinite(angle)) return;
    const int32_t samples = length >= 1024.0f ? 1024
                            : length < 1.0f   ? 1
                                              : static_cast<int32_t>(length);
    if (samples == 1) return;
    const int64_t turn = vok::trunc_to<int64_t>(
        fmod(static_cast<double>(angle), 6.283185307179586) * (kTurn / 6.283185307179586));
    const int64_t cosine = vok::full_sine(turn + kTurn / 4, kTurn, kUnit);
    const int64_t sine = vok::full_sine(turn, kTurn, kUnit);
    // Offsets of the samples along the line, centred on the pixel, rounded.
    int32_t *offsets = static_cast<int32_t *>(malloc(sizeof(int32_t) * 2 * samples));
    uint8_t *copy = static_cast<uint8_t *>(malloc(size_t{4} * bitmap->width * bitmap->height));
    if (offsets == nullptr || copy == nullptr) {
        free(offsets);
        free(copy);
        return;
    }
    for (int32_t k = 0; k < samples; ++k) {
        const int64_t t = 2 * k - (samples - 1);  // twice the distance from the centre
        auto rounded = [](int64_t v) {
            return static_cast<int32_t>(v >= 0 ? (v + kUnit) / (2 * kUnit)
                                               : -((-v + kUnit) / (2 * kUnit)));
        };
        offsets[2 * k] = rounded(t * cosine);
        offsets[2 * k + 1] = rounded(t * sine);
    }
    const int32_t w = static_cast<int32_t>(bitmap->width), h = static_cast<int32_t>(bitmap->height);
    memcpy(copy, bitmap->pixels, size_t{4} * w * h);
    uint8_t *out = bitmap->pixels;
    for (int32_t y = 0; y < h; ++y) {
        for (int32_t x = 0; x < w; ++x, out += 4) {
            uint32_t sum[3] = {};
            for (int32_t k = 0; k < samples; ++k) {
                const int32_t sx = vok::clamp_int(x + offsets[2 * k], 0, w - 1);
                const int32_t sy = vok::clamp_int(y + offsets[2 * k + 1], 0, h - 1);
                const uint8_t *p = copy + 4 * (size_t{static_cast<uint32_t>(sy)} * w + sx);
                sum[0] += p[0], sum[1] += p[1], sum[2] += p[2];
            }
            for (int c = 0; c < 3; ++c)
                out[c] = static_cast<uint8_t>((sum[c] + samples / 2) / samples);
        }
    }
    free(copy);
    free(offsets);
}

}  // extern "C"
