// Soft shape masks: a disc, a straight edge and an ellipse, written into the
// mask's alpha with a smoothstep falloff.
#include <cmath>

#include "core/fixed_sine.h"
#include "tools/tools_internal.h"

namespace {

// 255 at t <= 0, 0 at t >= 1, 3 u^2 - 2 u^3 (u = 1 - t) between, rounded.
uint8_t falloff(double t) {
    if (!(t > 0.0)) return 255;
    if (t >= 1.0) return 0;
    const double u = 1.0 - t;
    return static_cast<uint8_t>(u * u * (3.0 - 2.0 * u) * 255.0 + 0.5);
}

// Writes falloff(shape(x, y)) into every mask pixel's alpha; the shape gets
// the pixel's centre relative to (cx, cy).
template <typename Shape>
void write_alpha(VokBitmap *mask, double cx, double cy, Shape shape) {
    uint8_t *p = mask->pixels;
    for (uint32_t y = 0; y < mask->height; ++y)
        for (uint32_t x = 0; x < mask->width; ++x, p += 4)
            p[3] = falloff(shape(x + 0.5 - cx, y + 0.5 - cy));
}

bool positive(double v) { return v > 0.0 && std::isfinite(v); }

}  // namespace

extern "C" {

void VokMaskRadial(const VokBitmap *, VokBitmap *mask, double cx, double cy, double size) {
    if (!vok::usable(mask) || !positive(size) || !std::isfinite(cx) || !std::isfinite(cy)) return;
    // Full to size / 2, nothing from size on.
    write_alpha(mask, cx, cy, [size](double dx, double dy) {
        return 2.0 * sqrt(dx * dx + dy * dy) / size - 1.0;
    });
}

void VokMaskLinear(const VokBitmap *, VokBitmap *mask, double cx, double cy, double size,
                   double angle) {
    if (!vok::usable(mask) || !positive(size) || !std::isfinite(cx) || !std::isfinite(cy) ||
        !std::isfinite(angle))
        return;
    // The edge's normal in 65536ths, from the angle in 65536ths of a turn:
    // integer sines, so every machine draws the same edge.
    constexpr int64_t kTurn = 65536;
    const int64_t turn =
        vok::trunc_to<int64_t>(fmod(angle, 6.283185307179586) * (kTurn / 6.283185307179586));
    const double nx = vok::full_sine(turn + kTurn / 4, kTurn, kTurn) / 65536.0;
    const double ny = vok::full_sine(turn, kTurn, kTurn) / 65536.0;
    write_alpha(mask, cx, cy,
                [=](double dx, double dy) { return (dx * nx + dy * ny) / size + 0.5; });
}

void VokMaskEliptical(const VokBitmap *, VokBitmap *mask, double cx, double cy, double rx,
                      double ry) {
    if (!vok::usable(mask) || !positive(rx) || !positive(ry) || !std::isfinite(cx) ||
        !std::isfinite(cy))
        return;
    write_alpha(mask, cx, cy, [=](double dx, double dy) {
        const double u = dx / rx, v = dy / ry;
        return 2.0 * sqrt(u * u + v * v) - 1.0;
    });
}

}  // extern "C"
