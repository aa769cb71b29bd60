// Laying a bitmap, or a flat colour, over a bitmap under a blend mode. The
// pixel arithmetic is that of the blend families; this file settles the
// walks, the sampling and how opacity and masks become per-pixel opacity.
// Each walk picks its blend kernel once per call.
#include <cmath>

#include "color/color_internal.h"
#include "color/simd_rows.h"
#include "core/numeric.h"
#include "vok/color.h"
#include "vok/tonal.h"

namespace vok {
namespace {

inline uint32_t min_u32(uint32_t a, uint32_t b) { return a < b ? a : b; }

// Reads outside the source are white.
inline VokColor sample_or_white(const VokBitmap *source, int32_t x, int32_t y) {
    if (x < 0 || y < 0 || static_cast<uint32_t>(x) >= source->width || static_cast<uint32_t>(y) >= source->height)
        return {255, 255, 255, 255};
    return pixels_of(source)[static_cast<size_t>(y) * source->width + static_cast<uint32_t>(x)];
}

inline uint8_t bilinear_channel(float c00, float c10, float c01, float c11, float fx, float fy) {
    const float top = c00 * (1.0f - fx) + c10 * fx;
    const float bottom = c01 * (1.0f - fx) + c11 * fx;
    return byte_trunc_clamp(top * (1.0f - fy) + bottom * fy);
}

// Bilinear sample at (sx, sy) of the cell whose corner is the truncation
// toward zero; the sample is opaque whatever the source's alpha.
inline VokColor bilinear_sample(const VokBitmap *source, float sx, float sy) {
    const int32_t x0 = trunc_to<int32_t>(sx), y0 = trunc_to<int32_t>(sy);
    const float fx = sx - static_cast<float>(x0), fy = sy - static_cast<float>(y0);
    const VokColor p00 = sample_or_white(source, x0, y0), p10 = sample_or_white(source, x0 + 1, y0);
    const VokColor p01 = sample_or_white(source, x0, y0 + 1), p11 = sample_or_white(source, x0 + 1, y0 + 1);
    return {bilinear_channel(p00.red, p10.red, p01.red, p11.red, fx, fy),
            bilinear_channel(p00.green, p10.green, p01.green, p11.green, fx, fy),
            bilinear_channel(p00.blue, p10.blue, p01.blue, p11.blue, fx, fy), 255};
}

inline uint32_t clamp_index(int32_t v, uint32_t size) {
    if (v < 0) return 0;
    return static_cast<uint32_t>(v) >= size ? size - 1 : static_cast<uint32_t>(v);
}

// One axis of a mask position: the cell clamped into the mask, the fraction
// taken from the clamped corner (so it may leave [0, 1] at the borders), and
// whether the position is more than a cell outside (NaN is not).
struct MaskAxis {
    uint32_t i0, i1;
    double f;
    bool outside;
};

inline MaskAxis mask_axis(double p, uint32_t size) {
    MaskAxis axis;
    axis.outside = p < -1.0 || p > size;
    axis.i0 = clamp_index(trunc_to<int32_t>(p), size);
    axis.i1 = clamp_index(static_cast<int32_t>(axis.i0) + 1, size);
    axis.f = p - axis.i0;
    return axis;
}

// The two mask rows a destination row interpolates between.
struct MaskRows {
    const VokColor *top, *bottom;
};

inline MaskRows mask_rows(const VokBitmap *mask, const MaskAxis &y) {
    return {pixels_of(mask) + static_cast<size_t>(y.i0) * mask->width,
            pixels_of(mask) + static_cast<size_t>(y.i1) * mask->width};
}

// No coverage at any of the four corners: the opacity is exactly 0.
inline bool mask_cell_clear(const MaskRows &rows, const MaskAxis &x) {
    return (rows.top[x.i0].alpha | rows.top[x.i1].alpha | rows.bottom[x.i0].alpha |
            rows.bottom[x.i1].alpha) == 0;
}

// No coverage on either row anywhere in [first, last].
inline bool mask_span_clear(const MaskRows &rows, uint32_t first, uint32_t last) {
    uint32_t any = 0;
    for (uint32_t x = first; x <= last; ++x) any |= rows.top[x].alpha | rows.bottom[x].alpha;
    return any == 0;
}

inline double mask_opacity(const MaskRows &rows, const MaskAxis &x, const MaskAxis &y) {
    const double top = rows.top[x.i0].alpha * (1.0 - x.f) + rows.top[x.i1].alpha * x.f;
    const double bottom = rows.bottom[x.i0].alpha * (1.0 - x.f) + rows.bottom[x.i1].alpha * x.f;
    return (top * (1.0 - y.f) + bottom * y.f) * 0.00392156862745098;
}

// Premultiplied channel back to straight colour; NaN (alpha 0) gives 255.
inline uint8_t unpremultiply(uint8_t c, float k) {
    const float v = c * k;
    if (!(v <= 255.0f)) return 255;
    if (v < 0.0f) return 0;
    return static_cast<uint8_t>(v);
}

}  // namespace
}  // namespace vok

