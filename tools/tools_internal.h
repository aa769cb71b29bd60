// Declarations shared by the tool framework's files.
#ifndef VOK_TOOLS_INTERNAL_H
#define VOK_TOOLS_INTERNAL_H

#include <cmath>
#include <cstdint>

#include "core/bitmap_checks.h"
#include "core/numeric.h"
#include "vok/tools.h"

namespace vok {

// A colour tolerance that lets every colour through.
constexpr double kAnyColour = 99999999.0;

// Inclusive pixel box of a round stamp centred at (x, y) with outer radius
// `outer`, clamped to the mask. Pixels inside it still need the distance test.
struct StampBox {
    int32_t x0, y0, x1, y1;
};

inline int32_t stamp_edge(double v, uint32_t size) {
    return clamp_int(trunc_to<int32_t>(v), 0, static_cast<int32_t>(size) - 1);
}

// Inclusive pixel box holding the disc of radius r round (cx, cy), clamped
// to the bitmap; pixels inside it still need the distance test.
inline StampBox disc_box(const VokBitmap *bitmap, double cx, double cy, double r) {
    const int32_t right = static_cast<int32_t>(bitmap->width) - 1;
    const int32_t bottom = static_cast<int32_t>(bitmap->height) - 1;
    return {clamp_int(trunc_to<int32_t>(floor(cx - r)), 0, right),
            clamp_int(trunc_to<int32_t>(floor(cy - r)), 0, bottom),
            clamp_int(trunc_to<int32_t>(ceil(cx + r)), 0, right),
            clamp_int(trunc_to<int32_t>(ceil(cy + r)), 0, bottom)};
}

inline StampBox stamp_box(const VokBitmap *mask, double x, double y, double outer) {
    return {stamp_edge(x + 0.5 - outer, mask->width), stamp_edge(y + 0.5 - outer, mask->height),
            stamp_edge(x + 0.5 + outer, mask->width), stamp_edge(y + 0.5 + outer, mask->height)};
}

// Stamp positions for the stroke's point i, from the interpolator the stroke
// stamping uses at that index (i >= 1). The caller frees *list.
void interpolate_stroke_point(const VokToolStroke *stroke, int32_t i, float radius, int is_draw,
                              VokPoint **list, int32_t *count);

}  // namespace vok

#endif
