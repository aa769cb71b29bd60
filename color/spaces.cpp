// Conversions between 8-bit RGB and scaled LAB (D65), HSV and HSL.
//
// Scaled LAB keeps L * 2.55 in the red byte and a + 127, b + 127 in the green
// and blue bytes, so a bitmap in LAB can be edited with the ordinary byte
// tools and converted back. The per-pixel forms go through three tables
// instead of calling pow.
#include <cmath>
#include <cstdio>

#include "color/color_internal.h"
#include "core/numeric.h"
#include "vok/color.h"

namespace vok {
namespace {

constexpr int kCubeRootSize = 1024;

struct LabTables {
    float linear[256];
    float cube_root[kCubeRootSize];
    float gamma[kCubeRootSize];
};

// sRGB encoding of k / 1023. Both 1024-entry tables use the step 1/1023 but
// are read at the truncation of t * 1024; that one-step offset is kept.
void fill_gamma_table(float *table) {
    for (int k = 0; k < kCubeRootSize; ++k) {
        double v = k / 1023.0;
        double e = v <= 0.0031308 ? 12.92 * v : 1.055 * pow(v, 1.0 / 2.4) - 0.055;
        table[k] = static_cast<float>(e);
    }
    table[kCubeRootSize - 1] = 1.0f;
}

// Built once, on first use; function-local statics are initialised safely
// even when two threads arrive together.
const LabTables &lab_tables() {
    static const LabTables tables = [] {
        LabTables t;
        VokColorRGB2LABInitMapping(t.linear);
        VokColorRGB2LABInitMappingCbrt(t.cube_root);
        fill_gamma_table(t.gamma);
        return t;
    }();
    return tables;
}

inline double lab_f_table(double t, const float *cube_root) {
    if (t <= 0.008856) return 0.13793103448275862 + 7.787 * t;
    if (t >= 1.0) return 1.0;
    return cube_root[trunc_to<int32_t>(t * 1024.0)];
}

inline double lab_f_powf(double t) {
    if (t <= 0.008856) return 0.13793103448275862 + 7.787 * t;
    return powf(static_cast<float>(t), 0.33333334f);
}

// Shared body of the RGB-to-LAB forms; FCube is the cube-root rule.
template <typename FCube>
inline void rgb_to_lab(const VokColor &c, const float *linear, FCube f, double *L, double *a,
                       double *b) {
    const double R = linear[c.red], G = linear[c.green], B = linear[c.blue];
    const double x = 0.00433891 * R + 0.00376234915 * G + 0.0018990604648 * B;
    const double y = 0.002126 * R + 0.007152 * G + 0.000722 * B;
    const double z = 0.000177255 * R + 0.00109475308 * G + 0.0087295537 * B;
    const double fx = f(x), fy = f(y), fz = f(z);
    *L = (116.0 * fy - 16.0) * 2.55;
    *a = 500.0 * (fx - fy) + 127.0;
    *b = 200.0 * (fy - fz) + 127.0;
}

inline void table_rgb_to_lab(const VokColor &c, const LabTables &t, double *L, double *a, double *b) {
    rgb_to_lab(c, t.linear, [&t](double v) { return lab_f_table(v, t.cube_root); }, L, a, b);
}

// LAB bytes are clamped and truncated, not rounded; white therefore gets the
// L byte 254 (100 * 2.55 is just below 255 in double precision).
inline uint8_t lab_byte(double v) {
    if (v < 0.0) return 0;
    if (v > 255.0) return 255;
    return static_cast<uint8_t>(v);
}

inline void store_lab(VokColor *color, double L, double a, double b) {
    color->red = lab_byte(L);
    color->green = lab_byte(a);
    color->blue = lab_byte(b);
}

inline float lab_inverse_f(float f) {
    float f3 = f * f * f;
    return f3 > 0.008856 ? f3 : (f - 0.13793103f) * 0.12841916f;
}

inline uint8_t encode_channel(double v, const float *gamma) {
    if (v <= 0.0) return 0;
    if (v >= 1.0) return 255;
    return static_cast<uint8_t>(
        trunc_to<int32_t>(gamma[trunc_to<int32_t>(v * 1024.0)] * 255.0f + 0.5f));
}

inline void lab_to_rgb(VokColor *color, double kL, double ka, double kb, const float *gamma) {
    const float fy =
        static_cast<float>((color->red * 0.392156870078234 * kL + 16.0) * 0.008620689655172414);
    const float fx = static_cast<float>(fy + (ka * color->green - 127.0) * 0.002);
    const float fz = static_cast<float>(fy + (127.0 - kb * color->blue) * 0.005);
    const double X = lab_inverse_f(fx) * 0.95047;
    const double Y = lab_inverse_f(fy);
    const double Z = lab_inverse_f(fz) * 1.08883;
    const double r = 3.2406 * X - 1.5372 * Y - 0.4986 * Z;
    const double g = -0.9689 * X + 1.8758 * Y + 0.0415 * Z;
    const double b = 0.0557 * X - 0.204 * Y + 1.057 * Z;
    color->red = encode_channel(r, gamma);
    color->green = encode_channel(g, gamma);
    color->blue = encode_channel(b, gamma);
}

// Hue sextant (0..6) from the largest channel; red is tested first.
template <typename T>
inline float hue_sextant(T r, T g, T b, T max, float d) {
    if (r == max) return static_cast<float>(g - b) / d;
    if (g == max) return static_cast<float>(b - r) / d + 2.0f;
    return static_cast<float>(r - g) / d + 4.0f;
}

}  // namespace
}  // namespace vok

