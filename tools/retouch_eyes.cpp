// Eye retouching: red eye, brighter eyes, iris colour, eye shadow, mascara.
#include <cstdlib>
#include <cstring>

#include "tools/tools_internal.h"
#include "vok/color.h"
#include "vok/generators.h"
#include "vok/tonal.h"

namespace {

size_t pixel_count(const VokBitmap *bitmap) {
    return static_cast<size_t>(bitmap->width) * bitmap->height;
}

// Grey level in integers: (2 R + 7 G + B + 5) / 10.
int grey(const uint8_t *p) { return (2 * p[0] + 7 * p[1] + p[2] + 5) / 10; }

// Minimum of each channel over 2 r + 1 pixels along one axis, from `from` into `to`.
void minimum_pass(const uint8_t *from, uint8_t *to, uint32_t w, uint32_t h, int32_t r, bool rows) {
    const int32_t length = static_cast<int32_t>(rows ? w : h);
    const size_t step = rows ? 4 : 4 * size_t{w}, line_step = rows ? 4 * size_t{w} : 4;
    for (uint32_t line = 0; line < (rows ? h : w); ++line) {
        const uint8_t *in = from + line * line_step;
        uint8_t *out = to + line * line_step;
        for (int32_t i = 0; i < length; ++i) {
            uint8_t low[3] = {255, 255, 255};
            const int32_t lo = i - r < 0 ? 0 : i - r, hi = i + r >= length ? length - 1 : i + r;
            for (int32_t j = lo; j <= hi; ++j)
                for (int c = 0; c < 3; ++c)
                    if (in[j * step + c] < low[c]) low[c] = in[j * step + c];
            memcpy(out + i * step, low, 3);
            out[i * step + 3] = in[i * step + 3];
        }
    }
}

}  // namespace

extern "C" {

void VokRedEye(VokBitmap *source, VokBitmap *) {
    if (!vok::usable(source)) return;
    uint8_t *p = source->pixels;
    for (size_t i = 0; i < pixel_count(source); ++i, p += 4) {
        const int r = p[0], m = p[1] > p[2] ? p[1] : p[2];
        const int excess = 10 * r - 14 * m;  // red over 1.4 x the larger of the others
        if (excess <= 0 || r < 40) continue;
        // Full correction once red passes twice the others; the target keeps
        // the pixel's own green and blue, so lashes and glints keep their detail.
        const int weight = excess * 256 / (6 * r) > 256 ? 256 : excess * 256 / (6 * r);
        const int target = (p[1] + p[2] + 1) / 2;
        p[0] = static_cast<uint8_t>(r - ((r - target) * weight + 128) / 256);
    }
}

void VokEyeBright(VokBitmap *bitmap) {
    if (!vok::usable(bitmap)) return;
    // v + v (255 - v) / 1020: up to 16 levels in the mid-tones, 0 and 255 fixed.
    uint8_t lift[256];
    for (int v = 0; v < 256; ++v) lift[v] = static_cast<uint8_t>(v + (v * (255 - v) + 510) / 1020);
    VokHistMap map;
    VokHistMapSet(&map, lift, lift, lift);
    VokBitmapHistogramTransform(bitmap, &map);
    VokConvolutionEffectBoxHybridSharpen(bitmap, 30.0f);
}

void VokEyeColor(VokBitmap *source, VokBitmap *) {
    if (!vok::usable(source)) return;
    VokColor *p = reinterpret_cast<VokColor *>(source->pixels);
    for (size_t i = 0; i < pixel_count(source); ++i, ++p) {
        float hsl[3];
        VokColorRGB2HSL(p, hsl);
        // Full turn for saturated mid-tones, fading out toward black and white.
        float ends = hsl[2] < 0.5f ? (hsl[2] - 0.1f) * 10.0f : (0.9f - hsl[2]) * 10.0f;
        ends = ends < 0.0f ? 0.0f : ends > 1.0f ? 1.0f : ends;
        const float weight = hsl[1] * ends;
        if (weight <= 0.0f) continue;
        hsl[0] += weight / 3.0f;
        if (hsl[0] >= 1.0f) hsl[0] -= 1.0f;
        const uint8_t alpha = p->alpha;
        VokColorHSL2RGB(hsl, p);
        p->alpha = alpha;
    }
}

void VokEyeShadow(VokBitmap *bitmap, const VokColor *color) {
    if (!vok::usable(bitmap) || color == nullptr) return;
    VokColor tint = *color;
    VokBitmapBlendWithColor(bitmap, &tint, kVokBlendSoft, color->alpha / 510.0f);
}

void VokMascara(VokBitmap *bitmap) {
    if (!vok::usable(bitmap)) return;
    const uint32_t w = bitmap->width, h = bitmap->height;
    const int32_t r = static_cast<int32_t>((w + h) / 800 > 0 ? (w + h) / 800 : 1);
    uint8_t *across = static_cast<uint8_t *>(malloc(4 * pixel_count(bitmap)));
    uint8_t *low = static_cast<uint8_t *>(malloc(4 * pixel_count(bitmap)));
    if (across != nullptr && low != nullptr) {
        minimum_pass(bitmap->pixels, across, w, h, r, true);
        minimum_pass(across, low, w, h, r, false);
        // Dark pixels (grey under 160) take the neighbourhood minimum and lose
        // a little more, in proportion to how dark they are.
        uint8_t *p = bitmap->pixels;
        const uint8_t *m = low;
        for (size_t i = 0; i < pixel_count(bitmap); ++i, p += 4, m += 4) {
            const int dark = 160 - grey(p);
            if (dark <= 0) continue;
            for (int c = 0; c < 3; ++c) {
                const int toward = p[c] - (p[c] - m[c]) * dark / 160;
                p[c] = static_cast<uint8_t>(toward - toward * dark / 960);
            }
        }
    }
    free(low);
    free(across);
}

}  // extern "C"
