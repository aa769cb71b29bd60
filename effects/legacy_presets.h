// The named presets of "legacyProcessor": one row each, searched in order.
#ifndef VOK_EFFECTS_LEGACY_PRESETS_H
#define VOK_EFFECTS_LEGACY_PRESETS_H

#include <cstdint>

#include "vok/effects.h"

namespace vok {

struct LegacyPreset {
    const char *name;
    // Border presets do nothing (and succeed) when the params disable borders.
    bool border;
    void (*apply)(VokBitmap *bitmap, const VokEffectParams *params);
};

// The preset called `name` exactly, or null.
const LegacyPreset *find_legacy_preset(const char *name);

// Every preset in search order.
const LegacyPreset *legacy_presets(uint32_t *count);

}  // namespace vok

#endif
