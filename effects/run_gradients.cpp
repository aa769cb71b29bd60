// Runners of the gradient processors: "gradient", "gradientMap" and
// "gradientFlare".
#include "effects/effects_internal.h"

#include <cstring>

namespace {

const char *const kGradientShapes[] = {"linear", "radial", "linearVignette"};
constexpr int32_t kLinearVignette = 2;

const char *const kFlareShapes[] = {
    "identity", "line",  "circle",   "gaussian", "square",  "squareRound", "stardom", "lobes",
    "ringLobes", "heart", "star", "crescent", "squiggly", "zigzag", "spiral",
};
const char *const kAspectModes[] = {"fit", "fill", "stretch", "average"};
const char *const kWrapModes[] = {"clamp", "repeat", "mirroredRepeat"};
const char *const kGradientVariables[] = {"intensity",    "chroma",      "redChannel",
                                          "greenChannel", "blueChannel", "maxChannel",
                                          "minChannel"};

constexpr double kDegreesToRadians = 0.017453292519943295;

// A gradient built to the lengths of the two stop arrays and filled from
// them; it frees itself.
class JsonGradient {
public:
    JsonGradient() : gradient_{} {}
    ~JsonGradient() { VokGradientFree(&gradient_); }
    JsonGradient(const JsonGradient &) = delete;
    JsonGradient &operator=(const JsonGradient &) = delete;

    bool read(yajl_val colors, yajl_val opacities) {
        const auto length = [](yajl_val array) {
            return array && array->type == yajl_t_array
                       ? static_cast<uint32_t>(array->u.array.len)
                       : 0u;
        };
        return VokGradientBuild(&gradient_, length(colors), length(opacities)) &&
               TESKGradientfromColorsValAndOpacitiesVal(colors, opacities, &gradient_);
    }
    // The "colors" and "opacities" members of a gradient object.
    bool read(yajl_val object) {
        return read(vok::json_array(object, "colors"), vok::json_array(object, "opacities"));
    }
    VokGradient *get() { return &gradient_; }

private:
    VokGradient gradient_;
};

// "alpha" times the strength, or 0 with its message: a gradient without an
// alpha leaves the image alone.
double alpha_or_zero(yajl_val parameters, double strength) {
    const yajl_val alpha = vok::json_number(parameters, "alpha");
    if (vok::json_double_valid(alpha)) return vok::json_double(alpha) * strength;
    VOK_LOGD("Alpha not a float.  Defaulting to 0.0.");
    return 0.0;
}

// "invertGradient" is a string; only the text "true" inverts.
bool invert_flag(yajl_val parameters) {
    const char *text = vok::json_text(vok::json_string(parameters, "invertGradient"));
    return text && strcmp(text, "true") == 0;
}

// A keyword of a table, or `fallback` with one of two messages.
template <size_t N>
int32_t keyword_or(yajl_val parameters, const char *key, const char *const (&table)[N],
                   int32_t fallback, const char *not_string, const char *no_match) {
    const char *text = vok::json_text(vok::json_string(parameters, key));
    if (!text) {
        VOK_LOGD("%s", not_string);
        return fallback;
    }
    const int32_t index = vok::keyword_index(table, static_cast<uint32_t>(N), text);
    if (index < 0) {
        VOK_LOGD("%s", no_match);
        return fallback;
    }
    return index;
}

// Sixteen doubles from an array of exactly 16 numbers; entries that are not
// readable doubles keep their defaults.
void read_matrix(yajl_val parameters, const char *key, double *matrix, const char *bad_entry,
                 const char *bad_array) {
    const yajl_val array = vok::json_array(parameters, key);
    if (!array || array->u.array.len != 16) {
        VOK_LOGD("%s", bad_array);
        return;
    }
    for (size_t i = 0; i < 16; ++i) {
        const yajl_val entry = array->u.array.values[i];
        if (vok::json_double_valid(entry)) {
            matrix[i] = vok::json_double(entry);
        } else {
            VOK_LOGD("%s", bad_entry);
        }
    }
}

}  // namespace

