// The public faces of the box-hybrid filter: the sharpness slider, the
// sharpen step of effect descriptions, and a light anti-aliasing blur.
#include "vok/generators.h"

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

void VokConvolutionAntialiasGL(VokBitmap *bitmap) {
    VokConvolutionEffectBoxHybridSharpen(bitmap, -5.0f);
}

}  // extern "C"
