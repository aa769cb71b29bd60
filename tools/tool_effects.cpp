// The full effect of each tool type: what the whole bitmap looks like where
// the mask is fully painted.
#include "vok/tools.h"

#include "tools/tools_internal.h"
#include "vok/color.h"
#include "vok/generators.h"
#include "vok/tonal.h"

namespace {

void desaturate(VokBitmap *bitmap) {
    VokColorMatrix matrix;
    VokColorMatrixSetIdentity(&matrix);
    VokColorMatrixAdjSaturation(&matrix, 0.0f);
    VokBitmapColorMatrixTransform(bitmap, &matrix);
}

// Stores the effect colour in the tool (the similar-colour stamp compares
// against it) and blends the bitmap with it.
void tint(VokBitmap *bitmap, VokToolDrawParams *params, uint8_t red, uint8_t green,
          uint8_t blue, VokBlendMode mode, float opacity, double tolerance) {
    VokColorSetARGB(&params->color, 255, red, green, blue);
    VokBitmapBlendWithColor(bitmap, &params->color, mode, opacity);
    params->tolerance = tolerance;
}

// Names of the engines behind the types whose full effect is still to come.
const char *unavailable_effect(VokToolType type) {
    // Types 22 to 34; 31 and 32 share one engine.
    static const char *const kMosaicBlurs[] = {
        "VokBlurModesPixelateProcessor",    "VokBlurModesTrianglesProcessor",
        "VokBlurModesCirclesProcessor",     "VokBlurModesDiamondsProcessor",
        "VokBlurModesHoundstoothProcessor", "VokBlurModesChevronsProcessor",
        "VokBlurModesSinesProcessor",       "VokBlurModesScalesProcessor",
        "VokBlurModesBricksProcessor",      "VokBlurModesVoronoi",
        "VokBlurModesVoronoi",              "VokBlurModesHeartsProcessor",
        "VokBlurModesHexagons"};
    switch (type) {
        case kVokToolRedEye: return "VokRedEye";
        case kVokToolMascara: return "VokMascara";
        case kVokToolEyeBright: return "VokEyeBright";
        case kVokToolEyeColor: return "VokEyeColor";
        case kVokToolEyeShadow: return "VokEyeShadow";
        case kVokToolAirbrush: return "VokAirbrush";
        default: break;
    }
    if (type >= kVokToolPixelate && type <= kVokToolHexagons)
        return kMosaicBlurs[type - kVokToolPixelate];
    return nullptr;
}

}  // namespace

extern "C" {

void VokToolTypesApplyEffect(VokBitmap *bitmap, VokToolDrawParams *params) {
    params->tolerance = vok::kAnyColour;
    if (!vok::usable(bitmap)) return;
    switch (params->type) {
        case kVokToolDesaturate:
            desaturate(bitmap);
            params->tolerance = 10.0;
            return;
        case kVokToolBlur:
        case kVokToolBlur2:
            VokConvolutionEffectBoxHybridSharpen(bitmap, -100.0f);
            return;
        case kVokToolWhiten:
            VokWhiten(bitmap, bitmap);
            return;
        case kVokToolSimilarSoft:
            tint(bitmap, params, 55, 44, 38, kVokBlendSoft, 0.5f, 10.0);
            return;
        case kVokToolSimilarDarken:
            tint(bitmap, params, 205, 144, 115, kVokBlendDarken, 0.3f, 10.0);
            return;
        case kVokToolSimilarSoftLight:
            tint(bitmap, params, 190, 89, 106, kVokBlendSoft, 0.35f, vok::kAnyColour);
            return;
        case kVokToolLips:
            tint(bitmap, params, 230, 55, 49, kVokBlendSoft, 0.5f, 5.5);
            return;
        case kVokToolSoften:
            VokToolSharpness(bitmap, 0, -150.0);
            return;
        case kVokToolWarm:
            VokToolAdjustBrightnessContrastWarmthSaturation(bitmap, 0.0, 0.0, 75.0, 0.0,
                                                            kVokBlendNormal, 1.0f);
            return;
        case kVokToolContrastLift:
            VokToolAdjustBrightnessContrastWarmthSaturation(bitmap, -15.0, 40.0, 0.0, 0.0,
                                                            kVokBlendNormal, 1.0f);
            return;
        default:
            break;
    }
    if (const char *engine = unavailable_effect(params->type)) vok::log_unavailable(engine);
}

}  // extern "C"
