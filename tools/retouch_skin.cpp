// Skin retouching: the airbrush and blemish healing.
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "tools/tools_internal.h"
#include "vok/generators.h"

namespace {

// The airbrush is a guided filter in integers: each pixel becomes
// blur + a (pixel - blur), with a = var / (var + kFlatVariance) from the grey
// variance of its neighbourhood, so faint texture (variance well under
// kFlatVariance) takes the blur and edges (far over it) keep the pixel.
constexpr float kBlurAmount = -60.0f;
constexpr int64_t kFlatVariance = 100;  // a standard deviation of 10 levels
constexpr int32_t kMaxVarianceRadius = 64;

int grey(const uint8_t *p) { return (2 * p[0] + 7 * p[1] + p[2] + 5) / 10; }

// The variance window reaches past the blur, so no edge the blur feels is
// missed: three times the blur's spread, plus one.
int32_t variance_radius(const VokBitmap *bitmap) {
    const double spread =
        static_cast<float>(bitmap->width + bitmap->height) * 2.5e-5 * -kBlurAmount;
    const int32_t r = vok::trunc_to<int32_t>(ceil(3.0 * spread)) + 1;
    return r > kMaxVarianceRadius ? kMaxVarianceRadius : r;
}

// Pixels of the window of radius r around (x, y), clipped to the bitmap.
int64_t window_area(uint32_t x, uint32_t y, uint32_t w, uint32_t h, int32_t r) {
    const int64_t x0 = x < static_cast<uint32_t>(r) ? 0 : x - r,
                  y0 = y < static_cast<uint32_t>(r) ? 0 : y - r;
    const int64_t x1 = x + r >= w ? w - 1 : x + r, y1 = y + r >= h ? h - 1 : y + r;
    return (x1 - x0 + 1) * (y1 - y0 + 1);
}

// Sums of grey and grey squared along row y over each pixel's clipped window.
void row_sums(const VokBitmap *bitmap, int64_t y, int32_t r, uint32_t *sum, uint32_t *square) {
    const int64_t w = bitmap->width;
    const uint8_t *row = bitmap->pixels + 4 * y * w;
    uint32_t s = 0, q = 0;
    for (int64_t x = 0; x < r && x < w; ++x) {
        const uint32_t g = grey(row + 4 * x);
        s += g, q += g * g;
    }
    for (int64_t x = 0; x < w; ++x) {
        if (x + r < w) {
            const uint32_t g = grey(row + 4 * (x + r));
            s += g, q += g * g;
        }
        if (x - r - 1 >= 0) {
            const uint32_t g = grey(row + 4 * (x - r - 1));
            s -= g, q -= g * g;
        }
        sum[x] = s, square[x] = q;
    }
}

// Sums of grey and grey squared over each pixel's clipped window, down the
// rows with every column at once: the row sums of the 2 r + 2 rows a window
// can still need stay in a ring (`ring` holds 2 (2 r + 2) rows of them).
void box_sums(const VokBitmap *bitmap, int32_t r, uint32_t *sum, uint32_t *square, uint32_t *ring) {
    const int64_t w = bitmap->width, h = bitmap->height, slots = 2 * r + 2;
    uint32_t *ring_square = ring + slots * w;
    auto add = [&](int64_t y, bool subtract, uint32_t *s, uint32_t *q) {
        const uint32_t *rs = ring + (y % slots) * w, *rq = ring_square + (y % slots) * w;
        for (int64_t x = 0; x < w; ++x) {
            s[x] += subtract ? -rs[x] : rs[x];
            q[x] += subtract ? -rq[x] : rq[x];
        }
    };
    // Row 0's window, then each next row from the one above.
    uint32_t *s = sum, *q = square;
    memset(s, 0, w * sizeof(uint32_t));
    memset(q, 0, w * sizeof(uint32_t));
    for (int64_t y = 0; y < r && y < h; ++y) {
        row_sums(bitmap, y, r, ring + (y % slots) * w, ring_square + (y % slots) * w);
        add(y, false, s, q);
    }
    for (int64_t y = 0; y < h; ++y, s += w, q += w) {
        if (y > 0) {
            memcpy(s, s - w, w * sizeof(uint32_t));
            memcpy(q, q - w, w * sizeof(uint32_t));
        }
        if (y + r < h) {
            row_sums(bitmap, y + r, r, ring + ((y + r) % slots) * w,
                     ring_square + ((y + r) % slots) * w);
            add(y + r, false, s, q);
        }
        if (y - r - 1 >= 0) add(y - r - 1, true, s, q);
    }
}

// 256 a: how much of the pixel stays over the blur.
uint32_t detail_weight(uint32_t sum, uint32_t square, int64_t area) {
    const int64_t spread = area * square - int64_t{sum} * sum;  // variance x area^2
    return static_cast<uint32_t>(256 * spread / (spread + kFlatVariance * area * area));
}

struct Sampler {
    const VokBitmap *bitmap;
    // Channel c of the pixel nearest (x, y), clamped into the bitmap.
    int at(double x, double y, int c) const {
        const int32_t xi = vok::clamp_int(vok::trunc_to<int32_t>(floor(x)), 0,
                                          static_cast<int32_t>(bitmap->width) - 1);
        const int32_t yi = vok::clamp_int(vok::trunc_to<int32_t>(floor(y)), 0,
                                          static_cast<int32_t>(bitmap->height) - 1);
        return bitmap->pixels[4 * (static_cast<size_t>(yi) * bitmap->width + xi) + c];
    }
};

}  // namespace

