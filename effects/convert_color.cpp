// JSON colour objects { "r", "g", "b", "a" } to VokColor.
#include "effects/effects_internal.h"

extern "C" {

int TESKColorFromColorVal(VokJsonValue value, VokColor *out) {
    if (!vok::json_is_object(value)) {
        VOK_LOGD("Error in color to vok color conversion: missing or invalid color object.");
        return 0;
    }
    static const char *const kKeys[4] = {"r", "g", "b", "a"};
    long long channel[4];
    yajl_val number[4];
    for (int i = 0; i < 4; ++i) number[i] = vok::json_number(value, kKeys[i]);
    for (int i = 0; i < 4; ++i) {
        if (!number[i]) {
            VOK_LOGD("Error in color to vok color conversion: missing or errant r,g,b, or a "
                     "value.");
            return 0;
        }
    }
    // The integer reading is taken without looking at yajl's integer flag;
    // yajl saturates it for a text such as 12.5, which then fails the range.
    for (int i = 0; i < 4; ++i) {
        channel[i] = vok::json_integer(number[i]);
        if (channel[i] > 255 || channel[i] < 0) {
            VOK_LOGD("Error in color to vok color conversion: r,g,b,a outside of [0,255] "
                     "range.");
            return 0;
        }
    }
    out->red = static_cast<uint8_t>(channel[0]);
    out->green = static_cast<uint8_t>(channel[1]);
    out->blue = static_cast<uint8_t>(channel[2]);
    out->alpha = static_cast<uint8_t>(channel[3]);
    return 1;
}

}  // extern "C"
