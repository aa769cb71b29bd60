// A tool run: start (photo copy, start mask, full-effect bitmap) and the
// final full-resolution render.
#include "vok/tools.h"

#include "tools/tool_type_table.h"
#include "tools/tools_internal.h"
#include "vok/color.h"

extern "C" {

void VokToolInit(const VokBitmap *source, VokBitmap *result, VokBitmap *mask,
                 VokToolDrawParams *params, VokToolDrawState *state) {
    if (!VokBitmapCopy(result, source)) return;
    VokToolConfigureMask(result, mask, params);
    if (!params->deferFullTool ||
        vok::has_flag(vok::tool_type_row(params->type), vok::kFullToolWhenDeferred))
        VokToolApplyFullTool(result, params, state);
}

void VokToolApplyFullTool(VokBitmap *bitmap, VokToolDrawParams *params,
                          const VokToolDrawState *state) {
    if (vok::has_flag(vok::tool_type_row(params->type), vok::kSkipsFullTool)) return;
    params->tolerance = vok::kAnyColour;
    if (vok::has_flag(vok::state_row(state), vok::kRestoresFromState) &&
        state->restoreBitmap != nullptr)
        VokBitmapCopy(bitmap, state->restoreBitmap);
    else
        VokToolTypesApplyEffect(bitmap, params);
    if (params->showMaskInRed && vok::usable(bitmap)) {
        // No coefficients, offsets (255, 0, 0): every colour becomes pure red.
        static const VokColorMatrix kRed = {
            {0.0f, 0.0f, 0.0f, 255.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f}};
        VokBitmapColorMatrixTransform(bitmap, &kRed);
    }
}

void VokToolRenderHiRes(VokBitmap *bitmap, const VokBitmap *mask, VokToolDrawParams *params,
                        const VokToolDrawState *state) {
    if (!vok::usable(bitmap) || !vok::usable(mask)) return;
    if (vok::has_flag(vok::state_row(state), vok::kPaintsColour)) {
        // The painted mask is read pixel for pixel, so it must match the photo.
        if (mask->width != bitmap->width || mask->height != bitmap->height) return;
        VokBitmapCompositePremultiplied(bitmap, bitmap, mask, kVokBlendNormal);
        return;
    }
    VokBitmap full;
    if (!VokBitmapBuild(&full, bitmap->width, bitmap->height)) return;
    if (VokBitmapCopy(&full, bitmap)) {
        VokToolApplyFullTool(&full, params, state);
        VokBitmapBlendBitmapMask(bitmap, bitmap, &full, mask, kVokBlendNormal);
    }
    VokBitmapFree(&full);
}

}  // extern "C"
