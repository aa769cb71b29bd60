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

// Slider amounts outside [-100, 100] act as the nearest end.
double clamp_slider(double amount);

// The saturation slider's factor, 1 + amount / 100 after the clamp.
float saturation_factor(double amount);

}  // namespace vok

#endif
