#include "contact_sheet.h"

#include <algorithm>
#include <cstring>

#include "bitmap_font.h"

namespace vok_cli {
namespace {

// Layout, in pixels.
constexpr uint32_t kColumns = 4;
constexpr uint32_t kMargin = 20;
constexpr uint32_t kHeader = 64;
constexpr uint32_t kCaption = 30;
constexpr int kTitleScale = 3;
constexpr int kCaptionScale = 2;
const VokColor kBackground = {24, 25, 28, 255};
const VokColor kEmptyTile = {44, 45, 50, 255};
const VokColor kTitleColor = {240, 236, 228, 255};
const VokColor kCaptionColor = {200, 198, 192, 255};
const VokColor kFailedColor = {240, 90, 80, 255};

void fill_rect(VokBitmap &bitmap, uint32_t left, uint32_t top, uint32_t width, uint32_t height,
               VokColor color) {
    for (uint32_t y = top; y < top + height; ++y) {
        VokColor *row = reinterpret_cast<VokColor *>(bitmap.pixels) + size_t{y} * bitmap.width;
        std::fill(row + left, row + left + width, color);
    }
}

void paste(VokBitmap &sheet, const VokBitmap &tile, uint32_t left, uint32_t top) {
    for (uint32_t y = 0; y < tile.height; ++y)
        memcpy(sheet.pixels + ((size_t{top} + y) * sheet.width + left) * 4,
               tile.pixels + size_t{y} * tile.width * 4, size_t{tile.width} * 4);
}

// The caption centred under a tile, shortened with ".." when too long.
void caption(VokBitmap &sheet, const std::string &text, uint32_t left, uint32_t top,
             uint32_t width, VokColor color) {
    std::string shown = text;
    while (shown.size() > 3 && text_width(shown.c_str(), kCaptionScale) > static_cast<int>(width))
        shown = shown.substr(0, shown.size() - 3) + "..";
    const int x = static_cast<int>(left) +
                  (static_cast<int>(width) - text_width(shown.c_str(), kCaptionScale)) / 2;
    draw_text(sheet, x, static_cast<int>(top) + (kCaption - kGlyphHeight * kCaptionScale) / 2,
              shown.c_str(), color, kCaptionScale);
}

}  // namespace

bool box_downscale(const VokBitmap &photo, uint32_t max_width, uint32_t max_height, Image &out) {
    const uint32_t fx = (photo.width + max_width - 1) / max_width;
    const uint32_t fy = (photo.height + max_height - 1) / max_height;
    const uint32_t f = std::max<uint32_t>(1, std::max(fx, fy));
    const uint32_t w = std::max<uint32_t>(1, photo.width / f);
    const uint32_t h = std::max<uint32_t>(1, photo.height / f);
    if (!VokBitmapBuild(&out.bitmap, w, h)) return false;
    const uint32_t area = f * f;
    for (uint32_t y = 0; y < h; ++y) {
        for (uint32_t x = 0; x < w; ++x) {
            uint32_t sum[4] = {};
            for (uint32_t j = 0; j < f; ++j) {
                const uint8_t *p = photo.pixels + ((size_t{y} * f + j) * photo.width + x * f) * 4;
                for (uint32_t i = 0; i < f; ++i, p += 4)
                    for (int c = 0; c < 4; ++c) sum[c] += p[c];
            }
            uint8_t *pixel = out.bitmap.pixels + (size_t{y} * w + x) * 4;
            for (int c = 0; c < 4; ++c) pixel[c] = static_cast<uint8_t>((sum[c] + area / 2) / area);
        }
    }
    return true;
}

bool write_contact_sheet(const std::string &path, const char *title, const VokBitmap &thumb,
                         const std::vector<SheetTile> &tiles, std::vector<bool> &ok,
                         std::string &error) {
    const uint32_t tw = thumb.width, th = thumb.height;
    const uint32_t count = static_cast<uint32_t>(tiles.size()) + 1;
    const uint32_t columns = std::min(kColumns, count);
    const uint32_t rows = (count + columns - 1) / columns;
    Image sheet;
    if (!VokBitmapBuild(&sheet.bitmap, kMargin + columns * (tw + kMargin),
                        kHeader + rows * (th + kCaption + kMargin))) {
        error = "contact sheet too large";
        return false;
    }
    fill_rect(sheet.bitmap, 0, 0, sheet.bitmap.width, sheet.bitmap.height, kBackground);
    draw_text(sheet.bitmap, static_cast<int>(kMargin), (kHeader - kGlyphHeight * kTitleScale) / 2,
              title, kTitleColor, kTitleScale);
    ok.assign(tiles.size(), false);
    for (uint32_t i = 0; i < count; ++i) {
        const uint32_t left = kMargin + (i % columns) * (tw + kMargin);
        const uint32_t top = kHeader + (i / columns) * (th + kCaption + kMargin);
        if (i == 0) {
            paste(sheet.bitmap, thumb, left, top);
            caption(sheet.bitmap, "original", left, top + th, tw, kCaptionColor);
            continue;
        }
        const SheetTile &tile = tiles[i - 1];
        Image copy;
        ok[i - 1] = VokBitmapBuild(&copy.bitmap, tw, th) && VokBitmapCopy(&copy.bitmap, &thumb) &&
                    tile.apply(copy.bitmap);
        if (!ok[i - 1]) {
            fill_rect(sheet.bitmap, left, top, tw, th, kEmptyTile);
            caption(sheet.bitmap, tile.caption + " failed", left, top + th, tw, kFailedColor);
            continue;
        }
        paste(sheet.bitmap, copy.bitmap, left, top);
        caption(sheet.bitmap, tile.caption, left, top + th, tw, kCaptionColor);
    }
    return write_image(path, sheet.bitmap, error);
}

}  // namespace vok_cli
