// The editor's slider tools: each turns one amount into a single colour
// matrix, curve or gain table and applies it in one pass.
#include <cmath>

#include "core/numeric.h"
#include "tonal/tonal_internal.h"
#include "vok/color.h"
#include "vok/generators.h"
#include "vok/tonal.h"

namespace vok {

double clamp_slider(double amount) {
    if (amount > 100.0) return 100.0;
    if (amount < -100.0) return -100.0;
    return amount;
}

float saturation_factor(double amount) {
    return static_cast<float>(1.0 + 0.01 * clamp_slider(amount));
}

}  // namespace vok

namespace {

// Per-channel gains of the warmth slider. The warm and cool coefficients are
// tuned separately and must stay as they are; the amount goes through the
// cosine unclamped, so 300 acts as 100 and 400 as 0.
void warmth_map(double amount, VokHistMap *map) {
    double w = 0.0;
    if (amount != 0.0) {
        w = (1.0 - cos(0.015707963267948967 * amount)) * (amount > 0.0 ? 100.0 : -100.0);
    }
    double target[3];
    if (w > 0.0) {
        target[0] = 255.0 + 0.9078 * w;
        target[1] = 255.0 - 0.24 * w;
        target[2] = 255.0 - 1.4 * w;
    } else {
        target[0] = 255.0 + 1.55 * w;
        target[1] = 255.0 - 0.44625 * w;
        target[2] = 255.0 - 2.4531 * w;
    }
    for (int c = 0; c < 3; ++c) {
        const double gain = target[c] * 0.00392156862745098;
        for (int v = 0; v < 256; ++v) map->table[c][v] = vok::byte_round(v * gain);
    }
}

}  // namespace

extern "C" {

// Brightening scales linearly and clips highlights; darkening bends the
// mid-tones through a gamma curve and keeps black and white.
void VokToolBrightness(VokBitmap *bitmap, int32_t, double amount) {
    VokBitmapBeginGLEffectIfEnabled(bitmap);
    const double a = vok::clamp_slider(amount);
    if (a >= 0.0) {
        VokColorMatrix matrix;
        VokColorMatrixSetIdentity(&matrix);
        VokColorMatrixBrightness(&matrix, static_cast<float>(1.0 + 0.006 * a));
        VokBitmapColorMatrixTransform(bitmap, &matrix);
    } else {
        VokBitmapGamma(bitmap, static_cast<float>(log(0.5 + 0.0025 * a) * -1.4426950408889634));
    }
    VokBitmapEndGLEffectIfEnabled(bitmap);
}

// k = 3.1^(a / 100). At 0 the curve still lowers levels 128..255 by one.
void VokToolContrast(VokBitmap *bitmap, int32_t, double amount) {
    VokBitmapBeginGLEffectIfEnabled(bitmap);
    VokBitmapContrastCurve(bitmap,
                           static_cast<float>(exp(0.011314021114911007 * vok::clamp_slider(amount))));
    VokBitmapEndGLEffectIfEnabled(bitmap);
}

void VokToolSaturation(VokBitmap *bitmap, int32_t, double amount) {
    VokBitmapBeginGLEffectIfEnabled(bitmap);
    VokColorMatrix matrix;
    VokColorMatrixSetIdentity(&matrix);
    VokColorMatrixAdjSaturation(&matrix, vok::saturation_factor(amount));
    VokBitmapColorMatrixTransform(bitmap, &matrix);
    VokBitmapEndGLEffectIfEnabled(bitmap);
}

void VokToolWarmth(VokBitmap *bitmap, int32_t, double amount) {
    VokBitmapBeginGLEffectIfEnabled(bitmap);
    VokHistMap map;
    warmth_map(amount, &map);
    VokBitmapHistogramTransform(bitmap, &map);
    VokBitmapEndGLEffectIfEnabled(bitmap);
}

void VokToolSharpness(VokBitmap *bitmap, int32_t, double amount) {
    VokConvolutionEffectRullSharpen(bitmap, static_cast<float>(amount));
}

}  // extern "C"
