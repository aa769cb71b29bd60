// The similar-colour stamp: a soft round brush whose weight also falls off
// with the LAB distance between each pixel and a reference colour. Only the
// mask's alpha changes.
#include "vok/tools.h"

#include <cmath>

#include "tools/tools_internal.h"
#include "vok/color.h"

namespace {

// 1 - 1/sqrt(51): the soft edge reaches 1/51 of full weight at the outer radius.
constexpr double kEdgeRatio = 0.8599719915971991;
// 2 ln 1.02 and 2 ln 51: colour distances (over 2 t^2) below the first count as
// an exact match, above the second as no match.
constexpr double kExactMatch = 0.03960525459235951;
constexpr double kNoMatch = 7.8636512654486515;

struct Lab {
    double L, a, b;
};

Lab to_lab(const VokColor *color) {
    Lab lab;
    VokColorRGB2LABDoublesWithCbrtMapping(color, &lab.L, &lab.a, &lab.b);
    return lab;
}

}  // namespace

extern "C" {

void VokMaskSimilarColors(const VokBitmap *bitmap, VokBitmap *mask, const VokColor *reference,
                          int32_t, double x, double y, double radius, double tolerance, double,
                          double strength, int32_t erase, int32_t useLightness,
                          int32_t ignoreColor) {
    if (!vok::usable(mask)) return;
    if (!ignoreColor && (!vok::usable(bitmap) || bitmap->width != mask->width ||
                         bitmap->height != mask->height || reference == nullptr))
        return;
    const double r = radius;
    const double outer = fabs(r + 0.5 * r * kEdgeRatio);
    const double outer2 = outer * outer, r2 = r * r;
    const double t2 = tolerance * tolerance;
    const double exact = t2 * kExactMatch, none = t2 * kNoMatch;
    const Lab ref = ignoreColor ? Lab{0.0, 0.0, 0.0} : to_lab(reference);
    const vok::StampBox box = vok::stamp_box(mask, x, y, outer);
    const size_t width = mask->width;

    for (int32_t py = box.y0; py <= box.y1; ++py) {
        const double dy = py - y;
        for (int32_t px = box.x0; px <= box.x1; ++px) {
            const double dx = px - x;
            const double d2 = dx * dx + dy * dy;
            if (!(d2 < outer2)) continue;
            const size_t index = static_cast<size_t>(py) * width + static_cast<size_t>(px);
            double colour_weight = 1.0;
            if (!ignoreColor) {
                const Lab lab = to_lab(reinterpret_cast<const VokColor *>(bitmap->pixels) + index);
                const double da = lab.a - ref.a, db = lab.b - ref.b;
                double c2 = da * da + db * db;
                if (useLightness) c2 += (lab.L - ref.L) * (lab.L - ref.L);
                // Equal colours match even at tolerance 0, where the ratio
                // below would be 0/0.
                if (c2 > none) continue;
                if (!(c2 < exact || c2 == 0.0))
                    colour_weight = expf(static_cast<float>(-c2 / (2.0 * t2)));
            }
            double falloff = 1.0;
            if (!(d2 < r2)) {
                const double edge = 1.0 + (r - sqrt(d2)) * 2.0 / r;
                falloff = edge * edge;
            }
            const double w = falloff * strength * colour_weight;
            uint8_t &alpha = mask->pixels[index * 4 + 3];
            alpha = erase ? vok::byte_round((1.0 - w) * alpha)
                          : vok::byte_round((w + alpha / 255.0 * (1.0 - w)) * 255.0);
        }
    }
}

}  // extern "C"
