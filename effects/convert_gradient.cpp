// JSON colour-stop and opacity-stop arrays into an already built VokGradient.
#include "effects/effects_internal.h"

namespace {

// Locations and opacities pass through single precision on their way in.
double through_float(yajl_val number) {
    return static_cast<double>(static_cast<float>(vok::json_double(number)));
}

}  // namespace

extern "C" {

// Every element is checked and converted in array order. Stops beyond the
// counts the gradient was built with are checked but not stored, so a host
// that built too small a gradient gets no out-of-bounds write.
int TESKGradientfromColorsValAndOpacitiesVal(VokJsonValue colors, VokJsonValue opacities,
                                             VokGradient *gradient) {
    if (!colors || colors->type != yajl_t_array || !opacities ||
        opacities->type != yajl_t_array) {
        VOK_LOGD("vokGradientfromColorsValAndOpacitiesVal failed: opacities or colors is not an "
                 "array");
        return 0;
    }
    for (size_t i = 0; i < colors->u.array.len; ++i) {
        const yajl_val stop = colors->u.array.values[i];
        const yajl_val color = vok::json_object(stop, "color");
        const yajl_val location = vok::json_number(stop, "location");
        if (!color || !location) {
            VOK_LOGD("Error in vokGradientfromColorsValAndOpacitiesVal: missing or errant color "
                     "or location.");
            return 0;
        }
        VokColor value;
        if (!TESKColorFromColorVal(color, &value)) return 0;
        if (i < gradient->colorCount) {
            gradient->colorStops[i].color = value;
            gradient->colorStops[i].location = through_float(location);
        }
    }
    for (size_t j = 0; j < opacities->u.array.len; ++j) {
        const yajl_val stop = opacities->u.array.values[j];
        const yajl_val opacity = vok::json_number(stop, "opacity");
        const yajl_val location = vok::json_number(stop, "location");
        if (!opacity || !location) {
            VOK_LOGD("Error in vokGradientfromColorsValAndOpacitiesVal: missing or errant "
                     "opacity or location.");
            return 0;
        }
        if (j < gradient->opacityCount) {
            gradient->opacityStops[j].opacity = through_float(opacity);
            gradient->opacityStops[j].location = through_float(location);
        }
    }
    return 1;
}

}  // extern "C"
