// Single-colour blending: the integer family (the source's alpha byte is the
// opacity, all 29 modes) and the float family (a separate opacity, modes 0 to
// 6). The per-mode arithmetic lives in color_internal.h so the bitmap loops
// can specialise on it; these entry points pick the kernel per call.
#include <cmath>

#include "color/color_internal.h"
#include "vok/color.h"

namespace vok {

VokColor color_mode_rgb(const float *hsl, uint32_t alpha, const VokColor &destination) {
    const float converted[3] = {hsl[0], hsl[1] * 0.003921569f * static_cast<float>(alpha),
                                unit_luminance(destination)};
    VokColor rgb;
    VokColorHSL2RGB(converted, &rgb);
    return rgb;
}

void color_mode_mix(VokColor &destination, const float *hsl, uint32_t alpha, float opacity) {
    const VokColor c = color_mode_rgb(hsl, alpha, destination);
    const float keep = 1.0f - opacity;
    destination.red = byte_trunc_clamp(opacity * c.red + keep * destination.red);
    destination.green = byte_trunc_clamp(opacity * c.green + keep * destination.green);
    destination.blue = byte_trunc_clamp(opacity * c.blue + keep * destination.blue);
}

}  // namespace vok

using namespace vok;

extern "C" {

void VokColorBlendEmbededAlpha(VokColor *destination, const VokColor *source, VokBlendMode mode) {
    with_blend_mode(mode, [&](auto m) { blend_embedded<decltype(m)::value>(*destination, *source); });
}

// Colour mode mixes without the + 255 rounding of the other integer modes.
void VokColorBlendColorEmbededAlpha(VokColor *destination, const VokColor *source) {
    const int32_t a = source->alpha;
    float hsl[3];
    VokColorRGB2HSL(source, hsl);
    const VokColor c = color_mode_rgb(hsl, static_cast<uint32_t>(a), *destination);
    destination->red = static_cast<uint8_t>((c.red * a + destination->red * (255 - a)) >> 8);
    destination->green = static_cast<uint8_t>((c.green * a + destination->green * (255 - a)) >> 8);
    destination->blue = static_cast<uint8_t>((c.blue * a + destination->blue * (255 - a)) >> 8);
}

// Cosine interpolation. The constants 127 and 63 (rather than 128 and 64) are
// deliberate: equal inputs 0 give 1 and equal inputs 255 give 253.
void VokColorBlendInterpolationEmbededAlpha(VokColor *destination, const VokColor *source) {
    const uint32_t a = source->alpha;
    auto mix = [a](uint8_t d, uint8_t s) {
        const float k = 0.012319971f;
        const float c = static_cast<float>(
            127.0 - 63.0 * (cos(static_cast<double>(d * k)) + cos(static_cast<double>(s * k))));
        const float v = static_cast<float>((255 - a) * d) + c * static_cast<float>(a);
        return static_cast<uint8_t>(trunc_to<uint32_t>(v) >> 8);
    };
    destination->red = mix(destination->red, source->red);
    destination->green = mix(destination->green, source->green);
    destination->blue = mix(destination->blue, source->blue);
}

void VokColorBlend(VokColor *destination, const VokColor *source, VokBlendMode mode, float opacity) {
    with_float_blend_mode(mode, [&](auto m) { blend_float<decltype(m)::value>(*destination, *source, opacity); });
}

void VokColorBlendColorMode(VokColor *destination, const float *hsl, uint32_t alpha, float opacity) {
    color_mode_mix(*destination, hsl, alpha, opacity);
}

int VokColorCompare(const VokColor *first, const VokColor *second) {
    return first->red == second->red && first->green == second->green &&
           first->blue == second->blue && first->alpha == second->alpha;
}

}  // extern "C"
