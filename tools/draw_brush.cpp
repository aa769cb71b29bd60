// The draw tool's brush: paints a stroke's new segments into the mask in the
// stroke colour, stamp after stamp along the same smoothed path as the other
// tools. A per-point pressure (the stroke's pointData) scales the radius;
// between touch points it changes linearly along the path.
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

// The straight piece a segment's stamps lie along, with the radius at each
// end. The path runs from touch point 0 to the midpoints of the following
// pairs, so the radius at a midpoint is the mean of its two points' radii.
struct Chord {
    VokPoint from, to;
    double from_radius, to_radius;

    // Radius at the stamp position q, projected onto the chord.
    double radius_at(VokPoint q) const {
        const double dx = to.x - from.x, dy = to.y - from.y;
        const double length2 = dx * dx + dy * dy;
        double t = length2 > 0.0 ? ((q.x - from.x) * dx + (q.y - from.y) * dy) / length2 : 1.0;
        t = t < 0.0 ? 0.0 : (t > 1.0 ? 1.0 : t);
        return from_radius + (to_radius - from_radius) * t;
    }
};

Chord segment_chord(const VokToolStroke *stroke, int32_t i) {
    const VokPoint *p = stroke->points;
    auto radius = [stroke](int32_t k) { return stroke->radius * pressure(stroke, k); };
    auto mid = [p](int32_t k) {
        return VokPoint{(p[k].x + p[k + 1].x) * 0.5f, (p[k].y + p[k + 1].y) * 0.5f};
    };
    const double end_radius = (radius(i - 1) + radius(i)) * 0.5;
    if (i == 1) return {p[0], mid(0), radius(0), end_radius};
    return {mid(i - 2), mid(i - 1), (radius(i - 2) + radius(i - 1)) * 0.5, end_radius};
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
        if (i == 0) {
            painter.stamp(stroke->points[0], stroke->radius * pressure(stroke, 0));
            continue;
        }
        const Chord chord = segment_chord(stroke, i);
        // Spaced for the thinner end so that the line stays continuous.
        const float spacing_radius =
            static_cast<float>(fmin(fabs(chord.from_radius), fabs(chord.to_radius)));
        VokPoint *list = nullptr;
        int32_t n = 0;
        vok::interpolate_stroke_point(stroke, i, spacing_radius, 1, &list, &n);
        for (int32_t k = 0; k < n; ++k) painter.stamp(list[k], chord.radius_at(list[k]));
        free(list);
    }
    if (!painter.painted) return;
    *outMin = painter.low;
    *outMax = painter.high;
}

}  // extern "C"
