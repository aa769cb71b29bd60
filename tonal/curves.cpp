// Two simple curves applied through a histogram map: the contrast S-curve
// and the gamma curve.
#include <cmath>

#include "core/numeric.h"
#include "vok/tonal.h"

namespace {

// Curve levels are truncated, not rounded (the curves add their own 0.5);
// negative and NaN values give 0.
inline uint8_t curve_byte(float y) {
    if (y > 255.0f) return 255;
    return static_cast<uint8_t>(vok::trunc_to<int32_t>(y > 0.0f ? y : 0.0f));
}

void apply_curve(VokBitmap *bitmap, const uint8_t *curve) {
    VokHistMap map;
    VokHistMapSet(&map, curve, curve, curve);
    VokBitmapHistogramTransform(bitmap, &map);
}

}  // namespace

extern "C" {

// The halves pivot at 127/128: both of those levels map to 127, and 255
// maps to 254 (0.5 + 2 * 127 truncates), so the curve never produces 255.
void VokBitmapContrastCurve(VokBitmap *bitmap, float strength) {
    const float k = strength == 0.0f ? 1e-8f : strength;
    uint8_t curve[256];
    for (int v = 0; v < 256; ++v) {
        const float y = v < 128 ? 0.5f + 127.0f * powf(v * 0.007874016f, k)
                                : 0.5f + 127.0f * (powf((v - 128) * 0.007874016f, 1.0f / k) + 1.0f);
        curve[v] = curve_byte(y);
    }
    apply_curve(bitmap, curve);
}

void VokBitmapGamma(VokBitmap *bitmap, float exponent) {
    uint8_t curve[256];
    for (int v = 0; v < 256; ++v) curve[v] = curve_byte(0.5f + 255.0f * powf(v * 0.003921569f, exponent));
    apply_curve(bitmap, curve);
}

}  // extern "C"
