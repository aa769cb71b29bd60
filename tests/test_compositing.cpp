// Bitmap-wide colour work: colour matrices, and compositing a bitmap or a
// flat colour over a bitmap.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "support/bitmaps.h"
#include "vok/color.h"

using vok_test::rgba;
using vok_test::TestBitmap;

namespace {

// Random pixels with the boundary channel and alpha values mixed in.
TestBitmap boundary_bitmap(uint32_t width, uint32_t height, uint32_t seed) {
    TestBitmap bitmap(width, height);
    bitmap.randomize(seed);
    const uint8_t edges[] = {0, 1, 126, 127, 128, 129, 254, 255};
    std::mt19937 engine(seed);
    for (uint32_t i = 0; i < width * height; i += 2)
        bitmap.at(i % width, i / width) = rgba(edges[engine() % 8], edges[engine() % 8], edges[engine() % 8], edges[engine() % 8]);
    return bitmap;
}

uint8_t to_byte(float x) { return x > 254.5f ? 255 : (x >= -0.5f ? static_cast<uint8_t>(double{x} + 0.5) : 0); }

// The matrix image of one pixel, written out from the row formulas; NaN gives 0.
VokColor image_of(const VokColorMatrix &matrix, const VokColor &c, uint8_t alpha) {
    const float *m = matrix.m;
    const float r = c.red, g = c.green, b = c.blue;
    return {to_byte(m[0] * r + m[1] * g + m[2] * b + m[3]), to_byte(m[4] * r + m[5] * g + m[6] * b + m[7]),
            to_byte(m[8] * r + m[9] * g + m[10] * b + m[11]), alpha};
}

constexpr uint32_t kWidth = 41, kPixels = 205;  // vector rows of 8 and 4 and a scalar tail

// A bitmap blended over a slightly larger one against the single-colour rule
// over the overlap: alpha * opacity truncates, saturates at 0 and keeps its
// low 8 bits, so opacity 1.5 wraps.
void expect_bitmap_blend(uint32_t width, uint32_t height, VokBlendMode mode, float opacity) {
    TestBitmap destination = boundary_bitmap(width + 2, height + 1, mode), source = boundary_bitmap(width, height + 2, mode + 100);
    TestBitmap expected(destination);
    for (uint32_t y = 0; y <= height; ++y)
        for (uint32_t x = 0; x < width; ++x) {
            VokColor s = source.at(x, y);
            const float a = s.alpha * opacity;
            s.alpha = static_cast<uint8_t>(a < 0 ? 0 : static_cast<uint32_t>(a) & 255);
            VokColorBlendEmbededAlpha(&expected.at(x, y), &s, mode);
        }
    VokBitmapBlendBitmap(destination.get(), source.get(), mode, opacity);
    ASSERT_EQ(destination.bytes(), expected.bytes()) << "mode " << mode << " opacity " << opacity;
}

}  // namespace

// 15 columns run the 8- and 4-pixel vector rows and a scalar tail; 512 x 256
// reads the dearer modes' blend values from a table of channel pairs.
TEST(BlendBitmap, EveryPathMatchesThePerPixelBlendOverTheOverlap) {
    for (VokBlendMode mode = 0; mode <= 30; ++mode)
        for (float opacity : {1.0f, 0.37f, 1.5f, -0.5f, 0.0f}) expect_bitmap_blend(15, 4, mode, opacity);
    for (VokBlendMode mode : {6u, 11u, 16u, 18u, 19u, 21u, 25u, 26u, 27u, 28u}) expect_bitmap_blend(512, 255, mode, 0.9f);
}

TEST(BlendBitmapSeparate, WeightedSumOverTheOverlap) {
    TestBitmap destination(3, 2), source(2, 3);
    destination.fill(rgba(100, 200, 7, 50));
    source.fill(rgba(51, 255, 0, 60));
    VokBitmapBlendBitmapSeparate(destination.get(), source.get(), 0.5f, 0.5f);
    EXPECT_EQ(destination.at(1, 1), rgba(75, 227, 3, 50));  // 75.5, 227.5, 3.5 truncate
    EXPECT_EQ(destination.at(2, 0), rgba(100, 200, 7, 50));  // outside the overlap
    VokBitmapBlendBitmapSeparate(destination.get(), source.get(), -1.0f, 3.0f);  // 78, 538, -3
    EXPECT_EQ(destination.at(0, 0), rgba(78, 255, 0, 50));
}

