// The plain gradient: linear, radial, or linear under a vignette mask,
// positioned by centre, scale and angle and blended with a float-family mode.
#include "generators/gradient_internal.h"

#include <math.h>

#include "color/color_internal.h"
#include "core/numeric.h"

namespace {

constexpr uint32_t kTableSize = 1024;

// Fraction of the table, clamped to [0, 1] with NaN at 0, as an entry index.
inline uint32_t table_index(double coordinate) {
    float t = static_cast<float>(coordinate);
    if (!(t > 0.0f)) t = 0.0f;
    if (t > 1.0f) t = 1.0f;
    return static_cast<uint32_t>(floor(t * 1023 + 0.5));
}

// Vignette opacity factor: a smooth polynomial rise between v = 0.04 and 1.15.
inline float vignette_ramp(float v) {
    const float v2 = v * v, v4 = v2 * v2, v6 = v4 * v2, v8 = v4 * v4, v10 = v8 * v2;
    return 2.0f * v2 - 1.6666666f * v4 + 0.75555557f * v6 - 0.20634921f * v8 + 0.036261022f * v10;
}

inline float shape_mode_power(float v, int32_t mode) {
    switch (mode) {
        case 1: return v * v;
        case 2: return v * sqrtf(v);
        case 3: return (v * v) * (v * v);
        default: return v;
    }
}

// A vignette centre further out than this is drawn as if it stood here: the
// distance to any pixel then stays below 2^32, so its square fits 64 bits
// unsigned, and every centre that squared without overflow keeps its bytes.
constexpr int64_t kCentreLimit = 3000000000;

inline int64_t limit_centre(int64_t c) {
    return c < -kCentreLimit ? -kCentreLimit : c > kCentreLimit ? kCentreLimit : c;
}

inline int64_t vignette_centre(uint32_t size, double offset) {
    const int64_t shift = vok::trunc_to<int64_t>(floor(0.5 + (size >> 1) * offset));
    return limit_centre((size >> 1) + limit_centre(shift));
}

// The square of a distance below 2^32, exact, then rounded once to float.
inline float square(int64_t d) {
    const uint64_t m = static_cast<uint64_t>(d < 0 ? -d : d);
    return static_cast<float>(m * m);
}

// Per-call constants of the plain gradient.
struct Frame {
    double sin_a, cos_a;   // of the angle
    double q;              // inverse scale
    float k;               // vignette spread factor
    int64_t cx, cy;        // vignette centre, within kCentreLimit of the origin
    float inv_w2, inv_h2;  // 1 / W^2, 1 / H^2
};

// The pixel loop under a float-family mode fixed at compile time.
template <uint32_t Mode>
void paint(VokBitmap *bitmap, const VokGradientShapeParams &p, const VokColor *table,
           double strength, const Frame &f) {
    const uint32_t w = bitmap->width, h = bitmap->height;
    VokColor *pixel = reinterpret_cast<VokColor *>(bitmap->pixels);
    for (uint32_t r = 0; r < h; ++r) {
        const double y = (static_cast<double>(r) / h - p.yCenter) * f.q;
        const int64_t dy = static_cast<int64_t>(r) - f.cy;
        const float vy = square(dy) * f.inv_h2;
        for (uint32_t c = 0; c < w; ++c, ++pixel) {
            const double x = (static_cast<double>(c) / w - p.xCenter) * f.q;
            float opacity;
            if (p.gradientShape == 1) {
                const VokColor &entry = table[table_index(sqrt(x * x + y * y))];
                opacity = static_cast<float>(strength * (entry.alpha * 0.003921569));
                vok::blend_float<Mode>(*pixel, entry, opacity);
                continue;
            }
            const VokColor &entry = table[table_index(x * f.cos_a - y * f.sin_a)];
            if (p.gradientShape != 2) {
                opacity = static_cast<float>(strength * (entry.alpha * 0.003921569));
            } else {
                const int64_t dx = static_cast<int64_t>(c) - f.cx;
                float v = (vy + square(dx) * f.inv_w2) * f.k;
                v = shape_mode_power(v, p.vignetteShapeMode);
                if (v > 1.15) {
                    opacity = static_cast<float>(strength * entry.alpha / 255.0);
                } else if (v < 0.04) {
                    opacity = 0.0f;
                } else {
                    opacity = static_cast<float>(vignette_ramp(v) * strength * entry.alpha / 255.0);
                }
            }
            vok::blend_float<Mode>(*pixel, entry, opacity);
        }
    }
}

}  // namespace

extern "C" {

void VokGradientShapeParamsInit(VokGradientShapeParams *params) {
    params->gradientShape = 0;
    params->scale = 1.0;
    params->xCenter = 0.5;
    params->yCenter = 0.5;
    params->angle = 0.0;
    params->vignetteShapeMode = 0;
    params->vignetteSize = 1.0;
    params->vignetteOffsetX = 0.0;
    params->vignetteOffsetY = 0.0;
}

// Each axis is normalised by its own dimension, so a radial gradient is an
// ellipse on a non-square image; that is the intended look.
void VokGradientApply(VokBitmap *bitmap, const VokGradientShapeParams *params,
                      const VokGradient *gradient, uint32_t mode, double strength) {
    if (params->scale == 0.0) return;
    VokArray storage;
    const VokColor *table = vok::build_gradient_table(gradient, kTableSize, &storage);
    if (table == nullptr) return;

    const uint32_t w = bitmap->width, h = bitmap->height;
    Frame frame;
    frame.sin_a = sin(params->angle);
    frame.cos_a = cos(params->angle);
    frame.q = 1.0 / params->scale;
    const float size = static_cast<float>(params->vignetteSize);
    const float spread = size * size * 0.86956525f;
    frame.k = spread == 0.0f ? 1e8f : 1.0f / spread;
    frame.cx = vignette_centre(w, params->vignetteOffsetX);
    frame.cy = vignette_centre(h, params->vignetteOffsetY);
    frame.inv_w2 = 1.0f / static_cast<float>(static_cast<uint64_t>(w) * w);
    frame.inv_h2 = 1.0f / static_cast<float>(static_cast<uint64_t>(h) * h);
    vok::with_float_blend_mode(mode, [&](auto m) {
        paint<decltype(m)::value>(bitmap, *params, table, strength, frame);
    });
    VokArrayFree(&storage);
}

}  // extern "C"
