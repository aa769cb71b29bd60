/* Effect descriptions: loading a JSON effect, running its processors on a
 * bitmap, and converting JSON values into engine values.
 *
 * A loaded effect is the root of a parsed yajl tree. Parameters and values
 * are yajl tree nodes; the header only needs the node type by name, so hosts
 * need not include yajl themselves. */
#ifndef VOK_EFFECTS_H
#define VOK_EFFECTS_H

#include <stdint.h>
#include "vok/core.h"
#include "vok/color.h"
#include "vok/tonal.h"
#include "vok/generators.h"

VOK_BEGIN_DECLS

struct yajl_val_s;
typedef struct yajl_val_s *VokJsonValue;

/* ---- Loading and running -------------------------------------------------- */
VOK_API VokJsonValue TESKLoadEffect(const char *json);
VOK_API void TESKUnloadEffect(VokJsonValue *effect);
VOK_API int TESKRunEffect(VokJsonValue effect, VokBitmap *bitmap, const VokEffectParams *params);
VOK_API int TESKRunEffectProcessors(VokJsonValue effect, VokBitmap *bitmap,
                                    const VokEffectParams *params);
VOK_API int TESKRunAdjustableAlphaEffect(VokJsonValue effect, VokBitmap *bitmap,
                                         const VokEffectParams *params);
VOK_API int TESKRunProcessor(VokJsonValue processor, VokBitmap *bitmap,
                             const VokEffectParams *params);

/* ---- Processor runners: (parameters, bitmap, effect params) -> 1 or 0 ------ */
#define VOK_DECLARE_RUNNER(name) \
    VOK_API int name(VokJsonValue parameters, VokBitmap *bitmap, const VokEffectParams *params)
VOK_DECLARE_RUNNER(TESKRunOriginalProcessor);
VOK_DECLARE_RUNNER(TESKRunVignetteProcessor);
VOK_DECLARE_RUNNER(TESKRunLegacyProcessor);
VOK_DECLARE_RUNNER(TESKRunHistogramMappingProcessor);
VOK_DECLARE_RUNNER(TESKRunGammaProcessor);
VOK_DECLARE_RUNNER(TESKRunColorMatrixTransformProcessor);
VOK_DECLARE_RUNNER(TESKRunIntensityMapProcessor);
VOK_DECLARE_RUNNER(TESKRunFlareProcessor);
VOK_DECLARE_RUNNER(TESKRunContrastProcessor);
VOK_DECLARE_RUNNER(TESKRunBlendWithColorProcessor);
VOK_DECLARE_RUNNER(TESKRunNoiseProcessor);
VOK_DECLARE_RUNNER(TESKRunSharpnessProcessor);
VOK_DECLARE_RUNNER(TESKRunGradientProcessor);
VOK_DECLARE_RUNNER(TESKRunGradientMapProcessor);
VOK_DECLARE_RUNNER(TESKRunGradientFlareProcessor);
VOK_DECLARE_RUNNER(TESKRunAdjustmentsProcessor);
VOK_DECLARE_RUNNER(TESKRunAutoColorsFadeMaxProcessor);

/* ---- Legacy presets ("legacyProcessor" with "legacyName") -----------------
 * Each takes the effect params' strength (clamped to 0..1) and seed. The 24
 * borders (the first 24 below) leave the bitmap alone, successfully, when the
 * params' bordersEnabled is 0.
 *   whiteRectFrame, blackRectFrame   a plain frame, white or black
 *   softWhiteFrame, softBlackFrame   a frame with a soft inner edge
 *   halftoneWhiteFrame               halftone dots growing toward the edge, white
 *   halftoneBlackFrame               the same in black
 *   ruledCreamFrame                  ruled cream lines round the edge
 *   dropShadow                       a shadow falling to the bottom right
 *   fadeToWhite, fadeToBlack         a wide fade into white or black
 *   roughWhiteEdge, roughBlackEdge   a ragged frame from the seed
 *   lensBulge                        a dark pillow-shaped lens edge
 *   tornPaper                        torn paper on all four sides, from the seed
 *   tornPadPage                      torn top and bottom, straight sides
 *   roundedCorners                   white rounded corners
 *   roundedCornersBlack              black rounded corners
 *   photoShareFrame                  a thin white frame with a keyline
 *   randomBlackFrame                 a hard black frame, each side's depth from the seed
 *   randomWhiteFrame                 the same in white
 *   instantPrint                     an instant-print frame, deep below
 *   darkVignette                     a multiplied dark vignette
 *   whiteVignette                    a screened white vignette
 *   viewfinder                       a camera finder's corner brackets and cross
 *   burnedEdges                      brown burned edges (always drawn)
 *   sepiaVignette                    a sepia vignette (always drawn)
 *   warmSunFlare                     a warm sun glow in the upper left
 *   lensFlareRings                   a cool halo ring in the upper left
 *   sepiaTint                        a sepia print, mixed by strength
 *   coolTint                         a soft blue cast
 *   filmGrain                        fractal film grain, from the seed
 *   oldPaper                         fractal paper fibres, warm and darker
 *   dustAndSpecks                    sparse dust and specks, from the seed
 *   softFocus                        the soft-focus glow, mixed by strength
 *   clarity                          local contrast enhancement, mixed by strength
 *   autoColourTone                   automatic colour and tone in LAB
 *   autoContrast                     automatic exposure and contrast
 *   autoColoursWarmHighlights        automatic colours with warm highlights */
/* The name of preset `index` in search order (0 to 37), a static string; null past the last. */
VOK_API const char *TESKLegacyPresetName(uint32_t index);
/* 1 when preset `index` is a border (obeys bordersEnabled), else 0. */
VOK_API int TESKLegacyPresetIsBorder(uint32_t index);
#undef VOK_DECLARE_RUNNER

/* ---- Value converters: 1 when the output is usable, 0 when the runner must
 * fail. Blend modes and border shape modes never fail (default 0). --------- */
VOK_API int TESKColorFromColorVal(VokJsonValue value, VokColor *out);
VOK_API int TESKHistMapfromHistMapVal(VokJsonValue value, VokHistMap *out);
VOK_API int TESKBlendModeFromBlendModeVal(VokJsonValue value, uint32_t *out);
VOK_API int TESKBorderShapeModeFromBorderShapeModeVal(VokJsonValue value, uint32_t *out);
VOK_API int TESKBorderStyleFromBorderStyleTypeVal(VokJsonValue value, uint32_t *out);
VOK_API int TESKFlareTypeFromFlareTypeVal(VokJsonValue value, uint32_t *out);
VOK_API int TESKBorderPopoulateWithShapeTypeVal(VokJsonValue shape, VokBorderParams *border,
                                                const VokBitmap *bitmap, float strength,
                                                uint8_t addEpsilon);
VOK_API float TESKBlendAroundIdentity(float value, float identity, float strength);
VOK_API int TESKGradientfromColorsValAndOpacitiesVal(VokJsonValue colors,
                                                     VokJsonValue opacities,
                                                     VokGradient *gradient);

VOK_END_DECLS

#endif
