// Stamp positions along a stroke: the path runs through the midpoints of
// consecutive touch points, each piece a quadratic Bezier curve bent toward
// the touch point between two midpoints. All arithmetic is single precision
// except the square root of the draw-tool spacing.
#include "vok/tools.h"

#include <cmath>
#include <cstdlib>

#include "core/numeric.h"

namespace {

// Far beyond any real stroke; a longer run means absurd input (a radius of
// nearly nothing over a huge distance) and gets the one-position answer.
constexpr int32_t kMaxPositions = 1 << 22;

float stamp_spacing(float radius, int is_draw) {
    if (is_draw) return static_cast<float>(sqrt(static_cast<double>(2.0f * radius + 1.0f)));
    return radius * 0.5f;
}

// Number of positions for a run of the given length; 0 when the spacing or
// the length make the count meaningless.
int32_t position_count(float length, float spacing) {
    if (!(spacing > 0.0f)) return 0;
    float n = length / spacing + 1.0f;
    if (!(n >= 1.0f) || n > static_cast<float>(kMaxPositions)) return 0;
    return vok::trunc_to<int32_t>(n);
}

float distance(float ax, float ay, float bx, float by) {
    float dx = bx - ax, dy = by - ay;
    return sqrtf(dx * dx + dy * dy);
}

VokPoint *allocate(int32_t count) {
    if (count <= 0 || count > kMaxPositions) return nullptr;
    return static_cast<VokPoint *>(malloc(sizeof(VokPoint) * static_cast<size_t>(count)));
}

bool finite(float v) { return std::isfinite(v); }

// The guard for a meaningless count: a list holding only the end position.
void single_position(float x, float y, VokPoint **out, int32_t *count) {
    *out = allocate(1);
    *count = 0;
    if (*out == nullptr) return;
    VokPointMake(*out, x, y);
    *count = 1;
}

// n positions of a straight run toward the end E from the far point F: the
// list starts next to E, walks toward F (never reaching it) and ends on E.
void straight_run(VokPoint *out, int32_t n, float ex, float ey, float fx, float fy) {
    for (int32_t k = 1; k < n; ++k) {
        float t = static_cast<float>(k) / static_cast<float>(n);
        VokPointMake(&out[k - 1], t * fx + (1.0f - t) * ex, t * fy + (1.0f - t) * ey);
    }
    VokPointMake(&out[n - 1], ex, ey);
}

// n positions of the curve from m1 (excluded) to m2 (the last position),
// bending toward the control point b.
void bezier_run(VokPoint *out, int32_t n, float m1x, float m1y, float bx, float by, float m2x,
                float m2y) {
    for (int32_t k = 1; k < n; ++k) {
        float t = static_cast<float>(k) / static_cast<float>(n);
        float u = 1.0f - t;
        VokPointMake(&out[k - 1], u * u * m1x + u * t * (bx + bx) + t * t * m2x,
                     u * u * m1y + u * t * (by + by) + t * t * m2y);
    }
    VokPointMake(&out[n - 1], m2x, m2y);
}

// Shared by the two straight interpolators: E and F are the run's ends.
void interpolate_straight(float ex, float ey, float fx, float fy, float radius, VokPoint **out,
                          int32_t *count, int is_draw) {
    int32_t n = position_count(distance(ex, ey, fx, fy), stamp_spacing(radius, is_draw));
    if (n == 0) {
        single_position(ex, ey, out, count);
        return;
    }
    *out = allocate(n);
    *count = 0;
    if (*out == nullptr) return;
    straight_run(*out, n, ex, ey, fx, fy);
    *count = n;
}

void interpolate_curve(float ax, float ay, float bx, float by, float cx, float cy, float radius,
                       VokPoint **out, int32_t *count, int is_draw, bool finish) {
    float m1x = (ax + bx) * 0.5f, m1y = (ay + by) * 0.5f;
    float m2x = (bx + cx) * 0.5f, m2y = (by + cy) * 0.5f;
    float spacing = stamp_spacing(radius, is_draw);
    float half = distance(m2x, m2y, bx, by);
    int32_t n = position_count(half + distance(m1x, m1y, bx, by), spacing);
    int32_t m = finish ? position_count(half, spacing) : 1;
    bool inputs_finite = finite(ax) && finite(ay) && finite(bx) && finite(by) && finite(cx) &&
                         finite(cy);
    if (n == 0 || m == 0 || !inputs_finite || n > kMaxPositions - m) {
        if (finish)
            single_position(bx, by, out, count);
        else
            single_position(m2x, m2y, out, count);
        return;
    }
    int32_t total = finish ? n + m : n;
    *out = allocate(total);
    *count = 0;
    if (*out == nullptr) return;
    bezier_run(*out, n, m1x, m1y, bx, by, m2x, m2y);
    if (finish) straight_run(*out + n, m, bx, by, m2x, m2y);
    *count = total;
}

}  // namespace

extern "C" {

void VokInterpolateFirstPointToMidpoint(float ax, float ay, float bx, float by, float radius,
                                        VokPoint **out, int32_t *count, int isDraw) {
    float mx = (ax + bx) * 0.5f, my = (ay + by) * 0.5f;
    interpolate_straight(mx, my, ax, ay, radius, out, count, isDraw);
}

void VokInterpolateBetweenPointsWithBezierQuadCurve(float ax, float ay, float bx, float by,
                                                    float cx, float cy, float radius,
                                                    VokPoint **out, int32_t *count,
                                                    int isDraw) {
    interpolate_curve(ax, ay, bx, by, cx, cy, radius, out, count, isDraw, false);
}

void VokInterpolateBetweenPointsWithBezierQuadCurveAndFinishToPoint(float ax, float ay, float bx,
                                                                    float by, float cx, float cy,
                                                                    float radius, VokPoint **out,
                                                                    int32_t *count, int isDraw) {
    interpolate_curve(ax, ay, bx, by, cx, cy, radius, out, count, isDraw, true);
}

void VokInterpolateMidpointToSecondPoint(float ax, float ay, float bx, float by, float radius,
                                         VokPoint **out, int32_t *count, int isDraw) {
    float mx = (ax + bx) * 0.5f, my = (ay + by) * 0.5f;
    interpolate_straight(bx, by, mx, my, radius, out, count, isDraw);
}

}  // extern "C"
