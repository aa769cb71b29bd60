// Vector forms of the hottest pixel loops, bit-identical to the scalar
// kernels: the same integer operations, and float operations in the same
// order without fused multiply-adds. Each returns how many leading pixels it
// handled (a multiple of four); the caller finishes the rest with the scalar
// kernel. Without a vector unit they handle nothing.
#ifndef VOK_COLOR_SIMD_ROWS_H
#define VOK_COLOR_SIMD_ROWS_H

#include <cmath>
#include <cstddef>
#include <cstdint>

#include "vok/color.h"

#if defined(__SSE2__)
#include <immintrin.h>
#elif defined(__ARM_NEON)
#include <arm_neon.h>
#endif

namespace vok {

// Modes with a vector row; the others run the scalar kernel only.
template <uint32_t Mode>
inline constexpr bool has_vector_blend = Mode == kVokBlendNormal || Mode == kVokBlendMultiply ||
                                         Mode == kVokBlendScreen || Mode == kVokBlendOverlay;

#if defined(__SSE2__)

// Whether the SSE2 rows may compute trunc(alpha * opacity) with the vector
// conversion: it agrees with the saturating scalar one while the product
// stays within [0, 2^31).
inline bool vector_opacity_ok(float opacity) { return opacity >= 0.0f && opacity <= 8388608.0f; }

// Integer-family blend values of 8 channels in 16-bit lanes. Every product
// that is kept fits in 16 bits; overlay computes both branches (the one not
// taken may wrap) and selects by d > 127.
template <uint32_t Mode>
inline __m128i blend_value_sse2(__m128i d, __m128i s) {
    const __m128i c255 = _mm_set1_epi16(255);
    const __m128i c65025 = _mm_set1_epi16(static_cast<short>(65025));
    if constexpr (Mode == kVokBlendMultiply) return _mm_srli_epi16(_mm_mullo_epi16(s, d), 8);
    if constexpr (Mode == kVokBlendScreen)
        return _mm_srli_epi16(_mm_sub_epi16(c65025, _mm_mullo_epi16(_mm_sub_epi16(c255, s), _mm_sub_epi16(c255, d))), 8);
    if constexpr (Mode == kVokBlendOverlay) {
        const __m128i inverse = _mm_slli_epi16(_mm_mullo_epi16(_mm_sub_epi16(c255, d), _mm_sub_epi16(c255, s)), 1);
        const __m128i screen = _mm_srli_epi16(_mm_sub_epi16(c65025, inverse), 8);
        const __m128i multiply = _mm_srli_epi16(_mm_slli_epi16(_mm_mullo_epi16(d, s), 1), 8);
        const __m128i upper = _mm_cmpgt_epi16(d, _mm_set1_epi16(127));
        return _mm_or_si128(_mm_and_si128(upper, screen), _mm_andnot_si128(upper, multiply));
    }
    return s;
}

// The integer family's mix over 8 channels. All sums stay below 2^16:
// B a + d (255 - a) + 255 <= 65280.
template <uint32_t Mode>
inline __m128i blend_pair_sse2(__m128i d, __m128i s, __m128i a) {
    const __m128i c255 = _mm_set1_epi16(255);
    const __m128i b = blend_value_sse2<Mode>(d, s);
    __m128i sum = _mm_add_epi16(_mm_mullo_epi16(b, a), _mm_mullo_epi16(d, _mm_sub_epi16(c255, a)));
    return _mm_srli_epi16(_mm_add_epi16(sum, c255), 8);
}

// The same on 8 pixels with AVX2, for processors that have it (checked once
// per row). Every operation works within 128-bit lanes, so each lane is the
// SSE2 computation on its own 4 pixels.
template <uint32_t Mode>
__attribute__((target("avx2"))) inline __m256i blend_value_avx2(__m256i d, __m256i s) {
    const __m256i c255 = _mm256_set1_epi16(255);
    const __m256i c65025 = _mm256_set1_epi16(static_cast<short>(65025));
    if constexpr (Mode == kVokBlendMultiply) return _mm256_srli_epi16(_mm256_mullo_epi16(s, d), 8);
    if constexpr (Mode == kVokBlendScreen)
        return _mm256_srli_epi16(
            _mm256_sub_epi16(c65025, _mm256_mullo_epi16(_mm256_sub_epi16(c255, s), _mm256_sub_epi16(c255, d))), 8);
    if constexpr (Mode == kVokBlendOverlay) {
        const __m256i inverse =
            _mm256_slli_epi16(_mm256_mullo_epi16(_mm256_sub_epi16(c255, d), _mm256_sub_epi16(c255, s)), 1);
        const __m256i screen = _mm256_srli_epi16(_mm256_sub_epi16(c65025, inverse), 8);
        const __m256i multiply = _mm256_srli_epi16(_mm256_slli_epi16(_mm256_mullo_epi16(d, s), 1), 8);
        return _mm256_blendv_epi8(multiply, screen, _mm256_cmpgt_epi16(d, _mm256_set1_epi16(127)));
    }
    return s;
}

template <uint32_t Mode>
__attribute__((target("avx2"))) inline __m256i blend_pair_avx2(__m256i d, __m256i s, __m256i a) {
    const __m256i c255 = _mm256_set1_epi16(255);
    const __m256i b = blend_value_avx2<Mode>(d, s);
    const __m256i sum = _mm256_add_epi16(_mm256_mullo_epi16(b, a), _mm256_mullo_epi16(d, _mm256_sub_epi16(c255, a)));
    return _mm256_srli_epi16(_mm256_add_epi16(sum, c255), 8);
}

template <uint32_t Mode>
__attribute__((target("avx2"))) size_t blend_bitmap_row_avx2(VokColor *destination, const VokColor *source,
                                                              size_t n, float opacity) {
    const __m256 o = _mm256_set1_ps(opacity);
    const __m256i zero = _mm256_setzero_si256();
    const __m256i alpha_mask = _mm256_set1_epi32(static_cast<int>(0xff000000u));
    const __m256i low_byte = _mm256_set1_epi32(255);
    size_t i = 0;
    for (; i + 8 <= n; i += 8) {
        const __m256i s = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(source + i));
        const __m256i d = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(destination + i));
        const __m256 source_alpha = _mm256_cvtepi32_ps(_mm256_srli_epi32(s, 24));
        __m256i a = _mm256_and_si256(_mm256_cvttps_epi32(_mm256_mul_ps(source_alpha, o)), low_byte);
        a = _mm256_or_si256(a, _mm256_slli_epi32(a, 16));
        const __m256i lo = blend_pair_avx2<Mode>(_mm256_unpacklo_epi8(d, zero), _mm256_unpacklo_epi8(s, zero),
                                                 _mm256_unpacklo_epi32(a, a));
        const __m256i hi = blend_pair_avx2<Mode>(_mm256_unpackhi_epi8(d, zero), _mm256_unpackhi_epi8(s, zero),
                                                 _mm256_unpackhi_epi32(a, a));
        const __m256i mixed = _mm256_packus_epi16(lo, hi);
        _mm256_storeu_si256(reinterpret_cast<__m256i *>(destination + i),
                            _mm256_blendv_epi8(mixed, d, alpha_mask));
    }
    return i;
}

