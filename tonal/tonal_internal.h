// Private helpers shared by the tonal adjustment files.
#ifndef VOK_TONAL_INTERNAL_H
#define VOK_TONAL_INTERNAL_H

#include <cstdint>

#include "vok/tonal.h"

namespace vok {

// Grey level of the summed-area tables: the truncation of
// single(0.2 R + 0.7 G + 0.1 B) + 0.5. The weights sum to a multiple of a
// tenth, so the only fractions are .0 to .9 and the float rounding never
// crosses a half: the integer form below gives the same level for every
// colour and costs no floating point.
inline uint32_t integral_grey(uint32_t red, uint32_t green, uint32_t blue) {
    return (2 * red + 7 * green + blue + 5) / 10;
}

// Gaussian smoothing behind VokLineSmooth1D; false (values untouched) when
// its scratch array cannot be allocated.
bool line_smooth(float *values, uint32_t count, int32_t sigma);

// The lowest level whose cumulative count reaches per_10000 / 10000 of
// `total` in a 256-entry histogram (255 when it never does).
uint32_t level_at(const uint32_t *counts, uint64_t total, uint32_t per_10000);

// Whether an enhancement has work to do: a bitmap with pixels, and a strength
// that is no NaN and above 0 once clamped to [0, 1] (stored in *clamped).
bool enhancement_applies(const VokBitmap *bitmap, double strength, double *clamped);

// Levels between the 0.5 % and 99.5 % levels of a 256-entry histogram spread
// over 0..255 (rounded), the ends clipped. A range under kMinStretchRange
// (a flat or uniform channel) stays the identity; one under
// kMaxStretchGainRange is widened about its middle, so the gain stays at most 2.
constexpr int kMinStretchRange = 16;
constexpr int kMaxStretchGainRange = 128;
void stretch_levels(const uint32_t *counts, uint64_t total, uint8_t *table);

// Slider amounts outside [-100, 100] act as the nearest end.
double clamp_slider(double amount);

// The saturation slider's factor, 1 + amount / 100 after the clamp.
float saturation_factor(double amount);

}  // namespace vok

#endif
