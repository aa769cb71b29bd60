// Applies a tone map region by region: every pixel moves by the change the
// map makes to the mean grey of its neighbourhood, and its own deviation from
// that mean is boosted by the strength. Box means come from two summed-area
// tables, so the cost per pixel does not depend on the radius.
#include <array>
#include <cstddef>

#include "core/numeric.h"
#include "tonal/tonal_internal.h"
#include "vok/tonal.h"

namespace {

// Neighbourhood radius from the image size: the inner truncation is to an
// integer, the final product and sum in single precision. A negative radius
// factor gives radius 0 so that every box stays inside the image.
int32_t box_radius(uint32_t width, uint32_t height, double radius_factor) {
    const int32_t inner =
        vok::trunc_to<int32_t>((static_cast<double>(width) + height) * 0.000625 * radius_factor);
    const int32_t radius = vok::trunc_to<int32_t>(0.5f + 0.1f * static_cast<float>(inner));
    return radius < 0 ? 0 : radius;
}

// Both tables in one pass over the pixels: `original` from the grey of the
// unchanged pixels, `mapped` from the grey of the pixels passed through the
// map (the same as mapping a copy first, without the copy).
void build_tables(const VokBitmap *bitmap, const VokHistMap *map, uint32_t *original,
                  uint32_t *mapped) {
    const uint32_t width = bitmap->width;
    const uint8_t *pixel = bitmap->pixels;
    for (uint32_t y = 0; y < bitmap->height; ++y) {
        const size_t row = static_cast<size_t>(y) * width;
        uint32_t running_original = 0;
        uint32_t running_mapped = 0;
        for (uint32_t x = 0; x < width; ++x, pixel += 4) {
            running_original += vok::integral_grey(pixel[0], pixel[1], pixel[2]);
            running_mapped += vok::integral_grey(map->table[0][pixel[0]], map->table[1][pixel[1]],
                                                 map->table[2][pixel[2]]);
            original[row + x] = y > 0 ? running_original + original[row - width + x]
                                      : running_original;
            mapped[row + x] = y > 0 ? running_mapped + mapped[row - width + x] : running_mapped;
        }
    }
}

// Wrapping box sum with the rows above the box (`top`, null when the box
// starts at row 0) and its last row (`bottom`).
inline uint32_t box_sum(const uint32_t *top, const uint32_t *bottom, uint32_t x0, uint32_t x1) {
    uint32_t sum = bottom[x1];
    if (x0 > 0) sum -= bottom[x0 - 1];
    if (top != nullptr) {
        sum -= top[x1];
        if (x0 > 0) sum += top[x0 - 1];
    }
    return sum;
}

// Exact integer division without a divide instruction. For a numerator
// below 2^32 and a divisor d >= 1, (numerator + 2^-10) x (1 / d) in double
// precision lands strictly between the true quotient's integer part and the
// next integer: the relative error of the product is below 2^-51, far less
// than the 2^-10 / d nudge, and the nudge stays below the gap of at least
// 1 / d to the next integer. Truncating it gives the integer quotient.
inline uint32_t divide(uint32_t numerator, double reciprocal) {
    return static_cast<uint32_t>((numerator + 0.0009765625) * reciprocal);
}

// Multipliers for dividing by a grey level d in 1..255: ceil(2^39 / d).
// For a numerator below 2^24, (numerator x multiplier) >> 39 is the exact
// quotient: the rounding up adds less than d to the multiplier, so less
// than 2^32 / 2^39 = 2^-7 of a unit, spread over d, to the quotient.
constexpr std::array<uint64_t, 256> make_level_multipliers() {
    std::array<uint64_t, 256> table{};
    for (uint64_t d = 1; d < 256; ++d) table[d] = ((uint64_t{1} << 39) + d - 1) / d;
    return table;
}
constexpr std::array<uint64_t, 256> kLevelMultipliers = make_level_multipliers();

// numerator / divisor truncated toward zero, for divisor >= 1; the usual
// local means take the multiply-and-shift path.
inline int32_t divide_by_mean(int32_t numerator, int32_t divisor) {
    const uint32_t magnitude =
        numerator < 0 ? 0u - static_cast<uint32_t>(numerator) : static_cast<uint32_t>(numerator);
    if (divisor > 255 || magnitude >= (1u << 24)) return numerator / divisor;
    const uint32_t quotient = static_cast<uint32_t>((magnitude * kLevelMultipliers[divisor]) >> 39);
    return numerator < 0 ? -static_cast<int32_t>(quotient) : static_cast<int32_t>(quotient);
}

// One channel's new value. The products stay in 32-bit integers and wrap;
// the divisions truncate toward zero. In a fully black neighbourhood
// (m0 = 0) the shift term is divided by 2^24 rather than 4096, which makes
// it vanish; that divisor is intended.
inline uint8_t blend_channel(int32_t c, int32_t detail, int32_t m0, int32_t m1, int32_t d) {
    using vok::wrap_add;
    using vok::wrap_mul;
    const int32_t shifted = wrap_add(c, detail);
    int32_t out;
    if (m0 != 0) {
        out = wrap_add(wrap_mul(1639, wrap_add(shifted, d)) / 4096,
                       wrap_mul(2457, divide_by_mean(wrap_mul(m1, shifted), m0)) / 4096);
    } else {
        out = wrap_add(wrap_mul(1639, wrap_add(shifted, d)) / 16777216,
                       wrap_mul(2457, wrap_mul(m1, shifted)) / 4096);
    }
    return static_cast<uint8_t>(vok::clamp_int(out, 0, 255));
}

}  // namespace

