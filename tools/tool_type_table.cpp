// The tool types: one row each, with the whole-bitmap effect that the mask
// reveals where it is painted.
#include "tools/tool_type_table.h"

#include "tools/tools_internal.h"
#include "vok/color.h"
#include "vok/generators.h"
#include "vok/tonal.h"

namespace vok {
namespace {

void desaturate(VokBitmap *bitmap, VokToolDrawParams *) {
    VokColorMatrix matrix;
    VokColorMatrixSetIdentity(&matrix);
    VokColorMatrixAdjSaturation(&matrix, 0.0f);
    VokBitmapColorMatrixTransform(bitmap, &matrix);
}

void blur(VokBitmap *bitmap, VokToolDrawParams *) {
    VokConvolutionEffectBoxHybridSharpen(bitmap, -100.0f);
}

// Stores the effect colour in the tool (the similar-colour stamp compares
// against it) and blends the bitmap with it.
template <uint8_t R, uint8_t G, uint8_t B, VokBlendMode Mode>
void tint(VokBitmap *bitmap, VokToolDrawParams *params, float opacity) {
    VokColorSetARGB(&params->color, 255, R, G, B);
    VokBitmapBlendWithColor(bitmap, &params->color, Mode, opacity);
}

void adjust(VokBitmap *bitmap, double brightness, double contrast, double warmth) {
    VokToolAdjustBrightnessContrastWarmthSaturation(bitmap, brightness, contrast, warmth, 0.0,
                                                    kVokBlendNormal, 1.0f);
}

// Retouching functions that take the bitmap as source and destination.
template <void (*Engine)(VokBitmap *, VokBitmap *)>
void in_place(VokBitmap *bitmap, VokToolDrawParams *) {
    Engine(bitmap, bitmap);
}

template <void (*Engine)(VokBitmap *)>
void retouch(VokBitmap *bitmap, VokToolDrawParams *) {
    Engine(bitmap);
}

// The mosaic types call their engine with the parameter 0: the default cell size.
template <void (*Engine)(VokBitmap *, float)>
void mosaic(VokBitmap *bitmap, VokToolDrawParams *) {
    Engine(bitmap, 0.0f);
}

constexpr double kAny = kAnyColour;
constexpr StartMask kClear = StartMask::transparent;
constexpr FirstTouch kNoTouch = FirstTouch::none;
constexpr Stamp kBrush = Stamp::plain_brush;

// Indexed by type - 1; tool_type_row checks that every row sits at its type.
constexpr ToolTypeRow kRows[] = {
    {kVokToolDesaturate, "desaturate", "paint colour back into a black-and-white photo",
     StartMask::opaque, FirstTouch::sample_colour, Stamp::desaturate, desaturate, 10.0, 0},
    {kVokToolBlur, "blur", "soften detail where painted", kClear, kNoTouch, kBrush, blur, kAny, 0},
    {kVokToolBlemish, "blemish", "heal a spot from the skin around it", kClear, FirstTouch::blemish,
     Stamp::none, nullptr, kAny, kFullToolWhenDeferred | kFirstTouchEveryStroke},
    {kVokToolRedEye, "red eye", "take the red glare out of pupils", kClear, kNoTouch, kBrush,
     in_place<VokRedEye>, kAny, 0},
    {kVokToolWhiten, "whiten", "whiten teeth and the whites of eyes", kClear, kNoTouch, kBrush,
     [](VokBitmap *bitmap, VokToolDrawParams *) { VokWhiten(bitmap, bitmap); }, kAny, 0},
    {kVokToolSimilarSoft, "tan", "warm similar skin tones with a soft tan", kClear,
     FirstTouch::sample_colour, Stamp::similar_colours,
     [](VokBitmap *b, VokToolDrawParams *p) { tint<55, 44, 38, kVokBlendSoft>(b, p, 0.5f); }, 10.0,
     0},
    {kVokToolSimilarDarken, "blush", "darken similar tones toward a warm blush", kClear,
     FirstTouch::region_brightest, Stamp::similar_colours,
     [](VokBitmap *b, VokToolDrawParams *p) { tint<205, 144, 115, kVokBlendDarken>(b, p, 0.3f); },
     10.0, 0},
    {kVokToolSimilarSoftLight, "rosy", "a rosy soft-light tint on similar tones", kClear,
     FirstTouch::sample_colour, Stamp::similar_colours,
     [](VokBitmap *b, VokToolDrawParams *p) { tint<190, 89, 106, kVokBlendSoft>(b, p, 0.35f); },
     kAny, 0},
    {kVokToolLips, "lips", "colour the lips", kClear, FirstTouch::region_closest_to_lip,
     Stamp::similar_colours,
     [](VokBitmap *b, VokToolDrawParams *p) { tint<230, 55, 49, kVokBlendSoft>(b, p, 0.5f); }, 5.5,
     0},
    {kVokToolMascara, "mascara", "darken and thicken lashes", kClear, kNoTouch, kBrush,
     retouch<VokMascara>, kAny, 0},
    {kVokToolSoften, "soften", "smooth skin gently", kClear, kNoTouch, kBrush,
     [](VokBitmap *bitmap, VokToolDrawParams *) { VokToolSharpness(bitmap, 0, -150.0); }, kAny, 0},
    {kVokToolDraw, "draw", "paint with the brush colour", kClear, kNoTouch, Stamp::draw, nullptr,
     kAny, kSkipsFullTool | kPaintsColour},
    {kVokToolWarm, "warm", "warm the colours where painted", kClear, kNoTouch, kBrush,
     [](VokBitmap *bitmap, VokToolDrawParams *) { adjust(bitmap, 0.0, 0.0, 75.0); }, kAny, 0},
    {kVokToolContrastLift, "contrast", "add contrast, slightly darker", kClear, kNoTouch, kBrush,
     [](VokBitmap *bitmap, VokToolDrawParams *) { adjust(bitmap, -15.0, 40.0, 0.0); }, kAny, 0},
    {kVokToolPlain15, "mask 15", "paint the mask only (no effect)", kClear, kNoTouch, kBrush,
     nullptr, kAny, 0},
    {kVokToolEyeBright, "eye bright", "brighten the iris and the whites of eyes", kClear, kNoTouch,
     kBrush, retouch<VokEyeBright>, kAny, 0},
    {kVokToolEyeColor, "eye colour", "shift the colour of the iris", kClear, kNoTouch, kBrush,
     in_place<VokEyeColor>, kAny, 0},
    {kVokToolPlain18, "mask 18", "paint the mask only (no effect)", kClear, kNoTouch, kBrush,
     nullptr, kAny, 0},
    {kVokToolEyeShadow, "eye shadow", "a soft eye-shadow tint", kClear, kNoTouch, kBrush,
     [](VokBitmap *bitmap, VokToolDrawParams *) {
         const VokColor shadow = {74, 56, 50, 255};
         VokEyeShadow(bitmap, &shadow);
     },
     kAny, 0},
    {kVokToolAirbrush, "airbrush", "smooth skin texture, keep edges", kClear, kNoTouch, kBrush,
     retouch<VokAirbrush>, kAny, 0},
    {kVokToolBlur2, "blur 2", "soften detail where painted", kClear, kNoTouch, kBrush, blur, kAny,
     0},
    {kVokToolPixelate, "pixelate", "square mosaic cells", kClear, kNoTouch, kBrush,
     mosaic<VokBlurModesPixelateProcessor>, kAny, 0},
    {kVokToolTriangles, "triangles", "triangle mosaic cells", kClear, kNoTouch, kBrush,
     mosaic<VokBlurModesTrianglesProcessor>, kAny, 0},
    {kVokToolCircles, "circles", "round dots on a cell grid", kClear, kNoTouch, kBrush,
     mosaic<VokBlurModesCirclesProcessor>, kAny, 0},
    {kVokToolDiamonds, "diamonds", "diamond mosaic cells", kClear, kNoTouch, kBrush,
     mosaic<VokBlurModesDiamondsProcessor>, kAny, 0},
    {kVokToolHoundstooth, "houndstooth", "houndstooth mosaic cells", kClear, kNoTouch, kBrush,
     mosaic<VokBlurModesHoundstoothProcessor>, kAny, 0},
    {kVokToolChevrons, "chevrons", "chevron mosaic bands", kClear, kNoTouch, kBrush,
     mosaic<VokBlurModesChevronsProcessor>, kAny, 0},
    {kVokToolSines, "sines", "cells bounded by sine waves", kClear, kNoTouch, kBrush,
     mosaic<VokBlurModesSinesProcessor>, kAny, 0},
    {kVokToolScales, "scales", "fish-scale mosaic cells", kClear, kNoTouch, kBrush,
     mosaic<VokBlurModesScalesProcessor>, kAny, 0},
    {kVokToolBricks, "bricks", "offset brick mosaic cells", kClear, kNoTouch, kBrush,
     mosaic<VokBlurModesBricksProcessor>, kAny, 0},
    // 31 and 32 are the same tool, deliberately.
    {kVokToolVoronoi, "voronoi", "cells around scattered points", kClear, kNoTouch, kBrush,
     mosaic<VokBlurModesVoronoi>, kAny, 0},
    {kVokToolVoronoi2, "voronoi 2", "cells around scattered points", kClear, kNoTouch, kBrush,
     mosaic<VokBlurModesVoronoi>, kAny, 0},
    {kVokToolHearts, "hearts", "heart-shaped mosaic cells", kClear, kNoTouch, kBrush,
     mosaic<VokBlurModesHeartsProcessor>, kAny, 0},
    {kVokToolHexagons, "hexagons", "hexagonal mosaic cells", kClear, kNoTouch, kBrush,
     mosaic<VokBlurModesHexagons>, kAny, 0},
    {kVokToolRestore, "restore", "bring back the unedited photo", kClear, kNoTouch, kBrush, nullptr,
     kAny, kRestoresFromState},
};

constexpr int32_t kRowCount = static_cast<int32_t>(sizeof kRows / sizeof kRows[0]);

constexpr bool rows_in_type_order() {
    for (int32_t i = 0; i < kRowCount; ++i)
        if (kRows[i].type != i + 1) return false;
    return true;
}
static_assert(kRowCount == kVokToolRestore, "one row per tool type");
static_assert(rows_in_type_order(), "each row sits at index type - 1");

}  // namespace

const ToolTypeRow *tool_type_row(VokToolType type) {
    return type >= 1 && type <= kRowCount ? &kRows[type - 1] : nullptr;
}

}  // namespace vok

extern "C" {

void VokToolTypesApplyEffect(VokBitmap *bitmap, VokToolDrawParams *params) {
    params->tolerance = vok::kAnyColour;
    if (!vok::usable(bitmap)) return;
    const vok::ToolTypeRow *row = vok::tool_type_row(params->type);
    if (row == nullptr || row->full_effect == nullptr) return;
    row->full_effect(bitmap, params);
    params->tolerance = row->tolerance;
}

void VokToolAdjustColorProcessor(VokBitmap *bitmap, double brightness, double contrast,
                                 double warmth, double saturation) {
    VokToolAdjustBrightnessContrastWarmthSaturationProcessor(bitmap, brightness, contrast, warmth,
                                                             saturation, kVokBlendNormal, 1.0f);
}

const char *VokToolTypeName(VokToolType type) {
    const vok::ToolTypeRow *row = vok::tool_type_row(type);
    return row != nullptr ? row->name : nullptr;
}

const char *VokToolTypeDescription(VokToolType type) {
    const vok::ToolTypeRow *row = vok::tool_type_row(type);
    return row != nullptr ? row->description : nullptr;
}

}  // extern "C"
