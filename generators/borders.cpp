// Borders and vignettes: the vignette blends the border colour in toward the
// edges, clear in the middle; the framed styles live in border_frames.cpp.
#include <math.h>
#include <stdlib.h>
#include <string.h>

#include "core/log.h"
#include "core/numeric.h"
#include "generators/border_frames.h"
#include "generators/tint_blend.h"
#include "vok/generators.h"

namespace vok {
namespace {

// Falloff table over the squared normalised distance u in [0, 1]; at u = 1
// (and beyond) the colour is at full strength.
constexpr uint32_t kFalloffSteps = 4096;

// Exponent of the normalised distance per shape mode: a larger one keeps more
// of the middle clear and makes the edge steeper.
float falloff_exponent(uint32_t shape_mode) {
    switch (shape_mode) {
        case kVokBorderShapeSharp: return 3.0f;
        case kVokBorderShapeMediumSharp: return 4.0f;
        case kVokBorderShapeUltraSharp: return 6.0f;
        default: return 2.0f;
    }
}

// Table steps per unit of distance squared, across and down:
// u (kFalloffSteps - 1) = kx (x - cx)^2 + ky (y - cy)^2.
float axis_term(uint32_t i, float centre, float k) {
    const float d = static_cast<float>(i) + 0.5f - centre;
    return k * d * d;
}

struct VignetteCoverage {
    uint8_t alpha_at[kFalloffSteps];
    const float *column_terms;  // axis_term of every column
    float ky, cy;
    float row_term;
    uint32_t width;

    Span begin_row(uint32_t y) {
        row_term = axis_term(y, cy, ky);
        return {0, width};
    }
    uint32_t alpha(uint32_t x) const {
        const float step = column_terms[x] + row_term;
        // Beyond the table, and NaN from a zero-sized vignette, take full colour.
        if (!(step < static_cast<float>(kFalloffSteps - 1))) return alpha_at[kFalloffSteps - 1];
        return alpha_at[static_cast<uint32_t>(step)];
    }
};

void fill_falloff(VignetteCoverage &coverage, uint32_t shape_mode, uint8_t color_alpha) {
    // w = smoothstep(u^(e/2)): zero slope in the centre and at the rim.
    const float half_exponent = falloff_exponent(shape_mode) * 0.5f;
    for (uint32_t i = 0; i < kFalloffSteps; ++i) {
        const float u = static_cast<float>(i) / static_cast<float>(kFalloffSteps - 1);
        const float t = powf(u, half_exponent);
        const float w = t * t * (3.0f - 2.0f * t);
        coverage.alpha_at[i] = byte_round(static_cast<double>(w * color_alpha));
    }
}

int draw_vignette(VokBitmap &bitmap, const VokBorderParams &params) {
    VignetteCoverage coverage;
    fill_falloff(coverage, params.shapeMode, params.color.alpha);
    const double width = bitmap.width;
    const double height = bitmap.height;
    // The scale is the diameter of the ellipse where the colour reaches full
    // strength: in pixels, or as a fraction of each side when stretched.
    const double half_x = params.scale * 0.5 * (params.stretch ? width : 1.0);
    const double half_y = params.scale * 0.5 * (params.stretch ? height : 1.0);
    const double steps = kFalloffSteps - 1;
    const float kx = static_cast<float>(steps / (half_x * half_x));
    const float cx = static_cast<float>(width * 0.5 * (1.0 + params.dx));
    float *column_terms = static_cast<float *>(malloc(sizeof(float) * bitmap.width));
    if (column_terms == nullptr) return 0;
    for (uint32_t x = 0; x < bitmap.width; ++x) column_terms[x] = axis_term(x, cx, kx);
    coverage.column_terms = column_terms;
    coverage.ky = static_cast<float>(steps / (half_y * half_y));
    coverage.cy = static_cast<float>(height * 0.5 * (1.0 + params.dy));
    coverage.row_term = 0.0f;
    coverage.width = bitmap.width;
    TintBlend tint;
    tint_blend_init(tint, params.color, params.blendMode);
    tint_pass(bitmap, tint, coverage);
    free(column_terms);
    return 1;
}

}  // namespace
}  // namespace vok

extern "C" {

void VokBorderInitParams(VokBorderParams *params) {
    if (params == nullptr) return;
    memset(params, 0, sizeof(*params));
    params->style = kVokBorderVignette;
    params->color.alpha = 255;  // opaque black
    params->blendMode = kVokBlendNormal;
    params->shapeMode = kVokBorderShapeNormal;
    params->stretch = 1;
    params->scale = 1.0;
}

int VokBorders(VokBitmap *bitmap, const VokBorderParams *params) {
    if (bitmap == nullptr || bitmap->pixels == nullptr || params == nullptr) return 0;
    const bool frame = vok::is_frame_style(params->style);
    if (!frame && params->style != kVokBorderVignette) {
        VOK_LOGD("Border style %u is not available.", static_cast<unsigned>(params->style));
        return 0;
    }
    if (params->color.alpha == 0 || bitmap->width == 0 || bitmap->height == 0) return 1;
    return frame ? vok::draw_frame(*bitmap, *params) : vok::draw_vignette(*bitmap, *params);
}

}  // extern "C"
