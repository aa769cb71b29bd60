// The two processors whose bodies live outside the description format:
// "original" and the named legacy presets.
#include "effects/effects_internal.h"
#include "vok/tonal.h"

extern "C" {

int TESKRunOriginalProcessor(VokJsonValue, VokBitmap *bitmap, const VokEffectParams *) {
    VokBitmapOriginal(bitmap);
    return 1;
}

// No legacy preset ships yet, so every name is unknown; once presets exist,
// border presets must return 1 untouched when bordersEnabled is false.
int TESKRunLegacyProcessor(VokJsonValue parameters, VokBitmap *, const VokEffectParams *) {
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
    VOK_LOGD("No legacy processor found with name: %s.", text);
    return 0;
}

// Reachable only by calling it directly; the name table does not list it.
int TESKRunAutoColorsFadeMaxProcessor(VokJsonValue parameters, VokBitmap *bitmap,
                                      const VokEffectParams *params) {
    VokColor color;
    if (!TESKColorFromColorVal(vok::json_object(parameters, "color"), &color)) return 0;
    VokAutoColorsFadeMaxColor(bitmap, params->strength, &color);
    return 1;
}

}  // extern "C"