using namespace vok;

extern "C" {

// Top-left aligned over the overlap. The per-pixel alpha is
// trunc(source alpha * opacity) & 255, so an opacity above 1 wraps rather
// than saturates; it depends on the source alpha only, hence the table.
void VokBitmapBlendBitmap(VokBitmap *destination, const VokBitmap *source, VokBlendMode mode, float opacity) {
    const uint32_t rows = min_u32(destination->height, source->height);
    const uint32_t cols = min_u32(destination->width, source->width);
    if (rows == 0 || cols == 0) return;
    uint8_t alpha_of[256];
    for (int a = 0; a < 256; ++a) alpha_of[a] = static_cast<uint8_t>(trunc_to<uint32_t>(a * opacity) & 255);
    with_blend_mode(mode, [&](auto mode_constant) {
        constexpr uint32_t M = decltype(mode_constant)::value;
        uint8_t(*value)[256] = nullptr;
        if constexpr (has_value_table<M>)
            if (static_cast<size_t>(rows) * cols >= kPairTablePixels) value = make_value_table<M>();
        for (uint32_t y = 0; y < rows; ++y) {
            VokColor *d = pixels_of(destination) + static_cast<size_t>(y) * destination->width;
            const VokColor *s = pixels_of(source) + static_cast<size_t>(y) * source->width;
            for (size_t x = blend_bitmap_row_vector<M>(d, s, cols, opacity); x < cols; ++x) {
                const VokColor c = {s[x].red, s[x].green, s[x].blue, alpha_of[s[x].alpha]};
                if (value != nullptr)
                    blend_embedded_by_table(d[x], c, value);
                else
                    blend_embedded<M>(d[x], c);
            }
        }
        free(value);
    });
}

// Weighted sum over the overlap; the weights need not sum to 1.
void VokBitmapBlendBitmapSeparate(VokBitmap *destination, const VokBitmap *source, float destinationWeight,
                                  float sourceWeight) {
    const uint32_t rows = min_u32(destination->height, source->height);
    const uint32_t cols = min_u32(destination->width, source->width);
    for (uint32_t y = 0; y < rows; ++y) {
        VokColor *d = pixels_of(destination) + static_cast<size_t>(y) * destination->width;
        const VokColor *s = pixels_of(source) + static_cast<size_t>(y) * source->width;
        for (uint32_t x = 0; x < cols; ++x) {
            d[x].red = byte_trunc_clamp(destinationWeight * d[x].red + sourceWeight * s[x].red);
            d[x].green = byte_trunc_clamp(destinationWeight * d[x].green + sourceWeight * s[x].green);
            d[x].blue = byte_trunc_clamp(destinationWeight * d[x].blue + sourceWeight * s[x].blue);
        }
    }
}

// The transform maps source coordinates to destination coordinates. Every
// destination pixel whose preimage falls more than one pixel outside the
// source is overwritten with opaque white: outside the placed image the
// destination is not kept.
void VokBitmapBlendBitmapTransform(VokBitmap *destination, const VokBitmap *source, VokBlendMode mode,
                                   float opacity, const VokTransform *transform) {
    VokTransform inverse;
    VokTransformGetInverse(transform, &inverse);
    const float W = static_cast<float>(source->width), H = static_cast<float>(source->height);
    with_float_blend_mode(mode, [&](auto mode_constant) {
        constexpr uint32_t M = decltype(mode_constant)::value;
        VokColor *d = pixels_of(destination);
        for (uint32_t y = 0; y < destination->height; ++y)
            for (uint32_t x = 0; x < destination->width; ++x, ++d) {
                const float sx = static_cast<float>(inverse.a * x + inverse.b * y + inverse.tx);
                const float sy = static_cast<float>(inverse.c * x + inverse.d * y + inverse.ty);
                if (sx < -1.0f || sx > W || sy < -1.0f || sy > H) {
                    *d = {255, 255, 255, 255};
                    continue;
                }
                blend_float<M>(*d, bilinear_sample(source, sx, sy), opacity);
            }
    });
}

// Base and layer share the destination's pixel indices; the mask may have
// any size and is stretched over the destination. An empty mask has no
// cells to read and leaves the destination alone.
//
// The inverse of a pure scale has zero cross terms, so a column's mask
// position is the same on every row (b y is a signed zero for every y, as
// b 0 is) and a row's on every column. The walk goes in blocks of columns
// whose positions are worked out once per block.
void VokBitmapBlendBitmapMask(VokBitmap *destination, const VokBitmap *base, const VokBitmap *layer,
                              const VokBitmap *mask, VokBlendMode mode) {
    if (mask->width == 0 || mask->height == 0) return;
    VokTransform scale = VokTransformIdentity, inverse;
    VokTransformPostScale(&scale, static_cast<double>(destination->width) / mask->width,
                          static_cast<double>(destination->height) / mask->height);
    VokTransformGetInverse(&scale, &inverse);
    const VokColor *b = pixels_of(base), *l = pixels_of(layer);
    VokColor *d = pixels_of(destination);
    const uint32_t W = destination->width;
    with_float_blend_mode(mode, [&](auto mode_constant) {
        constexpr uint32_t M = decltype(mode_constant)::value;
        constexpr uint32_t kBlock = 256;
        MaskAxis columns[kBlock];
        for (uint32_t bx = 0; bx < W; bx += kBlock) {
            const uint32_t count = min_u32(kBlock, W - bx);
            for (uint32_t j = 0; j < count; ++j)
                columns[j] = mask_axis(inverse.a * (bx + j) + inverse.b * 0.0 + inverse.tx, mask->width);
            // The mask columns this block reads; positions grow with the column.
            const uint32_t span_first = columns[0].i0, span_last = columns[count - 1].i1;
            uint32_t cached_top = UINT32_MAX, cached_bottom = UINT32_MAX;
            bool span_clear = false;
            for (uint32_t y = 0; y < destination->height; ++y) {
                const MaskAxis row = mask_axis(inverse.c * 0.0 + inverse.d * y + inverse.ty, mask->height);
                if (row.outside) continue;
                const MaskRows rows = mask_rows(mask, row);
                // A normal blend at opacity 1 reproduces the base exactly,
                // so the base is simply copied. At opacity 0 every mode below
                // 7 gives the base back too (0 x s adds nothing and the + 0.5
                // truncates away), so uncovered pixels skip the blend, and an
                // uncovered row blended in place is skipped altogether.
                if (M < kFloatBlendModeCount && (row.i0 != cached_top || row.i1 != cached_bottom)) {
                    cached_top = row.i0;
                    cached_bottom = row.i1;
                    span_clear = mask_span_clear(rows, span_first, span_last);
                }
                if (span_clear && d == b) continue;
                const size_t start = static_cast<size_t>(y) * W + bx;
                for (uint32_t j = 0; j < count; ++j) {
                    if (columns[j].outside) continue;
                    const size_t i = start + j;
                    const bool clear =
                        M < kFloatBlendModeCount && (span_clear || mask_cell_clear(rows, columns[j]));
                    if (clear && d == b) continue;
                    VokColor mixed = b[i];
                    if (!clear) blend_float<M>(mixed, l[i], static_cast<float>(mask_opacity(rows, columns[j], row)));
                    d[i].red = mixed.red;
                    d[i].green = mixed.green;
                    d[i].blue = mixed.blue;
                }
            }
        }
    });
}

void VokBitmapCompositePremultiplied(VokBitmap *destination, const VokBitmap *base, const VokBitmap *overlay,
                                     VokBlendMode mode) {
    const VokColor *b = pixels_of(base), *o = pixels_of(overlay);
    VokColor *d = pixels_of(destination);
    const size_t n = pixel_count(destination);
    with_float_blend_mode(mode, [&](auto mode_constant) {
        constexpr uint32_t M = decltype(mode_constant)::value;
        for (size_t i = 0; i < n; ++i) {
            const float a = o[i].alpha * 0.003921569f;
            const float k = 1.0f / a;
            const VokColor straight = {unpremultiply(o[i].red, k), unpremultiply(o[i].green, k),
                                       unpremultiply(o[i].blue, k), o[i].alpha};
            VokColor mixed = b[i];
            blend_float<M>(mixed, straight, a);
            d[i].red = mixed.red;
            d[i].green = mixed.green;
            d[i].blue = mixed.blue;
        }
    });
}

// Colour mode blends every pixel against the colour's HSL; any other mode
// depends on each channel alone and becomes a histogram map built on greys.
// Outside colour mode the caller's colour leaves with its alpha replaced by
// the opacity as a byte.
void VokBitmapBlendWithColor(VokBitmap *bitmap, VokColor *color, VokBlendMode mode, float opacity) {
    if (mode == kVokBlendColor) {
        float hsl[3];
        VokColorRGB2HSL(color, hsl);
        VokColor *p = pixels_of(bitmap);
        const size_t n = pixel_count(bitmap);
        for (size_t i = 0; i < n; ++i) color_mode_mix(p[i], hsl, color->alpha, opacity);
        return;
    }
    color->alpha = static_cast<uint8_t>(trunc_to<uint32_t>(floor(opacity * 255.0f + 0.5)) & 255);
    VokHistMap map;
    for (int v = 0; v < 256; ++v) set_map_level(map, v, blend_into_grey(v, *color, mode));
    VokBitmapHistogramTransform(bitmap, &map);
}

void VokBitmapBlend(VokBitmap *bitmap, VokColor *color, VokBlendMode mode, float opacity) {
    VokBitmapBlendWithColor(bitmap, color, mode, opacity);
}

}  // extern "C"
