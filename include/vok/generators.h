/* Generated effects: gradients, gradient maps and gradient flares, noise, the
 * box-hybrid sharpen/blur filter, borders and vignettes, light flares. */
#ifndef VOK_GENERATORS_H
#define VOK_GENERATORS_H

#include <stdint.h>
#include "vok/core.h"
#include "vok/color.h"

VOK_BEGIN_DECLS

/* ---- Gradients ----------------------------------------------------------- */

/* Parameters of the plain gradient; defaults from VokGradientShapeParamsInit. */
typedef struct VokGradientShapeParams {
    int32_t gradientShape;     /* 0 linear, 1 radial, 2 vignette-masked linear */
    double scale;              /* 0 disables the whole call */
    double xCenter;            /* fraction of the width */
    double yCenter;            /* fraction of the height */
    double angle;              /* radians */
    int32_t vignetteShapeMode; /* 0 normal, 1 sharp, 2 mediumSharp, 3 ultraSharp */
    double vignetteSize;
    double vignetteOffsetX;
    double vignetteOffsetY;
} VokGradientShapeParams;

/* Parameters of the gradient flare; defaults from VokGradientFlareParamsInit. */
typedef struct VokGradientFlareParams {
    int32_t shape;          /* 0..14 */
    double *params;         /* 16 shape parameters */
    double *transform;      /* 4 x 4 row-major */
    int32_t aspectMode;     /* 0 fit, 1 fill, 2 stretch, 3 average */
    VokGradient *gradient;  /* its opacities are multiplied by alpha in place */
    uint8_t invert;
    int32_t wrapMode;       /* 0 clamp, 1 repeat, 2 mirroredRepeat */
    int32_t blendMode;
    double alpha;
    uint8_t replaceAlpha;
} VokGradientFlareParams;

VOK_API void VokGradientMemoize(const VokGradient *gradient, VokColor *table, uint32_t count);
VOK_API void VokGradientMultiplyAlpha(VokGradient *gradient, double alpha);
VOK_API void VokGradientShapeParamsInit(VokGradientShapeParams *params);
VOK_API void VokGradientApply(VokBitmap *bitmap, const VokGradientShapeParams *params,
                              const VokGradient *gradient, uint32_t mode, double strength);
VOK_API void VokGradientMapApply(VokBitmap *bitmap, const VokGradient *gradient,
                                 uint32_t variable, uint32_t invert, uint32_t mode,
                                 double opacity);
VOK_API void VokGradientFlareParamsInit(VokGradientFlareParams *params);
VOK_API void VokGradientFlareApply(VokBitmap *bitmap, VokGradientFlareParams *params);
VOK_API void VokFlareApplyHelper(VokBitmap *bitmap, int32_t shape, const int32_t *transform,
                                 const double *params, const VokColor *table,
                                 uint32_t tableSize, uint32_t fractionBits, uint32_t mode,
                                 int32_t wrapMode, uint8_t invert, uint8_t replaceAlpha);
VOK_API double VokCalcNoiseHeart(double x, double y, double a, double b);
VOK_API double VokCalcNoiseStar(double x, double y, int32_t n, double a, double b);
VOK_API float VokCalcNoiseCrescent(double x, double y, const double *params);
VOK_API void VokSetupAndApplyGLFlare(VokBitmap *bitmap, VokGradientFlareParams *params);

/* ---- Noise ---------------------------------------------------------------- */
VOK_API void VokBitmapAddNoise(VokBitmap *bitmap, float amount, uint32_t seed);
VOK_API void VokBitmapAddChannelIndependentNoise(VokBitmap *bitmap, float amount,
                                                 uint32_t seed);

/* ---- Sharpening and convolution -------------------------------------------
 * Running-sum lines hold three unsigned sums (red, green, blue) per entry. */
VOK_API void VokBuildIntegralLineX(const VokBitmap *bitmap, uint32_t row, uint32_t *line);
VOK_API void VokBuildIntegralLineY(const VokBitmap *bitmap, uint32_t column, uint32_t *line);
VOK_API float VokMathErfccheb(float z);
VOK_API float VokMathErf(float x);
VOK_API float VokMathNormalCDF(float x, float sigma);
VOK_API void VokBoxHybridSharpenX(VokBitmap *bitmap, float amount);
VOK_API void VokBoxHybridSharpenY(VokBitmap *bitmap, float amount);
VOK_API void VokConvolutionEffectBoxHybridSharpen(VokBitmap *bitmap, float amount);
VOK_API void VokSharpness(VokBitmap *bitmap, float amount);
VOK_API void VokConvolutionEffectRullSharpen(VokBitmap *bitmap, float amount);
VOK_API void VokConvolutionProcessorRullSharpen(VokBitmap *bitmap, float amount);
VOK_API void VokConvolutionProcessorSharpenAndBlendWithOriginal(VokBitmap *bitmap, float amount,
                                                                float opacity,
                                                                VokBlendMode mode);
