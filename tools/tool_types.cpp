// What a tool does at a touch, by its type's row: its first-touch work, its
// stamp and its start mask.
#include "vok/tools.h"

#include "tools/tool_type_table.h"
#include "tools/tools_internal.h"

namespace vok {
namespace {

// The three stroke modes of the desaturate tool. Its start mask is opaque:
// modes 1 and 3 take the effect away, mode 2 brings it back, mode 3 only on
// similar colours.
void desaturate_stamp(const VokBitmap *bitmap, VokBitmap *mask, const VokToolPoint *point,
                      const VokColor *colour) {
    const double x = point->location.x, y = point->location.y, r = point->radius;
    if (point->mode == 1)
        VokMaskSimilarColors(bitmap, mask, colour, 1, x, y, r, kAnyColour, 1.0, 1.0, 1, 0, 1);
    else if (point->mode == 2)
        VokMaskSimilarColors(bitmap, mask, colour, 1, x, y, r, kAnyColour, 1.0, 1.0, 0, 0, 1);
    else if (point->mode == 3)
        VokMaskSimilarColors(bitmap, mask, colour, 1, x, y, r, 10.0, 1.0, 1.0, 1, 0, 0);
}

}  // namespace
}  // namespace vok

extern "C" {

void VokToolTypesFirstDownProcessing(const VokBitmap *bitmap, VokToolStroke *stroke,
                                     VokToolDrawParams *params, const VokToolDrawState *) {
    if (stroke->count <= 0 || stroke->points == nullptr) return;
    const vok::ToolTypeRow *row = vok::tool_type_row(params->type);
    switch (row != nullptr ? row->first_touch : vok::FirstTouch::none) {
        case vok::FirstTouch::none:
            return;
        case vok::FirstTouch::sample_colour:
            if (!stroke->colorSet && vok::usable(bitmap))
                VokBitmapGetColorAtPoint(bitmap, &stroke->points[0], &stroke->color);
            return;
        case vok::FirstTouch::blemish:
            // Healing changes the photo the stroke paints on, which the host
            // owns and shows: it is written through the stroke's bitmap.
            VokBlemish(const_cast<VokBitmap *>(bitmap), stroke);
            return;
        case vok::FirstTouch::region_brightest:
        case vok::FirstTouch::region_closest_to_lip:
            // The region look-ups of types 7 and 9 leave the stroke's colour
            // as it is at a first touch, deliberately.
            return;
    }
}

void VokToolTypesDrawPoint(const VokBitmap *bitmap, VokBitmap *mask, const VokToolPoint *point,
                           const VokColor *strokeColor, int32_t, const VokToolDrawParams *params) {
    const double x = point->location.x, y = point->location.y, r = point->radius;
    const int32_t erase = point->mode == 2;
    const vok::ToolTypeRow *row = vok::tool_type_row(params->type);
    switch (row != nullptr ? row->stamp : vok::Stamp::plain_brush) {
        case vok::Stamp::none:
            return;
        case vok::Stamp::desaturate:
            vok::desaturate_stamp(bitmap, mask, point, strokeColor);
            return;
        case vok::Stamp::similar_colours:
            // Compared with the effect colour, not the sampled one.
            VokMaskSimilarColors(bitmap, mask, &params->color, 0, x, y, r, params->tolerance, 1.0,
                                 params->strength, erase, 0, 0);
            return;
        case vok::Stamp::draw:
            VokMaskDraw(mask, strokeColor, x, y, r, params->strength, erase);
            return;
        case vok::Stamp::plain_brush:
            VokMaskSimilarColors(bitmap, mask, &params->color, 1, x, y, r, vok::kAnyColour, 1.0,
                                 params->strength, erase, 0, 1);
            return;
    }
}

// The bitmap is not needed: the start mask depends on the type alone.
void VokToolConfigureMask(const VokBitmap *, VokBitmap *mask, const VokToolDrawParams *params) {
    const vok::ToolTypeRow *row = vok::tool_type_row(params->type);
    if (row != nullptr && row->start_mask == vok::StartMask::opaque)
        VokMaskSetOpaque(mask);
    else
        VokMaskSetTransparent(mask);
}

void VokToolDrawShapeInMask(const VokBitmap *bitmap, VokBitmap *mask, const VokToolShape *shape) {
    if (shape->type == 1)
        VokMaskRadial(bitmap, mask, shape->center.x, shape->center.y, shape->size);
    else if (shape->type == 2)
        VokMaskLinear(bitmap, mask, shape->center.x, shape->center.y, shape->size,
                      shape->angle * 0.017453292519943295);
}

}  // extern "C"
