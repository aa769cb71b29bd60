// Colours, points, sizes, effect parameters, versions and shared constants.
#include "vok/core.h"

extern "C" {

const VokTransform VokTransformIdentity = {1.0, 0.0, 0.0, 0.0, 1.0, 0.0};
const float kVokRadiusMultiplier = 2.0f;

void VokColorSetARGB(VokColor *out, uint8_t alpha, uint8_t red, uint8_t green, uint8_t blue) {
    out->red = red;
    out->green = green;
    out->blue = blue;
    out->alpha = alpha;
}

void VokColorCopy(VokColor *destination, const VokColor *source) {
    destination->red = source->red;
    destination->green = source->green;
    destination->blue = source->blue;
    destination->alpha = source->alpha;
}

void VokEffectInitParams(VokEffectParams *params) {
    params->seed = 0;
    params->strength = 1.0;
    params->bordersEnabled = 1;
    params->scale = 1.0;
}

VokPoint *VokPointMake(VokPoint *out, float x, float y) {
    out->x = x;
    out->y = y;
    return out;
}

VokPoint *VokPointScale(VokPoint *out, VokPoint point, float sx, float sy) {
    out->x = point.x * sx;
    out->y = point.y * sy;
    return out;
}

VokSize *VokSizeMake(VokSize *out, float width, float height) {
    out->width = width;
    out->height = height;
    return out;
}

void VokLiteVersion(uint32_t *major, uint32_t *minor, uint32_t *patch) {
    *major = 2;
    *minor = 1;
    *patch = 1;
}

void VokLiteProclistVersion(uint32_t *major, uint32_t *minor, uint32_t *patch) {
    *major = 2;
    *minor = 0;
    *patch = 0;
}

}  // extern "C"
