// Channel histograms, their cumulative distributions and the inverse look-up
// that automatic corrections derive levels from.
#include "color/color_internal.h"
#include "vok/tonal.h"

using namespace vok;

extern "C" {

// Counts accumulate: the caller clears them, so several bitmaps can share one
// histogram.
void VokHistogramBuild(const VokBitmap *bitmap, uint32_t *counts) {
    uint32_t *red = counts, *green = counts + 256, *blue = counts + 512;
    const VokColor *p = pixels_of(bitmap);
    const size_t n = pixel_count(bitmap);
    for (size_t i = 0; i < n; ++i) {
        ++red[p[i].red];
        ++green[p[i].green];
        ++blue[p[i].blue];
    }
}

// An empty histogram gets the distribution of a uniform ramp.
void VokHistogram2CDFChan(const uint32_t *counts, double *cdf) {
    double sum = 0.0;
    for (int i = 0; i < 256; ++i) {
        sum += counts[i];
        cdf[i] = sum;
    }
    if (sum != 0.0) {
        const double scale = 1.0 / sum;
        for (int i = 0; i < 256; ++i) cdf[i] *= scale;
    } else {
        for (int i = 0; i < 256; ++i) cdf[i] = i * 0.00392156862745098;
    }
}

void VokHistogram2CDF(const uint32_t *counts, double *cdf) {
    for (int c = 0; c < 3; ++c) VokHistogram2CDFChan(counts + 256 * c, cdf + 256 * c);
}

// Linear interpolation between the two levels around p. A distribution that
// never reaches p (its last entry below 1) gives 255.
double VokCDFINV(const double *cdf, double p) {
    if (p <= 0.0) return 0.0;
    if (p >= 1.0) return 255.0;
    if (p <= cdf[0]) return p / cdf[0];
    for (int i = 1; i < 256; ++i)
        if (cdf[i] >= p) return (i - 1) + (p - cdf[i - 1]) / (cdf[i] - cdf[i - 1]);
    return 255.0;
}

}  // extern "C"
