// Stroke stamping: each new touch point of a stroke becomes a run of stamps
// along the smoothed path, and the call reports the rectangle it changed.
#include "vok/tools.h"

#include <cmath>
#include <cstdlib>

#include "tools/tool_type_table.h"
#include "tools/tools_internal.h"

namespace vok {

void interpolate_stroke_point(const VokToolStroke *stroke, int32_t i, float radius, int is_draw,
                              VokPoint **list, int32_t *count) {
    const VokPoint *p = stroke->points;
    if (i == 1) {
        VokInterpolateFirstPointToMidpoint(p[0].x, p[0].y, p[1].x, p[1].y, radius, list, count,
                                           is_draw);
    } else if (stroke->ended && i == stroke->count - 1) {
        VokInterpolateBetweenPointsWithBezierQuadCurveAndFinishToPoint(
            p[i - 2].x, p[i - 2].y, p[i - 1].x, p[i - 1].y, p[i].x, p[i].y, radius, list, count,
            is_draw);
    } else {
        VokInterpolateBetweenPointsWithBezierQuadCurve(p[i - 2].x, p[i - 2].y, p[i - 1].x,
                                                       p[i - 1].y, p[i].x, p[i].y, radius, list,
                                                       count, is_draw);
    }
}

}  // namespace vok

extern "C" {

void VokToolDrawStrokeOutRect(const VokBitmap *bitmap, VokBitmap *mask, VokToolStroke *stroke,
                              VokToolDrawParams *params, const VokToolDrawState *state,
                              VokPoint *outMin, VokPoint *outMax) {
    const vok::ToolTypeRow *row = vok::state_row(state);
    if (params->useBrushEngine && vok::has_flag(row, vok::kPaintsColour)) {
        VokDrawToolDrawStrokeSegment(bitmap, mask, state, params, stroke, outMin, outMax);
        return;
    }
    if (stroke->firstIndex >= stroke->count || stroke->points == nullptr || !vok::usable(mask))
        return;
    const int is_draw = vok::has_flag(row, vok::kPaintsColour);
    const float radius = static_cast<float>(stroke->radius);
    // The rectangle pads every stamp position by the brush diameter.
    const float pad = static_cast<float>(
        vok::trunc_to<int32_t>(ceilf(2.0f * static_cast<float>(stroke->radius))));
    VokToolPoint stamp;
    VokToolPointInit(&stamp);
    stamp.radius = stroke->radius;
    stamp.mode = stroke->mode;

    for (int32_t i = stroke->firstIndex < 0 ? 0 : stroke->firstIndex; i < stroke->count; ++i) {
        if (i == 0) {
            if (vok::has_flag(row, vok::kFirstTouchEveryStroke) || !stroke->colorSet)
                VokToolTypesFirstDownProcessing(bitmap, stroke, params, state);
            stamp.location = stroke->points[0];
            VokToolTypesDrawPoint(bitmap, mask, &stamp, &stroke->color, stroke->mode, params);
            continue;
        }
        VokPoint *list = nullptr;
        int32_t n = 0;
        vok::interpolate_stroke_point(stroke, i, radius, is_draw, &list, &n);
        VokPointMake(outMin, 0.0f, 0.0f);
        VokPointMake(outMax, 0.0f, 0.0f);
        if (n > 0)
            VokPointMake(outMin, static_cast<float>(mask->width - 1),
                         static_cast<float>(mask->height - 1));
        for (int32_t k = 0; k < n; ++k) {
            const VokPoint q = list[k];
            if (q.x < outMin->x) outMin->x = q.x;
            if (q.y < outMin->y) outMin->y = q.y;
            if (q.x > outMax->x) outMax->x = q.x;
            if (q.y > outMax->y) outMax->y = q.y;
            stamp.location = q;
            VokToolTypesDrawPoint(bitmap, mask, &stamp, &stroke->color, stroke->mode, params);
        }
        free(list);
        outMin->x -= pad;
        outMin->y -= pad;
        outMax->x += pad;
        outMax->y += pad;
    }
}

void VokToolDrawStroke(const VokBitmap *bitmap, VokBitmap *mask, VokToolStroke *stroke,
                       VokToolDrawParams *params, const VokToolDrawState *state) {
    VokPoint out_min, out_max;
    VokToolDrawStrokeOutRect(bitmap, mask, stroke, params, state, &out_min, &out_max);
}

}  // extern "C"