inline bool have_avx2() { return __builtin_cpu_supports("avx2"); }

// A source row over a destination row, 4 pixels at a time. A zero alpha
// needs no early return here: d 255 + 255 >> 8 is d again.
template <uint32_t Mode>
inline size_t blend_bitmap_row_vector(VokColor *destination, const VokColor *source, size_t n, float opacity) {
    if constexpr (!has_vector_blend<Mode>) {
        return 0;
    } else {
        if (!vector_opacity_ok(opacity)) return 0;
        const __m128 o = _mm_set1_ps(opacity);
        const __m128i zero = _mm_setzero_si128();
        const __m128i alpha_mask = _mm_set1_epi32(static_cast<int>(0xff000000u));
        const __m128i low_byte = _mm_set1_epi32(255);
        size_t i = have_avx2() ? blend_bitmap_row_avx2<Mode>(destination, source, n, opacity) : 0;
        for (; i + 4 <= n; i += 4) {
            const __m128i s = _mm_loadu_si128(reinterpret_cast<const __m128i *>(source + i));
            const __m128i d = _mm_loadu_si128(reinterpret_cast<const __m128i *>(destination + i));
            const __m128 source_alpha = _mm_cvtepi32_ps(_mm_srli_epi32(s, 24));
            __m128i a = _mm_and_si128(_mm_cvttps_epi32(_mm_mul_ps(source_alpha, o)), low_byte);
            // Spread each pixel's alpha over its four 16-bit channel lanes.
            a = _mm_or_si128(a, _mm_slli_epi32(a, 16));
            const __m128i a_lo = _mm_unpacklo_epi32(a, a), a_hi = _mm_unpackhi_epi32(a, a);
            const __m128i lo = blend_pair_sse2<Mode>(_mm_unpacklo_epi8(d, zero), _mm_unpacklo_epi8(s, zero), a_lo);
            const __m128i hi = blend_pair_sse2<Mode>(_mm_unpackhi_epi8(d, zero), _mm_unpackhi_epi8(s, zero), a_hi);
            const __m128i mixed = _mm_packus_epi16(lo, hi);
            const __m128i out = _mm_or_si128(_mm_andnot_si128(alpha_mask, mixed), _mm_and_si128(alpha_mask, d));
            _mm_storeu_si128(reinterpret_cast<__m128i *>(destination + i), out);
        }
        return i;
    }
}

