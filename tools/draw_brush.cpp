// The draw tool's brush: paints a stroke's new segments into the mask in the
// stroke colour, stamp after stamp along the same smoothed path as the other
// tools. A per-point pressure (the stroke's pointData) scales the radius,
// changing smoothly from one touch point to the next.
#include "vok/tools.h"

#include <cmath>
#include <cstdlib>

#include "tools/tools_internal.h"

namespace {

// Soft edge of the draw stamp beyond its radius (see VokMaskDraw).
constexpr float kDrawEdge = 3.4398879663887962f;

double pressure(const VokToolStroke *stroke, int32_t i) {
    if (stroke->pointData == nullptr) return 1.0;
    const double p = stroke->pointData[i];
    return std::isfinite(p) && p >= 0.0 ? p : 1.0;
}

struct Painter {
    VokBitmap *mask;
    const VokToolStroke *stroke;
    double strength;
    bool painted = false;
    VokPoint low{0.0f, 0.0f}, high{0.0f, 0.0f};

    void stamp(VokPoint at, double radius) {
        VokMaskDraw(mask, &stroke->color, at.x, at.y, radius, strength, stroke->mode == 2);
        const float reach = ceilf(static_cast<float>(fabs(radius)) + kDrawEdge);
        if (!painted) {
            low = high = at;
            painted = true;
        }
        low.x = fminf(low.x, at.x - reach);
        low.y = fminf(low.y, at.y - reach);
        high.x = fmaxf(high.x, at.x + reach);
        high.y = fmaxf(high.y, at.y + reach);
    }
};

}  // namespace

extern "C" {

void VokDrawToolDrawStrokeSegment(const VokBitmap *, VokBitmap *mask, const VokToolDrawState *,
                                  const VokToolDrawParams *params, VokToolStroke *stroke,
                                  VokPoint *outMin, VokPoint *outMax) {
    if (stroke->firstIndex >= stroke->count || stroke->points == nullptr || !vok::usable(mask))
        return;
    Painter painter{mask, stroke, params->strength};
    for (int32_t i = stroke->firstIndex < 0 ? 0 : stroke->firstIndex; i < stroke->count; ++i) {
        const double here = stroke->radius * pressure(stroke, i);
        if (i == 0) {
            painter.stamp(stroke->points[0], here);
            continue;
        }
        const double before = stroke->radius * pressure(stroke, i - 1);
        // Spaced for the thinner end so that the line stays continuous.
        const float spacing_radius = static_cast<float>(fmin(fabs(before), fabs(here)));
        VokPoint *list = nullptr;
        int32_t n = 0;
        vok::interpolate_stroke_point(stroke, i, spacing_radius, 1, &list, &n);
        for (int32_t k = 0; k < n; ++k) {
            const double t = static_cast<double>(k + 1) / n;
            painter.stamp(list[k], before + (here - before) * t);
        }
        free(list);
    }
    if (!painter.painted) return;
    *outMin = painter.low;
    *outMax = painter.high;
}

}  // extern "C"
