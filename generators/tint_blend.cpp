#include "generators/tint_blend.h"

namespace vok {

void tint_blend_init(TintBlend &tint, VokColor color, VokBlendMode mode) {
    tint.color = color;
    tint.mode = mode;
    tint.per_channel = mode != kVokBlendColor && mode != kVokBlendInterpolation;
    if (!tint.per_channel) return;
    // Blending at full opacity gives (255 B + 255) >> 8, which is B itself for
    // every B in 0..255, so the blend values come straight out of the blend
    // function applied to grey destinations.
    VokColor source = color;
    source.alpha = 255;
    for (uint32_t v = 0; v < 256; ++v) {
        const uint8_t level = static_cast<uint8_t>(v);
        VokColor grey = {level, level, level, 255};
        VokColorBlendEmbededAlpha(&grey, &source, mode);
        tint.blended[0][v] = grey.red;
        tint.blended[1][v] = grey.green;
        tint.blended[2][v] = grey.blue;
    }
}

}  // namespace vok
