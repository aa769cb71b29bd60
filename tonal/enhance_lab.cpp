// Automatic colour and tone in scaled LAB: the photo is converted in place,
// measured, mapped channel by channel and converted back.
#include <cmath>
#include <cstdlib>

#include "tonal/tonal_internal.h"
#include "vok/color.h"

namespace {

// Near-neutral pixels judge the colour cast: a and b within kNeutralReach of
// neutral, and lightness off the extremes (deep shadows are noisy, highlights
// clipped). A first look takes a wider reach around 127, then the cast it
// finds is measured again from the pixels near that estimate.
constexpr int kFirstReach = 16, kNeutralReach = 10;
constexpr int kNeutralDarkest = 26, kNeutralLightest = 242;
// The white balance moves a and b by at most this.
constexpr int kMaxShift = 10;

struct Neutrals {
    uint64_t count = 0, sum_a = 0, sum_b = 0;
};

// The pixels whose a and b lie within `reach` of (centre_a, centre_b).
Neutrals neutrals(const VokBitmap *bitmap, int centre_a, int centre_b, int reach) {
    Neutrals n;
    const uint8_t *p = bitmap->pixels;
    const size_t pixels = static_cast<size_t>(bitmap->width) * bitmap->height;
    for (size_t i = 0; i < pixels; ++i, p += 4) {
        if (std::abs(p[1] - centre_a) > reach || std::abs(p[2] - centre_b) > reach ||
            p[0] < kNeutralDarkest || p[0] > kNeutralLightest)
            continue;
        ++n.count;
        n.sum_a += p[1];
        n.sum_b += p[2];
    }
    return n;
}

// 127 minus the mean, rounded half away from zero.
int neutral_shift(uint64_t sum, uint64_t count) {
    const int64_t twice = 254 * static_cast<int64_t>(count) - 2 * static_cast<int64_t>(sum);
    const int64_t c = static_cast<int64_t>(count);
    return static_cast<int>(twice >= 0 ? (twice + c) / (2 * c) : -((-twice + c) / (2 * c)));
}

int limited(int shift) {
    return shift < -kMaxShift ? -kMaxShift : shift > kMaxShift ? kMaxShift : shift;
}

// The a and b shifts that bring the near-neutral pixels to neutral; none
// when fewer than one pixel in a hundred is near neutral.
void white_balance(const VokBitmap *bitmap, int *shift_a, int *shift_b) {
    *shift_a = *shift_b = 0;
    const uint64_t enough = (static_cast<uint64_t>(bitmap->width) * bitmap->height + 99) / 100;
    const Neutrals wide = neutrals(bitmap, 127, 127, kFirstReach);
    if (wide.count < enough) return;
    const Neutrals close = neutrals(bitmap, 127 - neutral_shift(wide.sum_a, wide.count),
                                    127 - neutral_shift(wide.sum_b, wide.count), kNeutralReach);
    if (close.count < enough) return;
    *shift_a = limited(neutral_shift(close.sum_a, close.count));
    *shift_b = limited(neutral_shift(close.sum_b, close.count));
}

// x^(e / 4) for e = 2..6 through square roots and products only, which round
// the same on every machine.
double quarter_power(double x, int e) {
    const double r2 = sqrt(x), r4 = sqrt(r2);
    switch (e) {
        case 2:
            return r2;
        case 3:
            return r2 * r4;
        case 5:
            return x * r4;
        case 6:
            return x * r2;
        default:
            return x;
    }
}

// The stretched lightness with the quarter-step gamma (1/2 to 3/2) that puts
// the median nearest half-way between where it is and mid-grey.
void lightness_map(const uint32_t *counts, uint64_t total, uint8_t *table) {
    uint8_t stretched[256];
    vok::stretch_levels(counts, total, stretched);
    const double median = stretched[vok::level_at(counts, total, 5000)] / 255.0;
    const double target = (median + 0.5) / 2.0;
    int best = 4;
    for (int e = 2; e <= 6; ++e)
        if (fabs(quarter_power(median, e) - target) < fabs(quarter_power(median, best) - target))
            best = e;
    for (int v = 0; v < 256; ++v)
        table[v] = static_cast<uint8_t>(quarter_power(stretched[v] / 255.0, best) * 255.0 + 0.5);
}

uint8_t shifted(int v, int shift) {
    const int s = v + shift;
    return static_cast<uint8_t>(s < 0 ? 0 : s > 255 ? 255 : s);
}

}  // namespace

extern "C" {

void VokLabCorrect(VokBitmap *bitmap, float strength) {
    double s;
    if (!vok::enhancement_applies(bitmap, strength, &s)) return;
    VokBitmapConvertRGBToLAB(bitmap);
    uint32_t counts[768] = {};
    VokHistogramBuild(bitmap, counts);
    int shift_a, shift_b;
    white_balance(bitmap, &shift_a, &shift_b);
    uint8_t l[256], a[256], b[256];
    lightness_map(counts, static_cast<uint64_t>(bitmap->width) * bitmap->height, l);
    for (int v = 0; v < 256; ++v) {
        a[v] = shifted(v, shift_a);
        b[v] = shifted(v, shift_b);
    }
    VokHistMap map;
    VokHistMapSet(&map, l, a, b);
    VokHistMapFade(&map, s);
    VokBitmapHistogramTransform(bitmap, &map);
    VokBitmapConvertLABToRBG(bitmap, 1.0f, 1.0f);
}

}  // extern "C"
