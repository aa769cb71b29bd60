/* Interactive tools: stroke interpolation, the tool framework (full-effect
 * bitmap, coverage mask, previews, final render), masks, the draw brush and
 * the retouching functions. */
#ifndef VOK_TOOLS_H
#define VOK_TOOLS_H

#include <stdint.h>
#include "vok/core.h"
#include "vok/color.h"

VOK_BEGIN_DECLS

typedef int32_t VokToolType;

enum {
    kVokToolDesaturate = 1, kVokToolBlur = 2, kVokToolBlemish = 3, kVokToolRedEye = 4,
    kVokToolWhiten = 5, kVokToolSimilarSoft = 6, kVokToolSimilarDarken = 7,
    kVokToolSimilarSoftLight = 8, kVokToolLips = 9, kVokToolMascara = 10,
    kVokToolSoften = 11, kVokToolDraw = 12, kVokToolWarm = 13, kVokToolContrastLift = 14,
    kVokToolPlain15 = 15, kVokToolEyeBright = 16, kVokToolEyeColor = 17,
    kVokToolPlain18 = 18, kVokToolEyeShadow = 19, kVokToolAirbrush = 20, kVokToolBlur2 = 21,
    kVokToolPixelate = 22, kVokToolTriangles = 23, kVokToolCircles = 24,
    kVokToolDiamonds = 25, kVokToolHoundstooth = 26, kVokToolChevrons = 27,
    kVokToolSines = 28, kVokToolScales = 29, kVokToolBricks = 30, kVokToolVoronoi = 31,
    kVokToolVoronoi2 = 32, kVokToolHearts = 33, kVokToolHexagons = 34, kVokToolRestore = 35
};

/* ---- Records ------------------------------------------------------------- */
typedef struct VokToolDrawParams {
    VokToolType type;
    VokColor color;         /* effect colour, or reference colour of types 6 to 9 */
    double strength;        /* weight of one stamp, 0 to 1 */
    double tolerance;       /* LAB tolerance of the similar-colour types */
    uint8_t deferFullTool;
    uint8_t showMaskInRed;
    uint8_t useBrushEngine;
} VokToolDrawParams;

typedef struct VokToolPoint {
    VokPoint location;
    double radius;
    int32_t mode;
} VokToolPoint;

typedef struct VokToolStroke {
    VokPoint *points;       /* host-owned touch positions */
    double *pointData;      /* optional per-point value (pressure) for the brush engine */
    int32_t count;
    int32_t firstIndex;     /* first point not yet drawn; the host advances it */
    uint8_t ended;
    double radius;
    double scale;
    int32_t mode;
    uint8_t colorSet;
    VokColor color;
    VokPoint offsetPoint;
} VokToolStroke;

typedef struct VokToolShape {
    int32_t type;           /* 1 radial, 2 linear */
    VokPoint center;
    double size;
    double angle;           /* degrees */
} VokToolShape;

typedef struct VokToolDrawState {
    uint8_t active;
    VokToolType type;
    VokBitmap *restoreBitmap;
} VokToolDrawState;

VOK_API void VokToolDrawParamsInit(VokToolDrawParams *params);
VOK_API void VokToolPointInit(VokToolPoint *point);
VOK_API void VokToolStrokeInit(VokToolStroke *stroke);
VOK_API void VokToolShapeInit(VokToolShape *shape);
VOK_API void VokToolDrawStateInit(VokToolDrawState *state);
VOK_API void VokToolDrawStateDestroy(VokToolDrawState *state);
VOK_API int VokToolBitmapCopy(VokBitmap **out, const VokBitmap *source);
VOK_API void VokToolBitmapDestroy(VokBitmap **bitmap);

/* ---- Tool run ------------------------------------------------------------- */
VOK_API void VokToolInit(const VokBitmap *source, VokBitmap *result, VokBitmap *mask,
                         VokToolDrawParams *params, VokToolDrawState *state);
VOK_API void VokToolConfigureMask(const VokBitmap *bitmap, VokBitmap *mask,
                                  const VokToolDrawParams *params);
VOK_API void VokToolApplyFullTool(VokBitmap *bitmap, VokToolDrawParams *params,
                                  const VokToolDrawState *state);
VOK_API void VokToolTypesApplyEffect(VokBitmap *bitmap, VokToolDrawParams *params);
/* A tool type's short name ("blur", "red eye"...) and a one-line description of
 * what it is for, as static strings the caller must not free; null outside 1 to 35. */