VOK_API int VokConvolutionEffectSoftFocus(VokBitmap *bitmap);
VOK_API void VokConvolutionAntialiasGL(VokBitmap *bitmap);

/* ---- Uniform box filters and motion blur ------------------------------------
 * One box along one axis from running sums, so the cost does not depend on the
 * radius: half-width trunc(|(W + H) as a float x 2.5e-5 x amount|) pixels, the
 * line's end pixels repeated past its ends. A negative amount blurs (rounded
 * box mean); a positive one sharpens, each channel pushed half-way away from
 * the box mean ((3 o - b + 1) / 2, clamped). Alpha kept; 0, NaN, a null or
 * empty bitmap or a failed scratch allocation leave the bitmap unchanged. */
VOK_API void VokConvolutionEffectsUniformSharpenX(VokBitmap *bitmap, float amount);
VOK_API void VokConvolutionEffectsUniformSharpenY(VokBitmap *bitmap, float amount);
/* A motion blur: the mean of `length` pixels (at least 1) on a straight line
 * through each pixel at `angle` radians (0 along rows, growing toward +y),
 * the samples clamped to the bitmap, rounded; alpha kept. Bad values as above. */
VOK_API void VokConvolutionEffectsMotionBlur(VokBitmap *bitmap, float length, float angle);

/* ---- Fractal textures --------------------------------------------------------
 * Diamond-square height fields from the library's generator: the same seed
 * gives the same field on every machine. */
/* Fills the (2^sizeLog2 + 1)^2 grid `heights` (row by row) with a fractal
 * field in [0, 1]: the corners 0.5, each level's offsets scaled by
 * 2^-roughness. sizeLog2 from 1 to 12; returns 0 (nothing written) outside. */
VOK_API int VokDiamondSquare(float *heights, uint32_t sizeLog2, float roughness, uint32_t seed);
enum { kVokTextureGrain = 0, kVokTexturePaper = 1, kVokTextureDust = 2 };
/* Lays a fractal texture over the photo, tiled every 512 pixels: grain (fine
 * neutral film grain, up to +-40 levels at strength 1), paper (soft fibres that
 * darken and warm, up to 25 %) or dust (sparse light and dark specks).
 * Strength is clamped to [0, 1]; alpha kept; bad input or a failed allocation
 * leaves the bitmap unchanged. */
VOK_API void VokFractalTextureApply(VokBitmap *bitmap, uint32_t texture, float strength,
                                    uint32_t seed);

/* ---- Mosaic and cell blurs ------------------------------------------------
 * Each paints every cell with the exact mean colour of its own pixels (integer
 * sums, rounded), so a uniform photo stays uniform; alpha kept. parameter: the
 * cell size in pixels, or 0 for the default of (width + height) / 48 so a look
 * holds at every resolution; negative and NaN act as 0, a size past the longer
 * side makes one cell, cells are at least 4 pixels. A null or empty bitmap, or
 * scratch memory that cannot be had, leaves the bitmap unchanged. */
VOK_API void VokBlurModesPixelateProcessor(VokBitmap *bitmap, float parameter); /* squares */
/* Squares split on alternating diagonals. */
VOK_API void VokBlurModesTrianglesProcessor(VokBitmap *bitmap, float parameter);
/* Round dots (the dot's own mean) on the ground of the rest of each square. */
VOK_API void VokBlurModesCirclesProcessor(VokBitmap *bitmap, float parameter);
/* Squares turned 45 degrees. */
VOK_API void VokBlurModesDiamondsProcessor(VokBitmap *bitmap, float parameter);
/* Checks whose corners reach into their diagonal neighbours as teeth. */
VOK_API void VokBlurModesHoundstoothProcessor(VokBitmap *bitmap, float parameter);
/* Rows of Vs: bands rising and falling by one cell over two. */
VOK_API void VokBlurModesChevronsProcessor(VokBitmap *bitmap, float parameter);
/* Rows bounded by sine waves (period 4 cells, height a third of a cell). */
VOK_API void VokBlurModesSinesProcessor(VokBitmap *bitmap, float parameter);
/* Overlapping fish scales in offset rows. */
VOK_API void VokBlurModesScalesProcessor(VokBitmap *bitmap, float parameter);
/* Bricks twice as long as high, alternate courses offset by half a brick. */
VOK_API void VokBlurModesBricksProcessor(VokBitmap *bitmap, float parameter);
/* Cells around one point per grid square, jittered from a fixed seed. */
VOK_API void VokBlurModesVoronoi(VokBitmap *bitmap, float parameter);
/* Hearts (their own mean) on the ground of the rest of each square. */
VOK_API void VokBlurModesHeartsProcessor(VokBitmap *bitmap, float parameter);
/* Pointy-top hexagons in offset rows. */
VOK_API void VokBlurModesHexagons(VokBitmap *bitmap, float parameter);

