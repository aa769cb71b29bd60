// Previews: the photo, the full-effect bitmap and the mask mixed for the
// screen over one rectangle, and the whole-bitmap preview built on it.
#include "vok/tools.h"

#include <cstddef>

#include "core/log.h"
#include "tools/tool_type_table.h"
#include "tools/tools_internal.h"

namespace {

struct Box {
    int32_t x0, y0, x1, y1;
};

// Orders the corners and clamps them to the bitmap; false when nothing of
// the box lies on it or the three bitmaps differ in size.
bool preview_box(const VokBitmap *out, const VokBitmap *base, const VokBitmap *full,
                 const VokBitmap *mask, int32_t x0, int32_t y0, int32_t x1, int32_t y1,
                 Box *box) {
    if (!vok::usable(out) || !vok::usable(base) || !vok::usable(mask) || !vok::usable(full))
        return false;
    if (base->width != out->width || base->height != out->height ||
        mask->width != out->width || mask->height != out->height)
        return false;
    // The full bitmap's size is not part of the contract, but it is read
    // pixel for pixel: a smaller one is refused rather than overrun.
    if (full->width != out->width || full->height != out->height) return false;
    const int32_t right = static_cast<int32_t>(out->width) - 1;
    const int32_t bottom = static_cast<int32_t>(out->height) - 1;
    if (x0 > x1) { int32_t t = x0; x0 = x1; x1 = t; }
    if (y0 > y1) { int32_t t = y0; y0 = y1; y1 = t; }
    if (x1 > right) x1 = right;
    if (y1 > bottom) y1 = bottom;
    if (x0 < 0) x0 = 0;
    if (y0 < 0) y0 = 0;
    if (x1 < 0 || y1 < 0 || x0 > right || y0 > bottom) return false;
    *box = {x0, y0, x1, y1};
    return true;
}

// Calls mix(out, base, source, alpha) for the three colour bytes of every
// pixel of the box; the out alpha is never written.
template <typename Mix>
void for_each_pixel(VokBitmap *out, const VokBitmap *base, const VokBitmap *source,
                    const VokBitmap *mask, const Box &box, Mix mix) {
    const size_t width = out->width;
    for (int32_t y = box.y0; y <= box.y1; ++y) {
        const size_t start = (static_cast<size_t>(y) * width + static_cast<size_t>(box.x0)) * 4;
        const size_t end = (static_cast<size_t>(y) * width + static_cast<size_t>(box.x1)) * 4;
        uint8_t *o = out->pixels;
        const uint8_t *b = base->pixels, *s = source->pixels, *m = mask->pixels;
        for (size_t i = start; i <= end; i += 4) {
            const uint32_t a = m[i + 3];
            o[i] = mix(b[i], s[i], a);
            o[i + 1] = mix(b[i + 1], s[i + 1], a);
            o[i + 2] = mix(b[i + 2], s[i + 2], a);
        }
    }
}

}  // namespace

extern "C" {

void VokToolRenderPreviewBox(VokBitmap *out, const VokBitmap *base, const VokBitmap *full,
                             const VokBitmap *mask, int32_t x0, int32_t y0, int32_t x1,
                             int32_t y1, const VokToolDrawState *state) {
    const bool draw = vok::has_flag(vok::state_row(state), vok::kPaintsColour);
    const VokBitmap *source = draw ? mask : full;
    Box box;
    if (!preview_box(out, base, source, mask, x0, y0, x1, y1, &box)) return;
    if (draw) VOK_LOGD("Preview Draw Tool!");
    // A shift with 127 added stands in for the division by 255, on purpose.
    for_each_pixel(out, base, source, mask, box, [](uint32_t b, uint32_t s, uint32_t a) {
        return static_cast<uint8_t>((b * (255 - a) + s * a + 127) >> 8);
    });
}

void VokToolRenderPreviewBoxPremultipliedAlpha(VokBitmap *out, const VokBitmap *base,
                                               const VokBitmap *full, const VokBitmap *mask,
                                               int32_t x0, int32_t y0, int32_t x1, int32_t y1) {
    Box box;
    if (!preview_box(out, base, full, mask, x0, y0, x1, y1, &box)) return;
    // The full bitmap is premultiplied by the mask alpha, so the sum fits a
    // byte; were it not, it wraps.
    for_each_pixel(out, base, full, mask, box, [](uint32_t b, uint32_t s, uint32_t a) {
        return static_cast<uint8_t>(s + ((b * (255 - a)) >> 8));
    });
}

void VokToolRenderPreview(VokBitmap *out, const VokBitmap *base, const VokBitmap *full,
                          const VokBitmap *mask, const VokToolDrawState *state) {
    if (!vok::usable(out)) return;
    const int32_t right = static_cast<int32_t>(out->width) - 1;
    const int32_t bottom = static_cast<int32_t>(out->height);  // clamped inside
    if (vok::has_flag(vok::state_row(state), vok::kPaintsColour))
        VokToolRenderPreviewBoxPremultipliedAlpha(out, base, full, mask, 0, 0, right, bottom);
    else
        VokToolRenderPreviewBox(out, base, full, mask, 0, 0, right, bottom, state);
}

}  // extern "C"

