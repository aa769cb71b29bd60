// Sampling a gradient's colour and opacity stops into a colour table.
#include "generators/gradient_internal.h"

#include <math.h>

#include "core/numeric.h"

namespace {

// Position of entry i of n on the 0..100 scale. One entry gives NaN, which
// the weight rule below turns into the upper stop.
inline double entry_position(uint32_t i, uint32_t n) {
    return (1.0 - static_cast<double>(n - 1 - i) / static_cast<double>(n - 1)) * 100.0;
}

// The eased interpolation weight between two stops, with its deliberate sine
// wobble of 9/255 that swells towards both ends.
double eased_weight(double t) {
    const double k = 0.03529411764705882;
    const double wobble = sin((t - 0.5) * 6.283185307179586);
    double s = t < 0.5 ? t + (1.0 + 1.5 * (0.5 - t)) * k * wobble
                       : t + (1.0 + 1.5 * (t - 0.5)) * k * wobble;
    if (s > 1.0) s = 1.0;
    return s > 0.0 ? s : 0.0;
}

// Walks the stop locations forward once over all entries, calling
// fill(entry, lower, upper, weight) for each. `location(j)` reads stop j.
template <typename Location, typename Fill>
void walk_stops(uint32_t n, uint32_t stops, Location location, Fill fill) {
    uint32_t lower = 0, upper = 1;
    for (uint32_t i = 0; i < n; ++i) {
        const double p = entry_position(i, n);
        while (location(upper) <= p && upper + 1 < stops) {
            ++lower;
            ++upper;
        }
        double w = 1.0;
        if (location(lower) != location(upper)) {
            double t = (p - location(lower)) / (location(upper) - location(lower));
            if (!(t <= 1.0)) t = 1.0;
            if (t < 0.0) t = 0.0;
            w = eased_weight(t);
        }
        fill(i, lower, upper, w);
    }
}

}  // namespace

namespace vok {

VokColor *build_gradient_table(const VokGradient *gradient, uint32_t count, VokArray *table) {
    if (!VokArrayBuild(table, count, 4)) return nullptr;
    VokColor *entries = static_cast<VokColor *>(table->data);
    VokGradientMemoize(gradient, entries, count);
    return entries;
}

}  // namespace vok

extern "C" {

void VokGradientMemoize(const VokGradient *gradient, VokColor *table, uint32_t n) {
    const VokColorStop *colors = gradient->colorStops;
    const VokOpacityStop *opacities = gradient->opacityStops;

    if (gradient->colorCount < 2) {
        VokColor c = {255, 255, 255, 0};
        if (gradient->colorCount == 1) c = colors[0].color;
        for (uint32_t i = 0; i < n; ++i) {
            table[i].red = c.red;
            table[i].green = c.green;
            table[i].blue = c.blue;
        }
    } else {
        walk_stops(n, gradient->colorCount, [colors](uint32_t j) { return colors[j].location; },
                   [table, colors](uint32_t i, uint32_t lo, uint32_t up, double w) {
                       const VokColor &a = colors[lo].color;
                       const VokColor &b = colors[up].color;
                       table[i].red = vok::byte_trunc_clamp((1.0 - w) * a.red + w * b.red);
                       table[i].green = vok::byte_trunc_clamp((1.0 - w) * a.green + w * b.green);
                       table[i].blue = vok::byte_trunc_clamp((1.0 - w) * a.blue + w * b.blue);
                   });
    }

    if (gradient->opacityCount < 2) {
        uint8_t alpha = 255;
        if (gradient->opacityCount == 1) alpha = vok::byte_trunc_clamp(opacities[0].opacity * 255.0);
        for (uint32_t i = 0; i < n; ++i) table[i].alpha = alpha;
    } else {
        walk_stops(n, gradient->opacityCount,
                   [opacities](uint32_t j) { return opacities[j].location; },
                   [table, opacities](uint32_t i, uint32_t lo, uint32_t up, double w) {
                       double o = (1.0 - w) * opacities[lo].opacity + w * opacities[up].opacity;
                       table[i].alpha = vok::byte_trunc_clamp(o * 255.0);
                   });
    }
}

void VokGradientMultiplyAlpha(VokGradient *gradient, double alpha) {
    for (uint32_t i = 0; i < gradient->opacityCount; ++i) gradient->opacityStops[i].opacity *= alpha;
}

}  // extern "C"