TEST(BlendBitmapTransform, WhiteOutsideAndBilinearInside) {
    TestBitmap source(3, 2), destination(6, 4);
    for (uint32_t i = 0; i < 6; ++i) source.at(i % 3, i / 3) = rgba(40 * (i % 3) + 100 * (i / 3), 7 + i % 3, 90, 3);
    destination.fill(rgba(1, 2, 3, 44));
    VokBitmapBlendBitmapTransform(destination.get(), source.get(), kVokBlendNormal, 1.0f, &VokTransformIdentity);
    // Past the source's last pixel every neighbour reads white and is blended;
    // more than a pixel past, white overwrites alpha too.
    for (uint32_t x = 0; x < 6; ++x)
        for (uint32_t y = 0; y < 4; ++y) {
            const VokColor &s = source.at(x % 3, y % 2), white = rgba(255, 255, 255, x > 3 || y > 2 ? 255 : 44);
            EXPECT_EQ(destination.at(x, y), x < 3 && y < 2 ? rgba(s.red, s.green, s.blue, 44) : white) << x << "," << y;
        }

    // Half a pixel right: column 0 samples at -0.5, in cell 0 with a negative
    // fraction, so the ramp is extrapolated (and clamped). The mode blends by
    // the float family.
    VokTransform shift = VokTransformIdentity;
    VokTransformPostTranslate(&shift, 0.5, 0.0);
    VokColor expected = destination.at(1, 1);
    VokBitmapBlendBitmapTransform(destination.get(), source.get(), kVokBlendMultiply, 1.0f, &shift);
    TestBitmap plain(6, 4);
    VokBitmapBlendBitmapTransform(plain.get(), source.get(), kVokBlendNormal, 1.0f, &shift);
    EXPECT_EQ(plain.at(0, 0).red, 0);    // 0 * 1.5 + 40 * -0.5
    EXPECT_EQ(plain.at(0, 1).red, 80);   // 100 * 1.5 + 140 * -0.5
    EXPECT_EQ(plain.at(1, 0).green, 7);  // 7.5 truncates
    VokColorBlend(&expected, &plain.at(1, 1), kVokBlendMultiply, 1.0f);
    EXPECT_EQ(destination.at(1, 1), expected);
}

TEST(BlendBitmapMask, MaskIsStretchedOverTheDestination) {
    TestBitmap destination(4, 2), base(4, 2), layer(4, 2), mask(2, 1);
    destination.fill(rgba(1, 1, 1, 77));
    base.fill(rgba(10, 20, 30, 5));
    layer.fill(rgba(200, 100, 0, 6));
    mask.at(0, 0) = rgba(9, 9, 9, 0);
    mask.at(1, 0) = rgba(9, 9, 9, 255);
    // Scale 2: mask positions 0, 0.5, 1 and 1.5 give opacities 0, 0.5, 1, 1.
    VokBitmapBlendBitmapMask(destination.get(), base.get(), layer.get(), mask.get(), kVokBlendNormal);
    EXPECT_EQ(std::memcmp(destination.get()->pixels, "\x0a\x14\x1e\x4d\x69\x3c\x0f\x4d\xc8\x64\x00\x4d\xc8\x64\x00\x4d", 16), 0);
    EXPECT_EQ(std::memcmp(&destination.at(0, 1), &destination.at(0, 0), 16), 0);

    // Wider than one block of columns: opacity x / 300 up to 1, then 1.
    TestBitmap wide(600, 1), wide_base(600, 1), wide_layer(600, 1);
    wide_base.randomize(4);
    wide_layer.randomize(5);
    VokBitmapBlendBitmapMask(wide.get(), wide_base.get(), wide_layer.get(), mask.get(), kVokBlendMultiply);
    for (uint32_t x = 0; x < 600; ++x) {
        const double fx = x < 300 ? x / 300.0 : x / 300.0 - 1;
        const double o = (x < 300 ? 255 * fx : 255 * (1 - fx) + 255 * fx) * 0.00392156862745098;
        VokColor expected = wide_base.at(x, 0);
        VokColorBlend(&expected, &wide_layer.at(x, 0), kVokBlendMultiply, static_cast<float>(o));
        expected.alpha = 0;
        ASSERT_EQ(wide.at(x, 0), expected) << x;
    }

    TestBitmap before(destination);
    VokBitmap empty = {nullptr, 0, 0};
    VokBitmapBlendBitmapMask(destination.get(), base.get(), layer.get(), &empty, kVokBlendNormal);
    EXPECT_EQ(destination.bytes(), before.bytes());
}