VOK_API const char *VokToolTypeName(VokToolType type);
VOK_API const char *VokToolTypeDescription(VokToolType type);

/* ---- Strokes and shapes ----------------------------------------------------- */
VOK_API void VokToolDrawStrokeOutRect(const VokBitmap *bitmap, VokBitmap *mask,
                                      VokToolStroke *stroke, VokToolDrawParams *params,
                                      const VokToolDrawState *state, VokPoint *outMin,
                                      VokPoint *outMax);
VOK_API void VokToolDrawStroke(const VokBitmap *bitmap, VokBitmap *mask, VokToolStroke *stroke,
                               VokToolDrawParams *params, const VokToolDrawState *state);
VOK_API void VokToolTypesFirstDownProcessing(const VokBitmap *bitmap, VokToolStroke *stroke,
                                             VokToolDrawParams *params,
                                             const VokToolDrawState *state);
VOK_API void VokToolTypesDrawPoint(const VokBitmap *bitmap, VokBitmap *mask,
                                   const VokToolPoint *point, const VokColor *strokeColor,
                                   int32_t strokeMode, const VokToolDrawParams *params);
VOK_API void VokToolDrawShapeInMask(const VokBitmap *bitmap, VokBitmap *mask,
                                    const VokToolShape *shape);

/* ---- Rendering -------------------------------------------------------------- */
VOK_API void VokToolRenderPreviewBox(VokBitmap *out, const VokBitmap *base, const VokBitmap *full,
                                     const VokBitmap *mask, int32_t x0, int32_t y0, int32_t x1,
                                     int32_t y1, const VokToolDrawState *state);
VOK_API void VokToolRenderPreviewBoxPremultipliedAlpha(VokBitmap *out, const VokBitmap *base,
                                                       const VokBitmap *full,
                                                       const VokBitmap *mask, int32_t x0,
                                                       int32_t y0, int32_t x1, int32_t y1);
VOK_API void VokToolRenderPreview(VokBitmap *out, const VokBitmap *base, const VokBitmap *full,
                                  const VokBitmap *mask, const VokToolDrawState *state);
VOK_API void VokToolRenderHiRes(VokBitmap *bitmap, const VokBitmap *mask,
                                VokToolDrawParams *params, const VokToolDrawState *state);

/* ---- Stroke interpolation ---------------------------------------------------
 * Each returns a malloc'ed array of *count positions in *out (free with free). */
VOK_API void VokInterpolateFirstPointToMidpoint(float ax, float ay, float bx, float by,
                                                float radius, VokPoint **out, int32_t *count,
                                                int isDraw);
VOK_API void VokInterpolateBetweenPointsWithBezierQuadCurve(float ax, float ay, float bx,
                                                            float by, float cx, float cy,
                                                            float radius, VokPoint **out,
                                                            int32_t *count, int isDraw);
VOK_API void VokInterpolateBetweenPointsWithBezierQuadCurveAndFinishToPoint(
    float ax, float ay, float bx, float by, float cx, float cy, float radius, VokPoint **out,
    int32_t *count, int isDraw);
VOK_API void VokInterpolateMidpointToSecondPoint(float ax, float ay, float bx, float by,
                                                 float radius, VokPoint **out, int32_t *count,
                                                 int isDraw);

/* ---- Masks -------------------------------------------------------------------
 * Only the mask's alpha carries coverage (0 photo, 255 full effect); the draw
 * tool keeps premultiplied colour in the other three bytes. */
VOK_API void VokMaskSetOpaque(VokBitmap *mask);
VOK_API void VokMaskSetTransparent(VokBitmap *mask);
VOK_API void VokMaskSimilarColors(const VokBitmap *bitmap, VokBitmap *mask,
                                  const VokColor *reference, int32_t flag, double x, double y,
                                  double radius, double tolerance, double unused,
                                  double strength, int32_t erase, int32_t useLightness,
                                  int32_t ignoreColor);
VOK_API void VokMaskDraw(VokBitmap *mask, const VokColor *color, double x, double y,
                         double radius, double strength, int32_t erase);

/* ---- Brush engine ------------------------------------------------------------ */
VOK_API void VokDrawToolDrawStrokeSegment(const VokBitmap *bitmap, VokBitmap *mask,
                                          const VokToolDrawState *state,
                                          const VokToolDrawParams *params,
                                          VokToolStroke *stroke, VokPoint *outMin,
                                          VokPoint *outMax);