// The library's real-to-byte rule on four floats, before saturation: 255
// above 254.5, 0 below -0.5, else floor(x + 0.5), which is what truncating
// x + 0.5 in double gives. The fraction x - trunc(x) is exact in single
// precision, so the rounding is decided without adding 0.5 in float. Large
// values are capped at 256 first (min returns x itself when x is NaN); NaN
// and large negative values convert to INT_MIN; the caller's saturating
// packs then give 0 or 255.
inline __m128i byte_round_unsaturated_sse2(__m128 x) {
    const __m128 capped = _mm_min_ps(_mm_set1_ps(256.0f), x);
    const __m128i t = _mm_cvttps_epi32(capped);
    const __m128 fraction = _mm_sub_ps(capped, _mm_cvtepi32_ps(t));
    const __m128i up = _mm_castps_si128(_mm_cmpge_ps(fraction, _mm_set1_ps(0.5f)));
    return _mm_sub_epi32(t, up);  // up is -1 where the fraction reaches one half
}

// The matrix row on 8 pixels with AVX2, lane by lane as in the SSE2 form.
__attribute__((target("avx2"))) inline __m256i byte_round_unsaturated_avx2(__m256 x) {
    const __m256 capped = _mm256_min_ps(_mm256_set1_ps(256.0f), x);
    const __m256i t = _mm256_cvttps_epi32(capped);
    const __m256 fraction = _mm256_sub_ps(capped, _mm256_cvtepi32_ps(t));
    const __m256i up = _mm256_castps_si256(_mm256_cmp_ps(fraction, _mm256_set1_ps(0.5f), _CMP_GE_OQ));
    return _mm256_sub_epi32(t, up);
}

__attribute__((target("avx2"))) inline size_t matrix_row_avx2(VokColor *pixels, size_t n, const float *m) {
    __m256 k[12];
    for (int i = 0; i < 12; ++i) k[i] = _mm256_set1_ps(m[i]);
    const __m256i low_byte = _mm256_set1_epi32(255);
    size_t i = 0;
    for (; i + 8 <= n; i += 8) {
        const __m256i p = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(pixels + i));
        const __m256 r = _mm256_cvtepi32_ps(_mm256_and_si256(p, low_byte));
        const __m256 g = _mm256_cvtepi32_ps(_mm256_and_si256(_mm256_srli_epi32(p, 8), low_byte));
        const __m256 b = _mm256_cvtepi32_ps(_mm256_and_si256(_mm256_srli_epi32(p, 16), low_byte));
        __m256i channel[3];
        for (int row = 0; row < 3; ++row) {
            const __m256 *w = k + 4 * row;
            const __m256 x = _mm256_add_ps(
                _mm256_add_ps(_mm256_add_ps(_mm256_mul_ps(w[0], r), _mm256_mul_ps(w[1], g)), _mm256_mul_ps(w[2], b)),
                w[3]);
            channel[row] = byte_round_unsaturated_avx2(x);
        }
        const __m256i planar = _mm256_packus_epi16(_mm256_packs_epi32(channel[0], channel[1]),
                                                   _mm256_packs_epi32(channel[2], _mm256_srli_epi32(p, 24)));
        const __m256i pairs = _mm256_unpacklo_epi8(planar, _mm256_srli_si256(planar, 8));
        _mm256_storeu_si256(reinterpret_cast<__m256i *>(pixels + i),
                            _mm256_unpacklo_epi8(pairs, _mm256_srli_si256(pairs, 8)));
    }
    return i;
}