// A mask clear but for a random patch, stretched twice over the destination:
// uncovered cells and rows take shortcuts that must match the plain blend, in
// place and apart, in every float-family mode and the black one above them.
TEST(BlendBitmapMask, UncoveredCellsMatchThePlainBlendInEveryMode) {
    TestBitmap mask(300, 20), base(600, 40), layer(600, 40);
    std::mt19937 engine(7);
    for (uint32_t y = 5; y < 12; ++y)
        for (uint32_t x = 100; x < 140; ++x) mask.at(x, y).alpha = static_cast<uint8_t>(engine());
    base.randomize(8);
    layer.randomize(9);
    auto axis = [](double p, uint32_t n, uint32_t &i0, uint32_t &i1) {
        i0 = static_cast<uint32_t>(p);
        i1 = std::min(i0 + 1, n - 1);
        return p - i0;
    };
    auto opacity = [&](uint32_t x, uint32_t y) {
        uint32_t x0, x1, y0, y1;
        const double fx = axis(x * 0.5, 300, x0, x1), fy = axis(y * 0.5, 20, y0, y1);
        const double top = mask.at(x0, y0).alpha * (1 - fx) + mask.at(x1, y0).alpha * fx;
        const double bottom = mask.at(x0, y1).alpha * (1 - fx) + mask.at(x1, y1).alpha * fx;
        return static_cast<float>((top * (1 - fy) + bottom * fy) * 0.00392156862745098);
    };
    for (VokBlendMode mode = 0; mode <= 7; ++mode) {
        TestBitmap apart(600, 40), in_place(base);
        VokBitmapBlendBitmapMask(apart.get(), base.get(), layer.get(), mask.get(), mode);
        VokBitmapBlendBitmapMask(in_place.get(), in_place.get(), layer.get(), mask.get(), mode);
        for (uint32_t y = 0; y < 40; ++y)
            for (uint32_t x = 0; x < 600; ++x) {
                VokColor expected = base.at(x, y);
                VokColorBlend(&expected, &layer.at(x, y), mode, opacity(x, y));
                ASSERT_EQ(in_place.at(x, y), expected) << mode << " at " << x << "," << y;
                expected.alpha = 0;
                ASSERT_EQ(apart.at(x, y), expected) << mode << " at " << x << "," << y;
            }
    }
}

TEST(CompositePremultiplied, UnpremultipliesThenBlendsOverTheBase) {
    TestBitmap destination(3, 1), base(3, 1), overlay(3, 1);
    destination.fill(rgba(9, 9, 9, 70));
    base.at(0, 0) = rgba(50, 60, 70, 1);
    overlay.at(0, 0) = rgba(200, 200, 200, 0);  // nothing over the base
    overlay.at(1, 0) = rgba(64, 128, 10, 128);  // straight 127, 254 (254.99998), 19
    overlay.at(2, 0) = rgba(200, 0, 10, 10);    // above its alpha: 255
    VokBitmapCompositePremultiplied(destination.get(), base.get(), overlay.get(), kVokBlendNormal);
    EXPECT_EQ(std::memcmp(destination.get()->pixels, "\x32\x3c\x46\x46\x40\x7f\x0a\x46\x0a\x00\x0a\x46", 12), 0);
}

