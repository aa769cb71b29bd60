/* Tonal adjustment: histograms and per-channel maps, the slider tools, the
 * exposure and contrast curve builders, local contrast enhancement. */
#ifndef VOK_TONAL_H
#define VOK_TONAL_H

#include <stdint.h>
#include "vok/core.h"
#include "vok/color.h"

VOK_BEGIN_DECLS

/* ---- Histograms and histogram maps --------------------------------------
 * table[c][v] is the new value of channel c (0 red, 1 green, 2 blue) for the
 * old value v. There is no alpha table. */
typedef struct VokHistMap {
    uint8_t table[3][256];
} VokHistMap;

VOK_API void VokBitmapHistogramTransform(VokBitmap *bitmap, const VokHistMap *map);
VOK_API void VokBitmapIntensityMap(VokBitmap *bitmap, const VokHistMap *map, VokBlendMode mode,
                                   double opacity);
VOK_API void VokHistMapFade(VokHistMap *map, double strength);
VOK_API void VokHistMapMap(VokHistMap *a, const VokHistMap *b);
VOK_API void VokHistMapCopy(VokHistMap *destination, const VokHistMap *source);
VOK_API void VokHistMapInvert(VokHistMap *map);
VOK_API void VokHistMapSetIdentity(VokHistMap *map);
VOK_API void VokHistMapSet(VokHistMap *map, const uint8_t *red, const uint8_t *green,
                           const uint8_t *blue);
/* counts: 768 unsigned counts (red, green, blue), not cleared first. */
VOK_API void VokHistogramBuild(const VokBitmap *bitmap, uint32_t *counts);
VOK_API void VokHistogram2CDFChan(const uint32_t *counts, double *cdf);
VOK_API void VokHistogram2CDF(const uint32_t *counts, double *cdf);
VOK_API double VokCDFINV(const double *cdf, double p);
VOK_API void VokBitmapContrastCurve(VokBitmap *bitmap, float strength);
VOK_API void VokBitmapGamma(VokBitmap *bitmap, float exponent);

/* ---- Adjustment tools ---------------------------------------------------
 * Amounts run from -100 to 100 with 0 the neutral setting. The second
 * argument is reserved for the caller's tool context and is not read. */
VOK_API void VokToolBrightness(VokBitmap *bitmap, int32_t context, double amount);
VOK_API void VokToolContrast(VokBitmap *bitmap, int32_t context, double amount);
VOK_API void VokToolSaturation(VokBitmap *bitmap, int32_t context, double amount);
VOK_API void VokToolWarmth(VokBitmap *bitmap, int32_t context, double amount);
VOK_API void VokToolSharpness(VokBitmap *bitmap, int32_t context, double amount);

/* Combined adjustment: brightness, contrast, warmth and saturation applied to
 * a copy, which is then blended over the original with the blend mode and
 * opacity. The wrapper adds the effect hooks around the processor.
 *
 * Each amount means what it means to its slider above (-100 to 100; warmth
 * unclamped, through its cosine), except that an amount of exactly 0 skips
 * its step, so four zeros adjust nothing (the contrast slider alone at 0
 * would still lower levels 128..255 by one). The result is, bit for bit:
 *   copy = the bitmap with every alpha set to 255;
 *   VokToolBrightness, VokToolContrast, VokToolWarmth, VokToolSaturation on
 *   the copy, in that order, each with its non-zero amount;
 *   VokBitmapBlendBitmap (bitmap, copy, mode, opacity).
 * The copy is opaque so that the opacity alone sets the blend's alpha,
 * (opacity x 255, truncated) & 255; the bitmap's alpha is not changed.
 * Blending a copy over itself is not neutral in most modes, so zero amounts
 * with a mode other than "normal" still change the image.
 *
 * How it runs: brightness, contrast and warmth are per-channel tables, so
 * they are composed into one histogram map by running the three sliders on
 * a 256-level grey ramp. Without saturation and in any mode but 2 ("color"),
 * every step works channel by channel, and the blend over the original is
 * folded in the same way: the whole adjustment becomes one table and one
 * pass over the bitmap. Otherwise a single pass walks the bitmap in runs of
 * 1024 pixels held on the stack: map, saturation matrix and blend. Nothing
 * is allocated. */
