// The draw stamp: paints a colour into the mask itself, premultiplied by the
// coverage it adds, with a soft edge of fixed width whatever the radius.
#include "vok/tools.h"

#include <cmath>

#include "tools/tools_internal.h"

namespace {

// 4 * (1 - 1/sqrt(51)): the edge falls to 1/51 over this many pixels.
constexpr double kEdgeWidth = 3.4398879663887962;

// Truncated toward zero on purpose: repeated stamps never round coverage up.
uint8_t mix(double w, double paint, uint8_t under) {
    return vok::byte_trunc_clamp(w * paint + (1.0 - w) * under);
}

}  // namespace

extern "C" {

void VokMaskDraw(VokBitmap *mask, const VokColor *color, double x, double y, double radius,
                 double strength, int32_t erase) {
    if (!vok::usable(mask) || color == nullptr) return;
    const double r = radius;
    const double outer = fabs(r + kEdgeWidth);
    const double outer2 = outer * outer, r2 = r * r;
    const vok::StampBox box = vok::stamp_box(mask, x, y, outer);
    const size_t width = mask->width;

    for (int32_t py = box.y0; py <= box.y1; ++py) {
        const double dy = py - y;
        uint8_t *row = mask->pixels + static_cast<size_t>(py) * width * 4;
        for (int32_t px = box.x0; px <= box.x1; ++px) {
            const double dx = px - x;
            const double d2 = dx * dx + dy * dy;
            if (!(d2 < outer2)) continue;
            double falloff = 1.0;
            if (!(d2 < r2)) {
                const double edge = 1.0 + (r - sqrt(d2)) * 0.25;
                falloff = edge * edge;
            }
            double w = falloff * strength;
            if (!(w > 0.0)) w = 0.0;  // NaN strength paints nothing
            if (w > 1.0) w = 1.0;
            uint8_t *p = row + static_cast<size_t>(px) * 4;
            if (erase) {
                for (int c = 0; c < 4; ++c) p[c] = mix(w, 0.0, p[c]);  // (1 - w) * byte
            } else {
                p[0] = mix(w, color->red, p[0]);
                p[1] = mix(w, color->green, p[1]);
                p[2] = mix(w, color->blue, p[2]);
                p[3] = mix(w, 255.0, p[3]);
            }
        }
    }
}

}  // extern "C"
