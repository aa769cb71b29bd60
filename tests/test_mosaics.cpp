// Mosaic and cell blurs, the uniform box filters and the motion blur.
#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <string>
#include <vector>

#include "support/bitmaps.h"
#include "support/golden.h"
#include "vok/generators.h"

using vok_test::rgba;
using vok_test::TestBitmap;

namespace {

using Mosaic = void (*)(VokBitmap *, float);

const struct {
    const char *name;
    Mosaic run;
} kMosaics[] = {
    {"pixelate", VokBlurModesPixelateProcessor},
    {"triangles", VokBlurModesTrianglesProcessor},
    {"circles", VokBlurModesCirclesProcessor},
    {"diamonds", VokBlurModesDiamondsProcessor},
    {"houndstooth", VokBlurModesHoundstoothProcessor},
    {"chevrons", VokBlurModesChevronsProcessor},
    {"sines", VokBlurModesSinesProcessor},
    {"scales", VokBlurModesScalesProcessor},
    {"bricks", VokBlurModesBricksProcessor},
    {"voronoi", VokBlurModesVoronoi},
    {"hearts", VokBlurModesHeartsProcessor},
    {"hexagons", VokBlurModesHexagons},
};

}  // namespace

TEST(Mosaics, PixelateAndHexagonMeansByHand) {
    // 8 x 4 in 4-pixel squares: left square reds 0..15 (mean 7.5 -> 8), right one 100.
    TestBitmap bitmap(8, 4);
    for (uint32_t y = 0; y < 4; ++y)
        for (uint32_t x = 0; x < 8; ++x)
            bitmap.at(x, y) = x < 4 ? rgba(y * 4 + x, 50, 0, 7) : rgba(100, 51, 2, 9);
    VokBlurModesPixelateProcessor(bitmap.get(), 4.0f);
    EXPECT_EQ(bitmap.at(0, 0), rgba(8, 50, 0, 7));
    EXPECT_EQ(bitmap.at(3, 3), rgba(8, 50, 0, 7));
    EXPECT_EQ(bitmap.at(5, 2), rgba(100, 51, 2, 9));  // alpha kept

    // Hexagons 8 wide: rows 7 apart with a top zone 2 deep. Pixel (4, 7) opens
    // row 1 (shifted by 4) above its left slope, so it joins row 0's first cell.
    TestBitmap hex(16, 14);
    for (uint32_t y = 0; y < 14; ++y)
        for (uint32_t x = 0; x < 16; ++x) hex.at(x, y) = rgba(y < 7 ? 10 : 200, 0, 0);
    VokBlurModesHexagons(hex.get(), 8.0f);
    EXPECT_EQ(hex.at(4, 7), hex.at(3, 3));
    EXPECT_EQ(hex.at(7, 12).red, 200);  // the middle of a row-1 cell: all from below
    // Row 0's first cell holds pixels of 10 and the six it takes from row 1's
    // top zone (all 200): its mean lies between.
    EXPECT_GT(hex.at(3, 3).red, 10);
    EXPECT_LT(hex.at(3, 3).red, 200);
}

TEST(Mosaics, EveryModeKeepsUniformPhotosAndOnlyPaintsCellMeans) {
    for (const auto &mode : kMosaics) {
        SCOPED_TRACE(mode.name);
        TestBitmap flat(37, 23);
        flat.fill(rgba(90, 140, 30, 77));
        mode.run(flat.get(), 0.0f);
        for (uint32_t i = 0; i < 37 * 23; ++i)
            ASSERT_EQ(flat.at(i % 37, i / 37), rgba(90, 140, 30, 77));

        // Black and white stripes: every cell mean is a grey, so any colour
        // that is not a grey came from outside the cells.
        TestBitmap two(41, 29);
        for (uint32_t y = 0; y < 29; ++y)
            for (uint32_t x = 0; x < 41; ++x)
                two.at(x, y) = (x / 3 + y / 5) % 2 ? rgba(0, 0, 0) : rgba(255, 255, 255);
        mode.run(two.get(), 6.0f);
        for (uint32_t i = 0; i < 41 * 29; ++i) {
            const VokColor c = two.at(i % 41, i / 41);
            ASSERT_TRUE(c.red == c.green && c.green == c.blue) << i;  // no new hue
        }
    }
}

