// Runners whose engines are not built yet: each logs that it is unavailable
// and fails, so a run goes on past it with the next step.
#include "effects/effects_internal.h"

namespace {

int not_available(const char *name) {
    VOK_LOGD("%s processor is not available yet.", name);
    return 0;
}

}  // namespace

extern "C" {

int TESKRunSharpnessProcessor(VokJsonValue, VokBitmap *, const VokEffectParams *) {
    return not_available("sharpness");
}
int TESKRunGradientProcessor(VokJsonValue, VokBitmap *, const VokEffectParams *) {
    return not_available("gradient");
}
int TESKRunGradientMapProcessor(VokJsonValue, VokBitmap *, const VokEffectParams *) {
    return not_available("gradientMap");
}
int TESKRunGradientFlareProcessor(VokJsonValue, VokBitmap *, const VokEffectParams *) {
    return not_available("gradientFlare");
}

}  // extern "C"