// The colour's alpha is overwritten with the applied opacity (except in
// colour mode, which keeps the colour's own alpha for the saturation).
TEST(BlendWithColor, MapMatchesPerPixelBlendInEveryMode) {
    for (VokBlendMode mode = 0; mode <= 30; ++mode) {
        TestBitmap bitmap = boundary_bitmap(9, 7, mode + 7), expected(bitmap);
        VokColor color = rgba(200, 90, 30, 17), applied = color;
        float hsl[3];
        VokColorRGB2HSL(&color, hsl);
        if (mode != kVokBlendColor) applied.alpha = 128;  // 127.5 rounds half up
        for (uint32_t i = 0; i < 63; ++i)
            mode == kVokBlendColor ? VokColorBlendColorMode(&expected.at(i % 9, i / 9), hsl, 17, 0.5f)
                                   : VokColorBlendEmbededAlpha(&expected.at(i % 9, i / 9), &applied, mode);
        (mode % 2 ? VokBitmapBlend : VokBitmapBlendWithColor)(bitmap.get(), &color, mode, 0.5f);
        ASSERT_EQ(bitmap.bytes(), expected.bytes()) << "mode " << mode;
        EXPECT_EQ(color.alpha, applied.alpha);
    }
}

TEST(ColorMatrix, ProductOrderAndBuilders) {
    auto entries = [](const VokColorMatrix &m) { return std::vector<float>(m.m, m.m + 12); };
    VokColorMatrix a, offset = {{1, 0, 0, 10, 0, 1, 0, 20, 0, 0, 1, 30}}, swap = {{0, 1, 0, 1, 0, 0, 1, 2, 1, 0, 0, 3}};
    VokColorMatrixSetIdentity(&a);
    VokColorMatrixBrightness(&a, 2.0f);
    VokColorMatrixMultiply(&a, &offset);  // the offset first, then the scale: 2 (x + o)
    EXPECT_EQ(entries(a), std::vector<float>({2, 0, 0, 20, 0, 2, 0, 40, 0, 0, 2, 60}));
    VokColorMatrixMultiply(&swap, &swap);  // one record on both sides
    EXPECT_EQ(entries(swap), std::vector<float>({0, 0, 1, 3, 1, 0, 0, 5, 0, 1, 0, 4}));
    VokColorMatrixCopy(&a, &VokColorMatrixIdentity);
    VokColorMatrixBrightnessContrast(&a, 0.5f, 2.0f);  // 0.5 (2 (x - 128) + 128)
    VokColorMatrixContrast(&a, 0.5f);                   // pivot 128, not 127.5
    EXPECT_EQ(entries(a), std::vector<float>({1.5f, 0, 0, -128, 0, 1.5f, 0, -128, 0, 0, 1.5f, -128}));

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
    std::vector<VokColorMatrix> matrices = {
        VokColorMatrixIdentity, {{1.3f, 0, 0, -12, 0, 0.8f, 0, 30, 0, 0, -1, 255}},
        {{0.5f, 0.5f, 0, 0, 0.2f, 0.7f, 0.1f, 5, 0, -0.25f, 1.75f, -5}}, {{0, 0, 0, 300, 0, 0, 0, -0.5f, 0, 0, 0, NAN}},
        {{0, -0.0f, 0, 254.5f, 0, 0, 0, 254.49f, 0, 0, 0, INFINITY}}, {{0, 1e-30f, 0, -INFINITY, 0, 0, 0, 0.5f, 0, 0, 0, NAN}}};
    // Each cross term alone must keep a matrix off the diagonal path.
    for (int cross : {1, 2, 4, 6, 8, 9}) {
        VokColorMatrix m = VokColorMatrixIdentity;
        m.m[cross] = 0.3f;
        matrices.push_back(m);
    }
    for (const VokColorMatrix &m : matrices) {
        TestBitmap plain = boundary_bitmap(kWidth, 5, 2), original(plain);
        VokBitmapColorMatrixTransform(plain.get(), &m);
        for (uint32_t i = 0; i < kPixels; ++i) {
            const VokColor &o = original.at(i % kWidth, i / kWidth);
            ASSERT_EQ(plain.at(i % kWidth, i / kWidth), image_of(m, o, o.alpha)) << i << " " << m.m[3];
        }
        // Opacity 2 wraps: 510 & 255 = 254; opacity 0 changes nothing.
        for (float opacity : {1.0f, 0.8313f, 2.0f, 0.0f})
            for (VokBlendMode mode = 0; mode <= 30; ++mode) {
                TestBitmap bitmap = boundary_bitmap(kWidth, 5, mode + 3), expected(bitmap);
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
