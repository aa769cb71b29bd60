// The border-shape block of the vignette and gradient processors: fills the
// shape fields of a border record from a JSON object.
#include "effects/effects_internal.h"

#include <cstring>

namespace {

double number_or_zero(yajl_val node, const char *key) {
    const yajl_val number = vok::json_number(node, key);
    return number ? vok::json_double(number) : 0.0;
}

}  // namespace

extern "C" {

int TESKBorderPopoulateWithShapeTypeVal(VokJsonValue shape, VokBorderParams *border,
                                        const VokBitmap *bitmap, float strength,
                                        uint8_t addEpsilon) {
    const yajl_val scale = vok::json_number(shape, "vignetteScale");
    const yajl_val scaling = vok::json_string(shape, "scaling");
    if (!scale || !scaling) {
        VOK_LOGD("vokBorderPopoulateWithShapeTypeVal failed: some params are incorrect or "
                 "missing.");
        return 0;
    }
    uint32_t shape_mode;
    TESKBorderShapeModeFromBorderShapeModeVal(vok::json_string(shape, "shapeMode"), &shape_mode);
    border->dx = number_or_zero(shape, "dx");
    border->dy = number_or_zero(shape, "dy");
    border->shapeMode = shape_mode;

    // The epsilon keeps strength 0 from dividing by zero: the border is then
    // pushed far outside the image instead.
    const double s = static_cast<double>(strength) + (addEpsilon ? 1e-8 : 0.0);
    const double v = vok::json_double(scale);
    const double width = bitmap->width, height = bitmap->height;
    const char *mode = vok::json_text(scaling);
    if (!mode) return 0;
    if (strcmp(mode, "average") == 0) {
        border->stretch = 0;
        border->scale = v * 0.5 * (width + height) / s;
    } else if (strcmp(mode, "max") == 0) {
        border->stretch = 0;
        border->scale = (width > height ? width : height) * v / s;
    } else if (strcmp(mode, "stretch") == 0) {
        border->stretch = 1;
        border->scale = v / s;
    } else {
        VOK_LOGD("Borders Vignette Processor failed: scaling mode %s not defined\n\\", mode);
        return 0;
    }
    return 1;
}

}  // extern "C"
