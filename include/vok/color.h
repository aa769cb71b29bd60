/* Colour science and compositing: colour spaces, the 29 blend modes,
 * compositing one bitmap (or a flat colour) onto another, colour matrices. */
#ifndef VOK_COLOR_H
#define VOK_COLOR_H

#include <stdint.h>
#include "vok/core.h"

VOK_BEGIN_DECLS

/* ---- Colour spaces ------------------------------------------------------
 * Scaled LAB keeps L * 2.55 in byte 0, a + 127 in byte 1, b + 127 in byte 2.
 * HSL triples are floats in [0, 1] (hue = sextant / 6); HSV triples hold hue
 * in degrees, saturation in [0, 1] and value as the largest channel 0..255. */
VOK_API void VokColorRGB2LABInitMapping(float *table256);
VOK_API void VokColorRGB2LABInitMappingCbrt(float *table1024);
VOK_API void VokColorRGB2LABDoublesWithMapping(const VokColor *color, double *L, double *a,
                                               double *b, const float *mapping);
VOK_API void VokColorRGB2LABWithMapping(VokColor *color, const float *mapping);
VOK_API void VokColorRGB2LABDoublesWithCbrtMapping(const VokColor *color, double *L, double *a,
                                                   double *b);
VOK_API void VokColorRGB2LAB(VokColor *color);
VOK_API void VokColorLAB2RGBScaled(VokColor *color, double lFactor, double aFactor,
                                   double bFactor);
VOK_API void VokColorLAB2RGB(VokColor *color);
VOK_API void VokColorRGB2HSV(const VokColor *color, float *hsv);
VOK_API void VokColorRGB2HSL(const VokColor *color, float *hsl);
VOK_API void VokColorHSL2RGB(const float *hsl, VokColor *out);
VOK_API void VokBitmapConvertRGBToLAB(VokBitmap *bitmap);
VOK_API void VokBitmapConvertLABToRBG(VokBitmap *bitmap, float aFactor, float bFactor);

/* ---- Blend modes ------------------------------------------------------- */
typedef uint32_t VokBlendMode;

enum {
    kVokBlendNormal = 0, kVokBlendOverlay, kVokBlendColor, kVokBlendScreen,
    kVokBlendDarken, kVokBlendMultiply, kVokBlendSoft, kVokBlendLighten,
    kVokBlendDifference, kVokBlendNegation, kVokBlendExclusion, kVokBlendHard,
    kVokBlendRed, kVokBlendGreen, kVokBlendBlue, kVokBlendInterpolation,
    kVokBlendColorDodge, kVokBlendInvColorDodge, kVokBlendSoftDodge,
    kVokBlendColorBurn, kVokBlendInvColorBurn, kVokBlendSoftBurn, kVokBlendAdd,
    kVokBlendSubtract, kVokBlendStamp, kVokBlendReflect, kVokBlendGlow,
    kVokBlendFreeze, kVokBlendHeat,
    kVokBlendModeCount
};

/* Per-opacity look-up tables over the float family for one source colour. */
typedef struct VokBlendMemo {
    uint32_t mode;
    uint8_t filled[256];
    uint8_t tables[256][3][256];
} VokBlendMemo;

/* Integer family: the source's alpha byte is the opacity; all 29 modes. */
VOK_API void VokColorBlendEmbededAlpha(VokColor *destination, const VokColor *source,
                                       VokBlendMode mode);
VOK_API void VokColorBlendColorEmbededAlpha(VokColor *destination, const VokColor *source);
VOK_API void VokColorBlendInterpolationEmbededAlpha(VokColor *destination,
                                                    const VokColor *source);
/* Float family: separate opacity in [0, 1]; modes 0 to 6, others give black. */
VOK_API void VokColorBlend(VokColor *destination, const VokColor *source, VokBlendMode mode,
                           float opacity);
VOK_API void VokColorBlendColorMode(VokColor *destination, const float *hsl, uint32_t alpha,
                                    float opacity);
VOK_API void VokColorBlendInitMemozied(VokBlendMemo *memo, VokBlendMode mode);
/* level is the opacity in 1/255 steps; levels above 255 are taken as 255. */
VOK_API void VokColorBlendMemoized(VokColor *destination, const VokColor *source,
                                   uint32_t level, VokBlendMemo *memo);
VOK_API int VokColorCompare(const VokColor *first, const VokColor *second);

/* ---- Bitmap compositing -------------------------------------------------- */
VOK_API void VokBitmapBlendBitmap(VokBitmap *destination, const VokBitmap *source,
                                  VokBlendMode mode, float opacity);
VOK_API void VokBitmapBlendBitmapSeparate(VokBitmap *destination, const VokBitmap *source,
                                          float destinationWeight, float sourceWeight);
VOK_API void VokBitmapBlendBitmapTransform(VokBitmap *destination, const VokBitmap *source,
                                           VokBlendMode mode, float opacity,
                                           const VokTransform *transform);
VOK_API void VokBitmapBlendBitmapMask(VokBitmap *destination, const VokBitmap *base,
                                      const VokBitmap *layer, const VokBitmap *mask,
                                      VokBlendMode mode);
VOK_API void VokBitmapCompositePremultiplied(VokBitmap *destination, const VokBitmap *base,
                                             const VokBitmap *overlay, VokBlendMode mode);
/* The colour's alpha byte is overwritten with the opacity (except in mode 2). */
VOK_API void VokBitmapBlendWithColor(VokBitmap *bitmap, VokColor *color, VokBlendMode mode,
                                     float opacity);
VOK_API void VokBitmapBlend(VokBitmap *bitmap, VokColor *color, VokBlendMode mode,
                            float opacity);

/* ---- Colour matrices ----------------------------------------------------
 * 3 x 4 row-major over (R, G, B, 1); the fourth column is an offset in 0..255
 * units. */
typedef struct VokColorMatrix {
    float m[12];
} VokColorMatrix;

VOK_API extern const VokColorMatrix VokColorMatrixIdentity;

VOK_API void VokColorMatrixCopy(VokColorMatrix *destination, const VokColorMatrix *source);
VOK_API void VokColorMatrixSetIdentity(VokColorMatrix *matrix);
VOK_API void VokColorMatrixMultiply(VokColorMatrix *a, const VokColorMatrix *b);
VOK_API void VokColorMatrixAdjSaturation(VokColorMatrix *matrix, float saturation);
VOK_API void VokColorMatrixBrightnessContrast(VokColorMatrix *matrix, float brightness,
                                              float contrast);
VOK_API void VokColorMatrixBrightness(VokColorMatrix *matrix, float brightness);
VOK_API void VokColorMatrixContrast(VokColorMatrix *matrix, float contrast);
VOK_API void VokBitmapColorMatrixTransform(VokBitmap *bitmap, const VokColorMatrix *matrix);
VOK_API void VokBitmapColorMatrixTransformAndBlendWithOriginal(VokBitmap *bitmap,
                                                               const VokColorMatrix *matrix,
                                                               VokBlendMode mode, float opacity);

VOK_END_DECLS

#endif
