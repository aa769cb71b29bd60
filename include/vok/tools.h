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

VOK_END_DECLS

#endif
