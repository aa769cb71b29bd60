// The border engine: the vignette style and the refusal of the others.
#include <gtest/gtest.h>

#include <vector>

#include "support/bitmaps.h"
#include "support/log_capture.h"
#include "vok/color.h"
#include "vok/generators.h"

using vok_test::rgba;
using vok_test::TestBitmap;

namespace {

VokBorderParams vignette(VokColor color, VokBlendMode mode = kVokBlendNormal) {
    VokBorderParams params;
    VokBorderInitParams(&params);
    params.color = color;
    params.blendMode = mode;
    return params;
}

// The opacity the vignette gives each pixel: black blended normally over
// white leaves 255 - opacity in every channel.
std::vector<int> opacity_map(uint32_t w, uint32_t h, VokBorderParams params) {
    TestBitmap bitmap(w, h);
    bitmap.fill(rgba(255, 255, 255));
    params.color = rgba(0, 0, 0, params.color.alpha);
    params.blendMode = kVokBlendNormal;
    EXPECT_EQ(1, VokBorders(bitmap.get(), &params));
    std::vector<int> map;
    for (uint32_t y = 0; y < h; ++y)
        for (uint32_t x = 0; x < w; ++x) map.push_back(255 - bitmap.at(x, y).red);
    return map;
}

long total(const std::vector<int> &map) {
    long sum = 0;
    for (int v : map) sum += v;
    return sum;
}

}  // namespace

TEST(Borders, DefaultsDescribeAnOpaqueBlackStretchedVignette) {
    VokBorderParams params;
    memset(&params, 0xAB, sizeof(params));
    VokBorderInitParams(&params);
    EXPECT_EQ(uint32_t{kVokBorderVignette}, params.style);
    EXPECT_EQ(1, VokColorCompare(&params.color, &(const VokColor &)rgba(0, 0, 0, 255)));
    EXPECT_EQ(0u, params.blendMode);
    EXPECT_EQ(0u, params.shapeMode);
    EXPECT_EQ(1, params.stretch);
    EXPECT_EQ(1.0, params.scale);
    EXPECT_EQ(0.0, params.dx);
    EXPECT_EQ(0.0, params.dy);
    EXPECT_EQ(0u, params.seed);
}

TEST(Borders, VignetteIsClearInTheMiddleAndFullAtTheCorners) {
    TestBitmap bitmap(41, 31);
    bitmap.randomize(7);
    const TestBitmap original(bitmap);
    VokBorderParams params = vignette(rgba(10, 20, 30));
    ASSERT_EQ(1, VokBorders(bitmap.get(), &params));
    // The centre pixel keeps its colour, the corners take the colour fully.
    EXPECT_EQ(1, VokColorCompare(&bitmap.at(20, 15), &original.at(20, 15)));
    for (auto [x, y] : {std::pair{0, 0}, {40, 0}, {0, 30}, {40, 30}}) {
        EXPECT_EQ(10, bitmap.at(x, y).red);
        EXPECT_EQ(20, bitmap.at(x, y).green);
        EXPECT_EQ(30, bitmap.at(x, y).blue);
    }
    for (uint32_t y = 0; y < 31; ++y)
        for (uint32_t x = 0; x < 41; ++x) ASSERT_EQ(original.at(x, y).alpha, bitmap.at(x, y).alpha);

    // The opacity never falls from the centre outward, along a row or a column.
    const std::vector<int> map = opacity_map(41, 31, params);
    EXPECT_EQ(0, map[15 * 41 + 20]);
    for (int x = 21; x < 41; ++x) EXPECT_GE(map[15 * 41 + x], map[15 * 41 + x - 1]);
    for (int x = 19; x >= 0; --x) EXPECT_GE(map[15 * 41 + x], map[15 * 41 + x + 1]);
    for (int y = 16; y < 31; ++y) EXPECT_GE(map[y * 41 + 20], map[(y - 1) * 41 + 20]);
    // Stretched to the image, the ellipse of full colour touches the sides.
    EXPECT_GT(map[15 * 41 + 0], 240);
    EXPECT_GT(map[0 * 41 + 20], 240);
    EXPECT_LT(map[15 * 41 + 5], 255);

    // The colour's alpha caps the opacity.
    params.color.alpha = 100;
    EXPECT_EQ(100, opacity_map(41, 31, params)[0]);
}

