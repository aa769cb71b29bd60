// Gradient stop blocks and raw zero-filled arrays.
#include "vok/core.h"

#include <cstdlib>
#include <cstring>

namespace {

constexpr uint32_t kMaxStops = 268435455u;  // 2^28 - 1: count * 16 stays below 2^32

}  // namespace

extern "C" {

int VokGradientBuild(VokGradient *gradient, uint32_t colorCount, uint32_t opacityCount) {
    gradient->colorCount = colorCount;
    gradient->opacityCount = opacityCount;
    if (colorCount > kMaxStops) {
        gradient->colorStops = nullptr;
        gradient->opacityStops = nullptr;
        return 0;
    }
    gradient->colorStops = static_cast<VokColorStop *>(std::calloc(colorCount, 16));
    // On this failure the opacity pointer is deliberately left as it was.
    if (gradient->colorStops == nullptr) return 0;
    if (opacityCount > kMaxStops) {
        std::free(gradient->colorStops);
        gradient->colorStops = nullptr;
        gradient->opacityStops = nullptr;
        return 0;
    }
    gradient->opacityStops = static_cast<VokOpacityStop *>(std::calloc(opacityCount, 16));
    return gradient->opacityStops != nullptr;
}

void VokGradientFree(VokGradient *gradient) {
    if (gradient->colorStops != nullptr) {
        std::free(gradient->colorStops);
        gradient->colorStops = nullptr;
    }
    if (gradient->opacityStops != nullptr) {
        std::free(gradient->opacityStops);
        gradient->opacityStops = nullptr;
    }
}

int VokArrayBuild(VokArray *array, uint32_t count, uint32_t elementSize) {
    array->data = nullptr;
    if (elementSize == 0 || count > UINT32_MAX / elementSize || count * elementSize == 0)
        return 0;
    array->data = std::calloc(count, elementSize);
    return array->data != nullptr;
}

int VokArrayBuild2(VokArray *array, uint32_t a, uint32_t b, uint32_t c) {
    array->data = nullptr;
    if (b != 0 && a > UINT32_MAX / b) return 0;
    if (c == 0 || a * b > UINT32_MAX / c || a * b * c == 0) return 0;
    array->data = std::calloc(static_cast<size_t>(a) * b * c, 1);
    return array->data != nullptr;
}

int VokArrayCopy2(void *destination, const void *source, uint32_t a, uint32_t b, uint32_t c) {
    if (b != 0 && a > UINT32_MAX / b) return 0;
    if (c != 0 && a * b > UINT32_MAX / c) return 0;
    size_t bytes = static_cast<size_t>(a) * b * c;
    if (bytes != 0 && destination != nullptr) std::memcpy(destination, source, bytes);
    return destination != nullptr;
}

void VokArrayFree(VokArray *array) {
    if (array->data != nullptr) {
        std::free(array->data);
        array->data = nullptr;
    }
}

}  // extern "C"