/* ---- Borders and vignettes ------------------------------------------------ */
enum {
    kVokBorderShapeNormal = 0, kVokBorderShapeSharp = 1,
    kVokBorderShapeMediumSharp = 2, kVokBorderShapeUltraSharp = 3
};

enum {
    kVokBorderHalftone = 1, kVokBorderLines, kVokBorderSmooth, kVokBorderShadow,
    kVokBorderFade, kVokBorderRough, kVokBorderBulge, kVokBorderTorn, kVokBorderTorn2,
    kVokBorderRect, kVokBorderRound, kVokBorderFlickr, kVokBorderHardRand,
    kVokBorderInstant, kVokBorderVignette, kVokBorderViewfinder
};

/* A border: its style, colour and blend mode, and the shape fields (shape
 * mode, stretch flag, scale, offset) that an effect description fills. */
typedef struct VokBorderParams {
    uint32_t style;
    VokColor color;
    VokBlendMode blendMode;
    uint32_t shapeMode;
    uint8_t stretch;  /* 1: scale is relative to each side of the image */
    double scale;     /* size of the clear area (pixels, or a fraction when stretched) */
    double dx;        /* centre offset, fraction of the half width */
    double dy;        /* centre offset, fraction of the half height */
    uint32_t seed;    /* for styles with random edges */
} VokBorderParams;

/* Defaults: the vignette style, opaque black, normal blend, normal shape,
 * stretched, scale 1, centred, seed 0. */
VOK_API void VokBorderInitParams(VokBorderParams *params);
/* Draws the border. The vignette: the colour (its alpha as opacity) blended
 * in with the record's mode, clear in the centre (shifted by dx, dy) and at
 * full strength on the ellipse whose diameter is the scale (pixels, or a
 * fraction of each side when stretched) and beyond; the steeper shape modes
 * (normal, sharp, mediumSharp, ultraSharp in that order) keep more of the
 * middle clear. Other styles are not available yet: 0 with a message; 0
 * also when working memory cannot be had. */
VOK_API int VokBorders(VokBitmap *bitmap, const VokBorderParams *params);

/* ---- Light flares ----------------------------------------------------------
 * Shapes in flare units (one unit = fScale x the longer side, times dsx
 * across and dsy down), centred on the flare's centre: */
enum {
    kVokFlareSinc = 0,      /* |sinc| rings fading out at radius 1 */
    kVokFlareGaussianThing, /* tight round gaussian glow, sigma 0.12 */
    kVokFlareGaussianThing2, /* round gaussian glow, sigma 0.25 */
    kVokFlareGaussianThing3, /* wide soft gaussian glow, sigma 0.45 */
    kVokFlareGaussianThing4, /* bright pin-point core in a wide halo */
    kVokFlareAngleGaussian, /* thin gaussian streak tilted 30 degrees upward */
    kVokFlareStardom,       /* small core with eight thin rays */
    kVokFlareLobes,         /* three round lobes, one pointing right */
    kVokFlareUnnamed8,      /* no shape: VokFlare refuses it */
    kVokFlareStripe,        /* one thin horizontal streak */
    kVokFlareStripe2,       /* a horizontal streak between two fainter ones */
    kVokFlareDiamond,       /* cubic falloff inside a diamond of radius 1 */
    kVokFlareCross,         /* horizontal and vertical streaks over a core */
    kVokFlareCorner,        /* four glows at the corners of a square of side 1 */
    kVokFlareFinger,        /* one-sided streak to the right, as long as the strength */
    kVokFlareBlobFlare,     /* four ghost blobs along a line through the centre */
    kVokFlareBlah,          /* a thin halo ring at radius 0.6 round a faint core */
    kVokFlareBlob,          /* flat disc of radius 0.3 with a soft edge */
    kVokFlareBlob2,         /* faint disc of radius 0.35 with a bright rim */
    kVokFlareTypeCount
};

/* Draws a light flare of the colour (its alpha as opacity) centred at
 * (dx, dy), fractions of the image's width and height, stretched by dsx, dsy
 * and sized by fScale relative to the image, blended with the mode (integer
 * family, the shape's intensity as the colour's alpha). The strength is read
 * by the finger flare alone (its length, at most 1); the other types take
 * their strength from the colour's alpha. A flare of no size draws nothing.
 * Returns 1 on success, 0 for an unknown type or a failed allocation. */
VOK_API int VokFlare(VokBitmap *bitmap, float fScale, VokColor color, uint32_t type, float dx,
                     float dy, float dsx, float dsy, VokBlendMode mode, double strength);

VOK_END_DECLS

#endif
