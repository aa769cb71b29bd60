// Runner of the "sharpness" processor.
#include "effects/effects_internal.h"

extern "C" {

// The amount is used unscaled; only the opacity follows the strength.
int TESKRunSharpnessProcessor(VokJsonValue parameters, VokBitmap *bitmap,
                              const VokEffectParams *params) {
    const yajl_val amount = vok::json_number(parameters, "amount");
    const yajl_val alpha = vok::json_number(parameters, "alpha");
    if (!amount || !alpha) {
        VOK_LOGD("Sharpness Processor failed: amount, blendMode, or alpha param is missing.");
        return 0;
    }
    uint32_t mode;
    TESKBlendModeFromBlendModeVal(vok::json_string(parameters, "blendMode"), &mode);
    VokConvolutionProcessorSharpenAndBlendWithOriginal(
        bitmap, static_cast<float>(vok::json_double(amount)),
        static_cast<float>(vok::json_double(alpha) * params->strength), mode);
    return 1;
}

}  // extern "C"
