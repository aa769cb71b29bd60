/* Image core: bitmaps, colours, geometry, buffers, effect parameters, the
 * seeded random generator and midpoint displacement.
 *
 * Every record is a plain caller-owned structure. Builders return 1 on success
 * and 0 on failure (leaving a null buffer); free functions accept records whose
 * buffer is already null and null it afterwards. */
#ifndef VOK_CORE_H
#define VOK_CORE_H

#include <stdint.h>
#include "vok/export.h"

VOK_BEGIN_DECLS

/* 4 bytes a pixel (red, green, blue, alpha), rows packed top to bottom;
 * pixel (x, y) starts at byte 4 * (x + width * y). */
typedef struct VokBitmap {
    uint8_t *pixels;
    uint32_t width;
    uint32_t height;
} VokBitmap;

/* One pixel; memory order red, green, blue, alpha. */
typedef struct VokColor {
    uint8_t red;
    uint8_t green;
    uint8_t blue;
    uint8_t alpha;
} VokColor;

typedef struct VokPoint {
    float x;
    float y;
} VokPoint;

typedef struct VokSize {
    float width;
    float height;
} VokSize;

/* 2-D affine map (x, y) -> (a x + b y + tx, c x + d y + ty). */
typedef struct VokTransform {
    double a, b, tx;
    double c, d, ty;
} VokTransform;

typedef struct VokColorStop {
    VokColor color;
    double location;
} VokColorStop;

typedef struct VokOpacityStop {
    double opacity;
    double location;
} VokOpacityStop;

typedef struct VokGradient {
    VokColorStop *colorStops;
    VokOpacityStop *opacityStops;
    uint32_t colorCount;
    uint32_t opacityCount;
} VokGradient;

/* A zero-filled block whose element size and count the caller keeps. */
typedef struct VokArray {
    void *data;
} VokArray;

typedef struct VokEffectParams {
    int32_t seed;          /* random seed for effects that draw noise */
    double strength;       /* 0 = no effect, 1 = full */
    uint8_t bordersEnabled;/* border presets run only when set */
    double scale;          /* carried unchanged; read by no operation */
} VokEffectParams;

VOK_API extern const VokTransform VokTransformIdentity;
VOK_API extern const float kVokRadiusMultiplier;

/* Bitmaps */
VOK_API int VokBitmapBuild(VokBitmap *bitmap, uint32_t width, uint32_t height);
VOK_API void VokBitmapFree(VokBitmap *bitmap);
VOK_API int VokBitmapCopy(VokBitmap *destination, const VokBitmap *source);
VOK_API void VokBitmapCopyRect(VokBitmap *destination, const VokBitmap *source,
                               uint32_t x0, uint32_t y0, uint32_t x1, uint32_t y1);
VOK_API VokColor *VokBitmapGetColorAtPoint(const VokBitmap *bitmap, const VokPoint *point,
                                           VokColor *out);
VOK_API void VokBitmapOriginal(VokBitmap *bitmap);
VOK_API void VokEffectOriginal(VokBitmap *bitmap);
VOK_API void VokBitmapBeginGLEffectIfEnabled(VokBitmap *bitmap);
VOK_API void VokBitmapEndGLEffectIfEnabled(VokBitmap *bitmap);
VOK_API void VokBitmapEffectBitmapResize(VokBitmap *bitmap);
VOK_API void VokBitmapEffectBitmapComposite(VokBitmap *bitmap);

/* Colours, points, sizes */
VOK_API void VokColorSetARGB(VokColor *out, uint8_t alpha, uint8_t red, uint8_t green,
                             uint8_t blue);
VOK_API void VokColorCopy(VokColor *destination, const VokColor *source);
VOK_API void VokEffectInitParams(VokEffectParams *params);
VOK_API VokPoint *VokPointMake(VokPoint *out, float x, float y);
VOK_API VokPoint *VokPointScale(VokPoint *out, VokPoint point, float sx, float sy);
VOK_API VokSize *VokSizeMake(VokSize *out, float width, float height);

/* Gradients and arrays */
VOK_API int VokGradientBuild(VokGradient *gradient, uint32_t colorCount, uint32_t opacityCount);
VOK_API void VokGradientFree(VokGradient *gradient);
VOK_API int VokArrayBuild(VokArray *array, uint32_t count, uint32_t elementSize);
VOK_API int VokArrayBuild2(VokArray *array, uint32_t a, uint32_t b, uint32_t c);
VOK_API int VokArrayCopy2(void *destination, const void *source, uint32_t a, uint32_t b,
                          uint32_t c);
VOK_API void VokArrayFree(VokArray *array);

/* Transforms */
VOK_API void VokTransformCopy(VokTransform *destination, const VokTransform *source);
VOK_API void VokTransformSetIdentity(VokTransform *transform);
VOK_API void VokTransformConcat(const VokTransform *first, VokTransform *second);
VOK_API void VokTransformPostRotate(VokTransform *transform, double angle);
VOK_API void VokTransformPostTranslate(VokTransform *transform, double tx, double ty);
VOK_API void VokTransformPostScale(VokTransform *transform, double sx, double sy);
VOK_API void VokTransformGetInverse(const VokTransform *transform, VokTransform *inverse);

/* Versions: library 2.1.1, effect-description format 2.0.0. */
VOK_API void VokLiteVersion(uint32_t *major, uint32_t *minor, uint32_t *patch);
VOK_API void VokLiteProclistVersion(uint32_t *major, uint32_t *minor, uint32_t *patch);

/* Seeded random generator: state = 69069 * state + 1 (mod 2^32). */
typedef struct VokRNG {
    uint32_t seed;
    uint64_t state;
} VokRNG;

VOK_API void VokRNGSeed(VokRNG *rng, uint32_t seed);
VOK_API void VokRNGInit(VokRNG *rng);
VOK_API uint32_t VokRNGNextInt(VokRNG *rng);
VOK_API uint32_t VokRNGNextSeedN(uint32_t value, uint32_t n);
VOK_API float VokRNGNextFloat(VokRNG *rng);
VOK_API float VokRNGNextFloatNormal(VokRNG *rng);
VOK_API float VokRNGNextFloatLaplace(VokRNG *rng);

/* Midpoint displacement of values[a..b]; distribution 0 uniform, 1 normal,
 * 2 Laplace, anything else no displacement. The result carries no meaning. */
VOK_API int VokMPD(float *values, int32_t a, int32_t b, float amplitude, float roughness,
                   uint32_t distribution);
VOK_API int VokMPDSeed(float *values, int32_t a, int32_t b, float amplitude, float roughness,
                       uint32_t distribution, uint32_t seed);
VOK_API int VokMPDRNG(float *values, int32_t a, int32_t b, float amplitude, float roughness,
                      uint32_t distribution, VokRNG *rng);

VOK_END_DECLS

#endif