extern "C" {

void VokBlurHistMap(VokBitmap *bitmap, const VokHistMap *map, double radiusFactor,
                    double strength) {
    const uint32_t width = bitmap->width;
    const uint32_t height = bitmap->height;
    VokArray original_table, mapped_table;
    if (!VokArrayBuild2(&original_table, width, height, 4)) return;
    if (!VokArrayBuild2(&mapped_table, width, height, 4)) {
        VokArrayFree(&original_table);
        return;
    }
    const uint32_t *original = static_cast<uint32_t *>(original_table.data);
    const uint32_t *mapped = static_cast<uint32_t *>(mapped_table.data);
    build_tables(bitmap, map, static_cast<uint32_t *>(original_table.data),
                 static_cast<uint32_t *>(mapped_table.data));

    const uint32_t radius = static_cast<uint32_t>(box_radius(width, height, radiusFactor));
    const int32_t k = vok::trunc_to<int32_t>(static_cast<float>(strength) * 4096.0f);
    const uint32_t full_span = 2 * radius + 1 < width ? 2 * radius + 1 : width;
    uint8_t *pixel = bitmap->pixels;
    for (uint32_t y = 0; y < height; ++y) {
        const uint32_t y0 = y > radius ? y - radius : 0;
        const uint32_t y1 = height - 1 - y > radius ? y + radius : height - 1;
        const size_t top_row = y0 > 0 ? static_cast<size_t>(y0 - 1) * width : 0;
        const size_t bottom_row = static_cast<size_t>(y1) * width;
        const uint32_t *original_top = y0 > 0 ? original + top_row : nullptr;
        const uint32_t *mapped_top = y0 > 0 ? mapped + top_row : nullptr;
        const double rows = y1 - y0 + 1;
        const double full_span_reciprocal = 1.0 / (full_span * rows);
        for (uint32_t x = 0; x < width; ++x, pixel += 4) {
            const uint32_t x0 = x > radius ? x - radius : 0;
            const uint32_t x1 = width - 1 - x > radius ? x + radius : width - 1;
            const uint32_t span = x1 - x0 + 1;
            const double n_reciprocal =
                span == full_span ? full_span_reciprocal : 1.0 / (span * rows);
            const int32_t m0 = static_cast<int32_t>(
                divide(box_sum(original_top, original + bottom_row, x0, x1), n_reciprocal));
            const int32_t m1 = static_cast<int32_t>(
                divide(box_sum(mapped_top, mapped + bottom_row, x0, x1), n_reciprocal));
            const int32_t d = vok::wrap_sub(m1, m0);
            const int32_t grey = (28672 * pixel[1] + 8192 * pixel[0] + 4096 * pixel[2] + 2048) / 40960;
            const int32_t detail = vok::wrap_mul(k, vok::wrap_sub(grey, m0)) / 4096;
            pixel[0] = blend_channel(pixel[0], detail, m0, m1, d);
            pixel[1] = blend_channel(pixel[1], detail, m0, m1, d);
            pixel[2] = blend_channel(pixel[2], detail, m0, m1, d);
            pixel[3] = 255;
        }
    }
    VokArrayFree(&mapped_table);
    VokArrayFree(&original_table);
}

}  // extern "C"
