// Colour matrices: composition, the adjustment builders, and applying a
// matrix to a bitmap alone or blended over the original.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>

#include "support/bitmaps.h"
#include "vok/color.h"

using vok_test::rgba;
using vok_test::TestBitmap;

namespace {

VokColorMatrix make(std::initializer_list<float> entries) {
    VokColorMatrix m;
    int i = 0;
    for (float e : entries) m.m[i++] = e;
    return m;
}

uint8_t to_byte(float x) {
    if (x > 254.5f) return 255;
    if (x < -0.5f) return 0;
    return static_cast<uint8_t>(static_cast<double>(x) + 0.5);
}

// The matrix image of one pixel, written out from the row formulas.
VokColor image_of(const VokColorMatrix &matrix, const VokColor &c, uint8_t alpha) {
    const float *m = matrix.m;
    const float r = c.red, g = c.green, b = c.blue;
    return {to_byte(m[0] * r + m[1] * g + m[2] * b + m[3]), to_byte(m[4] * r + m[5] * g + m[6] * b + m[7]),
            to_byte(m[8] * r + m[9] * g + m[10] * b + m[11]), alpha};
}

// A bitmap with random pixels plus every boundary channel value.
TestBitmap boundary_bitmap(uint32_t seed) {
    TestBitmap bitmap(16, 12);
    bitmap.randomize(seed);
    const uint8_t edges[] = {0, 1, 126, 127, 128, 129, 254, 255};
    for (uint32_t i = 0; i < 64; ++i) bitmap.at(i % 16, i / 16) = rgba(edges[i % 8], edges[(i / 8) % 8], edges[(i * 3) % 8], edges[i % 7]);
    return bitmap;
}

void expect_matrix(const VokColorMatrix &m, std::initializer_list<float> expected) {
    int i = 0;
    for (float e : expected) {
        EXPECT_FLOAT_EQ(m.m[i], e) << "entry " << i;
        ++i;
    }
}

}  // namespace

TEST(ColorMatrix, ProductAppliesTheRightFactorFirst) {
    VokColorMatrix a, b = make({1, 0, 0, 10, 0, 1, 0, 20, 0, 0, 1, 30});
    VokColorMatrixSetIdentity(&a);
    EXPECT_EQ(std::memcmp(&a, &VokColorMatrixIdentity, sizeof a), 0);
    VokColorMatrixBrightness(&a, 2.0f);
    expect_matrix(a, {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0});
    VokColorMatrixMultiply(&a, &b);  // 2 (x + offset)
    expect_matrix(a, {2, 0, 0, 20, 0, 2, 0, 40, 0, 0, 2, 60});

    VokColorMatrix swap = make({0, 1, 0, 1, 0, 0, 1, 2, 1, 0, 0, 3}), copy;
    VokColorMatrixCopy(&copy, &swap);
    VokColorMatrixMultiply(&copy, &copy);  // the same record on both sides
    expect_matrix(copy, {0, 0, 1, 3, 1, 0, 0, 5, 0, 1, 0, 4});
}

TEST(ColorMatrix, AdjustmentBuilders) {
    VokColorMatrix m = VokColorMatrixIdentity;
    VokColorMatrixAdjSaturation(&m, 1.0f);
    expect_matrix(m, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0});
    VokColorMatrixAdjSaturation(&m, 0.0f);
    expect_matrix(m, {0.213f, 0.715f, 0.072f, 0, 0.213f, 0.715f, 0.072f, 0, 0.213f, 0.715f, 0.072f, 0});

    m = VokColorMatrixIdentity;
    VokColorMatrixBrightnessContrast(&m, 0.5f, 2.0f);  // 0.5 (2 (x - 128) + 128)
    expect_matrix(m, {1, 0, 0, -64, 0, 1, 0, -64, 0, 0, 1, -64});
    m = VokColorMatrixIdentity;
    VokColorMatrixContrast(&m, 0.0f);
    expect_matrix(m, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0});
    VokColorMatrixContrast(&m, 0.5f);  // pivot 128, not 127.5
    expect_matrix(m, {1.5f, 0, 0, -64, 0, 1.5f, 0, -64, 0, 0, 1.5f, -64});

    TestBitmap red(1, 1);
    red.at(0, 0) = rgba(255, 0, 0, 60);
    VokColorMatrix grey = VokColorMatrixIdentity;
    VokColorMatrixAdjSaturation(&grey, 0.0f);
    VokBitmapColorMatrixTransform(red.get(), &grey);
    EXPECT_EQ(std::memcmp(&red.at(0, 0), "\x36\x36\x36\x3c", 4), 0);  // 54.315 rounds to 54
}

