// The machinery every mosaic shares: a mode only says which cell each pixel
// belongs to; each cell is then painted with the exact mean of its own pixels
// (integer sums, rounded half up). A uniform photo stays uniform, no colour
// appears that no cell held, alpha is kept, and nothing outside the bitmap is read.
#ifndef VOK_GENERATORS_MOSAIC_CELLS_H
#define VOK_GENERATORS_MOSAIC_CELLS_H

#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "core/bitmap_checks.h"
#include "vok/core.h"

namespace vok {

// Cells are at least this many pixels across: smaller ones would not read
// as a mosaic, and the cell table stays within a few bytes a pixel.
constexpr int32_t kMinCellSize = 4;

// The cell size for a parameter: a positive value is a size in pixels (at
// most the longer side, which makes one cell); 0, a negative value or NaN
// picks the default, a 48th of width plus height, so a look means the
// same at every resolution.
inline int32_t mosaic_cell_size(const VokBitmap *bitmap, float parameter) {
    const uint32_t longer = bitmap->width > bitmap->height ? bitmap->width : bitmap->height;
    int64_t size = (static_cast<int64_t>(bitmap->width) + bitmap->height) / 48;
    if (parameter > 0.0f)
        size = parameter >= static_cast<float>(longer) ? longer : static_cast<int64_t>(parameter);
    if (size < kMinCellSize) size = kMinCellSize;
    return static_cast<int32_t>(size);
}

// Running sums of one cell.
struct CellSum {
    uint64_t red, green, blue, count;
};

// Paints every pixel with the mean of its cell. `cells` is the number of
// labels; label(x, y) must return one below it for every pixel. False (the
// bitmap untouched) when the sums cannot be allocated.
template <typename Label>
bool paint_cell_means(VokBitmap *bitmap, uint64_t cells, Label label) {
    CellSum *sums = static_cast<CellSum *>(calloc(cells, sizeof(CellSum)));
    if (sums == nullptr) return false;
    const uint32_t w = bitmap->width, h = bitmap->height;
    uint8_t *row = bitmap->pixels;
    for (uint32_t y = 0; y < h; ++y, row += size_t{4} * w) {
        const uint8_t *p = row;
        for (uint32_t x = 0; x < w; ++x, p += 4) {
            CellSum &s = sums[label(static_cast<int32_t>(x), static_cast<int32_t>(y))];
            s.red += p[0];
            s.green += p[1];
            s.blue += p[2];
            ++s.count;
        }
    }
    for (uint64_t i = 0; i < cells; ++i) {
        CellSum &s = sums[i];
        if (s.count == 0) continue;
        // Means replace the sums, so the second pass only copies.
        s.red = (s.red + s.count / 2) / s.count;
        s.green = (s.green + s.count / 2) / s.count;
        s.blue = (s.blue + s.count / 2) / s.count;
    }
    row = bitmap->pixels;
    for (uint32_t y = 0; y < h; ++y, row += size_t{4} * w) {
        uint8_t *p = row;
        for (uint32_t x = 0; x < w; ++x, p += 4) {
            const CellSum &s = sums[label(static_cast<int32_t>(x), static_cast<int32_t>(y))];
            p[0] = static_cast<uint8_t>(s.red);
            p[1] = static_cast<uint8_t>(s.green);
            p[2] = static_cast<uint8_t>(s.blue);
        }
    }
    free(sums);
    return true;
}

// A rectangular lattice of cells `width` x `height` pixels over the bitmap,
// with one cell of margin on every side (for shifted rows and shapes that
// reach into a neighbour) and `parts` labels per cell.
struct Lattice {
    int32_t width, height, across, down, parts;

    // Over an area of extent_x x extent_y pixels (the bitmap, or a rotated frame).
    Lattice(uint32_t extent_x, uint32_t extent_y, int32_t cell_width, int32_t cell_height,
            int32_t parts_per_cell)
        : width(cell_width),
          height(cell_height),
          across(static_cast<int32_t>(extent_x / static_cast<uint32_t>(cell_width)) + 3),
          down(static_cast<int32_t>(extent_y / static_cast<uint32_t>(cell_height)) + 3),
          parts(parts_per_cell) {}

    uint64_t cells() const { return static_cast<uint64_t>(across) * down * parts; }

    // Label of cell (column, row), each from -1 to across - 2 / down - 2.
    uint64_t at(int32_t column, int32_t row, int32_t part = 0) const {
        return (static_cast<uint64_t>(row + 1) * across + (column + 1)) * parts + part;
    }
};

// Floor division for coordinates that may be negative.
inline int32_t floor_div(int32_t a, int32_t b) { return a >= 0 ? a / b : -((-a + b - 1) / b); }

}  // namespace vok

#endif
