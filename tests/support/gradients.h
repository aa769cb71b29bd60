// A gradient whose stops the object owns, built stop by stop.
#ifndef VOK_TESTS_GRADIENTS_H
#define VOK_TESTS_GRADIENTS_H

#include <cstdint>
#include <vector>

#include "vok/core.h"
#include "vok/generators.h"

namespace vok_test {

struct GradientStops {
    std::vector<VokColorStop> colors;
    std::vector<VokOpacityStop> opacities;
    VokGradient gradient{};

    GradientStops &color(uint8_t r, uint8_t g, uint8_t b, double at) {
        colors.push_back({{r, g, b, 255}, at});
        return *this;
    }
    GradientStops &opacity(double o, double at) {
        opacities.push_back({o, at});
        return *this;
    }
    // The VokGradient over the current stops (valid until the next change).
    VokGradient *get() {
        gradient = {colors.data(), opacities.data(), static_cast<uint32_t>(colors.size()),
                    static_cast<uint32_t>(opacities.size())};
        return &gradient;
    }
    std::vector<VokColor> table(uint32_t n) {
        std::vector<VokColor> t(n, VokColor{1, 2, 3, 4});
        VokGradientMemoize(get(), t.data(), n);
        return t;
    }
};

}  // namespace vok_test

#endif
