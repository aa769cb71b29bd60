// Colour matrices: composition, the adjustment builders, and applying a
// matrix to a bitmap alone or blended over the original.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "support/bitmaps.h"
#include "vok/color.h"

using vok_test::rgba;
using vok_test::TestBitmap;

namespace {

// NaN gives 0.
uint8_t to_byte(float x) { return x > 254.5f ? 255 : (x >= -0.5f ? static_cast<uint8_t>(double{x} + 0.5) : 0); }

// The matrix image of one pixel, written out from the row formulas.
VokColor image_of(const VokColorMatrix &matrix, const VokColor &c, uint8_t alpha) {
    const float *m = matrix.m;
    const float r = c.red, g = c.green, b = c.blue;
    return {to_byte(m[0] * r + m[1] * g + m[2] * b + m[3]), to_byte(m[4] * r + m[5] * g + m[6] * b + m[7]),
            to_byte(m[8] * r + m[9] * g + m[10] * b + m[11]), alpha};
}

// Random pixels with every boundary channel value mixed in; 205 pixels run
// the 8- and 4-pixel vector rows and a scalar tail.
constexpr uint32_t kWidth = 41, kPixels = 205;

TestBitmap boundary_bitmap(uint32_t seed) {
    TestBitmap bitmap(kWidth, kPixels / kWidth);
    bitmap.randomize(seed);
    const uint8_t edges[] = {0, 1, 126, 127, 128, 129, 254, 255};
    for (uint32_t i = 0; i < 64; ++i) bitmap.at(i % kWidth, i / kWidth) = rgba(edges[i % 8], edges[i / 8], edges[i * 3 % 8], edges[i % 7]);
    return bitmap;
}

}  // namespace

TEST(ColorMatrix, ProductOrderAndBuilders) {
    VokColorMatrix a, offset = {{1, 0, 0, 10, 0, 1, 0, 20, 0, 0, 1, 30}};
    VokColorMatrixSetIdentity(&a);
    VokColorMatrixBrightness(&a, 2.0f);
    VokColorMatrixMultiply(&a, &offset);  // the offset first, then the scale: 2 (x + o)
    const float scaled[12] = {2, 0, 0, 20, 0, 2, 0, 40, 0, 0, 2, 60};
    EXPECT_EQ(std::memcmp(a.m, scaled, sizeof scaled), 0);
    VokColorMatrix swap = {{0, 1, 0, 1, 0, 0, 1, 2, 1, 0, 0, 3}};
    VokColorMatrixMultiply(&swap, &swap);  // one record on both sides
    const float twice[12] = {0, 0, 1, 3, 1, 0, 0, 5, 0, 1, 0, 4};
    EXPECT_EQ(std::memcmp(swap.m, twice, sizeof twice), 0);

    VokColorMatrixCopy(&a, &VokColorMatrixIdentity);
    VokColorMatrixBrightnessContrast(&a, 0.5f, 2.0f);  // 0.5 (2 (x - 128) + 128)
    VokColorMatrixContrast(&a, 0.5f);                   // pivot 128, not 127.5
    const float bc[12] = {1.5f, 0, 0, -128, 0, 1.5f, 0, -128, 0, 0, 1.5f, -128};
    EXPECT_EQ(std::memcmp(a.m, bc, sizeof bc), 0);

    TestBitmap red(1, 1);
    red.at(0, 0) = rgba(255, 0, 0, 60);
    VokColorMatrix grey = VokColorMatrixIdentity;
    VokColorMatrixAdjSaturation(&grey, 0.0f);
    VokBitmapColorMatrixTransform(red.get(), &grey);
    EXPECT_EQ(red.at(0, 0), rgba(54, 54, 54, 60));  // 54.315 rounds to 54
}

// Both paths (a table for a diagonal matrix, per pixel and vector rows
// otherwise) against the plain per-pixel rule, in every mode. The offset-only
// matrices pin the byte conversion (254.5 -> 255, -0.5 -> 0, NaN -> 0) on
// the table path (cross term 0 or -0) and the per-pixel one (1e-30).
TEST(ColorMatrixTransform, EveryPathMatchesThePerPixelRule) {
    TestBitmap unchanged = boundary_bitmap(1), original(unchanged);
    VokBitmapColorMatrixTransform(unchanged.get(), &VokColorMatrixIdentity);
    EXPECT_EQ(unchanged.bytes(), original.bytes());
    const VokColorMatrix matrices[] = {{{1.3f, 0, 0, -12, 0, 0.8f, 0, 30, 0, 0, -1, 255}},
                                       {{0.5f, 0.5f, 0, 0, 0.2f, 0.7f, 0.1f, 5, 0, -0.25f, 1.75f, -5}},
                                       {{0, 0, 0, 300, 0, 0, 0, -0.5f, 0, 0, 0, NAN}},
                                       {{0, -0.0f, 0, 254.5f, 0, 0, 0, 254.49f, 0, 0, 0, INFINITY}},
                                       {{0, 1e-30f, 0, -INFINITY, 0, 0, 0, 0.5f, 0, 0, 0, NAN}}};
    for (const VokColorMatrix &m : matrices) {
        TestBitmap plain = boundary_bitmap(2), original(plain);
        VokBitmapColorMatrixTransform(plain.get(), &m);
        for (uint32_t i = 0; i < kPixels; ++i) {
            const VokColor &o = original.at(i % kWidth, i / kWidth);
            ASSERT_EQ(plain.at(i % kWidth, i / kWidth), image_of(m, o, o.alpha)) << i << " " << m.m[3];
        }
        // Opacity 2 wraps: 510 & 255 = 254; opacity 0 changes nothing.
        for (float opacity : {1.0f, 0.8313f, 2.0f, 0.0f})
            for (VokBlendMode mode = 0; mode <= 30; ++mode) {
                TestBitmap bitmap = boundary_bitmap(mode + 3), expected(bitmap);
                const uint8_t alpha = static_cast<uint8_t>(static_cast<uint32_t>(opacity * 255.0f) & 255);
                for (uint32_t i = 0; i < kPixels; ++i) {
                    VokColor &e = expected.at(i % kWidth, i / kWidth);
                    const VokColor image = image_of(m, e, alpha);
                    VokColorBlendEmbededAlpha(&e, &image, mode);
                }
                VokBitmapColorMatrixTransformAndBlendWithOriginal(bitmap.get(), &m, mode, opacity);
                ASSERT_EQ(bitmap.bytes(), expected.bytes()) << "mode " << mode << " opacity " << opacity;
            }
    }
}
