// Blending one fixed colour into a bitmap with an opacity that changes from
// pixel to pixel (vignettes, light flares). The result of every pixel is that
// of VokColorBlendEmbededAlpha with the colour's alpha replaced by the pixel's
// opacity; the blend mode is resolved once per call, not once per pixel.
#ifndef VOK_GENERATORS_TINT_BLEND_H
#define VOK_GENERATORS_TINT_BLEND_H

#include <cstddef>
#include <cstdint>

#include "vok/color.h"
#include "vok/core.h"

namespace vok {

struct TintBlend {
    VokColor color;
    VokBlendMode mode;
    // True when each channel's blend value depends on that channel alone; the
    // colour and interpolation modes mix channels or round differently and go
    // through the blend function itself.
    bool per_channel;
    // blended[c][v]: the blend value of channel c against a destination level v.
    uint8_t blended[3][256];
};

void tint_blend_init(TintBlend &tint, VokColor color, VokBlendMode mode);

// The columns [first, last) of a row that may be covered; outside them the
// coverage is 0.
struct Span {
    uint32_t first, last;
};

namespace tint_detail {

// A coverage supplies begin_row(y), returning the span of the row to visit,
// and then alpha(x) for each x of that span: the opacity 0..255 of the colour
// at that pixel.
template <bool PerChannel, class Coverage>
void rows(VokBitmap &bitmap, const TintBlend &tint, Coverage &coverage) {
    const uint32_t width = bitmap.width;
    for (uint32_t y = 0; y < bitmap.height; ++y) {
        const Span span = coverage.begin_row(y);
        uint8_t *p = bitmap.pixels + (static_cast<std::size_t>(y) * width + span.first) * 4;
        for (uint32_t x = span.first; x < span.last; ++x, p += 4) {
            const uint32_t a = coverage.alpha(x);
            if (a == 0) continue;
            if (PerChannel) {
                // The integer family's mix: (B a + d (255 - a) + 255) >> 8.
                const uint32_t rest = 255 - a;
                for (int c = 0; c < 3; ++c) {
                    const uint32_t d = p[c];
                    p[c] = static_cast<uint8_t>((tint.blended[c][d] * a + d * rest + 255) >> 8);
                }
            } else {
                VokColor source = tint.color;
                source.alpha = static_cast<uint8_t>(a);
                VokColorBlendEmbededAlpha(reinterpret_cast<VokColor *>(p), &source, tint.mode);
            }
        }
    }
}

}  // namespace tint_detail

// One pass over the bitmap blending the tint with the coverage's opacities.
template <class Coverage>
void tint_pass(VokBitmap &bitmap, const TintBlend &tint, Coverage &coverage) {
    if (tint.per_channel) {
        tint_detail::rows<true>(bitmap, tint, coverage);
    } else {
        tint_detail::rows<false>(bitmap, tint, coverage);
    }
}

}  // namespace vok

#endif