// A general colour matrix over 4 pixels; alpha bytes are kept.
inline size_t matrix_row_vector(VokColor *pixels, size_t n, const float *m) {
    __m128 k[12];
    for (int i = 0; i < 12; ++i) k[i] = _mm_set1_ps(m[i]);
    const __m128i low_byte = _mm_set1_epi32(255);
    size_t i = have_avx2() ? matrix_row_avx2(pixels, n, m) : 0;
    for (; i + 4 <= n; i += 4) {
        const __m128i p = _mm_loadu_si128(reinterpret_cast<const __m128i *>(pixels + i));
        const __m128 r = _mm_cvtepi32_ps(_mm_and_si128(p, low_byte));
        const __m128 g = _mm_cvtepi32_ps(_mm_and_si128(_mm_srli_epi32(p, 8), low_byte));
        const __m128 b = _mm_cvtepi32_ps(_mm_and_si128(_mm_srli_epi32(p, 16), low_byte));
        __m128i channel[3];
        for (int row = 0; row < 3; ++row) {
            const __m128 *w = k + 4 * row;
            const __m128 x =
                _mm_add_ps(_mm_add_ps(_mm_add_ps(_mm_mul_ps(w[0], r), _mm_mul_ps(w[1], g)), _mm_mul_ps(w[2], b)), w[3]);
            channel[row] = byte_round_unsaturated_sse2(x);
        }
        // Planar R0..R3 G0..G3 B0..B3 A0..A3 bytes, then interleaved.
        const __m128i planar = _mm_packus_epi16(_mm_packs_epi32(channel[0], channel[1]),
                                                _mm_packs_epi32(channel[2], _mm_srli_epi32(p, 24)));
        const __m128i pairs = _mm_unpacklo_epi8(planar, _mm_srli_si128(planar, 8));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(pixels + i),
                         _mm_unpacklo_epi8(pairs, _mm_srli_si128(pairs, 8)));
    }
    return i;
}

#elif defined(__ARM_NEON)

// Per-pixel alpha trunc(alpha * opacity) & 255 for 4 pixels. The vector
// conversion saturates (NaN gives 0) exactly like the scalar one. Flushing
// denormals cannot matter: alpha is an integer, so a product is either 0 or
// at least the opacity, and a denormal opacity truncates to 0 either way.
inline uint16x4_t blend_alpha_neon(uint16x4_t alpha, float32x4_t opacity) {
    const float32x4_t product = vmulq_f32(vcvtq_f32_u32(vmovl_u16(alpha)), opacity);
    return vand_u16(vmovn_u32(vcvtq_u32_f32(product)), vdup_n_u16(255));
}

// Integer-family blend values of 8 channels, as in the SSE2 form.
template <uint32_t Mode>
inline uint16x8_t blend_value_neon(uint16x8_t d, uint16x8_t s) {
    const uint16x8_t c255 = vdupq_n_u16(255), c65025 = vdupq_n_u16(65025);
    if constexpr (Mode == kVokBlendMultiply) return vshrq_n_u16(vmulq_u16(s, d), 8);
    if constexpr (Mode == kVokBlendScreen)
        return vshrq_n_u16(vsubq_u16(c65025, vmulq_u16(vsubq_u16(c255, s), vsubq_u16(c255, d))), 8);
    if constexpr (Mode == kVokBlendOverlay) {
        const uint16x8_t inverse = vshlq_n_u16(vmulq_u16(vsubq_u16(c255, d), vsubq_u16(c255, s)), 1);
        const uint16x8_t screen = vshrq_n_u16(vsubq_u16(c65025, inverse), 8);
        const uint16x8_t multiply = vshrq_n_u16(vshlq_n_u16(vmulq_u16(d, s), 1), 8);
        return vbslq_u16(vcgtq_u16(d, vdupq_n_u16(127)), screen, multiply);
    }
    return s;
}

