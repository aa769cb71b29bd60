// Voronoi cells: one point in every square of a grid, jittered by the
// library's generator from a fixed seed (the same photo always gives the same
// cells), and each pixel joins the nearest point.
#include <cstdlib>

#include "generators/mosaic_cells.h"
#include "vok/generators.h"

namespace {

constexpr uint32_t kSeed = 0x5eed1e55u;

}  // namespace

extern "C" {

void VokBlurModesVoronoi(VokBitmap *bitmap, float parameter) {
    if (!vok::usable(bitmap)) return;
    const int32_t s = vok::mosaic_cell_size(bitmap, parameter);
    const vok::Lattice grid(bitmap->width, bitmap->height, s, s, 1);
    // The points of the lattice's squares, margins included, in label order.
    const uint64_t count = grid.cells();
    int32_t *points = static_cast<int32_t *>(malloc(count * 2 * sizeof(int32_t)));
    if (points == nullptr) return;
    VokRNG rng;
    VokRNGSeed(&rng, kSeed);
    for (int32_t row = -1; row < grid.down - 1; ++row) {
        for (int32_t column = -1; column < grid.across - 1; ++column) {
            int32_t *p = points + 2 * grid.at(column, row);
            p[0] =
                column * s + static_cast<int32_t>(VokRNGNextInt(&rng) % static_cast<uint32_t>(s));
            p[1] = row * s + static_cast<int32_t>(VokRNGNextInt(&rng) % static_cast<uint32_t>(s));
        }
    }
    // The nearest point lies in the pixel's square or one of its eight
    // neighbours; ties go to the first found, rows then columns.
    vok::paint_cell_means(bitmap, count, [&](int32_t x, int32_t y) {
        const int32_t cx = x / s, cy = y / s;
        uint64_t best = 0;
        int64_t best_distance = INT64_MAX;
        for (int32_t row = cy - 1; row <= cy + 1; ++row) {
            for (int32_t column = cx - 1; column <= cx + 1; ++column) {
                const uint64_t label = grid.at(column, row);
                const int64_t dx = x - points[2 * label], dy = y - points[2 * label + 1];
                const int64_t distance = dx * dx + dy * dy;
                if (distance < best_distance) best = label, best_distance = distance;
            }
        }
        return best;
    });
    free(points);
}

}  // extern "C"
