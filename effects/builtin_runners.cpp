// The two processors whose bodies live outside the description format:
// "original" and the named legacy presets.
#include "effects/effects_internal.h"
#include "effects/legacy_presets.h"
#include "vok/tonal.h"

extern "C" {

int TESKRunOriginalProcessor(VokJsonValue, VokBitmap *bitmap, const VokEffectParams *) {
    VokBitmapOriginal(bitmap);
    return 1;
}

int TESKRunLegacyProcessor(VokJsonValue parameters, VokBitmap *bitmap,
                           const VokEffectParams *params) {
    if (!vok::json_is_object(parameters)) {
        VOK_LOGD("Legacy Processor failed: params dne or is not an object.");
        return 0;
    }
    const yajl_val name = vok::json_string(parameters, "legacyName");
    if (!name) {
        VOK_LOGD("Legacy Processor failed: legacy border name is incorrect or missing.");
        return 0;
    }
    const char *text = vok::json_text(name);
    if (!text) return 0;
    const vok::LegacyPreset *preset = vok::find_legacy_preset(text);
    if (preset == nullptr) {
        VOK_LOGD("No legacy processor found with name: %s.", text);
        return 0;
    }
    if (!preset->border || params->bordersEnabled) preset->apply(bitmap, params);
    return 1;
}

// Reachable only by calling it directly; the name table does not list it.
int TESKRunAutoColorsFadeMaxProcessor(VokJsonValue parameters, VokBitmap *bitmap,
                                      const VokEffectParams *params) {
    VokColor color;
    if (!TESKColorFromColorVal(vok::json_object(parameters, "color"), &color)) return 0;
    VokAutoColorsFadeMaxColor(bitmap, params->strength, &color);
    return 1;
}

const char *TESKLegacyPresetName(uint32_t index) {
    uint32_t count;
    const vok::LegacyPreset *presets = vok::legacy_presets(&count);
    return index < count ? presets[index].name : nullptr;
}

int TESKLegacyPresetIsBorder(uint32_t index) {
    uint32_t count;
    const vok::LegacyPreset *presets = vok::legacy_presets(&count);
    return index < count && presets[index].border ? 1 : 0;
}

}  // extern "C"
