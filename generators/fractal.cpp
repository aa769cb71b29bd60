// Fractal textures: diamond-square height fields, and grain, paper and dust
// laid over a photo from them.
#include <cmath>
#include <cstdlib>

#include "core/bitmap_checks.h"
#include "vok/generators.h"

namespace {

constexpr uint32_t kTileLog2 = 9;  // fields of 513 x 513, tiled every 512 pixels
constexpr uint32_t kTile = 1u << kTileLog2;

// Grain: fine and rough; paper: broad fibres; dust: specks from a fine field.
const float kRoughness[3] = {0.35f, 0.9f, 0.25f};

inline uint8_t clamp_byte(int v) { return static_cast<uint8_t>(v < 0 ? 0 : v > 255 ? 255 : v); }

}  // namespace

extern "C" {

int VokDiamondSquare(float *heights, uint32_t sizeLog2, float roughness, uint32_t seed) {
    if (heights == nullptr || sizeLog2 < 1 || sizeLog2 > 12 || !std::isfinite(roughness)) return 0;
    const uint32_t n = 1u << sizeLog2, side = n + 1;
    VokRNG rng;
    VokRNGSeed(&rng, seed);
    auto at = [&](uint32_t x, uint32_t y) -> float & {
        return heights[static_cast<size_t>(y) * side + x];
    };
    at(0, 0) = at(n, 0) = at(0, n) = at(n, n) = 0.5f;
    const float factor = powf(2.0f, -roughness);
    float amplitude = 0.5f;
    for (uint32_t step = n; step > 1; step /= 2, amplitude *= factor) {
        const uint32_t half = step / 2;
        // Diamond: square centres from their four corners.
        for (uint32_t y = half; y < n; y += step)
            for (uint32_t x = half; x < n; x += step)
                at(x, y) = (at(x - half, y - half) + at(x + half, y - half) +
                            at(x - half, y + half) + at(x + half, y + half)) *
                               0.25f +
                           (VokRNGNextFloat(&rng) - 0.5f) * amplitude;
        // Square: edge midpoints from the neighbours that exist.
        for (uint32_t y = 0; y <= n; y += half) {
            for (uint32_t x = (y / half) % 2 == 0 ? half : 0; x <= n; x += step) {
                float sum = 0.0f;
                int count = 0;
                if (x >= half) sum += at(x - half, y), ++count;
                if (x + half <= n) sum += at(x + half, y), ++count;
                if (y >= half) sum += at(x, y - half), ++count;
                if (y + half <= n) sum += at(x, y + half), ++count;
                at(x, y) =
                    sum / static_cast<float>(count) + (VokRNGNextFloat(&rng) - 0.5f) * amplitude;
            }
        }
    }
    for (size_t i = 0; i < static_cast<size_t>(side) * side; ++i)
        heights[i] = heights[i] < 0.0f ? 0.0f : heights[i] > 1.0f ? 1.0f : heights[i];
    return 1;
}

void VokFractalTextureApply(VokBitmap *bitmap, uint32_t texture, float strength, uint32_t seed) {
    if (!vok::usable(bitmap) || texture > kVokTextureDust || !(strength > 0.0f)) return;
    const int32_t s256 = static_cast<int32_t>((strength > 1.0f ? 1.0f : strength) * 256.0f);
    const size_t side = kTile + 1;
    float *field = static_cast<float *>(malloc(side * side * sizeof(float)));
    if (field == nullptr) return;
    VokDiamondSquare(field, kTileLog2, kRoughness[texture], seed);
    uint8_t *p = bitmap->pixels;
    for (uint32_t y = 0; y < bitmap->height; ++y) {
        const float *row = field + (y % kTile) * side;
        for (uint32_t x = 0; x < bitmap->width; ++x, p += 4) {
            // The field's level as a signed offset of -128..127 from its middle.
            const int v = static_cast<int>(row[x % kTile] * 255.0f) - 128;
            if (texture == kVokTextureGrain) {
                const int shift = v * 80 / 256 * s256 / 256;  // up to +-40 levels
                for (int c = 0; c < 3; ++c) p[c] = clamp_byte(p[c] + shift);
            } else if (texture == kVokTexturePaper) {
                // Darker fibres below the middle, up to a quarter, blue losing most.
                const int dim = v < 0 ? -v * s256 / 512 : 0;  // 0..64 of 256
                const int keep[3] = {256 - dim, 256 - dim - dim / 4, 256 - dim - dim / 2};
                for (int c = 0; c < 3; ++c) p[c] = clamp_byte((p[c] * keep[c] + 128) >> 8);
            } else if (v > 96 || v < -100) {
                // Dust: the rare highs light, the rare lows dark.
                const int target = v > 0 ? 255 : 0;
                for (int c = 0; c < 3; ++c) p[c] = clamp_byte(p[c] + ((target - p[c]) * s256 >> 9));
            }
        }
    }
    free(field);
}

}  // extern "C"
