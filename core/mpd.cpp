// One-dimensional midpoint displacement, used for ragged border edges.
#include "vok/core.h"

#include <cmath>

namespace {

float draw(VokRNG *rng, uint32_t distribution) {
    switch (distribution) {
        case 0: return VokRNGNextFloat(rng) - 0.5f;
        case 1: return VokRNGNextFloatNormal(rng);
        case 2: return VokRNGNextFloatLaplace(rng);
        default: return 0.0f;
    }
}

int displace(float *v, int32_t a, int32_t b, float amplitude, float roughness,
             uint32_t distribution, VokRNG *rng) {
    // Nothing lies between the ends (the end value would otherwise be written
    // one past b), or the range lies before the array or cannot be indexed:
    // nothing is touched. With 0 <= a < b no index below overflows.
    const int64_t span = static_cast<int64_t>(b) - a;
    if (a < 0 || span < 1) return 1;
    const int32_t len = static_cast<int32_t>(span);
    int32_t p = 1;
    while (2 * static_cast<int64_t>(p) <= len) p *= 2;
    int32_t m = a + p;
    v[m] = v[b];
    if (p > 1) {
        float amp = amplitude;
        float factor = powf(2.0f, -roughness);
        int32_t step = p, half = p / 2;
        for (;;) {
            for (int32_t i = a; i < m; i += step)
                v[i + half] = (v[i] + v[i + step]) * 0.5f + draw(rng, distribution) * amp;
            amp *= factor;
            if (half < 2) break;
            step = half;
            half = step / 2;
        }
    }
    if (b > m) {
        // Stretch [0, m] onto [0, b] in place; descending j keeps k <= j safe.
        // The ratio uses the absolute indices on purpose.
        double ratio = static_cast<double>(b) / static_cast<double>(m);
        for (int32_t j = b; j >= 0; --j) {
            double x = j / ratio;
            double k = floor(x);
            double f = x - k;
            int32_t ki = static_cast<int32_t>(k);
            if (f < 0.0001)
                v[j] = v[ki];
            else
                v[j] = static_cast<float>(v[ki] * (1.0 - f) + v[ki + 1] * f);
        }
    }
    return 1;
}

}  // namespace

extern "C" {

int VokMPD(float *values, int32_t a, int32_t b, float amplitude, float roughness,
           uint32_t distribution) {
    VokRNG rng;
    VokRNGInit(&rng);
    return displace(values, a, b, amplitude, roughness, distribution, &rng);
}

int VokMPDSeed(float *values, int32_t a, int32_t b, float amplitude, float roughness,
               uint32_t distribution, uint32_t seed) {
    VokRNG rng;
    VokRNGSeed(&rng, seed);
    return displace(values, a, b, amplitude, roughness, distribution, &rng);
}

int VokMPDRNG(float *values, int32_t a, int32_t b, float amplitude, float roughness,
              uint32_t distribution, VokRNG *rng) {
    return displace(values, a, b, amplitude, roughness, distribution, rng);
}

}  // extern "C"
