// The border engine: the vignette style and the refusal of the others.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/bitmaps.h"
#include "support/golden.h"
#include "support/log_capture.h"
#include "vok/color.h"
#include "vok/generators.h"

using vok_test::rgba;
using vok_test::TestBitmap;

namespace {

// The opacity the vignette gives each pixel, row by row: black blended
// normally over white leaves 255 - opacity in every channel.
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

}  // namespace

TEST(Borders, DefaultsAndOtherStyles) {
    VokBorderParams params;
    memset(&params, 0xAB, sizeof(params));
    VokBorderInitParams(&params);
    EXPECT_EQ(uint32_t{kVokBorderVignette}, params.style);
    EXPECT_EQ(rgba(0, 0, 0, 255), params.color);
    EXPECT_TRUE(params.blendMode == kVokBlendNormal && params.shapeMode == 0 &&
                params.stretch == 1 && params.scale == 1.0 && params.dx == 0.0 &&
                params.dy == 0.0 && params.seed == 0);

    TestBitmap bitmap(8, 8);
    bitmap.randomize(1);
    const std::vector<uint8_t> before = bitmap.bytes();
    for (uint32_t unknown : {0u, 17u, 1000u}) {
        params.style = unknown;
        vok_test::LogCapture log;
        EXPECT_EQ(0, VokBorders(bitmap.get(), &params));
        EXPECT_TRUE(log.only("Border style " + std::to_string(unknown) + " is not available.", 3));
    }
    EXPECT_EQ(before, bitmap.bytes());
    params.style = kVokBorderTorn;
    EXPECT_EQ(0, VokBorders(nullptr, &params));
    EXPECT_EQ(0, VokBorders(bitmap.get(), nullptr));
}

TEST(Borders, OpacityGrowsOutwardUpToTheColourAlpha) {
    VokBorderParams params;
    VokBorderInitParams(&params);
    const std::vector<int> map = opacity_map(41, 31, params);
    for (int x = 21; x < 41; ++x) EXPECT_GE(map[15 * 41 + x], map[15 * 41 + x - 1]);
    for (int x = 19; x >= 0; --x) EXPECT_GE(map[15 * 41 + x], map[15 * 41 + x + 1]);
    for (int y = 16; y < 31; ++y) EXPECT_GE(map[y * 41 + 20], map[(y - 1) * 41 + 20]);
    params.color.alpha = 100;
    EXPECT_EQ(100, opacity_map(41, 31, params)[0]);
}

// Opacities at one pixel: exact where the falloff is pinned, else bounds.
TEST(Borders, ShapeOffsetAndScalePlaceTheFalloff) {
    struct Case {
        uint32_t w, h, shape;
        uint8_t stretch;
        double scale, dx, dy;
        int x, y, lo, hi;
    };
    const Case cases[] = {
        {41, 31, 0, 1, 1.0, 0, 0, 20, 15, 0, 0},  // clear in the middle, full at the corners
        {41, 31, 0, 1, 1.0, 0, 0, 0, 0, 255, 255},
        // 36,20: 16.5 px from the centre across, 0.5 down, table step 2789 of 4095.
        {40, 40, kVokBorderShapeNormal, 1, 1.0, 0, 0, 36, 20, 194, 194},
        {40, 40, kVokBorderShapeSharp, 1, 1.0, 0, 0, 36, 20, 151, 151},
        {40, 40, kVokBorderShapeMediumSharp, 1, 1.0, 0, 0, 36, 20, 114, 114},
        {40, 40, kVokBorderShapeUltraSharp, 1, 1.0, 0, 0, 36, 20, 60, 60},
        {40, 40, 9, 1, 1.0, 0, 0, 36, 20, 194, 194},
        {40, 40, 0, 1, 1.0, 0.5, -0.5, 30, 10, 0, 0},  // offsets are fractions of the half sides
        {40, 40, 0, 1, 1.0, 0.5, -0.5, 20, 20, 1, 255},
        {60, 20, 0, 0, 20.0, 0, 0, 42, 10, 255, 255},  // a diameter of 20 px, in either direction
        {60, 20, 0, 0, 20.0, 0, 0, 30, 0, 241, 255},
        {60, 20, 0, 1, 1.0, 0, 0, 42, 10, 0, 63},     // stretched: across the whole width
        {21, 21, 0, 1, 1e8, 0, 0, 0, 0, 0, 0},        // huge: clear even at the far corner
        {21, 21, 0, 1, 0.0, 0, 0, 10, 10, 255, 255},  // zero: covered even on the centre
    };
    for (const Case &c : cases) {
        const VokBorderParams params = {kVokBorderVignette,
                                        rgba(0, 0, 0),
                                        kVokBlendNormal,
                                        c.shape,
                                        c.stretch,
                                        c.scale,
                                        c.dx,
                                        c.dy,
                                        0};
        const int v = opacity_map(c.w, c.h, params)[c.y * c.w + c.x];
        EXPECT_TRUE(v >= c.lo && v <= c.hi)
            << v << " at " << c.x << "," << c.y << " shape " << c.shape << " scale " << c.scale;
    }
}

