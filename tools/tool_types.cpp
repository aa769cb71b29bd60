// What each tool type does at a touch: its first-touch work, its stamp and
// its start mask.
#include "vok/tools.h"

#include "core/log.h"
#include "tools/tools_internal.h"

namespace vok {

void log_unavailable(const char *engine) { VOK_LOGD("%s is not available yet", engine); }

}  // namespace vok

extern "C" {

// The region look-ups of types 7 and 9 are not available yet; the stroke's
// colour stays as it is, so their first touch changes nothing.
void VokToolTypesFirstDownProcessing(const VokBitmap *bitmap, VokToolStroke *stroke,
                                     VokToolDrawParams *params, const VokToolDrawState *) {
    if (stroke->count <= 0 || stroke->points == nullptr) return;
    switch (params->type) {
        case kVokToolDesaturate:
        case kVokToolSimilarSoft:
        case kVokToolSimilarSoftLight:
            if (!stroke->colorSet && vok::usable(bitmap))
                VokBitmapGetColorAtPoint(bitmap, &stroke->points[0], &stroke->color);
            return;
        case kVokToolBlemish:
            vok::log_unavailable("VokBlemish");
            return;
        case kVokToolSimilarDarken:
            vok::log_unavailable("VokRegionInfoColorBrightest");
            return;
        case kVokToolLips:
            vok::log_unavailable("VokRegionInfoColorClosestToLip");
            return;
        default:
            return;
    }
}

void VokToolTypesDrawPoint(const VokBitmap *bitmap, VokBitmap *mask, const VokToolPoint *point,
                           const VokColor *strokeColor, int32_t,
                           const VokToolDrawParams *params) {
    const double x = point->location.x, y = point->location.y, r = point->radius;
    const int32_t erase = point->mode == 2;
    switch (params->type) {
        case kVokToolDesaturate:
            // The start mask is opaque: modes 1 and 3 take the effect away,
            // mode 2 brings it back, mode 3 only on similar colours.
            if (point->mode == 1)
                VokMaskSimilarColors(bitmap, mask, strokeColor, 1, x, y, r, vok::kAnyColour, 1.0,
                                     1.0, 1, 0, 1);
            else if (point->mode == 2)
                VokMaskSimilarColors(bitmap, mask, strokeColor, 1, x, y, r, vok::kAnyColour, 1.0,
                                     1.0, 0, 0, 1);
            else if (point->mode == 3)
                VokMaskSimilarColors(bitmap, mask, strokeColor, 1, x, y, r, 10.0, 1.0, 1.0, 1, 0,
                                     0);
            return;
        case kVokToolBlemish:
            return;
        case kVokToolSimilarSoft:
        case kVokToolSimilarDarken:
        case kVokToolSimilarSoftLight:
        case kVokToolLips:
            // Compared with the effect colour, not the sampled one.
            VokMaskSimilarColors(bitmap, mask, &params->color, 0, x, y, r, params->tolerance,
                                 1.0, params->strength, erase, 0, 0);
            return;
        case kVokToolDraw:
            VokMaskDraw(mask, strokeColor, x, y, r, params->strength, erase);
            return;
        default:
            VokMaskSimilarColors(bitmap, mask, &params->color, 1, x, y, r, vok::kAnyColour, 1.0,
                                 params->strength, erase, 0, 1);
            return;
    }
}

// The bitmap is not needed: the start mask depends on the type alone.
void VokToolConfigureMask(const VokBitmap *, VokBitmap *mask, const VokToolDrawParams *params) {
    if (params->type == kVokToolDesaturate)
        VokMaskSetOpaque(mask);
    else
        VokMaskSetTransparent(mask);
}

void VokToolDrawShapeInMask(const VokBitmap *, VokBitmap *, const VokToolShape *shape) {
    if (shape->type == 1)
        vok::log_unavailable("VokMaskRadial");
    else if (shape->type == 2)
        vok::log_unavailable("VokMaskLinear");
}

}  // extern "C"
