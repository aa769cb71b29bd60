// Scalar fields of the heart, star and crescent gradient-flare shapes. The
// single-precision steps are part of their look and are kept as they are.
#include "vok/generators.h"

#include <math.h>

#include "core/numeric.h"

extern "C" {

double VokCalcNoiseHeart(double x, double y, double a, double b) {
    const float r = sqrtf(static_cast<float>(x * x + y * y));
    const double s = fabs(x / r);
    const double c = -y / r;
    return r - sqrtf(static_cast<float>(s)) * a * c / (c + b) - 2.0 * (1.0 - c);
}

// The sector fraction f is subtracted from an angle as it stands; that odd
// mix of units shapes the star's arms.
double VokCalcNoiseStar(double x, double y, int32_t n, double a, double b) {
    const double pi = 3.141592653589793;
    const double w = pi / n;
    const double u = (4.71238898038469 - atan2f(static_cast<float>(y), static_cast<float>(x))) / w;
    const int32_t k = vok::trunc_to<int32_t>(u);
    double f = u - k;
    if (k % 2 == 1) f = 1.0 - f;
    const float r = sqrtf(static_cast<float>(x * x + y * y));
    const float q = sinf(static_cast<float>(w / 2.0)) / sinf(static_cast<float>(pi - w / 2.0 - f));
    const double m = q * (1.0 - a) + (1.0 - f) * a;
    return (r - b) - m * (1.0 - b);
}

float VokCalcNoiseCrescent(double x, double y, const double *params) {
    const float r1 = static_cast<float>(params[1]);
    const float c = static_cast<float>((r1 + 1.0f) * params[0]);
    const float d1 = static_cast<float>(sqrt(y * y + (x - c) * (x - c)));
    const float d0 = static_cast<float>(sqrt(y * y + x * x));
    if (d1 <= r1 || !(d0 < 1.0f)) return 1.0f;
    const float outside = d1 / r1 - 1.0f;
    const float inside = 1.0f - d0;
    return 1.0f - (outside < inside ? outside : inside);
}

}  // extern "C"
