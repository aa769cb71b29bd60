// Exposure and contrast curves for the automatic contrast enhancement. They
// only build maps; the caller applies them.
#include <cmath>

#include "core/numeric.h"
#include "vok/tonal.h"

namespace {

float clamp_amount(float amount) {
    if (amount > 100.0f) return 100.0f;
    if (amount < -100.0f) return -100.0f;
    return amount;
}

}  // namespace

extern "C" {

void VokBitmapExposureCurveHistogramMapping(float amount, VokHistMap *map) {
    const float e = clamp_amount(amount) * 0.01f;
    // Only -100 and 100 truncate to a non-zero n; at -100 the whole curve is
    // scaled by 0.75 as a result, and nowhere else.
    const int32_t n = vok::trunc_to<int32_t>(e);
    const float m = fabsf(e);
    const double shrink = 1.0 - (n < 0 ? -n : n) * 0.25;
    uint8_t table[256];
    for (int i = 0; i < 256; ++i) {
        const float xf = static_cast<float>(i * 0.00392156862745098);
        const double r = i == 0 ? 0.0 : pow(xf, 0.2);
        const double q = 1.0 + (0.15 - r) * m;
        const float lifted = static_cast<float>(pow(xf, q));
        if (e >= 0.0f) {
            table[i] = vok::byte_round(lifted * 255.0);
        } else {
            const double y = xf * shrink + sin(xf * 1.5707963267948966) * 0.7 * (xf - lifted);
            table[i] = vok::byte_round(static_cast<float>(y) * 255.0);
        }
    }
    VokHistMapSet(map, table, table, table);
}

void VokBitmapContrastCurveHistogramMapping(float amount, VokHistMap *map, double *matrix) {
    const double e = clamp_amount(amount) * 0.01;
    double s, p;
    if (e > 0.0) {
        s = e;
        p = 1.0 + e;
    } else {
        const double t = cos(pow(fabs(e), 0.8) * 1.5707963267948966);
        s = fabs(t - 1.0);
        p = 1.0 / (s + 1.0);
    }
    uint8_t table[256];
    for (int v = 0; v < 256; ++v) {
        // The pivot sits at 110: 110 levels below it, 145 above.
        const double y = v < 110 ? 110.0 * pow(v * 0.00909090909090909, p)
                                 : 255.0 - 145.0 * pow((255 - v) * 0.006896551724137931, p);
        // Lowering contrast fades out towards both ends through sin(v pi / 255).
        table[v] = e < 0.0 ? vok::byte_round(v + (y - v) * sin(v * 0.012319971190548208))
                           : vok::byte_round(y);
    }
    VokHistMapSet(map, table, table, table);

    // Saturation matrix for 1 - k, stored column by column.
    const double k = 0.3 * s;
    const double columns[9] = {1.0 - 0.787 * k, 0.213 * k,       0.213 * k,
                               0.715 * k,       1.0 - 0.285 * k, 0.715 * k,
                               0.072 * k,       0.072 * k,       1.0 - 0.928 * k};
    for (int i = 0; i < 9; ++i) matrix[i] = columns[i];
}

}  // extern "C"
