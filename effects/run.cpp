// Running a loaded effect: the processor loop, one step through the name
// table, and the adjustable-strength run.
#include "effects/effects_internal.h"

#include <cstring>

namespace {

using Runner = int (*)(VokJsonValue, VokBitmap *, const VokEffectParams *);

struct NamedRunner {
    const char *name;
    Runner run;
};

// Searched in this order; the first exact match wins.
const NamedRunner kRunners[] = {
    {"original", TESKRunOriginalProcessor},
    {"vignette", TESKRunVignetteProcessor},
    {"legacyProcessor", TESKRunLegacyProcessor},
    {"histogramMapping", TESKRunHistogramMappingProcessor},
    {"gamma", TESKRunGammaProcessor},
    {"colorMatrixTransform", TESKRunColorMatrixTransformProcessor},
    {"intensityMap", TESKRunIntensityMapProcessor},
    {"flare", TESKRunFlareProcessor},
    {"contrast", TESKRunContrastProcessor},
    {"blendWithColor", TESKRunBlendWithColorProcessor},
    {"noise", TESKRunNoiseProcessor},
    {"sharpness", TESKRunSharpnessProcessor},
    {"gradient", TESKRunGradientProcessor},
    {"gradientMap", TESKRunGradientMapProcessor},
    {"gradientFlare", TESKRunGradientFlareProcessor},
    {"adjustments", TESKRunAdjustmentsProcessor},
};

}  // namespace

extern "C" {

int TESKRunEffect(VokJsonValue effect, VokBitmap *bitmap, const VokEffectParams *params) {
    VokBitmapBeginGLEffectIfEnabled(bitmap);
    const int result = TESKRunEffectProcessors(effect, bitmap, params);
    VokBitmapEndGLEffectIfEnabled(bitmap);
    return result;
}

int TESKRunEffectProcessors(VokJsonValue effect, VokBitmap *bitmap,
                            const VokEffectParams *params) {
    // A bitmap whose build failed keeps its size but has no pixels: refused
    // here, so no engine ever sees it.
    if (!effect || !bitmap || !bitmap->pixels || !params) return 0;
    if (!vok::has_envelope(effect)) {
        VOK_LOGD("Missing or problematic identifier property and/or processors property");
        return 0;
    }
    const yajl_val processors = vok::json_array(effect, "processors");
    // An empty list succeeds; otherwise only the last step decides the result.
    int result = 1;
    for (size_t i = 0; i < processors->u.array.len; ++i) {
        result = TESKRunProcessor(processors->u.array.values[i], bitmap, params);
    }
    return result;
}

int TESKRunProcessor(VokJsonValue processor, VokBitmap *bitmap, const VokEffectParams *params) {
    if (!vok::json_is_object(processor)) {
        VOK_LOGD("Run Processor failed: Processor node is not an object.");
        return 0;
    }
    const yajl_val name = vok::json_string(processor, "name");
    const yajl_val parameters = vok::json_object(processor, "parameters");
    if (!name || !parameters) {
        VOK_LOGD("Missing or problematic name property and/or params property.");
        return 0;
    }
    const char *text = vok::json_text(name);
    if (!text) return 0;
    for (const NamedRunner &entry : kRunners) {
        if (strcmp(entry.name, text) == 0) return entry.run(parameters, bitmap, params);
    }
    VOK_LOGD("No processor found with name: %s", text);
    return 0;
}

}  // extern "C"
