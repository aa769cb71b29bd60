// The named presets: hand-tuned sequences of engine calls, each taking the
// effect params' strength (and seed where it draws at random).
#include "effects/legacy_presets.h"

#include <cstring>

#include "vok/color.h"
#include "vok/generators.h"
#include "vok/tonal.h"

namespace vok {
namespace {

// A soft warm white the highlights lean to.
const VokColor kWarmHighlight = {255, 236, 206, 255};

float strength_of(const VokEffectParams *params) {
    const double s = params->strength;
    return static_cast<float>(s < 0.0 ? 0.0 : s > 1.0 ? 1.0 : s);
}

// A border of one style and colour, its opacity the strength, its edges
// seeded by the params.
template <uint32_t Style, uint8_t R, uint8_t G, uint8_t B, VokBlendMode Mode = kVokBlendNormal,
          uint32_t Shape = kVokBorderShapeSharp>
void border(VokBitmap *bitmap, const VokEffectParams *params) {
    VokBorderParams record;
    VokBorderInitParams(&record);
    record.style = Style;
    record.color = {R, G, B, static_cast<uint8_t>(255.0f * strength_of(params) + 0.5f)};
    record.blendMode = Mode;
    record.shapeMode = Shape;
    record.seed = static_cast<uint32_t>(params->seed);
    if (Style == kVokBorderVignette) record.scale = 1.1;
    VokBorders(bitmap, &record);
}

// A light flare placed on the photo, its opacity the strength.
template <uint32_t Type, uint8_t R, uint8_t G, uint8_t B>
void flare(VokBitmap *bitmap, const VokEffectParams *params) {
    const VokColor colour = {R, G, B, static_cast<uint8_t>(230.0f * strength_of(params))};
    VokFlare(bitmap, 0.9f, colour, Type, 0.28f, 0.22f, 1.0f, 1.0f, kVokBlendScreen, 1.0);
}

template <uint32_t Texture>
void texture(VokBitmap *bitmap, const VokEffectParams *params) {
    VokFractalTextureApply(bitmap, Texture, strength_of(params) * 0.6f,
                           static_cast<uint32_t>(params->seed));
}

// Runs `engine` on a copy and lays the copy over the photo at the strength.
template <void (*Engine)(VokBitmap *)>
void mixed(VokBitmap *bitmap, const VokEffectParams *params) {
    VokBitmap copy;
    if (!VokBitmapBuild(&copy, bitmap->width, bitmap->height)) return;
    if (VokBitmapCopy(&copy, bitmap)) {
        Engine(&copy);
        VokBitmapBlendBitmap(bitmap, &copy, kVokBlendNormal, strength_of(params));
    }
    VokBitmapFree(&copy);
}

void soft_focus(VokBitmap *bitmap) { VokConvolutionEffectSoftFocus(bitmap); }

void sepia_tint(VokBitmap *bitmap, const VokEffectParams *params) {
    // Grey, then warmed: each channel a weighting of the three, as old prints age.
    const VokColorMatrix sepia = {{0.393f, 0.769f, 0.189f, 0, 0.349f, 0.686f, 0.168f, 0, 0.272f,
                                   0.534f, 0.131f, 0}};
    VokBitmapColorMatrixTransformAndBlendWithOriginal(bitmap, &sepia, kVokBlendNormal,
                                                      strength_of(params));
}

void cool_tint(VokBitmap *bitmap, const VokEffectParams *params) {
    VokColor blue = {70, 120, 200, 255};
    VokBitmapBlendWithColor(bitmap, &blue, kVokBlendSoft, 0.4f * strength_of(params));
}

// Searched in this order; the first 24 are borders and obey bordersEnabled.
const LegacyPreset kPresets[] = {
    {"whiteRectFrame", true, border<kVokBorderRect, 250, 250, 248>},
    {"blackRectFrame", true, border<kVokBorderRect, 12, 12, 12>},
    {"softWhiteFrame", true, border<kVokBorderSmooth, 250, 248, 242, kVokBlendNormal, kVokBorderShapeNormal>},
    {"softBlackFrame", true, border<kVokBorderSmooth, 10, 10, 10, kVokBlendNormal, kVokBorderShapeNormal>},
    {"halftoneWhiteFrame", true, border<kVokBorderHalftone, 255, 255, 255>},
    {"halftoneBlackFrame", true, border<kVokBorderHalftone, 0, 0, 0>},
    {"ruledCreamFrame", true, border<kVokBorderLines, 240, 230, 205>},
    {"dropShadow", true, border<kVokBorderShadow, 0, 0, 0, kVokBlendMultiply>},
    {"fadeToWhite", true, border<kVokBorderFade, 255, 255, 255, kVokBlendNormal, kVokBorderShapeNormal>},
    {"fadeToBlack", true, border<kVokBorderFade, 0, 0, 0, kVokBlendNormal, kVokBorderShapeNormal>},
    {"roughWhiteEdge", true, border<kVokBorderRough, 250, 248, 240>},
    {"roughBlackEdge", true, border<kVokBorderRough, 10, 10, 10>},
    {"lensBulge", true, border<kVokBorderBulge, 0, 0, 0, kVokBlendNormal, kVokBorderShapeNormal>},
    {"tornPaper", true, border<kVokBorderTorn, 246, 242, 232, kVokBlendNormal, kVokBorderShapeUltraSharp>},
    {"tornPadPage", true, border<kVokBorderTorn2, 250, 250, 245, kVokBlendNormal, kVokBorderShapeUltraSharp>},
    {"roundedCorners", true, border<kVokBorderRound, 255, 255, 255>},
    {"roundedCornersBlack", true, border<kVokBorderRound, 0, 0, 0>},
    {"photoShareFrame", true, border<kVokBorderFlickr, 255, 255, 255, kVokBlendNormal, kVokBorderShapeUltraSharp>},
    {"randomBlackFrame", true, border<kVokBorderHardRand, 8, 8, 8, kVokBlendNormal, kVokBorderShapeUltraSharp>},
    {"randomWhiteFrame", true, border<kVokBorderHardRand, 252, 252, 252, kVokBlendNormal, kVokBorderShapeUltraSharp>},
    {"instantPrint", true, border<kVokBorderInstant, 246, 243, 234, kVokBlendNormal, kVokBorderShapeUltraSharp>},
    {"darkVignette", true, border<kVokBorderVignette, 0, 0, 0, kVokBlendMultiply, kVokBorderShapeNormal>},
    {"whiteVignette", true, border<kVokBorderVignette, 255, 255, 255, kVokBlendScreen, kVokBorderShapeNormal>},
    {"viewfinder", true, border<kVokBorderViewfinder, 255, 255, 255>},
    // Edge treatments that stay on whatever bordersEnabled says.
    {"burnedEdges", false, border<kVokBorderFade, 90, 45, 20, kVokBlendMultiply, kVokBorderShapeNormal>},
    {"sepiaVignette", false, border<kVokBorderVignette, 112, 66, 20, kVokBlendMultiply, kVokBorderShapeSharp>},
    // Light.
    {"warmSunFlare", false, flare<kVokFlareGaussianThing3, 255, 190, 110>},
    {"lensFlareRings", false, flare<kVokFlareBlah, 180, 220, 255>},
    // Tints.
    {"sepiaTint", false, sepia_tint},
    {"coolTint", false, cool_tint},
    // Textures.
    {"filmGrain", false, texture<kVokTextureGrain>},
    {"oldPaper", false, texture<kVokTexturePaper>},
    {"dustAndSpecks", false, texture<kVokTextureDust>},
    // Focus and clarity.
    {"softFocus", false, mixed<soft_focus>},
    {"clarity", false, mixed<VokLocalContrastEnhance>},
    // Automatic corrections: colour cast out and tones spread in LAB; exposure
    // and contrast from the photo's brightness; channels stretched with warm highlights.
    {"autoColourTone", false,
     [](VokBitmap *b, const VokEffectParams *p) { VokLabCorrect(b, strength_of(p)); }},
    {"autoContrast", false,
     [](VokBitmap *b, const VokEffectParams *p) { VokVaryingContrast(b, strength_of(p)); }},
    {"autoColoursWarmHighlights", false,
     [](VokBitmap *b, const VokEffectParams *p) {
         VokAutoColorsFadeMaxColor(b, strength_of(p), &kWarmHighlight);
     }},
};
static_assert(sizeof kPresets / sizeof kPresets[0] == 38, "thirty-eight presets");

}  // namespace

const LegacyPreset *find_legacy_preset(const char *name) {
    for (const LegacyPreset &preset : kPresets)
        if (strcmp(preset.name, name) == 0) return &preset;
    return nullptr;
}

const LegacyPreset *legacy_presets(uint32_t *count) {
    *count = sizeof kPresets / sizeof kPresets[0];
    return kPresets;
}

}  // namespace vok
