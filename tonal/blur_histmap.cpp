// Applies a tone map region by region: every pixel moves by the change the
// map makes to the mean grey of its neighbourhood, and its own deviation from
// that mean is boosted by the strength. Box means come from two summed-area
// tables, so the cost per pixel does not depend on the radius.
#include <algorithm>
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

// The two summed-area tables, kept as a ring of the rows the current boxes
// reach. `original` sums the grey of the unchanged pixels, `mapped` the grey
// of the pixels passed through the map (the same as mapping a copy first,
// without the copy). Rows carry a zero first entry and the ring starts with
// a zero row, so padded entry (x + 1, y + 1) sums the pixels up to (x, y)
// and every box sum is four reads without tests. A table row only needs the
// pixel row of the same index, which the output has not reached yet: the
// bitmap can be changed in place behind it.
struct TableRing {
    uint32_t *original;
    uint32_t *mapped;
    size_t stride;       // width + 1
    uint32_t rows;       // rows kept
    uint32_t built = 0;  // padded rows 0..built are filled

    const uint32_t *original_row(uint32_t padded) const { return original + slot(padded); }
    const uint32_t *mapped_row(uint32_t padded) const { return mapped + slot(padded); }
    size_t slot(uint32_t padded) const { return (padded % rows) * stride; }

    // Fills padded rows up to `last` from the pixel rows before it.
    void build_to(uint32_t last, const VokBitmap *bitmap, const VokHistMap *map) {
        for (; built < last; ++built) {
            const uint8_t *pixel = bitmap->pixels + 4 * size_t{built} * bitmap->width;
            const size_t above = slot(built), row = slot(built + 1);
            uint32_t running_original = 0;
            uint32_t running_mapped = 0;
            for (size_t x = 1; x < stride; ++x, pixel += 4) {
                running_original += vok::integral_grey(pixel[0], pixel[1], pixel[2]);
                running_mapped += vok::integral_grey(map->table[0][pixel[0]],
                                                     map->table[1][pixel[1]],
                                                     map->table[2][pixel[2]]);
                original[row + x] = running_original + original[above + x];
                mapped[row + x] = running_mapped + mapped[above + x];
            }
        }
    }
};

// Box sum of the inclusive columns [x0, x1] between the padded rows `top`
// (the row above the box) and `bottom` (its last row); wraps like the table.
inline uint32_t box_sum(const uint32_t *top, const uint32_t *bottom, uint32_t x0, uint32_t x1) {
    return bottom[x1 + 1] - bottom[x0] - top[x1 + 1] + top[x0];
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
// For a numerator of magnitude below 2^24, numerator x multiplier / 2^39 is
// the exact quotient: rounding the multiplier up adds less than 2^-7 / d to
// the quotient, less than its distance 1 / d to the next integer.
constexpr std::array<int64_t, 256> make_level_multipliers() {
    std::array<int64_t, 256> table{};
    for (int64_t d = 1; d < 256; ++d) table[d] = ((int64_t{1} << 39) + d - 1) / d;
    return table;
}
constexpr std::array<int64_t, 256> kLevelMultipliers = make_level_multipliers();

// The shifted channel c + detail mixed from the local change and the local
// ratio. `ratio` divides m1 (c + detail) by m0, truncating toward zero. The
// products stay in 32-bit integers and wrap.
template <typename Ratio>
inline uint8_t mix_channel(int32_t c, int32_t detail, int32_t m1, int32_t d, Ratio ratio) {
    using vok::wrap_add;
    using vok::wrap_mul;
    const int32_t shifted = wrap_add(c, detail);
    const int32_t out = wrap_add(wrap_mul(1639, wrap_add(shifted, d)) / 4096,
                                 wrap_mul(2457, ratio(wrap_mul(m1, shifted))) / 4096);
    return static_cast<uint8_t>(vok::clamp_int(out, 0, 255));
}

// In a fully black neighbourhood (m0 = 0) the shift term is divided by 2^24
// rather than 4096, which makes it vanish; that divisor is intended.
inline uint8_t black_channel(int32_t c, int32_t detail, int32_t m1, int32_t d) {
    using vok::wrap_add;
    using vok::wrap_mul;
    const int32_t shifted = wrap_add(c, detail);
    const int32_t out = wrap_add(wrap_mul(1639, wrap_add(shifted, d)) / 16777216,
                                 wrap_mul(2457, wrap_mul(m1, shifted)) / 4096);
    return static_cast<uint8_t>(vok::clamp_int(out, 0, 255));
}

// One pixel, given the box sums of its neighbourhood in both tables.
inline void mix_pixel(uint8_t *pixel, uint32_t original_sum, uint32_t mapped_sum,
                      double n_reciprocal, int32_t k) {
    const uint32_t m0 = divide(original_sum, n_reciprocal);
    const uint32_t m1 = divide(mapped_sum, n_reciprocal);
    const int32_t mean = static_cast<int32_t>(m0);
    const int32_t mapped_mean = static_cast<int32_t>(m1);
    const int32_t d = vok::wrap_sub(mapped_mean, mean);
    const int32_t grey = (28672 * pixel[1] + 8192 * pixel[0] + 4096 * pixel[2] + 2048) / 40960;
    const int32_t detail = vok::wrap_mul(k, vok::wrap_sub(grey, mean)) / 4096;
    if (m0 == 0) {
        for (int c = 0; c < 3; ++c) pixel[c] = black_channel(pixel[c], detail, mapped_mean, d);
    } else if (m0 < 256 && m1 < 256 && detail > -32768 && detail < 32768) {
        // Every numerator m1 (c + detail) is then below 2^24 in magnitude.
        const int64_t multiplier = kLevelMultipliers[m0];
        auto ratio = [multiplier](int32_t numerator) {
            const int64_t product = numerator * multiplier;
            return static_cast<int32_t>((product + ((product >> 63) & ((int64_t{1} << 39) - 1))) >> 39);
        };
        for (int c = 0; c < 3; ++c) pixel[c] = mix_channel(pixel[c], detail, mapped_mean, d, ratio);
    } else {
        auto ratio = [mean](int32_t numerator) { return numerator / mean; };
        for (int c = 0; c < 3; ++c) pixel[c] = mix_channel(pixel[c], detail, mapped_mean, d, ratio);
    }
    pixel[3] = 255;
}

}  // namespace

