// What the automatic enhancements share: levels at a share of a histogram,
// the strength rule and the stretch between robust end levels.
#include <cmath>

#include "core/bitmap_checks.h"
#include "tonal/tonal_internal.h"

namespace vok {

uint32_t level_at(const uint32_t *counts, uint64_t total, uint32_t per_10000) {
    const uint64_t wanted = (total * per_10000 + 9999) / 10000;
    uint64_t running = 0;
    for (uint32_t level = 0; level < 256; ++level) {
        running += counts[level];
        if (running >= wanted && running > 0) return level;
    }
    return 255;
}

bool enhancement_applies(const VokBitmap *bitmap, double strength, double *clamped) {
    if (!usable(bitmap) || std::isnan(strength)) return false;
    *clamped = strength < 0.0 ? 0.0 : strength > 1.0 ? 1.0 : strength;
    return *clamped > 0.0;
}

void stretch_levels(const uint32_t *counts, uint64_t total, uint8_t *table) {
    int lo = static_cast<int>(level_at(counts, total, 50));
    int hi = static_cast<int>(level_at(counts, total, 9950));
    for (int v = 0; v < 256; ++v) table[v] = static_cast<uint8_t>(v);
    if (hi - lo < kMinStretchRange) return;
    if (hi - lo < kMaxStretchGainRange) {
        // Widen a narrow range about its middle so no level more than doubles its distance.
        const int middle = (lo + hi) / 2;
        lo = middle - kMaxStretchGainRange / 2;
        hi = lo + kMaxStretchGainRange;
        if (lo < 0) hi -= lo, lo = 0;
        if (hi > 255) lo -= hi - 255, hi = 255;
    }
    const int range = hi - lo;
    for (int v = 0; v < 256; ++v) {
        const int d = v <= lo ? 0 : v >= hi ? range : v - lo;
        table[v] = static_cast<uint8_t>((d * 510 + range) / (2 * range));
    }
}

}  // namespace vok
