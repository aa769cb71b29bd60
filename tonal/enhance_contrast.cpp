// Varying contrast: exposure and contrast amounts chosen from the photo's
// intensity histogram, applied as one map and the contrast's matrix.
#include <cstddef>
#include <cstdlib>

#include "tonal/tonal_internal.h"
#include "vok/color.h"

namespace {

// Medians below this are lifted three quarters of the way to kPivot, the
// contrast curve's own pivot, so the contrast then spreads the tones about it.
constexpr int kDarkMedian = 90, kPivot = 110;
// A 5 %-95 % spread below kFullSpread is widened by a quarter, up to kFullSpread.
constexpr int kFullSpread = 180;
// Amounts are tried in steps of kStep up to kMost.
constexpr int kStep = 4, kMost = 80;

struct Amounts {
    float exposure = 0.0f, contrast = 0.0f;
};

// The amount among 0, kStep, ... kMost whose curve sends `level` closest to
// `target` (for contrast, the spread of two levels); the smaller on a tie.
template <typename Measure>
float closest_amount(int target, Measure measure) {
    int best = 0, best_error = 1 << 30;
    for (int amount = 0; amount <= kMost; amount += kStep) {
        const int error = std::abs(measure(static_cast<float>(amount)) - target);
        if (error < best_error) best = amount, best_error = error;
    }
    return static_cast<float>(best);
}

Amounts choose(const uint32_t *counts, uint64_t total) {
    const int p5 = static_cast<int>(vok::level_at(counts, total, 500));
    const int median = static_cast<int>(vok::level_at(counts, total, 5000));
    const int p95 = static_cast<int>(vok::level_at(counts, total, 9500));
    Amounts a;
    VokHistMap exposure_map;
    if (median < kDarkMedian) {
        a.exposure = closest_amount(median + (kPivot - median) * 3 / 4, [&](float amount) {
            VokBitmapExposureCurveHistogramMapping(amount, &exposure_map);
            return static_cast<int>(exposure_map.table[1][median]);
        });
    }
    VokBitmapExposureCurveHistogramMapping(a.exposure, &exposure_map);
    const int low = exposure_map.table[1][p5], high = exposure_map.table[1][p95];
    const int spread = high - low;
    // A flat uniform photo has nothing to spread.
    if (spread > 0 && spread < kFullSpread) {
        VokHistMap contrast_map;
        double columns[9];
        const int wanted = spread + spread / 4 < kFullSpread ? spread + spread / 4 : kFullSpread;
        a.contrast = closest_amount(wanted, [&](float amount) {
            VokBitmapContrastCurveHistogramMapping(amount, &contrast_map, columns);
            return contrast_map.table[1][high] - contrast_map.table[1][low];
        });
    }
    return a;
}

}  // namespace

extern "C" {

void VokVaryingContrast(VokBitmap *bitmap, float strength) {
    double s;
    if (!vok::enhancement_applies(bitmap, strength, &s)) return;
    uint32_t counts[256] = {};
    const uint8_t *p = bitmap->pixels;
    const size_t n = static_cast<size_t>(bitmap->width) * bitmap->height;
    for (size_t i = 0; i < n; ++i, p += 4) ++counts[vok::integral_grey(p[0], p[1], p[2])];
    const Amounts a = choose(counts, n);
    const float exposure = static_cast<float>(a.exposure * s);
    const float contrast = static_cast<float>(a.contrast * s);
    if (exposure == 0.0f && contrast == 0.0f) return;

    VokHistMap map, contrast_map;
    double columns[9];
    VokBitmapExposureCurveHistogramMapping(exposure, &map);
    VokBitmapContrastCurveHistogramMapping(contrast, &contrast_map, columns);
    VokHistMapMap(&map, &contrast_map);  // exposure first, then contrast
    VokBitmapHistogramTransform(bitmap, &map);
    if (contrast == 0.0f) return;
    // The builder's 3 x 3 desaturation, column by column, as a row-major colour matrix.
    VokColorMatrix matrix = VokColorMatrixIdentity;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            matrix.m[row * 4 + column] = static_cast<float>(columns[column * 3 + row]);
    VokBitmapColorMatrixTransform(bitmap, &matrix);
}

}  // extern "C"