extern "C" {

int TESKRunGradientProcessor(VokJsonValue parameters, VokBitmap *bitmap,
                             const VokEffectParams *params) {
    const yajl_val colors = vok::json_array(parameters, "colors");
    const yajl_val opacities = vok::json_array(parameters, "opacities");
    const yajl_val shape = vok::json_string(parameters, "gradientShape");
    const yajl_val scale = vok::json_number(parameters, "scale");
    const yajl_val x_center = vok::json_number(parameters, "xCenter");
    const yajl_val y_center = vok::json_number(parameters, "yCenter");
    const yajl_val angle = vok::json_number(parameters, "angle");
    const yajl_val alpha = vok::json_number(parameters, "alpha");
    if (!colors || !opacities || !shape || !scale || !x_center || !y_center || !angle ||
        !alpha) {
        VOK_LOGD("Gradient Processor failed: something is missing.");
        return 0;
    }
    JsonGradient gradient;
    if (!gradient.read(colors, opacities)) return 0;
    int32_t shape_value = 0;
    if (const char *text = vok::json_text(shape)) {
        shape_value = vok::keyword_index(kGradientShapes, 3, text);
        if (shape_value < 0) {
            // The message names the colour matrix processor; hosts match on it.
            VOK_LOGD("Color Matrix Processor failed: shape mode '%s' not found.", text);
            return 0;
        }
    }
    uint32_t mode;
    TESKBlendModeFromBlendModeVal(vok::json_string(parameters, "blendMode"), &mode);

    VokGradientShapeParams shape_params;
    VokGradientShapeParamsInit(&shape_params);
    shape_params.gradientShape = shape_value;
    shape_params.scale = static_cast<float>(vok::json_double(scale));
    shape_params.xCenter = static_cast<float>(vok::json_double(x_center));
    shape_params.yCenter = static_cast<float>(vok::json_double(y_center));
    shape_params.angle = static_cast<float>(
        static_cast<float>(vok::json_double(angle)) * kDegreesToRadians);
    if (shape_value == kLinearVignette) {
        VokBorderParams border;
        VokBorderInitParams(&border);
        if (!TESKBorderPopoulateWithShapeTypeVal(vok::json_object(parameters, "vignetteShape"),
                                                 &border, bitmap, 1.0f, 0)) {
            return 0;
        }
        shape_params.vignetteSize = border.scale;
        shape_params.vignetteOffsetX = border.dx;
        shape_params.vignetteOffsetY = border.dy;
        shape_params.vignetteShapeMode = static_cast<int32_t>(border.shapeMode);
    }
    VokGradientApply(bitmap, &shape_params, gradient.get(), mode,
                     static_cast<float>(vok::json_double(alpha) * params->strength));
    return 1;
}

// No check of the parameters object: a missing "gradient" fails in the
// gradient converter with its own message.
int TESKRunGradientMapProcessor(VokJsonValue parameters, VokBitmap *bitmap,
                                const VokEffectParams *params) {
    JsonGradient gradient;
    if (!gradient.read(vok::json_object(parameters, "gradient"))) return 0;
    const double alpha = alpha_or_zero(parameters, params->strength);
    const bool invert = invert_flag(parameters);
    const int32_t variable = keyword_or(
        parameters, "gradientVariable", kGradientVariables, 0,
        "Gradient Variable isn't a string. Defaulting to intensity.",
        "Gradient Variable doesn't match.  Defaulting to intensity.");
    uint32_t mode;
    TESKBlendModeFromBlendModeVal(vok::json_string(parameters, "blendMode"), &mode);
    VokGradientMapApply(bitmap, gradient.get(), static_cast<uint32_t>(variable), invert ? 1 : 0,
                        mode, alpha);
    return 1;
}

// The aspect mode falls back to 1 ("fill") while its messages say Stretch;
// hosts rely on both.
int TESKRunGradientFlareProcessor(VokJsonValue parameters, VokBitmap *bitmap,
                                  const VokEffectParams *params) {
    JsonGradient gradient;
    if (!gradient.read(vok::json_object(parameters, "gradient"))) return 0;
    const double alpha = alpha_or_zero(parameters, params->strength);
    const int32_t shape =
        keyword_or(parameters, "gradientShapeType", kFlareShapes, 1,
                   "Shape not a string.  Defaulting to Line.",
                   "Shape doesn't match.  Defaulting to Line.");
    const bool invert = invert_flag(parameters);
    const int32_t aspect =
        keyword_or(parameters, "aspectMode", kAspectModes, 1,
                   "Aspect Mode not a string.  Defaulting to Stretch.",
                   "Aspect Mode doesn't match.  Defaulting to Stretch.");
    double transform[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    read_matrix(parameters, "gradientTransform", transform,
                "Entries in the gradient transform matrix must be floats.",
                "error: gradient transform must be a 16 length float array.  Defaulting to "
                "Identity.");
    double shape_params[16] = {};
    read_matrix(parameters, "gradientParams", shape_params,
                "Entries in the gradient parameters matrix must be floats.",
                "error: gradient params must be a 16 length float array.  Defaulting to Zeros.");
    const int32_t wrap =
        keyword_or(parameters, "gradientWrapMode", kWrapModes, 0,
                   "Wrap mode isn't a string.  Defaulting to clamp.",
                   "Wrap mode doesn't match.  Defaulting to clamp.");
    uint32_t mode;
    TESKBlendModeFromBlendModeVal(vok::json_string(parameters, "blendMode"), &mode);

    VokGradientFlareParams flare;
    VokGradientFlareParamsInit(&flare);
    flare.shape = shape;
    flare.transform = transform;
    flare.params = shape_params;
    flare.aspectMode = aspect;
    flare.gradient = gradient.get();
    flare.invert = invert ? 1 : 0;
    flare.wrapMode = wrap;
    flare.blendMode = static_cast<int32_t>(mode);
    flare.alpha = alpha;
    VokGradientFlareApply(bitmap, &flare);
    return 1;
}

}  // extern "C"
