// The named presets: hand-tuned sequences of engine calls, each taking the
// effect params' strength (and seed where it draws at random).
#include "effects/legacy_presets.h"

#include <cstring>

#include "vok/tonal.h"

namespace vok {
namespace {

// A soft warm white the highlights lean to.
const VokColor kWarmHighlight = {255, 236, 206, 255};

float strength_of(const VokEffectParams *params) { return static_cast<float>(params->strength); }

const LegacyPreset kPresets[] = {
    // Colour cast out and tones spread in LAB.
    {"autoColourTone", false,
     [](VokBitmap *b, const VokEffectParams *p) { VokLabCorrect(b, strength_of(p)); }},
    // Exposure and contrast chosen from the photo's own brightness.
    {"autoContrast", false,
     [](VokBitmap *b, const VokEffectParams *p) { VokVaryingContrast(b, strength_of(p)); }},
    // Channels stretched to full range, highlights leaning warm.
    {"autoColoursWarmHighlights", false,
     [](VokBitmap *b, const VokEffectParams *p) {
         VokAutoColorsFadeMaxColor(b, p->strength, &kWarmHighlight);
     }},
};

}  // namespace

const LegacyPreset *find_legacy_preset(const char *name) {
    for (const LegacyPreset &preset : kPresets)
        if (strcmp(preset.name, name) == 0) return &preset;
    return nullptr;
}

}  // namespace vok
