// Film-grain noise: a seeded offset added to every pixel, either the same for
// red, green and blue (grey grain) or one per channel (colour grain).
#include "vok/generators.h"

#include <stddef.h>

#include "core/numeric.h"

namespace {

// The caller's seed goes through one step of the recurrence before drawing,
// so seed s and seed 69069 s + 1 give the same grain shifted by one draw.
void seed_drawing_generator(VokRNG *rng, uint32_t seed) {
    VokRNG seeding;
    VokRNGSeed(&seeding, seed);
    VokRNGSeed(rng, VokRNGNextInt(&seeding));
}

// A draw u in [0, 1] becomes an offset in [-a, a], truncated toward zero.
inline int32_t draw_offset(VokRNG *rng, float a) {
    float u = VokRNGNextFloat(rng);
    return vok::trunc_to<int32_t>(-a + 2.0f * u * a);
}

// channel + n, rounded half up and clamped; for an integer sum the rounding
// only matters below zero, where the clamp wins anyway.
inline uint8_t offset_channel(uint8_t channel, int32_t n) {
    return static_cast<uint8_t>(vok::clamp_int(vok::wrap_add(channel, n), 0, 255));
}

// One offset per pixel (grey grain) or one per channel, drawn red, green,
// blue (colour grain). The pixel is forced opaque: that is part of the look.
template <bool PerChannel>
void add_noise(VokBitmap *bitmap, float amount, uint32_t seed) {
    VokRNG rng;
    seed_drawing_generator(&rng, seed);
    const float a = amount * 255.0f;
    VokColor *pixel = reinterpret_cast<VokColor *>(bitmap->pixels);
    const size_t count = static_cast<size_t>(bitmap->width) * bitmap->height;
    for (size_t i = 0; i < count; ++i, ++pixel) {
        const int32_t nr = draw_offset(&rng, a);
        const int32_t ng = PerChannel ? draw_offset(&rng, a) : nr;
        const int32_t nb = PerChannel ? draw_offset(&rng, a) : nr;
        pixel->red = offset_channel(pixel->red, nr);
        pixel->green = offset_channel(pixel->green, ng);
        pixel->blue = offset_channel(pixel->blue, nb);
        pixel->alpha = 255;
    }
}

}  // namespace

extern "C" {

void VokBitmapAddNoise(VokBitmap *bitmap, float amount, uint32_t seed) {
    add_noise<false>(bitmap, amount, seed);
}

void VokBitmapAddChannelIndependentNoise(VokBitmap *bitmap, float amount, uint32_t seed) {
    add_noise<true>(bitmap, amount, seed);
}

}  // extern "C"
