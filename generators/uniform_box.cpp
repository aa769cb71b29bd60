// Uniform box filters along one axis from running sums (cost independent of
// the radius), and a motion blur along any angle.
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "core/bitmap_checks.h"
#include "core/numeric.h"
#include "core/fixed_sine.h"
#include "vok/generators.h"

namespace {

// Radii past this cover any line many times over; the bound keeps a box's
// sum of bytes within 32 bits.
constexpr int64_t kMaxRadius = int64_t{1} << 20;

int64_t box_radius(const VokBitmap *bitmap, float amount) {
    const double s = static_cast<float>(bitmap->width + bitmap->height) * 2.5e-5 * amount;
    const int64_t r = vok::trunc_to<int64_t>(s < 0.0 ? -s : s);
    return r > kMaxRadius ? kMaxRadius : r;
}

// The rounded box mean (sum + width / 2) / width as a multiply and a shift,
// exact for every sum of a box of up to 2^23 pixels: the error of the
// rounded-up reciprocal stays below 256 width / 2^55 < 1 / width. Wider
// boxes divide.
struct BoxMean {
    uint64_t width, half, multiplier;
    bool exact;

    explicit BoxMean(uint64_t w)
        : width(w),
          half(w / 2),
          multiplier(((uint64_t{1} << 55) + w - 1) / w),
          exact(w <= (uint64_t{1} << 23)) {}

    int32_t operator()(uint32_t sum) const {
        const uint64_t n = sum + half;
        return static_cast<int32_t>(exact ? (n * multiplier) >> 55 : n / width);
    }
};

inline uint8_t filtered(int32_t original, int32_t mean, bool sharpen) {
    const int32_t v = sharpen ? (3 * original - mean + 1) / 2 : mean;
    return static_cast<uint8_t>(v < 0 ? 0 : v > 255 ? 255 : v);
}

// Sums of the window around position 0 of a line whose pixels are
// `line(i)` (i from 0 to last): r + 1 copies of the first, r to its right,
// the last repeated past the end.
template <typename Line>
void first_window(uint32_t *sums, int64_t r, int64_t last, Line line) {
    const int64_t inside = r < last ? r : last;
    for (int c = 0; c < 3; ++c) {
        uint32_t sum = static_cast<uint32_t>(r + 1) * line(0)[c];
        for (int64_t i = 1; i <= inside; ++i) sum += line(i)[c];
        sums[c] = sum + static_cast<uint32_t>(r - inside) * line(last)[c];
    }
}

void filter_rows(VokBitmap *bitmap, int64_t r, bool sharpen, uint8_t *row_copy) {
    const int64_t last = static_cast<int64_t>(bitmap->width) - 1;
    const BoxMean mean(static_cast<uint64_t>(2 * r + 1));
    uint8_t *row = bitmap->pixels;
    for (uint32_t y = 0; y < bitmap->height; ++y, row += 4 * size_t{bitmap->width}) {
        memcpy(row_copy, row, 4 * size_t{bitmap->width});
        auto at = [row_copy](int64_t i) { return row_copy + 4 * i; };
        uint32_t sums[3];
        first_window(sums, r, last, at);
        for (int64_t x = 0; x <= last; ++x) {
            const uint8_t *in = at(x), *enter = at(x + r + 1 < last ? x + r + 1 : last);
            const uint8_t *leave = at(x - r > 0 ? x - r : 0);
            for (int c = 0; c < 3; ++c) {
                row[4 * x + c] = filtered(in[c], mean(sums[c]), sharpen);
                sums[c] += enter[c] - leave[c];
            }
        }
    }
}

// Columns all at once, row by row from a copy of the photo, so every access
// runs along memory.
void filter_columns(VokBitmap *bitmap, int64_t r, bool sharpen, const uint8_t *copy,
                    uint32_t *sums) {
    const int64_t last = static_cast<int64_t>(bitmap->height) - 1;
    const size_t stride = 4 * size_t{bitmap->width};
    const BoxMean mean(static_cast<uint64_t>(2 * r + 1));
    for (uint32_t x = 0; x < bitmap->width; ++x)
        first_window(sums + 3 * size_t{x}, r, last,
                     [&](int64_t i) { return copy + i * stride + 4 * size_t{x}; });
    for (int64_t y = 0; y <= last; ++y) {
        const uint8_t *in = copy + y * stride;
        const uint8_t *enter = copy + (y + r + 1 < last ? y + r + 1 : last) * stride;
        const uint8_t *leave = copy + (y - r > 0 ? y - r : 0) * stride;
        uint8_t *out = bitmap->pixels + y * stride;
        for (uint32_t x = 0; x < bitmap->width; ++x) {
            uint32_t *sum = sums + 3 * size_t{x};
            for (int c = 0; c < 3; ++c) {
                const size_t at = 4 * size_t{x} + c;
                out[at] = filtered(in[at], mean(sum[c]), sharpen);
                sum[c] += enter[at] - leave[at];
            }
        }
    }
}

void uniform_pass(VokBitmap *bitmap, float amount, bool rows) {
    if (!vok::usable(bitmap) || !(amount == amount)) return;
    const int64_t r = box_radius(bitmap, amount);
    if (r == 0) return;
    if (rows) {
        uint8_t *row_copy = static_cast<uint8_t *>(malloc(4 * size_t{bitmap->width}));
        if (row_copy == nullptr) return;
        filter_rows(bitmap, r, amount > 0, row_copy);
        free(row_copy);
        return;
    }
    const size_t bytes = 4 * size_t{bitmap->width} * bitmap->height;
    uint8_t *copy = static_cast<uint8_t *>(malloc(bytes));
    uint32_t *sums = static_cast<uint32_t *>(malloc(3 * sizeof(uint32_t) * bitmap->width));
    if (copy != nullptr && sums != nullptr) {
        memcpy(copy, bitmap->pixels, bytes);
        filter_columns(bitmap, r, amount > 0, copy, sums);
    }
    free(sums);
    free(copy);
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
