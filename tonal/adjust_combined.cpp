// Brightness, contrast, warmth and saturation in one adjustment, blended over
// the unadjusted pixels. The design is described with the declaration in
// vok/tonal.h.
#include <cstring>

#include "tonal/tonal_internal.h"
#include "vok/color.h"
#include "vok/tonal.h"

namespace {

// Pixels handled at a time: the working copy stays in the first-level cache
// and lives on the stack, so the adjustment allocates nothing.
constexpr uint32_t kStripPixels = 1024;

struct Adjustment {
    VokHistMap tones;           // brightness, contrast and warmth, composed
    bool saturate;              // false when the saturation matrix is the identity
    VokColorMatrix saturation;
    VokBlendMode mode;
    float opacity;
};

// An opaque grey ramp: run a per-channel operation on it and pixel v holds
// what the operation makes of level v.
void fill_ramp(uint8_t *pixels) {
    for (uint32_t v = 0; v < 256; ++v) {
        pixels[4 * v] = pixels[4 * v + 1] = pixels[4 * v + 2] = static_cast<uint8_t>(v);
        pixels[4 * v + 3] = 255;
    }
}

void ramp_to_map(const uint8_t *pixels, VokHistMap *map) {
    for (int c = 0; c < 3; ++c)
        for (int v = 0; v < 256; ++v) map->table[c][v] = pixels[4 * v + c];
}

// Runs the three per-channel sliders on a grey ramp; the ramp then holds
// their composition, exact by construction. A zero amount is skipped, so
// contrast 0 changes nothing here (the contrast slider alone would lower
// the upper half by one).
void compose_tones(double brightness, double contrast, double warmth, VokHistMap *tones) {
    uint8_t pixels[256 * 4];
    fill_ramp(pixels);
    VokBitmap ramp = {pixels, 256, 1};
    if (brightness != 0.0) VokToolBrightness(&ramp, 0, brightness);
    if (contrast != 0.0) VokToolContrast(&ramp, 0, contrast);
    if (warmth != 0.0) VokToolWarmth(&ramp, 0, warmth);
    ramp_to_map(pixels, tones);
}

// Adjusts a copy of a run of pixels and blends it back over them. The copy
// is made opaque so that the blend's opacity is the caller's opacity alone.
void adjust_run(const Adjustment &adjustment, uint8_t *pixels, uint32_t count) {
    uint8_t work[kStripPixels * 4];
    std::memcpy(work, pixels, static_cast<size_t>(count) * 4);
    for (uint32_t i = 0; i < count; ++i) work[4 * i + 3] = 255;
    VokBitmap copy = {work, count, 1};
    VokBitmap target = {pixels, count, 1};
    VokBitmapHistogramTransform(&copy, &adjustment.tones);
    if (adjustment.saturate) VokBitmapColorMatrixTransform(&copy, &adjustment.saturation);
    VokBitmapBlendBitmap(&target, &copy, adjustment.mode, adjustment.opacity);
}

}  // namespace

extern "C" {

void VokToolAdjustBrightnessContrastWarmthSaturationProcessor(
    VokBitmap *bitmap, double brightness, double contrast, double warmth, double saturation,
    VokBlendMode mode, float opacity) {
    Adjustment adjustment;
    compose_tones(brightness, contrast, warmth, &adjustment.tones);
    const float factor = vok::saturation_factor(saturation);
    adjustment.saturate = factor != 1.0f;
    VokColorMatrixSetIdentity(&adjustment.saturation);
    VokColorMatrixAdjSaturation(&adjustment.saturation, factor);
    adjustment.mode = mode;
    adjustment.opacity = opacity;

    const size_t total = static_cast<size_t>(bitmap->width) * bitmap->height;
    if (!adjustment.saturate && mode != kVokBlendColor) {
        // Every step then works channel by channel: run the whole adjustment
        // on a grey ramp once and apply the result as a single table.
        uint8_t pixels[256 * 4];
        fill_ramp(pixels);
        adjust_run(adjustment, pixels, 256);
        VokHistMap folded;
        ramp_to_map(pixels, &folded);
        VokBitmapHistogramTransform(bitmap, &folded);
        return;
    }
    for (size_t done = 0; done < total; done += kStripPixels) {
        const size_t left = total - done;
        adjust_run(adjustment, bitmap->pixels + 4 * done,
                   static_cast<uint32_t>(left < kStripPixels ? left : kStripPixels));
    }
}

void VokToolAdjustBrightnessContrastWarmthSaturation(VokBitmap *bitmap, double brightness,
                                                     double contrast, double warmth,
                                                     double saturation, VokBlendMode mode,
                                                     float opacity) {
    VokBitmapBeginGLEffectIfEnabled(bitmap);
    VokToolAdjustBrightnessContrastWarmthSaturationProcessor(bitmap, brightness, contrast, warmth,
                                                             saturation, mode, opacity);
    VokBitmapEndGLEffectIfEnabled(bitmap);
}

}  // extern "C"
