// Film-grain noise: exact offsets from the seeded generator, clamping, and how
// the seed and the draw count line up.
#include <gtest/gtest.h>

#include <vector>

#include "support/bitmaps.h"
#include "vok/generators.h"

using vok_test::TestBitmap;
using vok_test::rgba;

namespace {

std::vector<uint8_t> noisy(TestBitmap image, void (*add)(VokBitmap *, float, uint32_t), float amount, uint32_t seed) {
    add(image.get(), amount, seed);
    return image.bytes();
}

}  // namespace

TEST(Noise, FirstOffsetsFromSeedZeroAreExactAndClamped) {
    // Seed 0 seeds the drawing generator with 1; its first draws are 69070,
    // 475628535 and 3277404108 of 2^32: offsets -254, -198, +134 at amount 1,
    // -127, -99, +67 at amount 0.5. Every pixel comes out opaque.
    TestBitmap row(3, 1), pixel(1, 1);
    row.at(0, 0) = rgba(200, 100, 254, 0);
    row.at(1, 0) = rgba(250, 198, 3, 17);
    row.at(2, 0) = rgba(121, 0, 130, 255);
    EXPECT_EQ(noisy(row, VokBitmapAddNoise, 1.0f, 0),
              (std::vector<uint8_t>{0, 0, 0, 255, 52, 0, 0, 255, 255, 134, 255, 255}));
    // Colour grain spends the same three draws on one pixel.
    pixel.at(0, 0) = rgba(128, 128, 128, 3);
    EXPECT_EQ(noisy(pixel, VokBitmapAddChannelIndependentNoise, 0.5f, 0), (std::vector<uint8_t>{1, 29, 195, 255}));
    EXPECT_EQ(noisy(pixel, VokBitmapAddChannelIndependentNoise, 0.0f, 5), (std::vector<uint8_t>{128, 128, 128, 255}));
}

TEST(Noise, SeedRepeatsAndTheNextSeedShiftsByOneDraw) {
    // Seed s and seed 69069 s + 1 draw the same offsets, the second one draw
    // ahead: a pixel for grey grain, a channel for colour grain (red, green, blue).
    const uint32_t seed = 987654321u, next_seed = 69069u * seed + 1u;
    TestBitmap grey(9, 4);
    grey.fill(rgba(128, 128, 128, 40));
    const std::vector<uint8_t> a = noisy(grey, VokBitmapAddNoise, 0.3f, seed);
    const std::vector<uint8_t> shifted = noisy(grey, VokBitmapAddNoise, 0.3f, next_seed);
    const std::vector<uint8_t> c = noisy(grey, VokBitmapAddChannelIndependentNoise, 0.3f, seed);
    const std::vector<uint8_t> cs = noisy(grey, VokBitmapAddChannelIndependentNoise, 0.3f, next_seed);
    EXPECT_EQ(a, noisy(grey, VokBitmapAddNoise, 0.3f, seed));
    for (size_t i = 0; i + 1 < 36; ++i) {
        EXPECT_EQ(shifted[4 * i], a[4 * i + 4]) << i;
        EXPECT_EQ(cs[4 * i], c[4 * i + 1]) << i;
        EXPECT_EQ(cs[4 * i + 1], c[4 * i + 2]) << i;
        EXPECT_EQ(cs[4 * i + 2], c[4 * i + 4]) << i;
    }
}
