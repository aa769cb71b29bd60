// Summed-area tables and box sums over them. Sums wrap modulo 2^32: a box
// sum stays right as long as the box itself sums below 2^32.
#include <cstddef>

#include "tonal/tonal_internal.h"
#include "vok/tonal.h"

namespace {

// Row running sum plus the entry above: one read-back of the previous row.
template <typename Level>
void build_table(const VokBitmap *bitmap, uint32_t *table, Level level) {
    const uint32_t width = bitmap->width;
    const uint8_t *pixel = bitmap->pixels;
    const uint32_t *above = nullptr;
    for (uint32_t y = 0; y < bitmap->height; ++y) {
        uint32_t *row = table + static_cast<size_t>(y) * width;
        uint32_t running = 0;
        for (uint32_t x = 0; x < width; ++x, pixel += 4) {
            running += level(pixel);
            row[x] = above != nullptr ? running + above[x] : running;
        }
        above = row;
    }
}

}  // namespace

extern "C" {

void VokBuildIntegralImage(const VokBitmap *bitmap, uint32_t *red, uint32_t *green,
                           uint32_t *blue) {
    build_table(bitmap, red, [](const uint8_t *p) { return uint32_t{p[0]}; });
    build_table(bitmap, green, [](const uint8_t *p) { return uint32_t{p[1]}; });
    build_table(bitmap, blue, [](const uint8_t *p) { return uint32_t{p[2]}; });
}

void VokBuildIntegralImageGray(const VokBitmap *bitmap, uint32_t *table) {
    build_table(bitmap, table,
                [](const uint8_t *p) { return vok::integral_grey(p[0], p[1], p[2]); });
}

uint32_t VokSumBoxFromIntegralImage(const uint32_t *table, uint32_t rowLength, uint32_t,
                                    uint32_t x0, uint32_t y0, uint32_t x1, uint32_t y1) {
    auto at = [table, rowLength](uint32_t x, uint32_t y) {
        return table[static_cast<size_t>(y) * rowLength + x];
    };
    uint32_t sum = at(x1, y1);
    if (x0 > 0) sum -= at(x0 - 1, y1);
    if (y0 > 0) sum -= at(x1, y0 - 1);
    if (x0 > 0 && y0 > 0) sum += at(x0 - 1, y0 - 1);
    return sum;
}

}  // extern "C"