TEST(ColorMatrixTransform, ByteConversionAtTheEdges) {
    TestBitmap bitmap = boundary_bitmap(1);
    TestBitmap original(bitmap);
    VokBitmapColorMatrixTransform(bitmap.get(), &VokColorMatrixIdentity);
    EXPECT_EQ(bitmap.bytes(), original.bytes());

    // Offsets alone: 300 -> 255, -3 -> 0, 254.5 -> 255 and -0.5 -> 0 (NaN -> 0), on the
    // table path and on the per-pixel path (a tiny cross term forces it).
    for (float cross : {0.0f, -0.0f, 1e-30f}) {
        const float offsets[][3] = {{300, -3, 254.5f}, {-0.5f, 254.49f, 0.5f}, {INFINITY, -INFINITY, NAN}};
        const uint8_t expected[][3] = {{255, 0, 255}, {0, 254, 1}, {255, 0, 0}};
        for (int k = 0; k < 3; ++k) {
            VokColorMatrix m = make({0, cross, 0, offsets[k][0], 0, 0, 0, offsets[k][1], 0, 0, 0, offsets[k][2]});
            TestBitmap b(original);
            VokBitmapColorMatrixTransform(b.get(), &m);
            for (uint32_t i = 0; i < 16 * 12; ++i) {
                const VokColor &c = b.at(i % 16, i / 16);
                ASSERT_EQ(c.red, expected[k][0]);
                ASSERT_EQ(c.green, expected[k][1]);
                ASSERT_EQ(c.blue, expected[k][2]);
                ASSERT_EQ(c.alpha, original.at(i % 16, i / 16).alpha);
            }
        }
    }
}

TEST(ColorMatrixTransform, GeneralAndDiagonalMatchTheRowFormulas) {
    const VokColorMatrix matrices[] = {
        make({0.393f, 0.769f, 0.189f, 0, 0.349f, 0.686f, 0.168f, 0, 0.272f, 0.534f, 0.131f, 0}),
        make({1.2f, -0.1f, 0, -10, 0.05f, 0.9f, 0.05f, 3.5f, 0, -0.3f, 1.4f, 7.25f}),
        make({1.37f, 0, 0, -20.5f, 0, 0.71f, 0, 12, 0, 0, 2.0f, -127.5f}),
    };
    for (const VokColorMatrix &m : matrices) {
        TestBitmap bitmap = boundary_bitmap(2);
        TestBitmap original(bitmap);
        VokBitmapColorMatrixTransform(bitmap.get(), &m);
        for (uint32_t i = 0; i < 16 * 12; ++i) {
            const VokColor &o = original.at(i % 16, i / 16);
            VokColor expected = image_of(m, o, o.alpha);
            ASSERT_EQ(std::memcmp(&bitmap.at(i % 16, i / 16), &expected, 4), 0) << i;
        }
    }
}

// Both paths (table for a diagonal matrix, per pixel otherwise) against the
// plain per-pixel blend of the matrix image, in every mode.
TEST(ColorMatrixBlend, EveryModeMatchesThePerPixelBlend) {
    const VokColorMatrix diagonal = make({1.3f, 0, 0, -12, 0, 0.8f, 0, 30, 0, 0, -1, 255});
    const VokColorMatrix general = make({0.5f, 0.5f, 0, 0, 0.2f, 0.7f, 0.1f, 5, 0, 0.25f, 0.75f, -5});
    for (const VokColorMatrix *m : {&diagonal, &general})
        for (float opacity : {1.0f, 0.5f, 0.8313f})
            for (VokBlendMode mode = 0; mode <= 30; ++mode) {
                TestBitmap bitmap = boundary_bitmap(mode + 3);
                TestBitmap expected(bitmap);
                const uint8_t alpha = static_cast<uint8_t>(static_cast<uint32_t>(opacity * 255.0f));
                for (uint32_t i = 0; i < 16 * 12; ++i) {
                    VokColor &e = expected.at(i % 16, i / 16);
                    VokColor image = image_of(*m, e, alpha);
                    VokColorBlendEmbededAlpha(&e, &image, mode);
                }
                VokBitmapColorMatrixTransformAndBlendWithOriginal(bitmap.get(), m, mode, opacity);
                ASSERT_EQ(bitmap.bytes(), expected.bytes()) << "mode " << mode << " opacity " << opacity;
            }

    TestBitmap bitmap = boundary_bitmap(9);
    TestBitmap original(bitmap);
    VokBitmapColorMatrixTransformAndBlendWithOriginal(bitmap.get(), &general, kVokBlendMultiply, 0.0f);
    EXPECT_EQ(bitmap.bytes(), original.bytes());
    // Only the low 8 bits of trunc(opacity * 255) are used: 510 wraps to 254.
    VokBitmapColorMatrixTransformAndBlendWithOriginal(bitmap.get(), &general, kVokBlendNormal, 2.0f);
    for (uint32_t i = 0; i < 16 * 12; ++i) {
        const VokColor &o = original.at(i % 16, i / 16);
        VokColor image = image_of(general, o, 254), e = o;
        VokColorBlendEmbededAlpha(&e, &image, kVokBlendNormal);
        ASSERT_EQ(std::memcmp(&bitmap.at(i % 16, i / 16), &e, 4), 0);
    }
}