VOK_API void VokToolAdjustBrightnessContrastWarmthSaturationProcessor(
    VokBitmap *bitmap, double brightness, double contrast, double warmth, double saturation,
    VokBlendMode mode, float opacity);
VOK_API void VokToolAdjustBrightnessContrastWarmthSaturation(
    VokBitmap *bitmap, double brightness, double contrast, double warmth, double saturation,
    VokBlendMode mode, float opacity);

/* ---- Exposure and contrast curves ---------------------------------------
 * Build maps only; the contrast builder also writes a 3 x 3 desaturation
 * matrix stored column by column. */
VOK_API void VokBitmapExposureCurveHistogramMapping(float amount, VokHistMap *map);
VOK_API void VokBitmapContrastCurveHistogramMapping(float amount, VokHistMap *map,
                                                    double *matrix);

/* ---- Local contrast enhancement ------------------------------------------
 * Summed-area tables are width x height unsigned sums that wrap modulo 2^32.
 * VokBlurHistMap sets every alpha to 255; a negative radius factor acts as a
 * radius of 0. When an allocation fails these leave the bitmap (or array)
 * unchanged and report nothing. */
VOK_API void VokBuildIntegralImage(const VokBitmap *bitmap, uint32_t *red, uint32_t *green,
                                   uint32_t *blue);
VOK_API void VokBuildIntegralImageGray(const VokBitmap *bitmap, uint32_t *table);
VOK_API uint32_t VokSumBoxFromIntegralImage(const uint32_t *table, uint32_t rowLength,
                                            uint32_t height, uint32_t x0, uint32_t y0,
                                            uint32_t x1, uint32_t y1);
VOK_API void VokLineSmooth1D(float *values, uint32_t count, int32_t sigma);
VOK_API void VokBlurHistMap(VokBitmap *bitmap, const VokHistMap *map, double radiusFactor,
                            double strength);
VOK_API void VokLocalContrastEnhanceProcessor(VokBitmap *bitmap);
VOK_API void VokLocalContrastEnhance(VokBitmap *bitmap);
VOK_API void VokNightEnhance(VokBitmap *bitmap);

/* ---- Automatic enhancement -----------------------------------------------
 * One-tap corrections that measure the photo and choose their own amounts.
 * Strength runs from 0 (every byte unchanged) to 1 (the full correction) and
 * is clamped to that range; a NaN strength, a null or empty bitmap change
 * nothing. Alpha is kept. Uniform photos stay uniform. */
/* Auto colour and tone in scaled LAB: lightness stretched between its 0.5 %
 * and 99.5 % levels with a gamma that moves the median half-way to mid-grey,
 * a and b shifted (at most 12 levels) so the near-neutral pixels average
 * neutral; histogram maps on the LAB bytes, faded by strength. */
VOK_API void VokLabCorrect(VokBitmap *bitmap, float strength);
/* Exposure and contrast chosen from the intensity histogram: dark photos are
 * lifted, flat ones gain contrast, contrasty ones barely change; the curves of
 * the exposure and contrast builders and the contrast's desaturation matrix,
 * at most two passes. */
VOK_API void VokVaryingContrast(VokBitmap *bitmap, float strength);
/* Automatic colours (each channel stretched between its 0.5 % and 99.5 %
 * levels) with the brightest tones faded toward `color` (by its alpha), in
 * one table pass; the maps are faded by strength. A null colour changes nothing. */
VOK_API void VokAutoColorsFadeMaxColor(VokBitmap *bitmap, double strength, const VokColor *color);

VOK_END_DECLS

#endif