extern "C" {

void VokAirbrush(VokBitmap *bitmap) {
    if (!vok::usable(bitmap)) return;
    const uint32_t w = bitmap->width, h = bitmap->height;
    const size_t n = static_cast<size_t>(w) * h;
    VokBitmap blurred;
    if (!VokBitmapBuild(&blurred, w, h)) return;
    const int32_t r = variance_radius(bitmap);
    uint32_t *sums = static_cast<uint32_t *>(malloc(2 * n * sizeof(uint32_t)));
    uint32_t *ring =
        static_cast<uint32_t *>(malloc(2 * (2 * size_t(r) + 2) * w * sizeof(uint32_t)));
    if (sums == nullptr || ring == nullptr) {
        free(ring);
        free(sums);
        VokBitmapFree(&blurred);
        return;
    }
    VokBitmapCopy(&blurred, bitmap);
    VokConvolutionEffectBoxHybridSharpen(&blurred, kBlurAmount);
    box_sums(bitmap, r, sums, sums + n, ring);
    free(ring);
    uint8_t *p = bitmap->pixels;
    const uint8_t *b = blurred.pixels;
    for (size_t i = 0; i < n; ++i, p += 4, b += 4) {
        const uint32_t keep =
            detail_weight(sums[i], sums[n + i], window_area(i % w, i / w, w, h, r));
        for (int c = 0; c < 3; ++c) {
            const int32_t move = (static_cast<int32_t>(p[c]) - b[c]) * static_cast<int32_t>(keep);
            p[c] = static_cast<uint8_t>(b[c] + (move >= 0 ? move + 128 : move - 128) / 256);
        }
    }
    free(sums);
    VokBitmapFree(&blurred);
}

void VokBlemish(VokBitmap *bitmap, VokToolStroke *stroke) {
    if (!vok::usable(bitmap) || stroke == nullptr || stroke->count <= 0 ||
        stroke->points == nullptr)
        return;
    const double r = stroke->radius;
    if (!(r >= 1.0) || !std::isfinite(r)) return;
    const double cx = stroke->points[0].x, cy = stroke->points[0].y;
    if (!std::isfinite(cx) || !std::isfinite(cy)) return;
    // The texture comes from a patch beside the spot, 2.5 radii away: to the
    // right, else below, else above; the choice is kept in the stroke.
    if (stroke->offsetPoint.x < 0.0f) {
        const float away = static_cast<float>(2.5 * r);
        if (cx + 3.5 * r < bitmap->width)
            stroke->offsetPoint = {away, 0.0f};
        else
            stroke->offsetPoint = {0.0f, cy + 3.5 * r < bitmap->height ? away : -away};
    }
    const double ox = stroke->offsetPoint.x, oy = stroke->offsetPoint.y;
    // Work from a copy of the neighbourhood so the ring is read unhealed.
    VokBitmap copy;
    if (!VokBitmapBuild(&copy, bitmap->width, bitmap->height)) return;
    VokBitmapCopy(&copy, bitmap);
    const Sampler source{&copy};
    const double ring = 1.3 * r;
    const vok::StampBox box = vok::disc_box(bitmap, cx, cy, r);
    for (int32_t y = box.y0; y <= box.y1; ++y) {
        for (int32_t x = box.x0; x <= box.x1; ++x) {
            const double dx = x + 0.5 - cx, dy = y + 0.5 - cy, d = sqrt(dx * dx + dy * dy);
            if (d > r) continue;
            // Ends of the ring's chords through the pixel, across and down.
            const double across = sqrt(ring * ring - dy * dy), down = sqrt(ring * ring - dx * dx);
            const double feather = d < 0.8 * r ? 1.0 : (r - d) / (0.2 * r);
            uint8_t *p = bitmap->pixels + 4 * (static_cast<size_t>(y) * bitmap->width + x);
            for (int c = 0; c < 3; ++c) {
                const double left = source.at(cx - across, y + 0.5, c),
                             right = source.at(cx + across, y + 0.5, c);
                const double top = source.at(x + 0.5, cy - down, c),
                             bottom = source.at(x + 0.5, cy + down, c);
                const double row = left + (right - left) * (dx + across) / (2.0 * across);
                const double column = top + (bottom - top) * (dy + down) / (2.0 * down);
                // Fine texture: the patch pixel less the mean of its four diagonal neighbours.
                const double sx = x + 0.5 + ox, sy = y + 0.5 + oy;
                const double texture =
                    source.at(sx, sy, c) -
                    (source.at(sx - 2, sy - 2, c) + source.at(sx + 2, sy - 2, c) +
                     source.at(sx - 2, sy + 2, c) + source.at(sx + 2, sy + 2, c)) /
                        4.0;
                const double healed = (row + column) / 2.0 + 0.75 * texture;
                const double value = p[c] + (healed - p[c]) * feather;
                p[c] = vok::byte_round(value < 0.0 ? 0.0 : value);
            }
        }
    }
    VokBitmapFree(&copy);
}

}  // extern "C"