TEST(Mosaics, SizesEdgesAndBadInput) {
    const TestBitmap photo = vok_test::coffee_crop();
    for (const auto &mode : kMosaics) {
        SCOPED_TRACE(mode.name);
        // A cell larger than the photo, odd sizes on thin bitmaps (the sanitizer
        // build checks that border cells never read outside), NaN and negative sizes.
        for (float size : {1e9f, 1e30f, 5.0f, 7.5f, -3.0f, NAN, 0.0f}) {
            for (const auto &dims :
                 {std::pair<uint32_t, uint32_t>{1, 1}, {1, 9}, {13, 1}, {31, 17}}) {
                TestBitmap b(dims.first, dims.second);
                b.randomize(dims.first * 7 + dims.second);
                mode.run(b.get(), size);
            }
        }
        TestBitmap nan_size(photo), default_size(photo);
        mode.run(nan_size.get(), NAN);
        mode.run(default_size.get(), 0.0f);
        EXPECT_EQ(nan_size.bytes(), default_size.bytes());
        EXPECT_NE(default_size.bytes(), photo.bytes());
        VokBitmap empty = {nullptr, 0, 0};
        mode.run(&empty, 0.0f);
        mode.run(nullptr, 0.0f);
    }
    // One cell: the whole photo becomes its mean.
    TestBitmap one(photo);
    VokBlurModesPixelateProcessor(one.get(), 1e9f);
    EXPECT_EQ(
        std::set<uint32_t>({one.at(0, 0).red, one.at(159, 119).red, one.at(80, 60).red}).size(),
        1u);
}

TEST(Mosaics, VoronoiRepeatsAndGoldenChecksums) {
    TestBitmap a = vok_test::coffee_crop(), b = vok_test::coffee_crop();
    VokBlurModesVoronoi(a.get(), 9.0f);
    VokBlurModesVoronoi(b.get(), 9.0f);
    EXPECT_EQ(a.bytes(), b.bytes());
    const uint64_t golden[] = {
        4395526733823944164ull,  7989887384963639152ull,  14417612574561253871ull,
        9578953644212563114ull,  14849029875801086965ull, 10801033371328698392ull,
        893357152967336629ull,   4593653104506586801ull,  13537886613987230713ull,
        10774330186907855018ull, 8200502664034836777ull,  6566949854074622873ull};
    for (size_t i = 0; i < std::size(kMosaics); ++i) {
        TestBitmap photo = vok_test::coffee_crop();
        kMosaics[i].run(photo.get(), 0.0f);
        EXPECT_EQ(vok_test::checksum(photo.get()), golden[i]) << kMosaics[i].name;
    }
}

TEST(UniformBox, BlursAndSharpensAlongOneAxis) {
    // W + H = 4000 at amount -20: half-width 2, a box of 5 with the ends repeated.
    TestBitmap row(3990, 10);
    row.fill(rgba(0, 0, 0));
    row.at(0, 0) = rgba(100, 100, 100);
    row.at(100, 3) = rgba(250, 0, 0);
    TestBitmap blurred(row), sharpened(row), down(row);
    VokConvolutionEffectsUniformSharpenX(blurred.get(), -20.0f);
    EXPECT_EQ(blurred.at(0, 0).red, 60);  // 3 x 100 of 5, rounded
    EXPECT_EQ(blurred.at(2, 0).red, 20);
    EXPECT_EQ(blurred.at(3, 0).red, 0);
    EXPECT_EQ(blurred.at(98, 3).red, 50);  // 250 / 5
    EXPECT_EQ(blurred.at(100, 2).red, 0);  // rows only
    VokConvolutionEffectsUniformSharpenX(sharpened.get(), 20.0f);
    EXPECT_EQ(sharpened.at(100, 3).red, 255);  // (750 - 50 + 1) / 2, clamped
    EXPECT_EQ(sharpened.at(99, 3).red, 0);     // (0 - 50 + 1) / 2 < 0
    VokConvolutionEffectsUniformSharpenY(down.get(), -20.0f);
    EXPECT_EQ(down.at(100, 1).red, 50);
    EXPECT_EQ(down.at(101, 3).red, 0);
    // The cost does not grow with the radius, and a huge one is still safe.
    TestBitmap wide(row);
    VokConvolutionEffectsUniformSharpenX(wide.get(), -1e30f);
    for (float bad : {0.0f, NAN}) {
        TestBitmap same(row);
        VokConvolutionEffectsUniformSharpenX(same.get(), bad);
        EXPECT_EQ(same.bytes(), row.bytes());
    }
}

TEST(MotionBlur, AveragesAlongTheAngle) {
    TestBitmap dot(21, 21);
    dot.fill(rgba(0, 0, 0));
    dot.at(10, 10) = rgba(250, 250, 250);
    TestBitmap across(dot), down(dot);
    VokConvolutionEffectsMotionBlur(across.get(), 5.0f, 0.0f);
    EXPECT_EQ(across.at(8, 10).red, 50);
    EXPECT_EQ(across.at(12, 10).red, 50);
    EXPECT_EQ(across.at(10, 9).red, 0);
    VokConvolutionEffectsMotionBlur(down.get(), 5.0f, 1.5707963f);
    EXPECT_EQ(down.at(10, 12).red, 50);
    EXPECT_EQ(down.at(12, 10).red, 0);
    for (float length : {1.0f, NAN, -4.0f}) {
        TestBitmap same(dot);
        VokConvolutionEffectsMotionBlur(same.get(), length, 0.3f);
        EXPECT_EQ(same.bytes(), dot.bytes()) << length;
    }
}
