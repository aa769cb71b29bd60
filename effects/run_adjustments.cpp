// Runner of the "adjustments" processor: brightness, contrast, warmth and
// saturation in one call of the adjustment tool.
#include "effects/effects_internal.h"

namespace {

// An adjustment amount; 0 with its message when yajl could not read a double.
double amount_or_zero(yajl_val number, const char *message) {
    if (vok::json_double_valid(number)) return vok::json_double(number);
    VOK_LOGD("%s", message);
    return 0.0;
}

}  // namespace

extern "C" {

// The four amounts are used unscaled; only the opacity follows the strength.
// The missing-key message names the sharpness processor, as hosts know it.
int TESKRunAdjustmentsProcessor(VokJsonValue parameters, VokBitmap *bitmap,
                                const VokEffectParams *params) {
    const yajl_val brightness = vok::json_number(parameters, "brightness");
    const yajl_val contrast = vok::json_number(parameters, "contrast");
    const yajl_val warmth = vok::json_number(parameters, "warmth");
    const yajl_val saturation = vok::json_number(parameters, "saturation");
    const yajl_val alpha = vok::json_number(parameters, "alpha");
    const yajl_val blend = vok::json_string(parameters, "blendMode");
    if (!brightness || !contrast || !warmth || !saturation || !alpha || !blend) {
        VOK_LOGD("Sharpness Processor failed: amount, blendMode, or alpha param is missing.");
        return 0;
    }
    double opacity = 1.0;
    if (vok::json_double_valid(alpha)) {
        opacity = vok::json_double(alpha) * params->strength;
    } else {
        VOK_LOGD("Alpha is not a float. Defaulting to 1.0");
    }
    const double b = amount_or_zero(brightness, "brightness is not a float. Defaulting to 0.0");
    const double c = amount_or_zero(contrast, "Contrast is not a float. Defaulting to 0.0");
    const double w = amount_or_zero(warmth, "Warmth is not a float. Defaulting to 0.0");
    const double s = amount_or_zero(saturation, "Saturation is not a float. Defaulting to 0.0");
    uint32_t mode;
    TESKBlendModeFromBlendModeVal(blend, &mode);
    VokToolAdjustBrightnessContrastWarmthSaturationProcessor(bitmap, b, c, w, s, mode,
                                                             static_cast<float>(opacity));
    return 1;
}

}  // extern "C"
