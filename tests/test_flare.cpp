// The flare engine: every type draws its own shape within the colour.
#include <gtest/gtest.h>

#include <vector>

#include "support/bitmaps.h"
#include "support/log_capture.h"
#include "vok/generators.h"

using vok_test::rgba;
using vok_test::TestBitmap;

namespace {

const uint32_t kTypes[] = {0, 1, 2, 3, 4, 5, 6, 7, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18};

// The flare's opacity at every pixel, row by row: opaque white blended
// normally over black leaves exactly the opacity in each channel.
std::vector<int> intensity(uint32_t type, float scale = 0.5f, float dx = 0.5f, float dy = 0.5f,
                           float dsx = 1.0f, float dsy = 1.0f, double strength = 1.0,
                           uint32_t w = 64, uint32_t h = 64) {
    TestBitmap bitmap(w, h);
    bitmap.fill(rgba(0, 0, 0));
    EXPECT_EQ(1, VokFlare(bitmap.get(), scale, rgba(255, 255, 255), type, dx, dy, dsx, dsy,
                          kVokBlendNormal, strength));
    std::vector<int> map;
    for (uint32_t y = 0; y < h; ++y)
        for (uint32_t x = 0; x < w; ++x) map.push_back(bitmap.at(x, y).red);
    return map;
}

}  // namespace

TEST(Flare, UnknownTypesAndEmptyFlaresLeaveTheImage) {
    TestBitmap bitmap(16, 16);
    bitmap.randomize(5);
    const std::vector<uint8_t> before = bitmap.bytes();
    const VokColor white = rgba(255, 255, 255);
    vok_test::LogCapture log;
    EXPECT_EQ(0, VokFlare(bitmap.get(), 0.5f, white, 8, 0.5f, 0.5f, 1, 1, 0, 1.0));
    EXPECT_TRUE(log.only("Flare type 8 is not available.", 3));
    EXPECT_EQ(0, VokFlare(bitmap.get(), 0.5f, white, kVokFlareTypeCount, 0.5f, 0.5f, 1, 1, 0, 1.0));
    EXPECT_EQ(1, VokFlare(bitmap.get(), 0.5f, rgba(255, 255, 255, 0), 1, 0.5f, 0.5f, 1, 1, 0, 1.0));
    EXPECT_EQ(1, VokFlare(bitmap.get(), 0.0f, white, 1, 0.5f, 0.5f, 1, 1, 0, 1.0));
    EXPECT_EQ(1, VokFlare(bitmap.get(), 0.5f, white, 1, 0.5f, 0.5f, -1, 1, 0, 1.0));
    EXPECT_EQ(1, VokFlare(bitmap.get(), 0.5f, white, 14, 0.5f, 0.5f, 1, 1, 0, 0.0));
    EXPECT_EQ(before, bitmap.bytes());
    EXPECT_EQ(0, VokFlare(nullptr, 0.5f, white, 1, 0.5f, 0.5f, 1, 1, 0, 1.0));
}

TEST(Flare, CentreStretchAndScalePlaceTheGlow) {
    const std::vector<int> glow = intensity(kVokFlareGaussianThing2, 0.3f, 0.25f, 0.75f, 1, 1, 1, 64, 32);
    EXPECT_GT(glow[24 * 64 + 16], 240);  // the centre, (16, 24)
    EXPECT_EQ(glow[24 * 64 + 12], glow[24 * 64 + 19]);
    const std::vector<int> wide = intensity(kVokFlareGaussianThing2, 0.3f, 0.5f, 0.5f, 2.0f, 1.0f);
    EXPECT_GT(wide[32 * 64 + 42], wide[42 * 64 + 32]);
}

