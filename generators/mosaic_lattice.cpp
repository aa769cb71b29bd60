// Mosaics whose cells are straight-edged pieces of a lattice: squares,
// triangles, diamonds, houndstooth, chevrons, sine bands, bricks, hexagons.
#include "core/fixed_sine.h"
#include "generators/mosaic_cells.h"
#include "vok/generators.h"

extern "C" {

void VokBlurModesPixelateProcessor(VokBitmap *bitmap, float parameter) {
    if (!vok::usable(bitmap)) return;
    const int32_t s = vok::mosaic_cell_size(bitmap, parameter);
    const vok::Lattice grid(bitmap->width, bitmap->height, s, s, 1);
    vok::paint_cell_means(bitmap, grid.cells(),
                          [&](int32_t x, int32_t y) { return grid.at(x / s, y / s); });
}

void VokBlurModesTrianglesProcessor(VokBitmap *bitmap, float parameter) {
    if (!vok::usable(bitmap)) return;
    const int32_t s = vok::mosaic_cell_size(bitmap, parameter);
    const vok::Lattice grid(bitmap->width, bitmap->height, s, s, 2);
    // Each square splits on a diagonal, the diagonals alternating like a checkerboard.
    vok::paint_cell_means(bitmap, grid.cells(), [&](int32_t x, int32_t y) {
        const int32_t cx = x / s, cy = y / s, fx = x % s, fy = y % s;
        const int32_t part = (cx + cy) & 1 ? fx > fy : fx + fy >= s;
        return grid.at(cx, cy, part);
    });
}

void VokBlurModesDiamondsProcessor(VokBitmap *bitmap, float parameter) {
    if (!vok::usable(bitmap)) return;
    const int32_t s = vok::mosaic_cell_size(bitmap, parameter);
    // Squares in a frame turned 45 degrees: u = x + y, v = x - y + height.
    const uint32_t extent = bitmap->width + bitmap->height;
    const vok::Lattice grid(extent, extent, s, s, 1);
    const int32_t h = static_cast<int32_t>(bitmap->height);
    vok::paint_cell_means(bitmap, grid.cells(), [&](int32_t x, int32_t y) {
        return grid.at((x + y) / s, (x - y + h) / s);
    });
}

void VokBlurModesHoundstoothProcessor(VokBitmap *bitmap, float parameter) {
    if (!vok::usable(bitmap)) return;
    const int32_t s = vok::mosaic_cell_size(bitmap, parameter);
    const vok::Lattice grid(bitmap->width, bitmap->height, s, s, 1);
    // Checks whose top-left and bottom-right corners trade places with the
    // diagonal neighbours: every check grows a tooth into the next.
    const int32_t tooth = s / 3;
    vok::paint_cell_means(bitmap, grid.cells(), [&](int32_t x, int32_t y) {
        const int32_t cx = x / s, cy = y / s, corner = x % s + y % s;
        if (corner < tooth) return grid.at(cx - 1, cy - 1);
        if (corner > 2 * s - 2 - tooth) return grid.at(cx + 1, cy + 1);
        return grid.at(cx, cy);
    });
}

void VokBlurModesChevronsProcessor(VokBitmap *bitmap, float parameter) {
    if (!vok::usable(bitmap)) return;
    const int32_t s = vok::mosaic_cell_size(bitmap, parameter);
    const vok::Lattice grid(bitmap->width, bitmap->height, s, s, 1);
    // Bands that rise and fall by s over every 2 s: a row of Vs.
    vok::paint_cell_means(bitmap, grid.cells(), [&](int32_t x, int32_t y) {
        const int32_t phase = x % (2 * s), rise = phase < s ? s - phase : phase - s;
        return grid.at(x / s, (y + rise) / s);
    });
}

void VokBlurModesSinesProcessor(VokBitmap *bitmap, float parameter) {
    if (!vok::usable(bitmap)) return;
    const int32_t s = vok::mosaic_cell_size(bitmap, parameter);
    const vok::Lattice grid(bitmap->width, bitmap->height, s, s, 1);
    // Rows bounded by waves of period 4 s and height s / 3 either way,
    // cut into columns s wide.
    const int32_t half = 2 * s, amplitude = s / 3;
    vok::paint_cell_means(bitmap, grid.cells(), [&](int32_t x, int32_t y) {
        const int32_t wave = vok::full_sine(x, 2 * half, amplitude);
        return grid.at(x / s, (y + amplitude + wave) / s);
    });
}

void VokBlurModesBricksProcessor(VokBitmap *bitmap, float parameter) {
    if (!vok::usable(bitmap)) return;
    const int32_t s = vok::mosaic_cell_size(bitmap, parameter);
    const int32_t course = s / 2 > 1 ? s / 2 : 1;
    const vok::Lattice grid(bitmap->width, bitmap->height, s, course, 1);
    // Bricks twice as long as high, every other course shifted by half a brick.
    vok::paint_cell_means(bitmap, grid.cells(), [&](int32_t x, int32_t y) {
        const int32_t row = y / course;
        return grid.at((x + (row & 1) * (s / 2)) / s, row);
    });
}

void VokBlurModesHexagons(VokBitmap *bitmap, float parameter) {
    if (!vok::usable(bitmap)) return;
    const int32_t s = vok::mosaic_cell_size(bitmap, parameter);
    // Pointy-top hexagons s wide: rows 7/8 s apart, each shifted half a cell
    // from the last; the top 2/7 s of a row is cut by two slopes into the
    // cells of the row above.
    const int32_t rise = s * 7 / 8, top = s * 2 / 7, mid = s / 2;
    const vok::Lattice grid(bitmap->width, bitmap->height, s, rise, 1);
    vok::paint_cell_means(bitmap, grid.cells(), [&](int32_t x, int32_t y) {
        const int32_t row = y / rise, dy = y % rise;
        const int32_t shifted = x + (row & 1) * mid, dx = shifted % s;
        // Above the left slope (0, top)-(mid, 0) or the right one (mid, 0)-(s, top).
        const bool above =
            dy < top && (dx < mid ? int64_t{dy} * mid < int64_t{top} * (mid - dx)
                                  : int64_t{dy} * (s - mid) < int64_t{top} * (dx - mid));
        if (!above) return grid.at(shifted / s, row);
        return grid.at((x + ((row - 1) & 1) * mid) / s, row - 1);
    });
}

}  // extern "C"
