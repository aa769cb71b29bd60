// Region look-ups: a colour picked from the pixels within a radius of a touch.
#include <cmath>

#include "tools/tools_internal.h"

namespace {

// Calls pick(pixel) for every pixel whose centre lies within `radius` of the
// point; false when none does.
template <typename Pick>
bool each_in_disc(const VokBitmap *bitmap, const VokPoint *point, double radius, Pick pick) {
    if (!vok::usable(bitmap) || point == nullptr || !(radius >= 0.0) || !std::isfinite(radius) ||
        !std::isfinite(point->x) || !std::isfinite(point->y))
        return false;
    const double cx = point->x, cy = point->y;
    const vok::StampBox box = vok::disc_box(bitmap, cx, cy, radius);
    bool any = false;
    for (int32_t y = box.y0; y <= box.y1; ++y) {
        for (int32_t x = box.x0; x <= box.x1; ++x) {
            const double dx = x + 0.5 - cx, dy = y + 0.5 - cy;
            if (dx * dx + dy * dy > radius * radius) continue;
            pick(reinterpret_cast<const VokColor *>(
                bitmap->pixels)[static_cast<size_t>(y) * bitmap->width + x]);
            any = true;
        }
    }
    return any;
}

}  // namespace

extern "C" {

void VokRegionInfoColorBrightest(const VokBitmap *bitmap, const VokPoint *point, double radius,
                                 VokColor *color) {
    if (color == nullptr) return;
    int best = -1;
    VokColor found{};
    if (each_in_disc(bitmap, point, radius, [&](const VokColor &c) {
            const int level = 2 * c.red + 7 * c.green + c.blue;
            if (level > best) best = level, found = c;
        }))
        *color = found;
}

void VokRegionInfoColorClosestToLip(const VokBitmap *bitmap, const VokPoint *point, double radius,
                                    VokColor *color) {
    if (color == nullptr) return;
    int best = -1;
    VokColor found{};
    if (each_in_disc(bitmap, point, radius, [&](const VokColor &c) {
            const int dr = c.red - 230, dg = c.green - 55, db = c.blue - 49;
            const int distance = dr * dr + dg * dg + db * db;
            if (best < 0 || distance < best) best = distance, found = c;
        }))
        *color = found;
}

}  // extern "C"