extern "C" {

void VokBlurHistMap(VokBitmap *bitmap, const VokHistMap *map, double radiusFactor,
                    double strength) {
    const uint32_t width = bitmap->width;
    const uint32_t height = bitmap->height;
    if (width == 0 || height == 0) return;
    const uint32_t radius = static_cast<uint32_t>(box_radius(width, height, radiusFactor));
    // A box spans at most 2 radius + 1 rows, so 2 radius + 2 padded rows
    // hold every row it reads.
    const uint32_t rows_kept = static_cast<uint32_t>(
        std::min<uint64_t>(2 * uint64_t{radius} + 2, uint64_t{height} + 1));
    VokArray original_table, mapped_table;
    if (!VokArrayBuild2(&original_table, width + 1, rows_kept, 4)) return;
    if (!VokArrayBuild2(&mapped_table, width + 1, rows_kept, 4)) {
        VokArrayFree(&original_table);
        return;
    }
    TableRing tables{static_cast<uint32_t *>(original_table.data),
                     static_cast<uint32_t *>(mapped_table.data), size_t{width} + 1, rows_kept};

    const int32_t k = vok::trunc_to<int32_t>(static_cast<float>(strength) * 4096.0f);
    // Columns whose box lies wholly inside the image: [radius, inner_end).
    const uint32_t inner_begin = radius < width ? radius : width;
    const uint32_t inner_end = uint64_t{width} > 2 * uint64_t{radius} ? width - radius : inner_begin;
    uint8_t *pixel = bitmap->pixels;
    for (uint32_t y = 0; y < height; ++y) {
        const uint32_t y0 = y > radius ? y - radius : 0;
        const uint32_t y1 = height - 1 - y > radius ? y + radius : height - 1;
        tables.build_to(y1 + 1, bitmap, map);
        const uint32_t *original_top = tables.original_row(y0);
        const uint32_t *mapped_top = tables.mapped_row(y0);
        const uint32_t *original_bottom = tables.original_row(y1 + 1);
        const uint32_t *mapped_bottom = tables.mapped_row(y1 + 1);
        const double rows = y1 - y0 + 1;
        auto edge_pixel = [&](uint32_t x) {
            const uint32_t x0 = x > radius ? x - radius : 0;
            const uint32_t x1 = width - 1 - x > radius ? x + radius : width - 1;
            mix_pixel(pixel + 4 * size_t{x}, box_sum(original_top, original_bottom, x0, x1),
                      box_sum(mapped_top, mapped_bottom, x0, x1), 1.0 / ((x1 - x0 + 1) * rows), k);
        };
        for (uint32_t x = 0; x < inner_begin; ++x) edge_pixel(x);
        const double inner_reciprocal = 1.0 / ((2 * radius + 1) * rows);
        for (uint32_t x = inner_begin; x < inner_end; ++x) {
            mix_pixel(pixel + 4 * size_t{x},
                      box_sum(original_top, original_bottom, x - radius, x + radius),
                      box_sum(mapped_top, mapped_bottom, x - radius, x + radius),
                      inner_reciprocal, k);
        }
        for (uint32_t x = inner_end; x < width; ++x) edge_pixel(x);
        pixel += 4 * size_t{width};
    }
    VokArrayFree(&mapped_table);
    VokArrayFree(&original_table);
}

}  // extern "C"
