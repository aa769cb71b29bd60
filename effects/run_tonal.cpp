// Runners of the tonal processors: "histogramMapping", "intensityMap",
// "gamma" and "contrast". Every check precedes the engine
// call, so a runner that fails leaves the bitmap untouched.
#include "effects/effects_internal.h"

namespace {

// The histogram map of a "histMap" member, read and faded by the strength.
bool read_faded_map(yajl_val map_value, double strength, VokHistMap *map) {
    if (!TESKHistMapfromHistMapVal(map_value, map)) return false;
    VokHistMapFade(map, strength);
    return true;
}

// gamma and contrast: a factor around 1 mixed toward 1 by the strength.
bool curve_factor(yajl_val parameters, const VokEffectParams *params, float *factor) {
    const yajl_val value = vok::json_number(parameters, "value");
    if (!value) return false;
    *factor = TESKBlendAroundIdentity(static_cast<float>(vok::json_double(value)), 1.0f,
                                      static_cast<float>(params->strength));
    return true;
}

}  // namespace

extern "C" {

int TESKRunHistogramMappingProcessor(VokJsonValue parameters, VokBitmap *bitmap,
                                     const VokEffectParams *params) {
    if (!vok::json_is_object(parameters)) {
        VOK_LOGD("HistMap Processor failed: params dne or is not an object.");
        return 0;
    }
    const yajl_val map_value = vok::json_object(parameters, "histMap");
    if (!map_value) {
        VOK_LOGD("HistMap Processor failed: histMap dne or is not an object.");
        return 0;
    }
    VokHistMap map;
    if (!read_faded_map(map_value, params->strength, &map)) return 0;
    VokBitmapHistogramTransform(bitmap, &map);
    return 1;
}

// The strength acts twice here, on the map and on the opacity.
int TESKRunIntensityMapProcessor(VokJsonValue parameters, VokBitmap *bitmap,
                                 const VokEffectParams *params) {
    if (!vok::json_is_object(parameters)) {
        VOK_LOGD("HistMap Processor failed: params dne or is not an object.");
        return 0;
    }
    const yajl_val map_value = vok::json_object(parameters, "histMap");
    const yajl_val alpha = vok::json_number(parameters, "alpha");
    if (!map_value || !alpha) {
        VOK_LOGD("HistMap Processor failed: histMap or alpha missing or problematic.");
        return 0;
    }
    VokHistMap map;
    if (!read_faded_map(map_value, params->strength, &map)) return 0;
    uint32_t mode;
    TESKBlendModeFromBlendModeVal(vok::json_string(parameters, "blendMode"), &mode);
    VokBitmapIntensityMap(bitmap, &map, mode, vok::json_double(alpha) * params->strength);
    return 1;
}

int TESKRunGammaProcessor(VokJsonValue parameters, VokBitmap *bitmap,
                          const VokEffectParams *params) {
    float gamma;
    if (!curve_factor(parameters, params, &gamma)) {
        VOK_LOGD("Gamma Processor failed: value is missing.");
        return 0;
    }
    VokBitmapGamma(bitmap, gamma);
    return 1;
}

int TESKRunContrastProcessor(VokJsonValue parameters, VokBitmap *bitmap,
                             const VokEffectParams *params) {
    float contrast;
    if (!curve_factor(parameters, params, &contrast)) {
        VOK_LOGD("Contrast Processor failed: value is missing.");
        return 0;
    }
    VokBitmapContrastCurve(bitmap, contrast);
    return 1;
}

}  // extern "C"
