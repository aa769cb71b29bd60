// Film-grain noise: exact offsets from the seeded generator, clamping,
// opacity, and how the seed and the draw count line up.
#include <gtest/gtest.h>

#include <vector>

#include "support/bitmaps.h"
#include "vok/generators.h"

using vok_test::TestBitmap;
using vok_test::rgba;

TEST(Noise, FirstOffsetsFromSeedZeroAreExactAndClamped) {
    // Seed 0 seeds the drawing generator with 1; its draws are the states
    // 69070, 475628535, 3277404108, i.e. offsets -254, -198 and +134 at amount 1.
    TestBitmap bitmap(3, 1);
    bitmap.at(0, 0) = rgba(200, 100, 254, 0);
    bitmap.at(1, 0) = rgba(250, 198, 3, 17);
    bitmap.at(2, 0) = rgba(121, 0, 130, 255);
    VokBitmapAddNoise(bitmap.get(), 1.0f, 0);
    const VokColor want[3] = {rgba(0, 0, 0), rgba(52, 0, 0), rgba(255, 134, 255)};
    for (uint32_t x = 0; x < 3; ++x) {
        EXPECT_EQ(bitmap.at(x, 0).red, want[x].red) << x;
        EXPECT_EQ(bitmap.at(x, 0).green, want[x].green) << x;
        EXPECT_EQ(bitmap.at(x, 0).blue, want[x].blue) << x;
        EXPECT_EQ(bitmap.at(x, 0).alpha, 255) << x;
    }

    // The channel-independent form spends the same three draws on one pixel.
    TestBitmap colour(1, 1);
    colour.at(0, 0) = rgba(250, 200, 100, 3);
    VokBitmapAddChannelIndependentNoise(colour.get(), 1.0f, 0);
    EXPECT_EQ(colour.at(0, 0).red, 0);
    EXPECT_EQ(colour.at(0, 0).green, 2);
    EXPECT_EQ(colour.at(0, 0).blue, 234);
    EXPECT_EQ(colour.at(0, 0).alpha, 255);

    // Amount 0 draws offsets of 0: only the alpha changes.
    TestBitmap still(1, 1);
    still.at(0, 0) = rgba(7, 8, 9, 10);
    VokBitmapAddChannelIndependentNoise(still.get(), 0.0f, 5);
    EXPECT_EQ(still.bytes(), (std::vector<uint8_t>{7, 8, 9, 255}));
}

TEST(Noise, SeedRepeatsAndTheNextSeedShiftsByOneDraw) {
    const uint32_t seed = 987654321u;
    const uint32_t next_seed = 69069u * seed + 1u;
    TestBitmap grey(9, 4);
    grey.fill(rgba(128, 128, 128, 40));
    TestBitmap a(grey), b(grey), shifted(grey);
    VokBitmapAddNoise(a.get(), 0.3f, seed);
    VokBitmapAddNoise(b.get(), 0.3f, seed);
    VokBitmapAddNoise(shifted.get(), 0.3f, next_seed);
    EXPECT_EQ(a.bytes(), b.bytes());
    std::vector<uint8_t> pa = a.bytes(), ps = shifted.bytes();
    // Grey grain: one draw per pixel, the same offset on all three channels.
    bool varied = false;
    for (size_t i = 0; i + 1 < pa.size() / 4; ++i) {
        EXPECT_EQ(ps[4 * i], pa[4 * (i + 1)]) << i;
        EXPECT_EQ(pa[4 * i], pa[4 * i + 1]);
        EXPECT_EQ(pa[4 * i], pa[4 * i + 2]);
        EXPECT_GE(pa[4 * i], 128 - 76);
        EXPECT_LE(pa[4 * i], 128 + 76);
        varied |= pa[4 * i] != pa[0];
    }
    EXPECT_TRUE(varied);

    // Colour grain: three draws per pixel, red, green, blue in that order,
    // so the next seed's red is this seed's green and its blue the next red.
    TestBitmap c(grey), cs(grey);
    VokBitmapAddChannelIndependentNoise(c.get(), 0.3f, seed);
    VokBitmapAddChannelIndependentNoise(cs.get(), 0.3f, next_seed);
    for (uint32_t i = 0; i + 1 < 36; ++i) {
        const VokColor &here = c.at(i % 9, i / 9);
        const VokColor &next = c.at((i + 1) % 9, (i + 1) / 9);
        const VokColor &moved = cs.at(i % 9, i / 9);
        EXPECT_EQ(moved.red, here.green) << i;
        EXPECT_EQ(moved.green, here.blue) << i;
        EXPECT_EQ(moved.blue, next.red) << i;
    }
}
