// The tools sheet of `vok gallery`: every tool type painted with one S-shaped
// stroke across the portrait, as a finger would.
#include <cmath>

#include "contact_sheet.h"
#include "vok/tools.h"

namespace vok_cli {
namespace {

// Starts the tool on the photo, paints the stroke into its mask and renders
// the result over the photo, in place.
bool paint(VokBitmap &photo, VokToolType type) {
    Image original, mask;
    if (!VokBitmapBuild(&original.bitmap, photo.width, photo.height) ||
        !VokBitmapCopy(&original.bitmap, &photo) ||
        !VokBitmapBuild(&mask.bitmap, photo.width, photo.height))
        return false;
    VokToolDrawParams params;
    VokToolDrawParamsInit(&params);
    VokToolDrawState state;
    VokToolDrawStateInit(&state);
    params.type = state.type = type;
    state.restoreBitmap = &original.bitmap;
    Image full;
    if (!VokBitmapBuild(&full.bitmap, photo.width, photo.height)) return false;
    VokToolInit(&photo, &full.bitmap, &mask.bitmap, &params, &state);

    std::vector<VokPoint> points;
    const float w = static_cast<float>(photo.width), h = static_cast<float>(photo.height);
    for (int k = 0; k <= 40; ++k) {
        const float t = static_cast<float>(k) / 40.0f;
        points.push_back({w * (0.2f + 0.6f * t), h * (0.55f + 0.2f * sinf(t * 6.2831853f))});
    }
    VokToolStroke stroke;
    VokToolStrokeInit(&stroke);
    stroke.pointData = nullptr;
    stroke.points = points.data();
    stroke.count = static_cast<int32_t>(points.size());
    stroke.ended = 1;
    stroke.radius = std::fmin(w, h) / 9.0;
    stroke.color = {230, 40, 160, 255};  // the draw tool's ink
    stroke.colorSet = 1;
    VokToolDrawStroke(&photo, &mask.bitmap, &stroke, &params, &state);
    VokToolRenderHiRes(&photo, &mask.bitmap, &params, &state);
    return true;
}

std::vector<SheetTile> tool_tiles() {
    std::vector<SheetTile> tiles;
    for (VokToolType type = 1; VokToolTypeName(type) != nullptr; ++type)
        tiles.push_back({std::to_string(type) + " " + VokToolTypeName(type),
                         [type](VokBitmap &bitmap) { return paint(bitmap, type); }});
    return tiles;
}

}  // namespace

extern const GallerySheet tools_sheet = {"tools.png", "vok-lite tools", "astronaut.png",
                                         tool_tiles};

}  // namespace vok_cli
