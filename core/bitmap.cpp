// Bitmap build, copy and free, and the do-nothing effect hooks.
#include "vok/core.h"

#include <cstdlib>
#include <cstring>

#include "core/numeric.h"

namespace {

constexpr uint32_t kMaxPixels = 1u << 30;  // keeps the byte count below 2^32

}  // namespace

extern "C" {

int VokBitmapBuild(VokBitmap *bitmap, uint32_t width, uint32_t height) {
    bitmap->width = width;
    bitmap->height = height;
    bitmap->pixels = nullptr;
    if (width == 0 || height > UINT32_MAX / width) return 0;
    uint32_t count = width * height;
    if (count >= kMaxPixels || count * 4u == 0) return 0;
    bitmap->pixels = static_cast<uint8_t *>(std::calloc(count, 4));
    return bitmap->pixels != nullptr;
}

void VokBitmapFree(VokBitmap *bitmap) {
    if (bitmap->pixels != nullptr) {
        std::free(bitmap->pixels);
        bitmap->pixels = nullptr;
    }
}

int VokBitmapCopy(VokBitmap *destination, const VokBitmap *source) {
    if (destination->pixels == nullptr) return 0;
    if (source->pixels == nullptr || destination == source) return 0;
    if (destination->width != source->width || destination->height != source->height) return 0;
    uint32_t width = source->width, height = source->height;
    if (height != 0 && (width > UINT32_MAX / height || width * height >= kMaxPixels)) return 0;
    std::memcpy(destination->pixels, source->pixels, static_cast<size_t>(width) * height * 4);
    return 1;
}

void VokBitmapCopyRect(VokBitmap *destination, const VokBitmap *source, uint32_t x0,
                       uint32_t y0, uint32_t x1, uint32_t y1) {
    uint32_t width = destination->width, height = destination->height;
    if (width != x1 - x0 + 1 || height != y1 - y0 + 1) return;
    if (x1 >= source->width || y1 >= source->height) return;
    if (width > source->width || height > source->height || y1 < y0) return;
    if (x1 < x0) return;  // nothing to copy on any row
    size_t row_bytes = static_cast<size_t>(width) * 4;
    for (uint32_t y = y0; y <= y1; ++y) {
        std::memcpy(destination->pixels + static_cast<size_t>(y - y0) * row_bytes,
                    source->pixels + (static_cast<size_t>(y) * source->width + x0) * 4,
                    row_bytes);
    }
}

VokColor *VokBitmapGetColorAtPoint(const VokBitmap *bitmap, const VokPoint *point,
                                   VokColor *out) {
    int32_t xi = vok::trunc_to<int32_t>(point->x);
    int32_t yi = vok::trunc_to<int32_t>(point->y);
    uint32_t x = xi < 0 ? 0 : static_cast<uint32_t>(xi);
    uint32_t y = yi < 0 ? 0 : static_cast<uint32_t>(yi);
    if (x >= bitmap->width) x = bitmap->width - 1;
    if (y >= bitmap->height) y = bitmap->height - 1;
    std::memcpy(out, bitmap->pixels + (static_cast<size_t>(y) * bitmap->width + x) * 4, 4);
    return out;
}

void VokBitmapOriginal(VokBitmap *) {}

void VokBitmapBeginGLEffectIfEnabled(VokBitmap *) {}

void VokBitmapEndGLEffectIfEnabled(VokBitmap *) {}

void VokEffectOriginal(VokBitmap *bitmap) {
    VokBitmapBeginGLEffectIfEnabled(bitmap);
    VokBitmapEndGLEffectIfEnabled(bitmap);
}

void VokBitmapEffectBitmapResize(VokBitmap *bitmap) { VokBitmapBeginGLEffectIfEnabled(bitmap); }

void VokBitmapEffectBitmapComposite(VokBitmap *bitmap) {
    VokBitmapBeginGLEffectIfEnabled(bitmap);
}

}  // extern "C"
