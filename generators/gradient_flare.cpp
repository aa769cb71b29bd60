// The gradient flare: a procedural scalar field, one of fifteen shapes,
// evaluated through a 24-bit fixed-point transform, wrapped into [0, 1] and
// looked up in a gradient's colour table.
#include "generators/gradient_internal.h"

#include <math.h>
#include <stdlib.h>
#include <string.h>

#include <initializer_list>

#include "color/color_internal.h"
#include "core/numeric.h"

namespace {

enum Shape {
    kIdentity = 0, kLine, kCircle, kGaussian, kSquare, kSquareRound, kStardom, kLobes,
    kRingLobes, kHeart, kStar, kCrescent, kSquiggly, kZigzag, kSpiral
};

const double kHalfPi = 1.5707963267948966;

// The squared radius, rounded to single precision, and the angle.
inline float rho_of(double x, double y) { return static_cast<float>(x * x + y * y); }
inline float theta_of(double x, double y) {
    return atan2f(static_cast<float>(y), static_cast<float>(x));
}

template <int S>
inline double shape_value(double x, double y, const double *p) {
    switch (S) {
        case kLine:
            return 0.5 * x + 0.5;
        case kCircle:
            return sqrtf(rho_of(x, y));
        case kGaussian:
            // x pairs with p3 and y with p2, on purpose.
            return exp(p[0] * ((x - p[3]) * (x - p[3]) + (y - p[2]) * (y - p[2])) +
                       p[1] * ((x - p[5]) * (y - p[4])) * ((x - p[5]) * (y - p[4])));
        case kSquare:
            return fmax(fabs(x), fabs(y));
        case kSquareRound: {
            if (p[0] == 0.0) return fmax(fabs(x), fabs(y));
            const float e = static_cast<float>(p[0]);
            return powf(powf(fabsf(static_cast<float>(x)), e) + powf(fabsf(static_cast<float>(y)), e),
                        1.0f / e);
        }
        case kStardom: {
            const float rho = rho_of(x, y);
            return (rho * rho) * sin(p[0] * 0.5 * theta_of(x, y));
        }
        case kLobes: {
            // rho is single precision, the exponential double.
            const double e = exp(static_cast<double>(-rho_of(x, y)));
            return 1.0 - (0.5 * e + 0.5 * e * sin(theta_of(x, y) * p[0]));
        }
        case kRingLobes: {
            const float rho = rho_of(x, y);
            return sin(rho * p[2] + kHalfPi) * sin(rho * p[1] + kHalfPi) *
                   sin(p[0] * 0.5 * theta_of(x, y) + kHalfPi);
        }
        case kHeart:
            return VokCalcNoiseHeart(x, y, p[0], p[1]);
        case kStar:
            return VokCalcNoiseStar(x, y, vok::trunc_to<int32_t>(p[0]), p[1], p[2]);
        case kCrescent:
            return VokCalcNoiseCrescent(x, y, p);
        case kSquiggly:
            return 0.5 * sin(x + 2.0 * p[0] * sin(y)) + 0.5;
        case kZigzag: {
            const double d = 2.0 * (x - floor(x + p[0]));
            const double slope = d < 0.0 ? -d / p[0] : d / (1.0 - p[0]);
            return y - slope;
        }
        case kSpiral:
            return powf(rho_of(x, y), static_cast<float>(p[0])) +
                   theta_of(x, y) * p[1] * 0.15915494309189535;
        default:
            return 0.0;
    }
}

// Folds t into [0, 1]. "repeat" sends a negative whole number to 1 and a
// positive one to 0; that asymmetry is kept on purpose.
inline double wrap(double t, int32_t mode) {
    switch (mode) {
        case 0:
            if (t > 1.0) t = 1.0;
            return t >= 0.0 ? t : 0.0;
        case 1:
            return t >= 0.0 ? t - trunc(t) : t + 1.0 - trunc(t);
        case 2: {
            const double k = trunc(t);
            const bool odd = fmod(k, 2.0) != 0.0;
            if (t >= 0.0) return odd ? 1.0 - t + k : t - k;
            return odd ? t + 1.0 + trunc(-t) : -t - trunc(-t);
        }
        default:
            return t;
    }
}

// Everything a row of the field needs: the fixed-point transform, the
// shape parameters and the folding into table indices.
struct FieldSetup {
    uint32_t f0, f1, f3, f4, f5, f7;  // wrap as 32-bit two's complement
    double unit;                      // 2^-fraction bits
    uint32_t last;                    // last table index
    const double *params;
    int32_t wrap_mode;
    bool invert;
};

// Table indices of one row of the field.
template <int S>
void shade_row(const FieldSetup &f, uint32_t r, uint32_t width, uint32_t *indices) {
    const uint32_t row_x = f.f1 * r + f.f3;
    const uint32_t row_y = f.f5 * r + f.f7;
    for (uint32_t c = 0; c < width; ++c) {
        const double x = static_cast<int32_t>(f.f0 * c + row_x) * f.unit;
        const double y = static_cast<int32_t>(f.f4 * c + row_y) * f.unit;
        double t = wrap(shape_value<S>(x, y, f.params), f.wrap_mode);
        if (f.invert) t = 1.0 - t;
        // Only an unknown wrap mode can leave [0, 1]; the index stays in the table.
        const uint32_t index = vok::trunc_to<uint32_t>(t * f.last);
        indices[c] = index < f.last ? index : f.last;
    }
}

using RowShader = void (*)(const FieldSetup &, uint32_t, uint32_t, uint32_t *);

const RowShader kShaders[] = {
    shade_row<kIdentity>, shade_row<kLine>, shade_row<kCircle>, shade_row<kGaussian>,
    shade_row<kSquare>, shade_row<kSquareRound>, shade_row<kStardom>, shade_row<kLobes>,
    shade_row<kRingLobes>, shade_row<kHeart>, shade_row<kStar>, shade_row<kCrescent>,
    shade_row<kSquiggly>, shade_row<kZigzag>, shade_row<kSpiral>};

// Row by row: the field's indices, then the blend under a mode fixed at
// compile time.
template <uint32_t Mode>
void paint_rows(VokBitmap *bitmap, RowShader shade, const FieldSetup &field, const VokColor *table,
                bool replace_alpha, uint32_t *indices) {
    VokColor *pixel = reinterpret_cast<VokColor *>(bitmap->pixels);
    for (uint32_t r = 0; r < bitmap->height; ++r) {
        shade(field, r, bitmap->width, indices);
        for (uint32_t c = 0; c < bitmap->width; ++c, ++pixel) {
            const VokColor &entry = table[indices[c]];
            vok::blend_embedded<Mode>(*pixel, entry);
            if (replace_alpha) pixel->alpha = entry.alpha;
        }
    }
}

inline int32_t fixed_24(double v) { return vok::trunc_to<int32_t>(floor(v * 16777216.0)); }

}  // namespace

