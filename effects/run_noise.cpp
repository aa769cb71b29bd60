// Runner of the "noise" processor.
#include "effects/effects_internal.h"

extern "C" {

// The amount follows the strength; the seed comes unchanged from the caller.
int TESKRunNoiseProcessor(VokJsonValue parameters, VokBitmap *bitmap,
                          const VokEffectParams *params) {
    const yajl_val intensity = vok::json_number(parameters, "intensity");
    if (!intensity) {
        VOK_LOGD("Intensity param is missing.");
        return 0;
    }
    VokBitmapAddNoise(bitmap, static_cast<float>(params->strength * vok::json_double(intensity)),
                      static_cast<uint32_t>(params->seed));
    return 1;
}

}  // extern "C"
