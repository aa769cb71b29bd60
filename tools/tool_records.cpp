// The tool records' defaults, the mask fills, and the heap bitmaps the host
// keeps across a tool run.
#include "vok/tools.h"

#include <cstdlib>
#include <cstring>

#include "tools/tools_internal.h"

extern "C" {

void VokToolDrawParamsInit(VokToolDrawParams *params) {
    params->type = 0;
    VokColorSetARGB(&params->color, 255, 255, 255, 255);
    params->strength = 1.0;
    params->tolerance = 10.0;
    params->deferFullTool = 0;
    params->showMaskInRed = 0;
    params->useBrushEngine = 1;
}

void VokToolPointInit(VokToolPoint *point) {
    VokPointMake(&point->location, 0.0f, 0.0f);
    point->radius = 0.0;
    point->mode = 0;
}

// pointData is left as it was: the host decides whether it carries values.
void VokToolStrokeInit(VokToolStroke *stroke) {
    stroke->points = nullptr;
    stroke->count = 0;
    stroke->firstIndex = 0;
    stroke->ended = 0;
    stroke->radius = 0.0;
    stroke->scale = 1.0;
    stroke->mode = 0;
    stroke->colorSet = 0;
    VokColorSetARGB(&stroke->color, 255, 255, 0, 0);
    VokPointMake(&stroke->offsetPoint, -1.0f, -1.0f);
}

void VokToolShapeInit(VokToolShape *shape) {
    shape->type = 0;
    VokPointMake(&shape->center, 0.0f, 0.0f);
    shape->size = 0.0;
    shape->angle = 0.0;
}

// The host sets the type itself.
void VokToolDrawStateInit(VokToolDrawState *state) {
    state->active = 0;
    state->restoreBitmap = nullptr;
}

void VokToolDrawStateDestroy(VokToolDrawState *) {}

int VokToolBitmapCopy(VokBitmap **out, const VokBitmap *source) {
    VokBitmap *copy = static_cast<VokBitmap *>(calloc(1, sizeof(VokBitmap)));
    *out = copy;
    if (copy == nullptr) return 0;
    VokBitmapBuild(copy, source->width, source->height);
    return VokBitmapCopy(copy, source);
}

void VokToolBitmapDestroy(VokBitmap **bitmap) {
    if (bitmap == nullptr || *bitmap == nullptr) return;
    VokBitmapFree(*bitmap);
    free(*bitmap);
    *bitmap = nullptr;
}

void VokMaskSetOpaque(VokBitmap *mask) {
    if (!vok::usable(mask)) return;
    memset(mask->pixels, 255, static_cast<size_t>(mask->width) * mask->height * 4);
}

void VokMaskSetTransparent(VokBitmap *mask) {
    if (!vok::usable(mask)) return;
    memset(mask->pixels, 0, static_cast<size_t>(mask->width) * mask->height * 4);
}

}  // extern "C"
