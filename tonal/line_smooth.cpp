// Gaussian smoothing of a short float array; the kernel spans the whole
// array, so this is quadratic in the count and meant for 256-entry curves.
#include <cmath>
#include <cstring>

#include "core/numeric.h"
#include "tonal/tonal_internal.h"
#include "vok/tonal.h"

namespace vok {

bool line_smooth(float *values, uint32_t count, int32_t sigma) {
    VokArray scratch;
    if (!VokArrayBuild(&scratch, count, sizeof(float))) return false;
    float *out = static_cast<float *>(scratch.data);
    const float c = 1.0f / static_cast<float>(vok::wrap_mul(2, vok::wrap_mul(sigma, sigma)));
    for (uint32_t i = 0; i < count; ++i) {
        float weighted = 0.0f;
        float total = 0.0f;
        for (uint32_t j = 0; j < count; ++j) {
            const int32_t distance = static_cast<int32_t>(i - j);
            const int32_t square = vok::wrap_mul(distance, distance);
            const float w = expf(static_cast<float>(vok::wrap_sub(0, square)) * c);
            weighted += values[j] * w;
            total += w;
        }
        out[i] = weighted / total;
    }
    std::memcpy(values, out, static_cast<size_t>(count) * sizeof(float));
    VokArrayFree(&scratch);
    return true;
}

}  // namespace vok

extern "C" {

void VokLineSmooth1D(float *values, uint32_t count, int32_t sigma) {
    vok::line_smooth(values, count, sigma);
}

}  // extern "C"