extern "C" {

void VokGradientFlareParamsInit(VokGradientFlareParams *params) {
    params->shape = 0;
    params->params = nullptr;
    params->transform = nullptr;
    params->aspectMode = 2;
    params->gradient = nullptr;
    params->invert = 0;
    params->wrapMode = 0;
    params->blendMode = 0;
    params->alpha = 1.0;
    params->replaceAlpha = 0;
}

void VokFlareApplyHelper(VokBitmap *bitmap, int32_t shape, const int32_t *transform,
                         const double *params, const VokColor *table, uint32_t tableSize,
                         uint32_t fractionBits, uint32_t mode, int32_t wrapMode, uint8_t invert,
                         uint8_t replaceAlpha) {
    if (tableSize == 0 || bitmap->width == 0) return;
    uint32_t *indices = static_cast<uint32_t *>(malloc(sizeof(uint32_t) * bitmap->width));
    if (indices == nullptr) return;
    const FieldSetup field = {
        static_cast<uint32_t>(transform[0]), static_cast<uint32_t>(transform[1]),
        static_cast<uint32_t>(transform[3]), static_cast<uint32_t>(transform[4]),
        static_cast<uint32_t>(transform[5]), static_cast<uint32_t>(transform[7]),
        ldexp(1.0, -static_cast<int>(fractionBits)), tableSize - 1, params, wrapMode, invert != 0};
    // Unknown shapes give t = 0 everywhere, like "identity".
    const bool known = shape >= 0 && shape < static_cast<int32_t>(sizeof kShaders / sizeof kShaders[0]);
    const RowShader shade = kShaders[known ? shape : kIdentity];
    vok::with_blend_mode(mode, [&](auto m) {
        paint_rows<decltype(m)::value>(bitmap, shade, field, table, replaceAlpha != 0, indices);
    });
    free(indices);
}

// The caller's gradient keeps the alpha multiplication, so applying one
// record twice compounds it; that is how this effect has always behaved.
void VokGradientFlareApply(VokBitmap *bitmap, VokGradientFlareParams *record) {
    if (record->gradient == nullptr) return;
    VokGradientMultiplyAlpha(record->gradient, record->alpha);
    const uint32_t w = bitmap->width, h = bitmap->height;
    if (w == 0 || h == 0) return;
    VokArray storage;
    const VokColor *table = vok::build_gradient_table(record->gradient, 8192, &storage);
    if (table == nullptr) return;

    double size = 1.0;
    if (record->aspectMode == 0) size = w < h ? w : h;
    if (record->aspectMode == 1) size = w > h ? w : h;
    if (record->aspectMode == 3) size = (static_cast<double>(w) + h) * 0.5;

    // A missing transform is the identity, missing parameters are zeros.
    double t[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    double p[16] = {};
    if (record->transform != nullptr) memcpy(t, record->transform, sizeof t);
    if (record->params != nullptr) memcpy(p, record->params, sizeof p);
    int32_t f[16];
    for (int j = 0; j < 16; ++j) f[j] = fixed_24(t[j]);

    if (record->aspectMode == 2) {
        // Each axis spans -0.5 to 0.5 across its own dimension.
        for (int j : {0, 4, 8, 12}) f[j] /= static_cast<int32_t>(w);
        for (int j : {1, 5, 9, 13}) f[j] /= static_cast<int32_t>(h);
        f[3] = vok::wrap_add(f[3], -8388608);
        f[7] = vok::wrap_add(f[7], -8388608);
    } else {
        // Centre the image on the origin and scale its reference side to 1.
        const double k = 1.0 / size;
        for (int j : {0, 1, 4, 5, 8, 9, 12, 13}) f[j] = vok::trunc_to<int32_t>(k * f[j]);
        f[3] = fixed_24(t[3] - 0.5 + (t[0] * (1.0 - w * k) + t[1] * (1.0 - h * k)) * 0.5);
        f[7] = fixed_24(t[7] - 0.5 + (t[4] * (1.0 - w * k) + t[5] * (1.0 - h * k)) * 0.5);
    }

    switch (record->shape) {
        case kStardom:
        case kLobes:
        case kRingLobes:
            p[0] = floor(p[0]);
            break;
        case kStar:
            p[0] = fmax(floor(p[0]), 1.0);
            break;
        case kSpiral:
            p[1] = round(p[1]);
            break;
        default:
            break;
    }

    VokFlareApplyHelper(bitmap, record->shape, f, p, table, 8192, 24,
                        static_cast<uint32_t>(record->blendMode), record->wrapMode, record->invert,
                        record->replaceAlpha);
    VokArrayFree(&storage);
}

// Stands where a GPU flare would be set up: it samples the gradient into a
// 1024-entry table and returns without drawing. The table is not released;
// this entry point has always behaved so and is kept as it is.
void VokSetupAndApplyGLFlare(VokBitmap *, VokGradientFlareParams *record) {
    if (record->gradient == nullptr) return;
    VokArray storage;
    vok::build_gradient_table(record->gradient, 1024, &storage);
}

}  // extern "C"
