// Pixel arithmetic shared by the colour files: luminance, the colour-mode
// mix, the per-mode blend kernels and the dispatcher that picks a kernel once
// per call so whole-bitmap loops carry no mode switch.
#ifndef VOK_COLOR_INTERNAL_H
#define VOK_COLOR_INTERNAL_H

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <type_traits>
#include <utility>

#include "core/numeric.h"
#include "vok/color.h"
#include "vok/tonal.h"

namespace vok {

// Number of blend modes; every larger value behaves like the first unknown one.
constexpr uint32_t kBlendModeCount = 29;

inline VokColor *pixels_of(const VokBitmap *bitmap) {
    return reinterpret_cast<VokColor *>(bitmap->pixels);
}

inline size_t pixel_count(const VokBitmap *bitmap) {
    return static_cast<size_t>(bitmap->width) * bitmap->height;
}

inline void set_map_level(VokHistMap &map, int v, const VokColor &c) {
    map.table[0][v] = c.red;
    map.table[1][v] = c.green;
    map.table[2][v] = c.blue;
}

// The integer-family blend of a colour into the opaque grey (v, v, v): a
// histogram map built from these works channel by channel for every mode
// except colour.
inline VokColor blend_into_grey(int v, const VokColor &colour, VokBlendMode mode) {
    const uint8_t g = static_cast<uint8_t>(v);
    VokColor grey = {g, g, g, 255};
    VokColorBlendEmbededAlpha(&grey, &colour, mode);
    return grey;
}

// Luminance in [0, 1] by the grey weights, scaled by 1/255.
inline float unit_luminance(const VokColor &c) {
    return (0.212671f * c.red + 0.71516f * c.green + 0.072169f * c.blue) * 0.003921569f;
}

// The colour mode's converted colour: the blend colour's hue, its saturation
// scaled by alpha / 255, and the destination's luminance as lightness.
VokColor color_mode_rgb(const float *hsl, uint32_t alpha, const VokColor &destination);

// ---- Integer family (embedded alpha) ----------------------------------------

// Blend value B(d, s) of one channel. Channel (0 red, 1 green, 2 blue) only
// matters for the single-channel modes.
template <uint32_t Mode, int Channel>
inline int32_t blend_value(int32_t d, int32_t s) {
    if constexpr (Mode == kVokBlendNormal) {
        return s;
    } else if constexpr (Mode == kVokBlendOverlay) {
        return d > 127 ? ((65025 - 2 * (255 - d) * (255 - s)) >> 8) & 255 : ((2 * d * s) >> 8) & 255;
    } else if constexpr (Mode == kVokBlendScreen) {
        return (65025 - (255 - s) * (255 - d)) >> 8;
    } else if constexpr (Mode == kVokBlendDarken) {
        return d < s ? d : s;
    } else if constexpr (Mode == kVokBlendMultiply) {
        return (s * d) >> 8;
    } else if constexpr (Mode == kVokBlendSoft) {
        return ((d * d + 2 * d * s - ((2 * d * d * s) >> 8)) >> 8) & 255;
    } else if constexpr (Mode == kVokBlendLighten) {
        return d > s ? d : s;
    } else if constexpr (Mode == kVokBlendDifference) {
        return d > s ? d - s : s - d;
    } else if constexpr (Mode == kVokBlendNegation) {
        return d + s > 255 ? 510 - d - s : d + s;
    } else if constexpr (Mode == kVokBlendExclusion) {
        return (d + s - ((2 * d * s) >> 8)) & 255;
    } else if constexpr (Mode == kVokBlendHard) {
        // Hard light tests the source against 126, overlay the destination
        // against 127: the thresholds differ on purpose.
        return s > 126 ? ((65025 - 2 * (255 - d) * (255 - s)) >> 8) & 255 : ((2 * d * s) >> 8) & 255;
    } else if constexpr (Mode == kVokBlendRed) {
        return Channel == 0 ? s : d;
    } else if constexpr (Mode == kVokBlendGreen) {
        return Channel == 1 ? s : d;
    } else if constexpr (Mode == kVokBlendBlue) {
        return Channel == 2 ? s : d;
    } else if constexpr (Mode == kVokBlendColorDodge) {
        return d < 255 - s ? (255 * d / (255 - s)) & 255 : 255;
    } else if constexpr (Mode == kVokBlendInvColorDodge) {
        return s < 255 - d ? (255 * s / (255 - d)) & 255 : 255;
    } else if constexpr (Mode == kVokBlendSoftDodge) {
        if (d + s > 255) return 255 - 127 * (255 - s) / d;
        return s < 255 ? ((255 * d / (255 - s)) >> 1) & 255 : 127;
    } else if constexpr (Mode == kVokBlendColorBurn) {
        return s > 255 - d ? 255 - 255 * (255 - d) / s : 0;
    } else if constexpr (Mode == kVokBlendInvColorBurn) {
        return d > 255 - s ? 255 - 255 * (255 - s) / d : 0;
    } else if constexpr (Mode == kVokBlendSoftBurn) {
        if (d + s > 255) return 255 - 127 * (255 - d) / s;
        return d < 255 ? (127 * s / (255 - d)) & 255 : 255;
    } else if constexpr (Mode == kVokBlendAdd) {
        return d + s < 255 ? d + s : 255;
    } else if constexpr (Mode == kVokBlendSubtract) {
        return d + s > 254 ? d + s - 255 : 0;
    } else if constexpr (Mode == kVokBlendStamp) {
        int32_t t = d + 2 * s;
        return t > 510 ? 255 : (t > 254 ? t - 255 : 0);
    } else if constexpr (Mode == kVokBlendReflect) {
        // s = 255 with d = 0 would divide 0 by 0; that one pair gives 255.
        if (s == 255) return 255;
        return d * d <= 255 * (255 - s) ? (d * d / (255 - s)) & 255 : 255;
    } else if constexpr (Mode == kVokBlendGlow) {
        // d = 255 with s = 0 would divide 0 by 0; that one pair gives 255.
        if (d == 255) return 255;
        return s * s <= 255 * (255 - d) ? (s * s / (255 - d)) & 255 : 255;
    } else if constexpr (Mode == kVokBlendFreeze) {
        return 255 * s > (255 - d) * (255 - d) ? 255 - (255 - d) * (255 - d) / s : 0;
    } else if constexpr (Mode == kVokBlendHeat) {
        return 255 * d > (255 - s) * (255 - s) ? 255 - (255 - s) * (255 - s) / d : 0;
    } else {
        // Unknown modes blend black, so the destination darkens by the alpha.
        return 0;
    }
}

template <uint32_t Mode, int Channel>
inline uint8_t blend_channel(int32_t d, int32_t s, int32_t a) {
    return static_cast<uint8_t>((blend_value<Mode, Channel>(d, s) * a + d * (255 - a) + 255) >> 8);
}

// One pixel of the integer family under a mode fixed at compile time.
template <uint32_t Mode>
inline void blend_embedded(VokColor &destination, const VokColor &source) {
    const int32_t a = source.alpha;
    if (a == 0) return;
    if constexpr (Mode == kVokBlendColor) {
        VokColorBlendColorEmbededAlpha(&destination, &source);
    } else if constexpr (Mode == kVokBlendInterpolation) {
        VokColorBlendInterpolationEmbededAlpha(&destination, &source);
    } else {
        destination.red = blend_channel<Mode, 0>(destination.red, source.red, a);
        destination.green = blend_channel<Mode, 1>(destination.green, source.green, a);
        destination.blue = blend_channel<Mode, 2>(destination.blue, source.blue, a);
    }
}

// Modes whose blend value costs more than a look-up (branches, divisions,
// long products). Over large bitmaps they read B(d, s) from a table instead.
template <uint32_t Mode>
constexpr bool has_value_table = Mode == kVokBlendSoft || Mode == kVokBlendHard ||
                                 (Mode >= kVokBlendColorDodge && Mode <= kVokBlendSoftBurn) ||
                                 (Mode >= kVokBlendReflect && Mode <= kVokBlendHeat);

// From this many pixels on, a 64 KB table of every channel pair pays for
// the 65536 evaluations that fill it.
constexpr size_t kPairTablePixels = size_t{1} << 17;

// value[s][d] = B(d, s); allocated with malloc, null when that fails.
template <uint32_t Mode>
uint8_t (*make_value_table())[256] {
    auto table = static_cast<uint8_t(*)[256]>(malloc(256 * 256));
    if (table != nullptr)
        for (int s = 0; s < 256; ++s)
            for (int d = 0; d < 256; ++d) table[s][d] = static_cast<uint8_t>(blend_value<Mode, 0>(d, s));
    return table;
}

// blend_embedded for the table modes, reading B from the table.
inline void blend_embedded_by_table(VokColor &destination, const VokColor &source, const uint8_t (*value)[256]) {
    const int32_t a = source.alpha;
    if (a == 0) return;
    auto mix = [a](int32_t b, int32_t d) { return static_cast<uint8_t>((b * a + d * (255 - a) + 255) >> 8); };
    destination.red = mix(value[source.red][destination.red], destination.red);
    destination.green = mix(value[source.green][destination.green], destination.green);
    destination.blue = mix(value[source.blue][destination.blue], destination.blue);
}

// ---- Float family (separate opacity) -------------------------------------------

constexpr uint32_t kFloatBlendModeCount = 7;

void color_mode_mix(VokColor &destination, const float *hsl, uint32_t alpha, float opacity);

template <uint32_t Mode>
inline float blend_float_value(int32_t d, int32_t s, float o) {
    const float fd = static_cast<float>(d), fs = static_cast<float>(s);
    if constexpr (Mode == kVokBlendNormal) {
        return o * fs + (1.0f - o) * fd + 0.5f;
    } else if constexpr (Mode == kVokBlendOverlay) {
        // The float family's overlay threshold is 128, one above the integer one.
        if (d > 128)
            return (1.0f - o) * fd +
                   o * (255.0f - 0.007843138f * static_cast<float>(255 - d) * static_cast<float>(255 - s)) +
                   0.5f;
        return (1.0f - o + 0.007843138f * fs * o) * fd + 0.5f;
    } else if constexpr (Mode == kVokBlendScreen) {
        return (1.0f - o) * fd +
               o * (255.0f - 0.003921569f * static_cast<float>(255 - d) * static_cast<float>(255 - s)) + 0.5f;
    } else if constexpr (Mode == kVokBlendDarken) {
        return (1.0f - o) * fd + o * static_cast<float>(d < s ? d : s) + 0.5f;
    } else if constexpr (Mode == kVokBlendMultiply) {
        return (1.0f - o + 0.003921569f * fs * o) * fd + 0.5f;
    } else if constexpr (Mode == kVokBlendSoft) {
        int32_t m = (s * d) >> 8;
        int32_t t = m + (((255 - (((255 - d) * (255 - s)) >> 8) - m) * d) >> 8);
        return (1.0f - o) * fd + o * static_cast<float>(t);
    } else {
        return 0.0f;
    }
}

// One pixel of the float family under a mode fixed at compile time; modes
// from 7 up (passed as 7) write black.
template <uint32_t Mode>
inline void blend_float(VokColor &destination, const VokColor &source, float opacity) {
    if constexpr (Mode == kVokBlendColor) {
        float hsl[3];
        VokColorRGB2HSL(&source, hsl);
        color_mode_mix(destination, hsl, source.alpha, opacity);
    } else if constexpr (Mode >= kFloatBlendModeCount) {
        destination.red = destination.green = destination.blue = 0;
    } else {
        destination.red = byte_trunc_clamp(blend_float_value<Mode>(destination.red, source.red, opacity));
        destination.green =
            byte_trunc_clamp(blend_float_value<Mode>(destination.green, source.green, opacity));
        destination.blue = byte_trunc_clamp(blend_float_value<Mode>(destination.blue, source.blue, opacity));
    }
}

// ---- Choosing the kernel once per call ----------------------------------------

template <typename Body, size_t... M>
inline void dispatch_mode_impl(uint32_t mode, Body &&body, std::index_sequence<M...>) {
    (void)((mode == M ? (body(std::integral_constant<uint32_t, M>{}), true) : false) || ...);
}

// Calls body(std::integral_constant<uint32_t, M>) for the integer family's
// mode; every unknown mode comes in as kBlendModeCount.
template <typename Body>
inline void with_blend_mode(uint32_t mode, Body &&body) {
    dispatch_mode_impl(mode < kBlendModeCount ? mode : kBlendModeCount, body,
                                            std::make_index_sequence<kBlendModeCount + 1>{});
}

// The same for the float family; modes from 7 up come in as 7.
template <typename Body>
inline void with_float_blend_mode(uint32_t mode, Body &&body) {
    dispatch_mode_impl(
        mode < kFloatBlendModeCount ? mode : kFloatBlendModeCount, body,
        std::make_index_sequence<kFloatBlendModeCount + 1>{});
}

}  // namespace vok

#endif
