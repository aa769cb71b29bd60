// Compositing a bitmap or a flat colour over a bitmap.
#include <gtest/gtest.h>

#include <cstring>
#include <random>

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
    EXPECT_EQ(std::memcmp(destination.get()->pixels,
                          "\x0a\x14\x1e\x4d\x69\x3c\x0f\x4d\xc8\x64\x00\x4d\xc8\x64\x00\x4d", 16), 0);
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
        for (uint32_t i = 0; i < 63; ++i) {
            if (mode == kVokBlendColor)
                VokColorBlendColorMode(&expected.at(i % 9, i / 9), hsl, 17, 0.5f);
            else
                VokColorBlendEmbededAlpha(&expected.at(i % 9, i / 9), &applied, mode);
        }
        (mode % 2 ? VokBitmapBlend : VokBitmapBlendWithColor)(bitmap.get(), &color, mode, 0.5f);
        ASSERT_EQ(bitmap.bytes(), expected.bytes()) << "mode " << mode;
        EXPECT_EQ(color.alpha, applied.alpha);
    }
}
