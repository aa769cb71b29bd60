// JSON keywords of the engine enumerations: blend modes, border shape modes,
// border styles and flare types.
#include "effects/effects_internal.h"

namespace {

// Indexed by value.
const char *const kBlendModes[] = {
    "normal",       "overlay",       "color",      "screen",     "darken",   "multiply",
    "soft",         "lighten",       "difference", "negation",   "exclusion", "hard",
    "red",          "green",         "blue",       "interpolation", "colordodge",
    "invcolordodge", "softdodge",    "colorburn",  "invcolorburn", "softburn", "add",
    "subtract",     "stamp",         "reflect",    "glow",       "freeze",   "heat",
};

const char *const kBorderShapeModes[] = {"normal", "sharp", "mediumSharp", "ultraSharp"};

// Style 0 has no keyword.
const char *const kBorderStyles[] = {
    nullptr, "halftone", "lines", "smooth", "shadow", "fade",      "rough",   "bulge",
    "torn",  "torn_2",   "rect",  "round",  "flickr", "hard_rand", "instant", "vignette",
    "viewfinder",
};

// Type 8 has no keyword; "dimondFlare" is spelt as hosts write it.
const char *const kFlareTypes[] = {
    "sinc",    "gaussianThing", "gaussianThing2", "gaussianThing3", "gaussianThing4",
    "angleGaussian", "stardom", "lobes",      nullptr,     "stripe",
    "stripe2", "dimondFlare",   "crossFlare",     "cornerFlares",   "fingerFlare",
    "blobFlare", "blah",        "blob",           "blob2",
};

// How a converter treats a missing or unknown keyword.
enum class OnMismatch {
    kDefaultToNormal,  // info message, value 0, success
    kFail,             // debug message, output untouched, failure
};

template <size_t N>
int convert_keyword(yajl_val value, const char *const (&table)[N], uint32_t *out,
                    OnMismatch mismatch, const char *missing, const char *unknown_format) {
    const bool defaults = mismatch == OnMismatch::kDefaultToNormal;
    if (defaults) *out = 0;
    const char *text = vok::json_text(value);
    const int32_t index = text ? vok::keyword_index(table, static_cast<uint32_t>(N), text) : -1;
    if (index >= 0) {
        *out = static_cast<uint32_t>(index);
        return 1;
    }
    if (defaults) {
        if (text) {
            VOK_LOGI(unknown_format, text);
        } else {
            VOK_LOGI("%s", missing);
        }
    } else if (text) {
        VOK_LOGD(unknown_format, text);
    } else {
        VOK_LOGD("%s", missing);
    }
    return defaults ? 1 : 0;
}

}  // namespace

extern "C" {

int TESKBlendModeFromBlendModeVal(VokJsonValue value, uint32_t *out) {
    return convert_keyword(value, kBlendModes, out, OnMismatch::kDefaultToNormal,
                           "Missing blend mode. Defaulting to normal.",
                           "No blend mode found with name: %s. Defaulting to normal.");
}

int TESKBorderShapeModeFromBorderShapeModeVal(VokJsonValue value, uint32_t *out) {
    return convert_keyword(value, kBorderShapeModes, out, OnMismatch::kDefaultToNormal,
                           "Missing border shape mode. Defaulting to normal.",
                           "No border shape mode found with name: %s. Defaulting to normal.");
}

// The missing-value message speaks of a blend mode; hosts match on it.
int TESKBorderStyleFromBorderStyleTypeVal(VokJsonValue value, uint32_t *out) {
    return convert_keyword(value, kBorderStyles, out, OnMismatch::kFail,
                           "Missing or invalid blend mode.",
                           "No border style found with name: %s\n");
}

int TESKFlareTypeFromFlareTypeVal(VokJsonValue value, uint32_t *out) {
    return convert_keyword(
        value, kFlareTypes, out, OnMismatch::kFail,
        "Error in flare type to vok flare type conversion: missing or invalid blend mode.\n",
        "No flare type found with name: %s\n");
}

}  // extern "C"
