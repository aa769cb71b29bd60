// Runner of the "blendWithColor" processor.
#include "effects/effects_internal.h"

extern "C" {

// The colour's alpha "a" defaults to 1; the engine gets a * strength.
int TESKRunBlendWithColorProcessor(VokJsonValue parameters, VokBitmap *bitmap,
                                   const VokEffectParams *params) {
    if (!vok::json_is_object(parameters)) {
        VOK_LOGD("BlendWithColor Processor failed: params dne or is not an object.");
        return 0;
    }
    const yajl_val color_value = vok::json_object(parameters, "color");
    const yajl_val alpha = vok::json_number(parameters, "alpha");
    if (!color_value || !alpha) {
        VOK_LOGD("BlendWithColor Processor failed: color, blendMode, or alpha param is missing.");
        return 0;
    }
    VokColor color;
    if (!TESKColorFromColorVal(color_value, &color)) return 0;
    uint32_t mode;
    TESKBlendModeFromBlendModeVal(vok::json_string(parameters, "blendMode"), &mode);
    const double a = vok::json_double_valid(alpha) ? vok::json_double(alpha) : 1.0;
    VokBitmapBlendWithColor(bitmap, &color, mode, static_cast<float>(a * params->strength));
    return 1;
}

}  // extern "C"
