// JSON histogram maps { "r", "g", "b" } (256 integers each) to VokHistMap.
#include "effects/effects_internal.h"

namespace {

bool is_byte_integer(yajl_val entry) {
    if (!vok::json_integer_valid(entry)) return false;
    const long long v = vok::json_integer(entry);
    return v >= 0 && v <= 255;
}

}  // namespace

extern "C" {

int TESKHistMapfromHistMapVal(VokJsonValue value, VokHistMap *out) {
    const yajl_val channel[3] = {vok::json_array(value, "r"), vok::json_array(value, "g"),
                                 vok::json_array(value, "b")};
    if (!channel[0] || !channel[1] || !channel[2]) {
        VOK_LOGD("HistMap Processor failed: r,g, or b is missing or is not an array.");
        return 0;
    }
    for (const yajl_val array : channel) {
        if (array->u.array.len != 256) {
            VOK_LOGD("HistMap Processor failed: r, g, or b is an array of the wrong length.");
            return 0;
        }
    }
    // Entries before a bad index stay written; the parenthesis of the message
    // is left open as hosts know it.
    for (size_t i = 0; i < 256; ++i) {
        for (const yajl_val array : channel) {
            if (!is_byte_integer(array->u.array.values[i])) {
                VOK_LOGD("HistMap Processor failed: r, g, or b array entry is invalid (must be "
                         "an integer in [0,255].");
                return 0;
            }
        }
        for (int c = 0; c < 3; ++c) {
            out->table[c][i] = static_cast<uint8_t>(vok::json_integer(channel[c]->u.array.values[i]));
        }
    }
    return 1;
}

}  // extern "C"