using namespace vok;

extern "C" {

void VokColorRGB2LABInitMapping(float *table256) {
    for (int i = 0; i < 256; ++i) {
        float c = i * 0.003921569f;
        if (c <= 0.04045) {
            table256[i] = static_cast<float>(i * 100.0 * 0.000303527);
        } else {
            float base = static_cast<float>((c + 0.055) * 0.9478672985781991);
            table256[i] = 100.0f * powf(base, 2.4f);
        }
    }
    table256[255] = 100.0f;
}

void VokColorRGB2LABInitMappingCbrt(float *table1024) {
    for (int k = 0; k < kCubeRootSize; ++k)
        table1024[k] = static_cast<float>(pow(k * 0.0009775171065493646, 0.3333333333333333));
    table1024[0] = 0.0f;
    table1024[kCubeRootSize - 1] = 1.0f;
}

void VokColorRGB2LABDoublesWithMapping(const VokColor *color, double *L, double *a, double *b,
                                       const float *mapping) {
    rgb_to_lab(*color, mapping, lab_f_powf, L, a, b);
}

void VokColorRGB2LABWithMapping(VokColor *color, const float *mapping) {
    double L, a, b;
    VokColorRGB2LABDoublesWithMapping(color, &L, &a, &b, mapping);
    store_lab(color, L, a, b);
}

void VokColorRGB2LABDoublesWithCbrtMapping(const VokColor *color, double *L, double *a,
                                           double *b) {
    table_rgb_to_lab(*color, lab_tables(), L, a, b);
}

void VokColorRGB2LAB(VokColor *color) {
    double L, a, b;
    VokColorRGB2LABDoublesWithCbrtMapping(color, &L, &a, &b);
    store_lab(color, L, a, b);
}

void VokColorLAB2RGBScaled(VokColor *color, double lFactor, double aFactor, double bFactor) {
    lab_to_rgb(color, lFactor, aFactor, bFactor, lab_tables().gamma);
}

void VokColorLAB2RGB(VokColor *color) { VokColorLAB2RGBScaled(color, 1.0, 1.0, 1.0); }

void VokColorRGB2HSV(const VokColor *color, float *hsv) {
    const int32_t r = color->red, g = color->green, b = color->blue;
    const int32_t max = r > g ? (r > b ? r : b) : (g > b ? g : b);
    const int32_t min = r < g ? (r < b ? r : b) : (g < b ? g : b);
    if (max == 0) {
        hsv[0] = hsv[1] = hsv[2] = 0.0f;
        return;
    }
    if (max == min) {
        hsv[0] = 0.0f;
        hsv[1] = 0.0f;
        hsv[2] = static_cast<float>(max);
        return;
    }
    const float d = static_cast<float>(max - min);
    float hue = 60.0f * hue_sextant(r, g, b, max, d);
    if (hue < 0.0f) hue += 360.0f;
    hsv[0] = hue;
    hsv[1] = d / static_cast<float>(max);
    hsv[2] = static_cast<float>(max);
}

void VokColorRGB2HSL(const VokColor *color, float *hsl) {
    const float r = color->red * 0.003921569f;
    const float g = color->green * 0.003921569f;
    const float b = color->blue * 0.003921569f;
    const float max = r > g ? (r > b ? r : b) : (g > b ? g : b);
    const float min = r < g ? (r < b ? r : b) : (g < b ? g : b);
    const float L = (max + min) * 0.5f;
    hsl[2] = L;
    if (max == min) {
        hsl[0] = 0.0f;
        hsl[1] = 0.0f;
        return;
    }
    const float d = max - min;
    hsl[1] = L <= 0.5f ? d / (max + min) : d / (2.0f - max - min);
    float h = hue_sextant(r, g, b, max, d);
    if (r == max && g < b) h += 6.0f;
    hsl[0] = h * 0.16666667f;
}

void VokColorHSL2RGB(const float *hsl, VokColor *out) {
    const float h = 6.0f * hsl[0];
    const float s = hsl[1], L = hsl[2];
    const float C = L > 0.5f ? 2.0f * s * (1.0f - L) : 2.0f * L * s;
    const float m = static_cast<float>(L - C / 2.0);
    float r = 0.0f, g = 0.0f, b = 0.0f;
    if (h <= 6.0f) {
        // Reduced here rather than before the test so a huge hue cannot spin.
        float rem = h;
        while (rem >= 2.0f) rem -= 2.0f;
        if (rem >= 1.0f) rem = 2.0f - rem;
        const float X = rem * C;
        if (h < 1.0f) {
            r = C, g = X;
        } else if (h < 2.0f) {
            r = X, g = C;
        } else if (h < 3.0f) {
            g = C, b = X;
        } else if (h < 4.0f) {
            g = X, b = C;
        } else if (h < 5.0f) {
            r = X, b = C;
        } else {
            r = C, b = X;
        }
    } else {
        // Also taken by a NaN hue; the message goes to standard output
        // without a line end, and the result is grey.
        printf("There was an error in VokColorHSL2RGB...The hPrime value was more than 6 somehow.");
    }
    out->red = byte_round((r + m) * 255.0f);
    out->green = byte_round((g + m) * 255.0f);
    out->blue = byte_round((b + m) * 255.0f);
    out->alpha = 255;
}

void VokBitmapConvertRGBToLAB(VokBitmap *bitmap) {
    const LabTables &t = lab_tables();
    VokColor *p = pixels_of(bitmap);
    const size_t n = pixel_count(bitmap);
    for (size_t i = 0; i < n; ++i) {
        double L, a, b;
        table_rgb_to_lab(p[i], t, &L, &a, &b);
        store_lab(&p[i], L, a, b);
    }
}

void VokBitmapConvertLABToRBG(VokBitmap *bitmap, float aFactor, float bFactor) {
    const float *gamma = lab_tables().gamma;
    VokColor *p = pixels_of(bitmap);
    const size_t n = pixel_count(bitmap);
    for (size_t i = 0; i < n; ++i) lab_to_rgb(&p[i], 1.0, aFactor, bFactor, gamma);
}

}  // extern "C"
