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
        bitmap.at(i % width, i / width) =
            rgba(edges[engine() % 8], edges[engine() % 8], edges[engine() % 8], edges[engine() % 8]);
    return bitmap;
}

bool same_rgb(const VokColor &a, const VokColor &b) {
    return a.red == b.red && a.green == b.green && a.blue == b.blue;
}

}  // namespace

TEST(BlendBitmap, EveryModeMatchesThePerPixelBlend) {
    for (VokBlendMode mode = 0; mode <= 30; ++mode)
        for (float opacity : {1.0f, 0.37f, 1.5f, -0.5f}) {
            // An overlap of 11 columns covers both 4- and 8-pixel vector
            // rows with a scalar tail.
            TestBitmap destination = boundary_bitmap(13, 5, mode);
            TestBitmap source = boundary_bitmap(11, 6, mode + 100);
            TestBitmap expected(destination);
            for (uint32_t y = 0; y < 5; ++y)
                for (uint32_t x = 0; x < 11; ++x) {
                    VokColor s = source.at(x, y);
                    // trunc(alpha * opacity), saturating at 0, low 8 bits.
                    const float a = s.alpha * opacity;
                    s.alpha = static_cast<uint8_t>(a < 0 ? 0 : static_cast<uint32_t>(a) & 255);
                    VokColorBlendEmbededAlpha(&expected.at(x, y), &s, mode);
                }
            VokBitmapBlendBitmap(destination.get(), source.get(), mode, opacity);
            ASSERT_EQ(destination.bytes(), expected.bytes()) << "mode " << mode << " opacity " << opacity;
        }
}

TEST(BlendBitmap, OverlapOnlyOpacityZeroAndWrappingAlpha) {
    TestBitmap destination = boundary_bitmap(6, 4, 1);
    TestBitmap source(3, 2);
    source.fill(rgba(10, 20, 30, 255));
    TestBitmap original(destination);
    VokBitmapBlendBitmap(destination.get(), source.get(), kVokBlendNormal, 0.0f);
    EXPECT_EQ(destination.bytes(), original.bytes());
    VokBitmapBlendBitmap(destination.get(), source.get(), kVokBlendNormal, 1.0f);
    for (uint32_t y = 0; y < 4; ++y)
        for (uint32_t x = 0; x < 6; ++x) {
            const VokColor &c = destination.at(x, y), &o = original.at(x, y);
            if (x < 3 && y < 2)
                EXPECT_TRUE(same_rgb(c, rgba(10, 20, 30))) << x << "," << y;
            else
                EXPECT_EQ(std::memcmp(&c, &o, 4), 0) << x << "," << y;
            EXPECT_EQ(c.alpha, o.alpha);
        }

    // 200 * 1.5 = 300 wraps to 44: a faint blend, not a saturated one.
    TestBitmap d(1, 1), s(1, 1);
    d.fill(rgba(0, 0, 0, 9));
    s.fill(rgba(255, 255, 255, 200));
    VokBitmapBlendBitmap(d.get(), s.get(), kVokBlendNormal, 1.5f);
    EXPECT_EQ(d.at(0, 0).red, (255 * 44 + 255) >> 8);
    EXPECT_EQ(d.at(0, 0).alpha, 9);

    VokBitmap empty = {nullptr, 5, 0};
    VokBitmapBlendBitmap(destination.get(), &empty, kVokBlendNormal, 1.0f);
}

TEST(BlendBitmapSeparate, WeightedSumTruncatesAndClamps) {
    TestBitmap destination(3, 2), source(2, 3);
    destination.fill(rgba(100, 200, 7, 50));
    source.fill(rgba(51, 255, 0, 60));
    VokBitmapBlendBitmapSeparate(destination.get(), source.get(), 0.5f, 0.5f);
    EXPECT_EQ(std::memcmp(&destination.at(0, 0), "\x4b\xe3\x03\x32", 4), 0);  // 75.5, 227.5, 3.5
    EXPECT_EQ(std::memcmp(&destination.at(1, 1), "\x4b\xe3\x03\x32", 4), 0);
    EXPECT_EQ(std::memcmp(&destination.at(2, 0), "\x64\xc8\x07\x32", 4), 0);  // outside the overlap
    VokBitmapBlendBitmapSeparate(destination.get(), source.get(), 2.0f, -1.0f);
    EXPECT_EQ(destination.at(0, 0).red, 99);  // 150 - 51
    EXPECT_EQ(destination.at(0, 0).green, 199);
    VokBitmapBlendBitmapSeparate(destination.get(), source.get(), -1.0f, 3.0f);
    EXPECT_EQ(destination.at(0, 0).red, 54);   // -99 + 153
    EXPECT_EQ(destination.at(0, 0).green, 255);
    EXPECT_EQ(destination.at(0, 0).blue, 0);   // -3
}

