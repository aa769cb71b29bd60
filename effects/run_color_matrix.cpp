// Runner of the "colorMatrixTransform" processor: a colour matrix built
// from a list of operations.
#include "effects/effects_internal.h"

#include <cstring>

namespace {

// "hardSet": the whole matrix becomes strength * entries * gain, plus
// (1 - strength) on the diagonal, so strength 0 gives the identity.
bool hard_set(yajl_val operation, double strength, VokColorMatrix *matrix) {
    const yajl_val entries = vok::json_array(operation, "entries");
    if (!entries || entries->u.array.len != 12) return false;
    for (size_t k = 0; k < 12; ++k) {
        const yajl_val e = entries->u.array.values[k];
        if (!e || e->type != yajl_t_number) return false;
    }
    const yajl_val gain_value = vok::json_number(operation, "gain");
    const double gain = gain_value ? vok::json_double(gain_value) : 1.0;
    for (size_t k = 0; k < 12; ++k) {
        double v = strength * vok::json_double(entries->u.array.values[k]) * gain;
        if (k == 0 || k == 5 || k == 10) v += 1.0 - strength;
        matrix->m[k] = static_cast<float>(v);
    }
    return true;
}

enum class Step { kDone, kInvalidEntry, kInvalidHardSet, kUnknown };

// Applies one element of "operations" to the accumulated matrix.
Step apply_operation(yajl_val operation, double strength, VokColorMatrix *matrix,
                     const char **name) {
    const yajl_val op = vok::json_string(operation, "operation");
    if (!op) return Step::kInvalidEntry;
    *name = vok::json_text(op);
    if (!*name) return Step::kDone;
    if (strcmp(*name, "hardSet") == 0) {
        return hard_set(operation, strength, matrix) ? Step::kDone : Step::kInvalidHardSet;
    }
    const yajl_val value = vok::json_number(operation, "value");
    if (!value) return Step::kInvalidEntry;
    const float b =
        TESKBlendAroundIdentity(static_cast<float>(vok::json_double(value)), 1.0f,
                                static_cast<float>(strength));
    if (strcmp(*name, "brightness") == 0) {
        VokColorMatrixBrightness(matrix, b);
    } else if (strcmp(*name, "contrast") == 0) {
        VokColorMatrixContrast(matrix, static_cast<float>(b - 1.0));
    } else if (strcmp(*name, "saturation") == 0) {
        VokColorMatrixAdjSaturation(matrix, b);
    } else {
        return Step::kUnknown;
    }
    return Step::kDone;
}

}  // namespace

extern "C" {

// The strength acts inside each operation; the final opacity ignores it.
int TESKRunColorMatrixTransformProcessor(VokJsonValue parameters, VokBitmap *bitmap,
                                         const VokEffectParams *params) {
    VokColorMatrix matrix;
    VokColorMatrixSetIdentity(&matrix);
    if (!vok::json_is_object(parameters)) {
        VOK_LOGD("Color Matrix Processor failed: params dne or is not an object.");
        return 0;
    }
    uint32_t mode = 0;
    const yajl_val blend = vok::json_string(parameters, "blendMode");
    if (blend) TESKBlendModeFromBlendModeVal(blend, &mode);
    const double alpha = vok::json_double_or(parameters, "alpha", 1.0);
    const yajl_val operations = vok::json_array(parameters, "operations");
    if (!operations) {
        VOK_LOGD("Color Matrix Processor failed: operations dne or is not an array.");
        return 0;
    }
    for (size_t i = 0; i < operations->u.array.len; ++i) {
        const char *name = nullptr;
        switch (apply_operation(operations->u.array.values[i], params->strength, &matrix,
                                &name)) {
            case Step::kDone:
                continue;
            case Step::kInvalidEntry:
                VOK_LOGD("Color Matrix Processor failed: invalid entry in operations array.");
                return 0;
            case Step::kInvalidHardSet:
                VOK_LOGD("Color Matrix Processor failed: invalid entries val for hardSet "
                         "operation.");
                return 0;
            case Step::kUnknown:
                VOK_LOGD("Color Matrix Processor failed: Operation '%s' not found.", name);
                return 0;
        }
    }
    VokBitmapColorMatrixTransformAndBlendWithOriginal(bitmap, &matrix, mode,
                                                      static_cast<float>(alpha));
    return 1;
}

}  // extern "C"