TEST(Borders, EveryModeMatchesThePerPixelBlend) {
    const uint32_t w = 24, h = 18;
    VokBorderParams params = {
        kVokBorderVignette, rgba(200, 90, 17), 0, kVokBorderShapeSharp, 1, 1.0, 0, 0, 0};
    const std::vector<int> opacity = opacity_map(w, h, params);
    TestBitmap source(w, h);
    source.randomize(3);
    for (uint32_t x = 0; x < w; ++x)
        source.at(x, 0) = x % 2 ? rgba(255, 0, 255, 17) : rgba(0, 255, 0, 17);
    for (VokBlendMode mode = 0; mode <= kVokBlendModeCount; ++mode) {
        TestBitmap drawn(source);
        params.blendMode = mode;
        ASSERT_EQ(1, VokBorders(drawn.get(), &params));
        for (uint32_t y = 0; y < h; ++y) {
            for (uint32_t x = 0; x < w; ++x) {
                VokColor expected = source.at(x, y), tint = params.color;
                tint.alpha = static_cast<uint8_t>(opacity[y * w + x]);
                VokColorBlendEmbededAlpha(&expected, &tint, mode);
                ASSERT_EQ(expected, drawn.at(x, y)) << "mode " << mode << " at " << x << "," << y;
            }
        }
    }
}

// Every framed style keeps the middle of a large photo and changes its outer
// band (the viewfinder draws a small cross in the very centre, and round
// corners only touch the corners); ragged styles repeat for a seed and move
// with it; tiny and one-pixel bitmaps are safe.
TEST(Borders, EveryStyleFramesThePhoto) {
    const TestBitmap photo = vok_test::coffee_crop();
    const uint64_t golden[16] = {
        2042258547634911718ull,  14146833802665611962ull, 14046420818081098592ull,
        16490768534647396007ull, 4067629502693643728ull,  1833676586321198133ull,
        11888538367282641587ull, 3725643313343985956ull,  14142042210866775421ull,
        16505465707073168538ull, 3181420878712207599ull,  14247282086586770561ull,
        3287702182422840120ull,  5191233467735637762ull,  226084302346686286ull,
        6631078226561150969ull};
    for (uint32_t style = kVokBorderHalftone; style <= kVokBorderViewfinder; ++style) {
        SCOPED_TRACE(style);
        VokBorderParams params;
        VokBorderInitParams(&params);
        params.style = style;
        params.seed = 3;
        params.color = rgba(250, 240, 220);
        TestBitmap framed(photo);
        ASSERT_EQ(1, VokBorders(framed.get(), &params));
        if (style != kVokBorderVignette && style != kVokBorderViewfinder) {
            for (uint32_t y = 45; y < 75; ++y)
                for (uint32_t x = 60; x < 100; ++x) ASSERT_EQ(framed.at(x, y), photo.at(x, y));
        }
        // A pixel of the band: a bracket one frame (6 px) in for the finder.
        const uint32_t bx = style == kVokBorderShadow ? 159 : style == kVokBorderViewfinder ? 6 : 0;
        const uint32_t by = style == kVokBorderViewfinder ? 113 : 119;
        EXPECT_NE(framed.at(bx, by), photo.at(bx, by));
        EXPECT_EQ(vok_test::checksum(framed.get()), golden[style - 1]);
        TestBitmap again(photo), reseeded(photo);
        VokBorders(again.get(), &params);
        EXPECT_EQ(again.bytes(), framed.bytes());
        params.seed = 4;
        VokBorders(reseeded.get(), &params);
        const bool seeded = style == kVokBorderRough || style == kVokBorderTorn ||
                            style == kVokBorderTorn2 || style == kVokBorderHardRand;
        EXPECT_EQ(reseeded.bytes() != framed.bytes(), seeded);
        for (const auto &size : {std::pair<uint32_t, uint32_t>{1, 1}, {1, 7}, {9, 1}}) {
            TestBitmap tiny(size.first, size.second);
            EXPECT_EQ(1, VokBorders(tiny.get(), &params));
        }
    }
}