/* ---- Retouching -------------------------------------------------------------------- */
VOK_API void VokWhiten(VokBitmap *source, VokBitmap *destination);

/* ---- Retouching ----------------------------------------------------------
 * Whole-bitmap corrections behind the retouching tools, applied to the full
 * effect that the brush then reveals; alpha is kept. A null or empty bitmap
 * is left alone, as is one whose scratch memory cannot be had. Where a
 * function takes a source and a destination it works on the source in place
 * and ignores the destination. */
/* Red glare out of pupils: where red exceeds 1.4 x the larger of green and
 * blue, red moves toward the mean of green and blue, the more the redder;
 * neutral, skin and highlight pixels keep their colour. */
VOK_API void VokRedEye(VokBitmap *source, VokBitmap *destination);
/* Brighter eyes: a lift of the mid-tones that never clips (255 stays 255)
 * and a light sharpening for local contrast. */
VOK_API void VokEyeBright(VokBitmap *bitmap);
/* Iris colour: saturated colours turn a third of the hue circle (toward
 * green from brown, blue from green...), weighted by their saturation; the
 * pupil's darks and the highlights' brights keep theirs. */
VOK_API void VokEyeColor(VokBitmap *source, VokBitmap *destination);
/* Eye shadow: `color` blended in soft-light at half its alpha. */
VOK_API void VokEyeShadow(VokBitmap *bitmap, const VokColor *color);
/* Mascara: dark, thin structures darkened and thickened by a small minimum
 * filter (radius from the image size), blended in by how dark they are. */
VOK_API void VokMascara(VokBitmap *bitmap);
/* Airbrush: skin smoothed where the texture is faint, edges kept: each
 * channel moves toward a blur (box-hybrid, -60) by 1 - |difference| / 24. */
VOK_API void VokAirbrush(VokBitmap *bitmap);
/* Blemish healing at the stroke's first point: the disc of the stroke's
 * radius is refilled from the ring around it (each pixel from the ring points
 * on its row and column, weighted by nearness) with the fine texture of a
 * patch beside it; the edge is feathered. Writes the patch offset into the
 * stroke's offsetPoint when it was unset (negative x). Changes `bitmap` in
 * place. A stroke without points or radius does nothing. */
VOK_API void VokBlemish(VokBitmap *bitmap, VokToolStroke *stroke);
/* The colour of the brightest (by grey level) pixel within `radius` of
 * `point`, into *color; nothing when the disc misses the bitmap. */
VOK_API void VokRegionInfoColorBrightest(const VokBitmap *bitmap, const VokPoint *point,
                                         double radius, VokColor *color);
/* The colour within `radius` of `point` closest to a lip red (230, 55, 49),
 * into *color; nothing when the disc misses the bitmap. */
VOK_API void VokRegionInfoColorClosestToLip(const VokBitmap *bitmap, const VokPoint *point,
                                            double radius, VokColor *color);
/* The four amounts of the adjustment tools exactly as the "adjustments"
 * processor applies them (normal blend, full opacity). */
VOK_API void VokToolAdjustColorProcessor(VokBitmap *bitmap, double brightness, double contrast,
                                         double warmth, double saturation);

/* ---- Shape masks ------------------------------------------------------------
 * Soft shapes written into the mask's alpha only (the colour bytes stay);
 * the bitmap is not read. Full (255) in the core, 0 past the falloff, a
 * smoothstep between; centres and sizes in mask pixels. A size or radius
 * that is not positive and finite, or a null or empty mask, does nothing. */
/* A disc: 255 within size / 2 of (cx, cy), 0 from size on. */
VOK_API void VokMaskRadial(const VokBitmap *bitmap, VokBitmap *mask, double cx, double cy,
                           double size);
/* A straight edge through (cx, cy) at `angle` radians: 255 on the side the
 * angle's normal points away from, 0 on the other, over a band `size` wide. */
VOK_API void VokMaskLinear(const VokBitmap *bitmap, VokBitmap *mask, double cx, double cy,
                           double size, double angle);
/* An axis-aligned ellipse with radii rx, ry: 255 within half of them, 0 from them on. */
VOK_API void VokMaskEliptical(const VokBitmap *bitmap, VokBitmap *mask, double cx, double cy,
                              double rx, double ry);

VOK_END_DECLS

#endif
