// The public faces of the box-hybrid filter: the sharpness slider, the
// sharpen step of effect descriptions, soft focus and a light anti-aliasing
// blur.
#include "vok/generators.h"

namespace {

// A pixel-for-pixel copy of the bitmap in a freshly built one; false (and
// nothing to free) when it cannot be built.
bool copy_bitmap(const VokBitmap *bitmap, VokBitmap *copy) {
    if (!VokBitmapBuild(copy, bitmap->width, bitmap->height)) return false;
    if (!VokArrayCopy2(copy->pixels, bitmap->pixels, bitmap->width, bitmap->height, 4)) {
        VokBitmapFree(copy);
        return false;
    }
    return true;
}

}  // namespace

extern "C" {

void VokSharpness(VokBitmap *bitmap, float amount) {
    if (amount == 0.0f) return;
    VokConvolutionEffectBoxHybridSharpen(bitmap, amount);
}

void VokConvolutionEffectRullSharpen(VokBitmap *bitmap, float amount) {
    VokBitmapBeginGLEffectIfEnabled(bitmap);
    VokConvolutionEffectBoxHybridSharpen(bitmap, amount);
    VokBitmapEndGLEffectIfEnabled(bitmap);
}

void VokConvolutionProcessorRullSharpen(VokBitmap *bitmap, float amount) {
    VokConvolutionEffectBoxHybridSharpen(bitmap, amount);
}

void VokConvolutionProcessorSharpenAndBlendWithOriginal(VokBitmap *bitmap, float amount,
                                                        float opacity, VokBlendMode mode) {
    if (amount == 0.0f || opacity == 0.0f) return;
    VokBitmap copy;
    if (!copy_bitmap(bitmap, &copy)) return;
    VokConvolutionProcessorRullSharpen(&copy, amount);
    VokBitmapBlendBitmap(bitmap, &copy, mode, opacity);
    VokBitmapFree(&copy);
}

// A blur of the image added to a brightened copy of itself: a soft glow.
int VokConvolutionEffectSoftFocus(VokBitmap *bitmap) {
    VokBitmapBeginGLEffectIfEnabled(bitmap);
    VokBitmap copy;
    if (!copy_bitmap(bitmap, &copy)) return 0;
    VokConvolutionEffectBoxHybridSharpen(bitmap, -100.0f);
    VokBitmapBlendBitmapSeparate(bitmap, &copy, 0.5f, 0.6f);
    VokBitmapFree(&copy);
    VokBitmapEndGLEffectIfEnabled(bitmap);
    return 1;
}

void VokConvolutionAntialiasGL(VokBitmap *bitmap) {
    VokConvolutionEffectBoxHybridSharpen(bitmap, -5.0f);
}

}  // extern "C"
