// Local contrast enhancement: a tone map derived from the image's own green
// histogram, applied neighbourhood by neighbourhood.
#include <cmath>
#include <cstdlib>

#include "core/numeric.h"
#include "tonal/tonal_internal.h"
#include "vok/core.h"
#include "vok/tonal.h"

namespace {

// Levels where more of the image lies below than a uniform ramp would put
// there get a gain above 1; the gains are smoothed and turned into a table.
// False when the smoothing cannot allocate: the enhancement then stops
// rather than run on an unsmoothed curve.
bool build_gain_table(const uint32_t *green_counts, uint32_t pixel_count, uint8_t *table) {
    float gains[256];
    gains[0] = 1.0f;
    uint32_t running = green_counts[0];
    for (int i = 1; i < 256; ++i) {
        running += green_counts[i];
        const float below = static_cast<float>(running) / static_cast<float>(pixel_count);
        const float q = below / (static_cast<float>(i) * 0.003921569f);
        gains[i] = q > 1.0f ? powf(q, 0.33f) : 1.0f;
    }
    if (!vok::line_smooth(gains, 256, 15)) return false;
    for (int i = 0; i < 256; ++i) {
        const double level = gains[i] * static_cast<float>(i) + 0.5;
        table[i] = level > 255.0 ? 255 : vok::byte_trunc_clamp(level < 0.0 ? 0.0 : level);
    }
    return true;
}

}  // namespace

extern "C" {

void VokLocalContrastEnhanceProcessor(VokBitmap *bitmap) {
    uint32_t *counts = static_cast<uint32_t *>(calloc(768, sizeof(uint32_t)));
    double *distribution = static_cast<double *>(calloc(768, sizeof(double)));
    if (counts != nullptr && distribution != nullptr) {
        VokHistogramBuild(bitmap, counts);
        // The distribution is kept for parity with the other automatic
        // corrections; the gains below read the counts directly.
        VokHistogram2CDF(counts, distribution);
        uint8_t table[256];
        if (build_gain_table(counts + 256, bitmap->width * bitmap->height, table)) {
            VokHistMap map;
            VokHistMapSet(&map, table, table, table);
            VokBlurHistMap(bitmap, &map, 120.0, 0.3);
        }
    }
    free(distribution);
    free(counts);
}

void VokLocalContrastEnhance(VokBitmap *bitmap) {
    VokBitmapBeginGLEffectIfEnabled(bitmap);
    VokLocalContrastEnhanceProcessor(bitmap);
    VokBitmapEndGLEffectIfEnabled(bitmap);
}

}  // extern "C"
