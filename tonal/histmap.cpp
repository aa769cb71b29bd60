// Histogram maps: per-channel 256-entry tables, their algebra, and their
// application to a bitmap directly or through the pixel's luminance.
#include <cstdlib>
#include <cstring>

#include "color/color_internal.h"
#include "core/numeric.h"
#include "vok/tonal.h"

using namespace vok;

namespace {

inline uint32_t luminance_level(const VokColor &c) {
    const float y = 0.212671f * c.red + 0.71516f * c.green + 0.072169f * c.blue;
    return y > 254.5f ? 255 : trunc_to<uint32_t>(static_cast<double>(y) + 0.5);
}

// Modes whose channel result depends on that channel's pair alone.
template <uint32_t Mode>
constexpr bool blends_per_channel = Mode < kFloatBlendModeCount && Mode != kVokBlendColor;

// Blends through table[s][d]; false when the table cannot be had.
template <uint32_t Mode>
bool intensity_map_by_pairs(VokColor *p, size_t n, const VokHistMap *map, float o) {
    uint8_t(*table)[256] = static_cast<uint8_t(*)[256]>(malloc(256 * 256));
    if (table == nullptr) return false;
    for (int s = 0; s < 256; ++s)
        for (int d = 0; d < 256; ++d) table[s][d] = byte_trunc_clamp(blend_float_value<Mode>(d, s, o));
    for (size_t i = 0; i < n; ++i) {
        VokColor &c = p[i];
        const uint32_t level = luminance_level(c);
        c.red = table[map->table[0][level]][c.red];
        c.green = table[map->table[1][level]][c.green];
        c.blue = table[map->table[2][level]][c.blue];
    }
    free(table);
    return true;
}

}  // namespace

extern "C" {

void VokBitmapHistogramTransform(VokBitmap *bitmap, const VokHistMap *map) {
    const uint8_t *red = map->table[0], *green = map->table[1], *blue = map->table[2];
    VokColor *p = pixels_of(bitmap);
    const size_t n = pixel_count(bitmap);
    for (size_t i = 0; i < n; ++i) {
        const VokColor c = p[i];
        p[i] = {red[c.red], green[c.green], blue[c.blue], c.alpha};
    }
}


// The map works as a gradient map indexed by the pixel's luminance; the
// looked-up colour is then blended over the pixel by the float family.
void VokBitmapIntensityMap(VokBitmap *bitmap, const VokHistMap *map, VokBlendMode mode,
                           double opacity) {
    const float o = static_cast<float>(opacity);
    VokColor *p = pixels_of(bitmap);
    const size_t n = pixel_count(bitmap);
    with_float_blend_mode(mode, [&](auto m) {
        constexpr uint32_t M = decltype(m)::value;
        if constexpr (blends_per_channel<M>)
            if (n >= kPairTablePixels && intensity_map_by_pairs<M>(p, n, map, o)) return;
        for (size_t i = 0; i < n; ++i) {
            const uint32_t level = luminance_level(p[i]);
            const VokColor mapped = {map->table[0][level], map->table[1][level], map->table[2][level], 255};
            blend_float<M>(p[i], mapped, o);
        }
    });
}

// Strength 1 leaves the map exactly as it is, even when it is not monotonic.
void VokHistMapFade(VokHistMap *map, double strength) {
    if (strength == 1.0) return;
    for (int c = 0; c < 3; ++c)
        for (int v = 0; v < 256; ++v)
            map->table[c][v] = byte_round(v * (1.0 - strength) + map->table[c][v] * strength);
}

void VokHistMapMap(VokHistMap *a, const VokHistMap *b) {
    for (int c = 0; c < 3; ++c)
        for (int v = 0; v < 256; ++v) a->table[c][v] = b->table[c][a->table[c][v]];
}

void VokHistMapCopy(VokHistMap *destination, const VokHistMap *source) {
    memcpy(destination->table, source->table, sizeof destination->table);
}

// The smallest level reaching each output value, for a non-decreasing map;
// the search only moves forward, and a value never reached maps to 255.
void VokHistMapInvert(VokHistMap *map) {
    VokHistMap copy;
    VokHistMapCopy(&copy, map);
    for (int c = 0; c < 3; ++c) {
        int i = 0;
        for (int v = 0; v < 256; ++v) {
            while (i < 255 && copy.table[c][i] < v) ++i;
            map->table[c][v] = static_cast<uint8_t>(i);
        }
    }
}

void VokHistMapSetIdentity(VokHistMap *map) {
    for (int c = 0; c < 3; ++c)
        for (int v = 0; v < 256; ++v) map->table[c][v] = static_cast<uint8_t>(v);
}

void VokHistMapSet(VokHistMap *map, const uint8_t *red, const uint8_t *green, const uint8_t *blue) {
    memcpy(map->table[0], red, 256);
    memcpy(map->table[1], green, 256);
    memcpy(map->table[2], blue, 256);
}

}  // extern "C"
