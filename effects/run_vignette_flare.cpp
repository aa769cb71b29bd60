// Runners of the "vignette" and "flare" processors.
#include "effects/effects_internal.h"

#include "core/numeric.h"

namespace {

constexpr uint32_t kVignetteStyle = 15;
constexpr uint32_t kFingerFlare = 14;

}  // namespace

extern "C" {

// A weaker strength pushes the vignette outward through the shape's scale.
int TESKRunVignetteProcessor(VokJsonValue parameters, VokBitmap *bitmap,
                             const VokEffectParams *params) {
    if (!vok::json_is_object(parameters)) {
        VOK_LOGD("Borders Vignette Processor failed: params dne or is not an object.");
        return 0;
    }
    const yajl_val color_value = vok::json_object(parameters, "color");
    const yajl_val shape = vok::json_object(parameters, "shape");
    if (!color_value || !shape) {
        VOK_LOGD("Borders Vignette Processor failed: some params are incorrect or missing.");
        return 0;
    }
    uint32_t mode;
    TESKBlendModeFromBlendModeVal(vok::json_string(parameters, "blendMode"), &mode);
    VokColor color;
    if (!TESKColorFromColorVal(color_value, &color)) return 0;
    VokBorderParams border;
    VokBorderInitParams(&border);
    border.color = color;
    border.blendMode = mode;
    border.style = kVignetteStyle;
    if (!TESKBorderPopoulateWithShapeTypeVal(shape, &border, bitmap,
                                             static_cast<float>(params->strength), 1)) {
        return 0;
    }
    VokBorders(bitmap, &border);
    return 1;
}

// The strength scales the colour's alpha, except for the finger flare, which
// keeps its alpha and reads the strength itself.
int TESKRunFlareProcessor(VokJsonValue parameters, VokBitmap *bitmap,
                          const VokEffectParams *params) {
    if (!vok::json_is_object(parameters)) {
        VOK_LOGD("Flare Processor failed: params dne or is not an object.");
        return 0;
    }
    const yajl_val color_value = vok::json_object(parameters, "color");
    const yajl_val blend = vok::json_string(parameters, "blendMode");
    const yajl_val type_value = vok::json_string(parameters, "type");
    const yajl_val dx = vok::json_number(parameters, "dx");
    const yajl_val dy = vok::json_number(parameters, "dy");
    const yajl_val dsx = vok::json_number(parameters, "dsx");
    const yajl_val dsy = vok::json_number(parameters, "dsy");
    const yajl_val scale = vok::json_number(parameters, "fScale");
    if (!color_value || !blend || !type_value || !dx || !dy || !dsx || !dsy || !scale) {
        VOK_LOGD("Flare Processor failed: some params are incorrect or missing.");
        return 0;
    }
    VokColor color;
    if (!TESKColorFromColorVal(color_value, &color)) return 0;
    uint32_t mode, type;
    TESKBlendModeFromBlendModeVal(blend, &mode);
    if (!TESKFlareTypeFromFlareTypeVal(type_value, &type)) return 0;
    // The integer part, kept within a byte for strengths outside [0, 1].
    if (type != kFingerFlare) color.alpha = vok::byte_trunc_clamp(color.alpha * params->strength);
    const auto narrow = [](yajl_val number) { return static_cast<float>(vok::json_double(number)); };
    VokFlare(bitmap, narrow(scale), color, type, narrow(dx), narrow(dy), narrow(dsx), narrow(dsy),
             mode, params->strength);
    return 1;
}

}  // extern "C"
