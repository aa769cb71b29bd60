// Error function helpers behind the box-hybrid filter's normal weights.
#include "vok/generators.h"

#include <math.h>

namespace {

// Chebyshev coefficients of erfc on z >= 0 in the variable ty = 4t - 2 with
// t = 2 / (2 + z), kept in single precision like the rest of the evaluation.
const float kErfcCoefficients[28] = {
    -1.3026537197817094f, 6.4196979235649026e-1f, 1.9476473204185836e-2f,
    -9.561514786808631e-3f, -9.46595344482036e-4f, 3.66839497852761e-4f,
    4.2523324806907e-5f, -2.0278578112534e-5f, -1.624290004647e-6f,
    1.303655835580e-6f, 1.5626441722e-8f, -8.5238095915e-8f,
    6.529054439e-9f, 5.059343495e-9f, -9.91364156e-10f,
    -2.27365122e-10f, 9.6467911e-11f, 2.394038e-12f,
    -6.886027e-12f, 8.94487e-13f, 3.13092e-13f,
    -1.12708e-13f, 3.81e-16f, 7.106e-15f,
    -1.523e-15f, -9.4e-17f, 1.21e-16f,
    -2.8e-17f};

}  // namespace

extern "C" {

// Clenshaw's recurrence from the last coefficient down to the second; only
// the final exponential runs in double precision.
float VokMathErfccheb(float z) {
    if (z < 0.0f) return 0.0f;
    float t = 2.0f / (2.0f + z);
    float ty = 4.0f * t - 2.0f;
    float d = 0.0f;
    float dd = 0.0f;
    for (int j = 27; j > 0; --j) {
        float previous = d;
        d = ty * d - dd + kErfcCoefficients[j];
        dd = previous;
    }
    float exponent = -z * z + 0.5f * (kErfcCoefficients[0] + ty * d) - dd;
    return static_cast<float>(t * exp(static_cast<double>(exponent)));
}

float VokMathErf(float x) {
    if (x >= 0.0f) return 1.0f - VokMathErfccheb(x);
    return VokMathErfccheb(-x) - 1.0f;
}

// The scaling by 1/sqrt(2) and sigma runs in double, the rest in float.
float VokMathNormalCDF(float x, float sigma) {
    float scaled = static_cast<float>(static_cast<double>(x) * 0.7071067811865475 /
                                      static_cast<double>(sigma));
    return 0.5f + 0.5f * VokMathErf(scaled);
}

}  // extern "C"