// Points are offsets from the centre (32, 32); a flare unit is 0.5 x 64 = 32 px.
TEST(Flare, ShapesAreRecognisable) {
    struct Level { uint32_t type; int x, y, lo, hi; double strength = 1.0; };
    const Level levels[] = {
        {kVokFlareDiamond, 7, 0, 108, 108}, {kVokFlareDiamond, 10, 0, 72, 72}, {kVokFlareDiamond, 7, 7, 38, 38},
        {kVokFlareBlob, 8, 0, 255, 255}, {kVokFlareBlob, 14, 0, 0, 0}, {kVokFlareBlob2, 0, 0, 89, 89},
        {kVokFlareBlob2, 10, 0, 150, 255}, {kVokFlareSinc, 8, 0, 5, 20}, {kVokFlareSinc, 12, 0, 30, 45},
        {kVokFlareGaussianThing, 16, 0, 0, 0}, {kVokFlareGaussianThing2, 16, 0, 25, 35},
        {kVokFlareGaussianThing3, 16, 0, 125, 140}, {kVokFlareStripe, 20, 0, 101, 255},
        {kVokFlareStripe, 0, 6, 0, 0}, {kVokFlareCross, 20, 0, 61, 255}, {kVokFlareCross, 0, -20, 61, 255},
        {kVokFlareCross, 14, 14, 0, 0}, {kVokFlareCorner, 16, 16, 201, 255}, {kVokFlareCorner, 0, 0, 0, 0},
        {kVokFlareStardom, 10, 0, 15, 255}, {kVokFlareStardom, 7, 7, 15, 255}, {kVokFlareStardom, 9, 4, 0, 0},
        {kVokFlareLobes, 8, 0, 150, 255}, {kVokFlareLobes, -8, 0, 0, 0}, {kVokFlareBlah, 19, 0, 200, 255},
        {kVokFlareBlah, 12, 0, 0, 20}, {kVokFlareAngleGaussian, 14, -8, 101, 255}, {kVokFlareAngleGaussian, 14, 8, 0, 0},
        {kVokFlareFinger, 24, 0, 1, 255}, {kVokFlareFinger, 24, 0, 0, 0, 0.5}, {kVokFlareFinger, 8, 0, 1, 255, 0.5},
        {kVokFlareFinger, -6, 0, 0, 0}, {kVokFlareFinger, 8, 6, 0, 0},
    };
    for (const Level &c : levels) {
        const int v = intensity(c.type, 0.5f, 0.5f, 0.5f, 1, 1, c.strength)[(32 + c.y) * 64 + 32 + c.x];
        EXPECT_TRUE(v >= c.lo && v <= c.hi) << "type " << c.type << " at " << c.x << "," << c.y << ": " << v;
    }
    EXPECT_EQ(intensity(kVokFlareFinger), intensity(kVokFlareFinger, 0.5f, 0.5f, 0.5f, 1, 1, 3.0));
}

// Every type stays between the image and its colour, and each half of a 64 x 64 flare
// equals the flare on a 32 x 64 canvas centred on its edge (the unit follows the longer
// side, 64 each time): no visible part of a shape is skipped.
TEST(Flare, EveryTypeStaysWithinTheColourAndDrawsAllItsPixels) {
    for (uint32_t type : kTypes) {
        TestBitmap drawn(48, 40);
        drawn.fill(rgba(100, 100, 100, 77));
        ASSERT_EQ(1, VokFlare(drawn.get(), 0.6f, rgba(250, 200, 50, 230), type, 0.5f, 0.5f, 1, 1,
                              kVokBlendNormal, 1.0));
        int changed = 0;
        for (uint32_t y = 0; y < 40; ++y) {
            for (uint32_t x = 0; x < 48; ++x) {
                const VokColor &p = drawn.at(x, y);
                changed += p.red != 100;
                ASSERT_TRUE(p.alpha == 77 && p.red >= 100 && p.red <= 250 && p.green >= 100 &&
                            p.green <= 200 && p.blue <= 100 && p.blue >= 50)
                    << "type " << type << " at " << x << "," << y << ": " << p;
            }
        }
        EXPECT_GT(changed, 10) << "type " << type;
        const std::vector<int> left = intensity(type, 0.5f, 1.0f, 0.4f, 1.2f, 0.8f, 1.0, 32, 64);
        const std::vector<int> right = intensity(type, 0.5f, 0.0f, 0.4f, 1.2f, 0.8f, 1.0, 32, 64);
        std::vector<int> joined;
        for (uint32_t y = 0; y < 64; ++y) {
            joined.insert(joined.end(), left.begin() + y * 32, left.begin() + y * 32 + 32);
            joined.insert(joined.end(), right.begin() + y * 32, right.begin() + y * 32 + 32);
        }
        EXPECT_EQ(intensity(type, 0.5f, 0.5f, 0.4f, 1.2f, 0.8f, 1.0), joined) << "type " << type;
    }
}
