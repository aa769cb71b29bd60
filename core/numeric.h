// Numeric helpers shared by the whole library. Results are defined to the
// bit, so every conversion from a real number goes through these.
#ifndef VOK_CORE_NUMERIC_H
#define VOK_CORE_NUMERIC_H

#include <cstdint>
#include <limits>
#include <type_traits>

namespace vok {

// Truncation toward zero that saturates at the target's range and maps NaN
// to 0. A plain cast of an out-of-range value is undefined behaviour in C++;
// this is what 32-bit ARM's conversion instructions do natively, so the host
// and the device agree.
template <typename Int, typename Real>
inline Int trunc_to(Real value) {
    static_assert(std::is_integral_v<Int> && std::is_floating_point_v<Real>);
    constexpr Real low = static_cast<Real>(std::numeric_limits<Int>::min());
    constexpr Real high = static_cast<Real>(std::numeric_limits<Int>::max() / 2 + 1) * 2;
    if (!(value == value)) return 0;
    if (value < low) return std::numeric_limits<Int>::min();
    if (value >= high) return std::numeric_limits<Int>::max();
    return static_cast<Int>(value);
}

// The library's usual real-to-byte rule: 255 above 254.5, 0 below -0.5, else
// the truncation of value + 0.5 (the sum in double precision).
inline uint8_t byte_round(double value) {
    if (value > 254.5) return 255;
    if (value < -0.5) return 0;
    return static_cast<uint8_t>(trunc_to<int32_t>(value + 0.5));
}

// Truncation toward zero, then clamped to [0, 255]; NaN gives 0.
template <typename Real>
inline uint8_t byte_trunc_clamp(Real value) {
    int32_t v = trunc_to<int32_t>(value);
    return static_cast<uint8_t>(v < 0 ? 0 : (v > 255 ? 255 : v));
}

inline int32_t clamp_int(int32_t v, int32_t low, int32_t high) {
    return v < low ? low : (v > high ? high : v);
}

// 32-bit two's-complement arithmetic without signed-overflow UB.
inline int32_t wrap_add(int32_t a, int32_t b) {
    return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}
inline int32_t wrap_mul(int32_t a, int32_t b) {
    return static_cast<int32_t>(static_cast<uint32_t>(a) * static_cast<uint32_t>(b));
}
inline int32_t wrap_sub(int32_t a, int32_t b) {
    return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}

}  // namespace vok

#endif
