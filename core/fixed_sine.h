// Sines in integers, the same on every machine: Bhaskara's rational
// approximation sin(pi t) ~ 16 t (1 - t) / (5 - 4 t (1 - t)), within 0.002.
#ifndef VOK_CORE_FIXED_SINE_H
#define VOK_CORE_FIXED_SINE_H

#include <cstdint>

namespace vok {

// amplitude x sin(pi q / half) for q in [0, half], truncated.
inline int32_t half_sine(int64_t q, int64_t half, int64_t amplitude) {
    const int64_t p = q * (half - q);
    return static_cast<int32_t>(amplitude * 16 * p / (5 * half * half - 4 * p));
}

// amplitude x sin(2 pi phase / period) for any phase, truncated.
inline int32_t full_sine(int64_t phase, int64_t period, int64_t amplitude) {
    const int64_t half = period / 2;
    int64_t q = phase % period;
    if (q < 0) q += period;
    return q < half ? half_sine(q, half, amplitude) : -half_sine(q - half, half, amplitude);
}

}  // namespace vok

#endif
