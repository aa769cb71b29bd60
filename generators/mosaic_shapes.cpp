// Mosaics of rounded shapes: dots and hearts on a grid (each cell split into
// the shape and the ground around it), and overlapping fish scales.
#include "generators/mosaic_cells.h"
#include "vok/generators.h"

namespace vok {
namespace {

// Inside a dot of 9/10 the cell's width, centred; coordinates doubled so the
// pixel centres are whole numbers.
bool in_dot(int32_t fx, int32_t fy, int32_t s) {
    const int64_t dx = 2 * fx + 1 - s, dy = 2 * fy + 1 - s, r = s * 9 / 10;
    return dx * dx + dy * dy <= r * r;
}

// Inside the heart (x^2 + y^2 - 1)^3 <= x^2 y^3, scaled to fill the cell.
// Only products and sums of doubles: the same bits on every machine.
bool in_heart(int32_t fx, int32_t fy, int32_t s) {
    const double x = (2.0 * fx + 1 - s) / s * 1.25;
    const double y = (s - (2.0 * fy + 1)) / s * 1.25 + 0.1;
    const double q = x * x + y * y - 1.0;
    return q * q * q <= x * x * y * y * y;
}

template <bool (*Shape)(int32_t, int32_t, int32_t)>
void shapes_on_ground(VokBitmap *bitmap, float parameter) {
    if (!usable(bitmap)) return;
    const int32_t s = mosaic_cell_size(bitmap, parameter);
    const Lattice grid(bitmap->width, bitmap->height, s, s, 2);
    paint_cell_means(bitmap, grid.cells(), [&](int32_t x, int32_t y) {
        return grid.at(x / s, y / s, Shape(x % s, y % s, s) ? 1 : 0);
    });
}

}  // namespace
}  // namespace vok

extern "C" {

void VokBlurModesCirclesProcessor(VokBitmap *bitmap, float parameter) {
    vok::shapes_on_ground<vok::in_dot>(bitmap, parameter);
}

void VokBlurModesHeartsProcessor(VokBitmap *bitmap, float parameter) {
    vok::shapes_on_ground<vok::in_heart>(bitmap, parameter);
}

void VokBlurModesScalesProcessor(VokBitmap *bitmap, float parameter) {
    if (!vok::usable(bitmap)) return;
    const int32_t s = vok::mosaic_cell_size(bitmap, parameter);
    // Discs of diameter s centred every s along rows s / 2 apart, every other
    // row shifted half a disc; a lower row lies over the one above, so a
    // pixel belongs to the lowest disc that holds it.
    const int32_t half = s / 2 > 1 ? s / 2 : 1;
    const vok::Lattice grid(bitmap->width, bitmap->height, s, half, 1);
    const int64_t reach = int64_t{s} * s;  // doubled radius, squared
    vok::paint_cell_means(bitmap, grid.cells(), [&](int32_t x, int32_t y) {
        const int32_t below = y / half + 1;
        for (int32_t row = below;; --row) {
            const int32_t shift = (row & 1) * half;
            const int32_t column = vok::floor_div(x - shift + half, s);
            const int64_t dx = 2 * (int64_t{x} - (int64_t{column} * s + shift)) + 1;
            const int64_t dy = 2 * (int64_t{y} - int64_t{row} * half) + 1;
            if (dx * dx + dy * dy <= reach || row < below - 1) return grid.at(column, row);
        }
    });
}

}  // extern "C"
