// Automatic colours with the brightest tones faded toward a colour: one
// table per channel, so one pass over the photo.
#include "tonal/tonal_internal.h"

namespace {

// Levels above kFadeStart move toward the colour, up to kFadeMost (in
// sixty-fourths) of the way at 255, scaled by the colour's alpha.
constexpr int kFadeStart = 191;
constexpr int kFadeMost = 40;

uint8_t fade_toward(int level, int target, int alpha) {
    if (level <= kFadeStart) return static_cast<uint8_t>(level);
    const int64_t weight = static_cast<int64_t>(level - kFadeStart) * kFadeMost * alpha;
    const int64_t scale = int64_t{64} * 64 * 255;  // (level - start) / 64, fade / 64, alpha / 255
    const int64_t move = (target - level) * weight;
    const int64_t rounded = move >= 0 ? (move + scale / 2) / scale : -((-move + scale / 2) / scale);
    return static_cast<uint8_t>(level + rounded);
}

}  // namespace

extern "C" {

void VokAutoColorsFadeMaxColor(VokBitmap *bitmap, double strength, const VokColor *color) {
    double s;
    if (color == nullptr || !vok::enhancement_applies(bitmap, strength, &s)) return;
    uint32_t counts[768] = {};
    VokHistogramBuild(bitmap, counts);
    const uint64_t total = static_cast<uint64_t>(bitmap->width) * bitmap->height;
    const uint8_t targets[3] = {color->red, color->green, color->blue};
    uint8_t tables[3][256];
    for (int c = 0; c < 3; ++c) {
        vok::stretch_levels(counts + 256 * c, total, tables[c]);
        for (int v = 0; v < 256; ++v)
            tables[c][v] = fade_toward(tables[c][v], targets[c], color->alpha);
    }
    VokHistMap map;
    VokHistMapSet(&map, tables[0], tables[1], tables[2]);
    VokHistMapFade(&map, s);
    VokBitmapHistogramTransform(bitmap, &map);
}

}  // extern "C"