TEST(Borders, SteeperShapeModesKeepMoreOfTheMiddleClear) {
    VokBorderParams params = vignette(rgba(0, 0, 0));
    params.scale = 1.4;
    long previous = 0;
    for (uint32_t mode : {kVokBorderShapeNormal, kVokBorderShapeSharp, kVokBorderShapeMediumSharp,
                          kVokBorderShapeUltraSharp}) {
        params.shapeMode = mode;
        const long darkness = total(opacity_map(40, 40, params));
        if (mode != kVokBorderShapeNormal) {
            EXPECT_LT(darkness, previous) << "shape mode " << mode;
        }
        previous = darkness;
    }
    // An unknown shape mode falls back to normal.
    params.shapeMode = kVokBorderShapeNormal;
    const std::vector<int> normal = opacity_map(40, 40, params);
    params.shapeMode = 9;
    EXPECT_EQ(normal, opacity_map(40, 40, params));
}

TEST(Borders, OffsetMovesTheClearAreaAndScaleSizesIt) {
    VokBorderParams params = vignette(rgba(0, 0, 0));
    // dx is a fraction of the half width: 0.5 puts the centre at three quarters.
    params.dx = 0.5;
    params.dy = -0.5;
    std::vector<int> map = opacity_map(40, 40, params);
    EXPECT_EQ(0, map[10 * 40 + 30]);
    EXPECT_GT(map[20 * 40 + 20], 0);
    EXPECT_GT(map[10 * 40 + 0], map[10 * 40 + 39]);

    // An absolute scale is a diameter in pixels, the same both ways.
    params = vignette(rgba(0, 0, 0));
    params.stretch = 0;
    params.scale = 20.0;
    map = opacity_map(60, 20, params);
    EXPECT_EQ(255, map[10 * 60 + 30 + 12]);  // 12 px out: beyond the 10 px radius
    EXPECT_GT(map[0 * 60 + 30], 240);  // 9.5 px up: nearly at the rim
    EXPECT_LT(map[10 * 60 + 30 + 6], 255);
    // Stretched, the same scale of 1 reaches across the whole width.
    params.stretch = 1;
    params.scale = 1.0;
    map = opacity_map(60, 20, params);
    EXPECT_LT(map[10 * 60 + 30 + 12], 64);
    EXPECT_GT(map[10 * 60 + 0], 240);

    // A huge scale (what a weak effect strength gives) leaves the image alone;
    // a zero scale covers it.
    params.scale = 1e8;
    EXPECT_EQ(0, total(opacity_map(20, 20, params)));
    params.scale = 0.0;
    EXPECT_EQ(255L * 400, total(opacity_map(20, 20, params)));
}

TEST(Borders, EveryModeMatchesThePerPixelBlend) {
    const uint32_t w = 24, h = 18;
    VokBorderParams params = vignette(rgba(200, 90, 17));
    params.shapeMode = kVokBorderShapeSharp;
    const std::vector<int> opacity = opacity_map(w, h, params);
    TestBitmap source(w, h);
    source.randomize(3);
    // Boundary levels in the first row.
    for (uint32_t x = 0; x < w; ++x) {
        const uint8_t v = x % 2 ? 255 : 0;
        source.at(x, 0) = rgba(v, 255 - v, v, 17);
    }
    for (VokBlendMode mode = 0; mode <= kVokBlendModeCount; ++mode) {
        TestBitmap drawn(source);
        params.blendMode = mode;
        ASSERT_EQ(1, VokBorders(drawn.get(), &params));
        for (uint32_t y = 0; y < h; ++y) {
            for (uint32_t x = 0; x < w; ++x) {
                VokColor expected = source.at(x, y);
                VokColor tint = params.color;
                tint.alpha = static_cast<uint8_t>(opacity[y * w + x]);
                VokColorBlendEmbededAlpha(&expected, &tint, mode);
                ASSERT_EQ(1, VokColorCompare(&expected, &drawn.at(x, y)))
                    << "mode " << mode << " at " << x << "," << y;
            }
        }
    }
}

TEST(Borders, OtherStylesAreRefusedWithAMessage) {
    TestBitmap bitmap(8, 8);
    bitmap.randomize(1);
    const std::vector<uint8_t> before = bitmap.bytes();
    VokBorderParams params = vignette(rgba(0, 0, 0));
    params.style = kVokBorderTorn;
    vok_test::LogCapture log;
    EXPECT_EQ(0, VokBorders(bitmap.get(), &params));
    EXPECT_TRUE(log.only("Border style 8 is not available yet.", 3));
    EXPECT_EQ(before, bitmap.bytes());
    EXPECT_EQ(0, VokBorders(nullptr, &params));
    EXPECT_EQ(0, VokBorders(bitmap.get(), nullptr));
}