// The integer family over 8 pixels, channel-planar. All sums stay below
// 2^16: B a + d (255 - a) + 255 <= 65280.
template <uint32_t Mode>
inline size_t blend_bitmap_row_vector(VokColor *destination, const VokColor *source, size_t n, float opacity) {
    if constexpr (!has_vector_blend<Mode>) {
        return 0;
    } else {
        const float32x4_t o = vdupq_n_f32(opacity);
        const uint16x8_t c255 = vdupq_n_u16(255);
        size_t i = 0;
        for (; i + 8 <= n; i += 8) {
            const uint8x8x4_t s = vld4_u8(&source[i].red);
            uint8x8x4_t d = vld4_u8(&destination[i].red);
            const uint16x8_t source_alpha = vmovl_u8(s.val[3]);
            const uint16x8_t a = vcombine_u16(blend_alpha_neon(vget_low_u16(source_alpha), o),
                                              blend_alpha_neon(vget_high_u16(source_alpha), o));
            const uint16x8_t keep = vsubq_u16(c255, a);
            for (int c = 0; c < 3; ++c) {
                const uint16x8_t dc = vmovl_u8(d.val[c]);
                const uint16x8_t b = blend_value_neon<Mode>(dc, vmovl_u8(s.val[c]));
                d.val[c] = vshrn_n_u16(vmlaq_u16(vmlaq_u16(c255, b, a), dc, keep), 8);
            }
            vst4_u8(&destination[i].red, d);
        }
        return i;
    }
}

// NEON flushes denormals to zero. With every entry 0 or at least 2^-100 in
// magnitude, every product and partial sum of the matrix rows is a multiple
// of 2^-123, so none is denormal and the flush never happens; other matrices
// (and NaN entries) stay on the scalar path.
inline bool neon_matrix_exact(const float *m) {
    for (int i = 0; i < 12; ++i)
        if (!(m[i] == 0.0f || fabsf(m[i]) >= 7.8886091e-31f)) return false;
    return true;
}

// The byte rule as in the SSE2 row: cap at 256 (NaN stays NaN and converts
// to 0), truncate, add one where the exact fraction reaches one half; the
// saturating narrows clamp to [0, 255].
inline int32x4_t byte_round_unsaturated_neon(float32x4_t x) {
    const float32x4_t capped = vminq_f32(vdupq_n_f32(256.0f), x);
    const int32x4_t t = vcvtq_s32_f32(capped);
    const float32x4_t fraction = vsubq_f32(capped, vcvtq_f32_s32(t));
    return vsubq_s32(t, vreinterpretq_s32_u32(vcgeq_f32(fraction, vdupq_n_f32(0.5f))));
}

inline float32x4_t matrix_channel_neon(const float *w, float32x4_t r, float32x4_t g, float32x4_t b) {
    const float32x4_t sum = vaddq_f32(vaddq_f32(vmulq_n_f32(r, w[0]), vmulq_n_f32(g, w[1])), vmulq_n_f32(b, w[2]));
    return vaddq_f32(sum, vdupq_n_f32(w[3]));
}

// A general colour matrix over 8 pixels; alpha bytes are kept.
inline size_t matrix_row_vector(VokColor *pixels, size_t n, const float *m) {
    if (!neon_matrix_exact(m)) return 0;
    size_t i = 0;
    for (; i + 8 <= n; i += 8) {
        uint8x8x4_t p = vld4_u8(&pixels[i].red);
        float32x4_t lo[3], hi[3];
        for (int c = 0; c < 3; ++c) {
            const uint16x8_t wide = vmovl_u8(p.val[c]);
            lo[c] = vcvtq_f32_u32(vmovl_u16(vget_low_u16(wide)));
            hi[c] = vcvtq_f32_u32(vmovl_u16(vget_high_u16(wide)));
        }
        for (int row = 0; row < 3; ++row) {
            const int32x4_t a = byte_round_unsaturated_neon(matrix_channel_neon(m + 4 * row, lo[0], lo[1], lo[2]));
            const int32x4_t b = byte_round_unsaturated_neon(matrix_channel_neon(m + 4 * row, hi[0], hi[1], hi[2]));
            p.val[row] = vqmovun_s16(vcombine_s16(vqmovn_s32(a), vqmovn_s32(b)));
        }
        vst4_u8(&pixels[i].red, p);
    }
    return i;
}

#else

template <uint32_t Mode>
inline size_t blend_bitmap_row_vector(VokColor *, const VokColor *, size_t, float) {
    return 0;
}

inline size_t matrix_row_vector(VokColor *, size_t, const float *) { return 0; }

#endif

}  // namespace vok

#endif
