// 3 x 4 colour matrices over (R, G, B, 1): composition, the adjustment
// builders, and their application to a bitmap (alone or blended over the
// pixels as they were). A matrix without cross terms becomes a histogram map.
#include "color/color_internal.h"
#include "color/simd_rows.h"
#include "core/numeric.h"
#include "vok/color.h"
#include "vok/tonal.h"

namespace vok {
namespace {

// Matrix outputs become bytes by the usual rule, with the + 0.5 in double.
inline uint8_t matrix_byte(float x) { return byte_round(x); }

// Cross terms compared with 0.0, so -0.0 still counts as none.
inline bool is_diagonal(const float *m) {
    return m[1] == 0.0f && m[2] == 0.0f && m[4] == 0.0f && m[6] == 0.0f && m[8] == 0.0f && m[9] == 0.0f;
}

inline VokColor matrix_image(const float *m, const VokColor &c, uint8_t alpha) {
    const float r = c.red, g = c.green, b = c.blue;
    return {matrix_byte(m[0] * r + m[1] * g + m[2] * b + m[3]),
            matrix_byte(m[4] * r + m[5] * g + m[6] * b + m[7]),
            matrix_byte(m[8] * r + m[9] * g + m[10] * b + m[11]), alpha};
}

// Level v of a diagonal matrix's map, before any blending.
inline VokColor diagonal_image(const float *m, int v, uint8_t alpha) {
    const float fv = static_cast<float>(v);
    return {matrix_byte(m[3] + fv * m[0]), matrix_byte(m[7] + fv * m[5]), matrix_byte(m[11] + fv * m[10]),
            alpha};
}

void multiply_by(VokColorMatrix *a, const float (&b)[12]) {
    VokColorMatrix factor;
    for (int i = 0; i < 12; ++i) factor.m[i] = b[i];
    VokColorMatrixMultiply(a, &factor);
}

// The same gain on every channel and the same offset on every row.
void multiply_by_gain(VokColorMatrix *a, float gain, float offset) {
    const float g[12] = {gain, 0, 0, offset, 0, gain, 0, offset, 0, 0, gain, offset};
    multiply_by(a, g);
}

}  // namespace
}  // namespace vok

using namespace vok;

extern "C" {

const VokColorMatrix VokColorMatrixIdentity = {{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0}};

void VokColorMatrixCopy(VokColorMatrix *destination, const VokColorMatrix *source) {
    *destination = *source;
}

void VokColorMatrixSetIdentity(VokColorMatrix *matrix) { *matrix = VokColorMatrixIdentity; }

// A := A x B, through a temporary so A and B may be the same matrix.
void VokColorMatrixMultiply(VokColorMatrix *a, const VokColorMatrix *b) {
    const float *A = a->m, *B = b->m;
    VokColorMatrix r;
    for (int row = 0; row < 3; ++row) {
        const float *ar = A + 4 * row;
        for (int col = 0; col < 3; ++col) r.m[4 * row + col] = ar[0] * B[col] + ar[1] * B[4 + col] + ar[2] * B[8 + col];
        r.m[4 * row + 3] = ar[0] * B[3] + ar[1] * B[7] + ar[2] * B[11] + ar[3];
    }
    *a = r;
}

// Luminance weights 0.213, 0.715, 0.072: s = 0 gives grey, s = 1 nothing.
void VokColorMatrixAdjSaturation(VokColorMatrix *matrix, float saturation) {
    const float t = 1.0f - saturation;
    const float r = 0.213f * t, g = 0.715f * t, b = 0.072f * t;
    const float s[12] = {r + saturation, g, b, 0, r, g + saturation, b, 0, r, g, b + saturation, 0};
    multiply_by(matrix, s);
}

// out = b (c (x - 128) + 128).
void VokColorMatrixBrightnessContrast(VokColorMatrix *matrix, float brightness, float contrast) {
    multiply_by_gain(matrix, brightness * contrast, brightness * 128.0f * (1.0f - contrast));
}

void VokColorMatrixBrightness(VokColorMatrix *matrix, float brightness) {
    VokColorMatrixBrightnessContrast(matrix, brightness, 1.0f);
}

// Contrast relative to no change, pivoting at 128 (not 127.5).
void VokColorMatrixContrast(VokColorMatrix *matrix, float contrast) {
    const float gain = 1.0f + contrast;
    multiply_by_gain(matrix, gain, (1.0f - gain) * 128.0f);
}

void VokBitmapColorMatrixTransform(VokBitmap *bitmap, const VokColorMatrix *matrix) {
    const float *m = matrix->m;
    if (is_diagonal(m)) {
        VokHistMap map;
        for (int v = 0; v < 256; ++v) {
            set_map_level(map, v, diagonal_image(m, v, 255));
        }
        VokBitmapHistogramTransform(bitmap, &map);
        return;
    }
    VokColor *p = pixels_of(bitmap);
    const size_t n = pixel_count(bitmap);
    for (size_t i = matrix_row_vector(p, n, m); i < n; ++i) p[i] = matrix_image(m, p[i], p[i].alpha);
}

// The matrix image carries alpha = trunc(opacity * 255) (low 8 bits) and is
// blended over each pixel by the integer family. Colour mode stays off the
// table path because it mixes the three channels.
void VokBitmapColorMatrixTransformAndBlendWithOriginal(VokBitmap *bitmap, const VokColorMatrix *matrix,
                                                       VokBlendMode mode, float opacity) {
    const float *m = matrix->m;
    const uint8_t alpha = static_cast<uint8_t>(trunc_to<uint32_t>(opacity * 255.0f) & 255);
    if (is_diagonal(m) && mode != kVokBlendColor) {
        VokHistMap map;
        for (int v = 0; v < 256; ++v) set_map_level(map, v, blend_into_grey(v, diagonal_image(m, v, alpha), mode));
        VokBitmapHistogramTransform(bitmap, &map);
        return;
    }
    VokColor *p = pixels_of(bitmap);
    const size_t n = pixel_count(bitmap);
    with_blend_mode(mode, [&](auto mode_constant) {
        for (size_t i = 0; i < n; ++i)
            blend_embedded<decltype(mode_constant)::value>(p[i], matrix_image(m, p[i], alpha));
    });
}

}  // extern "C"