TEST(BlendBitmapTransform, WhiteOutsideAndBilinearInside) {
    TestBitmap source(3, 2);
    for (uint32_t y = 0; y < 2; ++y)
        for (uint32_t x = 0; x < 3; ++x)
            source.at(x, y) = rgba(static_cast<uint8_t>(40 * x + 100 * y), static_cast<uint8_t>(7 + x), 90, 3);
    TestBitmap destination(6, 4);
    destination.fill(rgba(1, 2, 3, 44));
    VokBitmapBlendBitmapTransform(destination.get(), source.get(), kVokBlendNormal, 1.0f, &VokTransformIdentity);
    for (uint32_t y = 0; y < 4; ++y)
        for (uint32_t x = 0; x < 6; ++x) {
            const VokColor &c = destination.at(x, y);
            if (x > 3 || y > 2) {
                // More than one pixel past the source: overwritten, alpha too.
                EXPECT_EQ(std::memcmp(&c, "\xff\xff\xff\xff", 4), 0) << x << "," << y;
            } else if (x == 3 || y == 2) {
                // On the last row or column every neighbour reads white, and
                // that white is blended: the destination keeps its alpha.
                EXPECT_EQ(std::memcmp(&c, "\xff\xff\xff\x2c", 4), 0) << x << "," << y;
            } else {
                EXPECT_TRUE(same_rgb(c, source.at(x, y))) << x << "," << y;
                EXPECT_EQ(c.alpha, 44);
            }
        }

    // Shifted half a pixel right: column 0 samples at -0.5, whose cell is
    // column 0 with a negative fraction, so the ramp is extrapolated.
    VokTransform shift = VokTransformIdentity;
    VokTransformPostTranslate(&shift, 0.5, 0.0);
    destination.fill(rgba(1, 2, 3, 44));
    VokBitmapBlendBitmapTransform(destination.get(), source.get(), kVokBlendNormal, 1.0f, &shift);
    EXPECT_EQ(destination.at(0, 0).red, 0);    // 0 * 1.5 + 40 * -0.5, clamped
    EXPECT_EQ(destination.at(0, 1).red, 80);   // 100 * 1.5 + 140 * -0.5
    EXPECT_EQ(destination.at(1, 0).red, 20);   // halfway between 0 and 40
    EXPECT_EQ(destination.at(2, 1).red, 160);  // halfway between 140 and 180
    EXPECT_EQ(destination.at(1, 0).green, 7);  // 7.5 truncates

    // Opacity and mode reach the float family unchanged.
    destination.fill(rgba(200, 100, 50, 44));
    VokBitmapBlendBitmapTransform(destination.get(), source.get(), kVokBlendMultiply, 0.5f, &VokTransformIdentity);
    VokColor expected = rgba(200, 100, 50, 44), sample = rgba(40, 8, 90);
    VokColorBlend(&expected, &sample, kVokBlendMultiply, 0.5f);
    EXPECT_EQ(std::memcmp(&destination.at(1, 0), &expected, 4), 0);
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
    for (uint32_t y = 0; y < 2; ++y) {
        EXPECT_EQ(std::memcmp(&destination.at(0, y), "\x0a\x14\x1e\x4d", 4), 0);
        EXPECT_EQ(std::memcmp(&destination.at(1, y), "\x69\x3c\x0f\x4d", 4), 0);  // 105.5, 60.5, 15.5
        EXPECT_EQ(std::memcmp(&destination.at(2, y), "\xc8\x64\x00\x4d", 4), 0);
        EXPECT_EQ(std::memcmp(&destination.at(3, y), "\xc8\x64\x00\x4d", 4), 0);
    }

    // A mask larger than the destination is sampled every other cell.
    TestBitmap big_mask(8, 4);
    for (uint32_t y = 0; y < 4; ++y)
        for (uint32_t x = 0; x < 8; ++x) big_mask.at(x, y) = rgba(0, 0, 0, x % 2 ? 0 : 255);
    VokBitmapBlendBitmapMask(destination.get(), base.get(), layer.get(), big_mask.get(), kVokBlendMultiply);
    VokColor expected = base.at(0, 0), l = layer.at(0, 0);
    VokColorBlend(&expected, &l, kVokBlendMultiply, 1.0f);
    for (uint32_t x = 0; x < 4; ++x) EXPECT_TRUE(same_rgb(destination.at(x, 1), expected)) << x;

    TestBitmap before(destination);
    VokBitmap empty = {nullptr, 0, 0};
    VokBitmapBlendBitmapMask(destination.get(), base.get(), layer.get(), &empty, kVokBlendNormal);
    EXPECT_EQ(destination.bytes(), before.bytes());
}

