// The adjustable-strength run: the effect at full strength on a working copy,
// mixed back over the caller's bitmap by the caller's strength.
#include "effects/effects_internal.h"

extern "C" {

int TESKRunAdjustableAlphaEffect(VokJsonValue effect, VokBitmap *bitmap,
                                 const VokEffectParams *params) {
    if (!bitmap || !bitmap->pixels || !params) return 0;
    VokEffectParams full = *params;
    full.strength = 1.0;
    VokBitmap work;
    if (!VokBitmapBuild(&work, bitmap->width, bitmap->height)) return 0;
    VokBitmapCopy(&work, bitmap);
    const int result = TESKRunEffectProcessors(effect, &work, &full);
    // Mixed back whatever the run's result: a failed step may have changed
    // the copy before it failed, as it would have changed the bitmap.
    VokBitmapBlendBitmap(bitmap, &work, 0, static_cast<float>(params->strength));
    VokBitmapFree(&work);
    return result;
}

}  // extern "C"
