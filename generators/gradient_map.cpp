// The gradient map: each pixel is replaced by the gradient colour that its
// intensity, chroma or one channel selects, blended with an integer mode.
#include "generators/gradient_internal.h"

#include <math.h>

#include "color/color_internal.h"
#include "core/numeric.h"

namespace {

enum Variable { kIntensity = 0, kChroma, kRed, kGreen, kBlue, kMax, kMin };

inline uint8_t max3(uint8_t r, uint8_t g, uint8_t b) {
    uint8_t m = r > g ? r : g;
    return m > b ? m : b;
}
inline uint8_t min3(uint8_t r, uint8_t g, uint8_t b) {
    uint8_t m = r < g ? r : g;
    return m < b ? m : b;
}

// The selected scalar of a pixel on the 0..255 scale; unknown variables give 0.
inline double variable_value(const VokColor &p, uint32_t variable) {
    switch (variable) {
        case kIntensity: return 0.2 * p.red + 0.7 * p.green + 0.1 * p.blue;
        case kChroma: return max3(p.red, p.green, p.blue) - min3(p.red, p.green, p.blue);
        case kRed: return p.red;
        case kGreen: return p.green;
        case kBlue: return p.blue;
        case kMax: return max3(p.red, p.green, p.blue);
        case kMin: return min3(p.red, p.green, p.blue);
        default: return 0.0;
    }
}

inline uint8_t lerp_byte(float f, uint8_t a, uint8_t b) {
    return static_cast<uint8_t>(vok::trunc_to<uint32_t>((1.0f - f) * a + f * b));
}

// The mapped colour of scalar v. The index is rounded while the fraction is
// taken from the truncation, so from a fraction of 0.5 up the colour leans
// past entry i towards i + 1; that is how this map has always looked. The
// alpha times the opacity keeps only its low 8 bits (no clamp above 1).
VokColor mapped_colour(double v, bool invert, double opacity, const VokColor *table) {
    if (invert) v = 255.0 - v;
    if (v < 0.0) v = 0.0;
    if (v > 255.0) v = 255.0;
    const float x = static_cast<float>(v) * 4.011765f;
    const int32_t i = static_cast<int32_t>(roundf(x));
    const float f = x - truncf(x);
    VokColor out = table[i];
    if (i != 1023) {
        const VokColor &a = table[i];
        const VokColor &b = table[i + 1];
        out.red = lerp_byte(f, a.red, b.red);
        out.green = lerp_byte(f, a.green, b.green);
        out.blue = lerp_byte(f, a.blue, b.blue);
        out.alpha = lerp_byte(f, a.alpha, b.alpha);
    }
    out.alpha = static_cast<uint8_t>(vok::trunc_to<uint32_t>(out.alpha * opacity));
    return out;
}

// Every variable's scalar is fixed by a small whole number, the key: the
// byte itself, or for intensity k = 2R + 7G + B (0..2550), since
// 0.2R + 0.7G + 0.1B is within 1e-13 of k/10, while k/10 lies at least
// 3e-10 away from any halfway point between floats, so the scalar rounds
// to the same float whatever the pixel. Each key's colour is mapped once.
constexpr size_t kIntensityKeys = 2551;

inline uint32_t intensity_key(const VokColor &p) { return 2u * p.red + 7u * p.green + p.blue; }

// A pixel whose intensity key is k, to map through the per-pixel rule.
VokColor pixel_with_intensity_key(uint32_t k) {
    const uint32_t g = k / 7 < 255 ? k / 7 : 255;
    const uint32_t rest = k - 7 * g;
    const uint32_t r = rest / 2 < 255 ? rest / 2 : 255;
    return VokColor{static_cast<uint8_t>(r), static_cast<uint8_t>(g),
                    static_cast<uint8_t>(rest - 2 * r), 255};
}

template <uint32_t Mode>
void blend_mapped(VokColor *pixel, size_t count, uint32_t variable, const VokColor *by_key) {
    if (variable == kIntensity) {
        for (size_t i = 0; i < count; ++i, ++pixel) {
            vok::blend_embedded<Mode>(*pixel, by_key[intensity_key(*pixel)]);
        }
    } else if (variable >= kRed && variable <= kBlue) {
        // One channel: its byte is the key.
        const size_t channel = variable - kRed;
        for (size_t i = 0; i < count; ++i, ++pixel) {
            vok::blend_embedded<Mode>(*pixel, by_key[reinterpret_cast<const uint8_t *>(pixel)[channel]]);
        }
    } else {
        for (size_t i = 0; i < count; ++i, ++pixel) {
            const uint8_t v = static_cast<uint8_t>(variable_value(*pixel, variable));
            vok::blend_embedded<Mode>(*pixel, by_key[v]);
        }
    }
}

}  // namespace

extern "C" {

void VokGradientMapApply(VokBitmap *bitmap, const VokGradient *gradient, uint32_t variable,
                         uint32_t invert, uint32_t mode, double opacity) {
    VokArray storage;
    const VokColor *table = vok::build_gradient_table(gradient, 1024, &storage);
    if (table == nullptr) return;

    VokColor by_key[kIntensityKeys];
    if (variable == kIntensity) {
        for (uint32_t k = 0; k < kIntensityKeys; ++k) {
            const double v = variable_value(pixel_with_intensity_key(k), variable);
            by_key[k] = mapped_colour(v, invert != 0, opacity, table);
        }
    } else {
        for (int v = 0; v < 256; ++v) by_key[v] = mapped_colour(v, invert != 0, opacity, table);
    }
    vok::with_blend_mode(mode, [&](auto m) {
        blend_mapped<decltype(m)::value>(reinterpret_cast<VokColor *>(bitmap->pixels),
                                         vok::pixel_count(bitmap), variable, by_key);
    });
    VokArrayFree(&storage);
}

}  // extern "C"