TEST(CompositePremultiplied, UnpremultipliesThenBlendsOverTheBase) {
    TestBitmap destination(3, 1), base(3, 1), overlay(3, 1);
    destination.fill(rgba(9, 9, 9, 70));
    base.fill(rgba(0, 0, 0, 1));
    base.at(0, 0) = rgba(50, 60, 70, 1);
    overlay.at(0, 0) = rgba(200, 200, 200, 0);   // nothing over the base
    overlay.at(1, 0) = rgba(64, 128, 10, 128);   // straight 127, 254, 19
    overlay.at(2, 0) = rgba(200, 0, 10, 10);     // channel above alpha: 255
    VokBitmapCompositePremultiplied(destination.get(), base.get(), overlay.get(), kVokBlendNormal);
    EXPECT_EQ(std::memcmp(&destination.at(0, 0), "\x32\x3c\x46\x46", 4), 0);
    // 128 / (128 * 0.003921569) is 254.99998 in single precision: 254.
    EXPECT_EQ(std::memcmp(&destination.at(1, 0), "\x40\x7f\x0a\x46", 4), 0);
    EXPECT_EQ(destination.at(2, 0).red, 10);  // 255 * 10/255 + 0.5
    EXPECT_EQ(destination.at(2, 0).green, 0);
}

TEST(BlendWithColor, MapMatchesPerPixelBlendInEveryMode) {
    for (VokBlendMode mode = 0; mode <= 30; ++mode) {
        TestBitmap bitmap = boundary_bitmap(9, 7, mode + 7);
        TestBitmap expected(bitmap);
        VokColor color = rgba(200, 90, 30, 17);
        VokColor applied = color;
        if (mode == kVokBlendColor) {
            float hsl[3];
            VokColorRGB2HSL(&color, hsl);
            for (uint32_t i = 0; i < 63; ++i) VokColorBlendColorMode(&expected.at(i % 9, i / 9), hsl, 17, 0.6f);
        } else {
            applied.alpha = 153;  // floor(0.6 * 255 + 0.5)
            for (uint32_t i = 0; i < 63; ++i) VokColorBlendEmbededAlpha(&expected.at(i % 9, i / 9), &applied, mode);
        }
        VokBitmapBlendWithColor(bitmap.get(), &color, mode, 0.6f);
        ASSERT_EQ(bitmap.bytes(), expected.bytes()) << "mode " << mode;
        EXPECT_EQ(color.alpha, applied.alpha);
    }

    VokColor color = rgba(1, 2, 3, 4);
    TestBitmap a = boundary_bitmap(4, 4, 2), b(a);
    VokBitmapBlend(a.get(), &color, kVokBlendScreen, 0.5f);
    EXPECT_EQ(color.alpha, 128);
    VokBitmapBlendWithColor(b.get(), &color, kVokBlendScreen, 0.5f);
    EXPECT_EQ(a.bytes(), b.bytes());
}
