// The flare engine: every type draws its own shape within the colour.
#include <gtest/gtest.h>

#include <vector>

#include "support/bitmaps.h"
#include "support/log_capture.h"
#include "vok/color.h"
#include "vok/generators.h"

using vok_test::rgba;
using vok_test::TestBitmap;

namespace {

const uint32_t kTypes[] = {0, 1, 2, 3, 4, 5, 6, 7, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18};

// The flare's opacity at every pixel of a w x h image: opaque white blended
// normally over black leaves exactly the opacity in each channel.
struct Intensity {
    uint32_t w, h;
    std::vector<int> v;
    int at(uint32_t x, uint32_t y) const { return v[y * w + x]; }
    long total() const {
        long sum = 0;
        for (int i : v) sum += i;
        return sum;
    }
};

Intensity intensity(uint32_t type, float scale = 0.5f, float dx = 0.5f, float dy = 0.5f,
                    float dsx = 1.0f, float dsy = 1.0f, double strength = 1.0, uint32_t w = 64,
                    uint32_t h = 64) {
    TestBitmap bitmap(w, h);
    bitmap.fill(rgba(0, 0, 0));
    EXPECT_EQ(1, VokFlare(bitmap.get(), scale, rgba(255, 255, 255), type, dx, dy, dsx, dsy,
                          kVokBlendNormal, strength));
    Intensity map{w, h, {}};
    for (uint32_t y = 0; y < h; ++y)
        for (uint32_t x = 0; x < w; ++x) map.v.push_back(bitmap.at(x, y).red);
    return map;
}

}  // namespace

TEST(Flare, EveryTypeDrawsWithinTheColourAndRepeats) {
    TestBitmap background(48, 40);
    background.randomize(11);
    for (uint32_t y = 0; y < 40; ++y)
        for (uint32_t x = 0; x < 48; ++x) {
            VokColor &p = background.at(x, y);
            p.red = p.green = p.blue = 100;
        }
    const VokColor color = rgba(250, 200, 50, 230);
    for (uint32_t type : kTypes) {
        TestBitmap first(background), second(background);
        ASSERT_EQ(1, VokFlare(first.get(), 0.6f, color, type, 0.5f, 0.5f, 1.0f, 1.0f,
                              kVokBlendNormal, 1.0));
        ASSERT_EQ(1, VokFlare(second.get(), 0.6f, color, type, 0.5f, 0.5f, 1.0f, 1.0f,
                              kVokBlendNormal, 1.0));
        EXPECT_EQ(first.bytes(), second.bytes()) << "type " << type;
        int changed = 0;
        for (uint32_t y = 0; y < 40; ++y) {
            for (uint32_t x = 0; x < 48; ++x) {
                const VokColor &p = first.at(x, y);
                changed += p.red != 100;
                ASSERT_EQ(background.at(x, y).alpha, p.alpha);
                ASSERT_TRUE(p.red >= 100 && p.red <= 250 && p.green >= 100 && p.green <= 200 &&
                            p.blue <= 100 && p.blue >= 50)
                    << "type " << type << " at " << x << "," << y;
            }
        }
        EXPECT_GT(changed, 10) << "type " << type;
    }
}

TEST(Flare, UnknownTypesAndEmptyFlaresLeaveTheImage) {
    TestBitmap bitmap(16, 16);
    bitmap.randomize(5);
    const std::vector<uint8_t> before = bitmap.bytes();
    const VokColor white = rgba(255, 255, 255);
    {
        vok_test::LogCapture log;
        EXPECT_EQ(0, VokFlare(bitmap.get(), 0.5f, white, 8, 0.5f, 0.5f, 1, 1, 0, 1.0));
        EXPECT_TRUE(log.only("Flare type 8 is not available.", 3));
    }
    EXPECT_EQ(0, VokFlare(bitmap.get(), 0.5f, white, kVokFlareTypeCount, 0.5f, 0.5f, 1, 1, 0, 1.0));
    EXPECT_EQ(1, VokFlare(bitmap.get(), 0.5f, rgba(255, 255, 255, 0), 1, 0.5f, 0.5f, 1, 1, 0, 1.0));
    EXPECT_EQ(1, VokFlare(bitmap.get(), 0.0f, white, 1, 0.5f, 0.5f, 1, 1, 0, 1.0));
    EXPECT_EQ(1, VokFlare(bitmap.get(), 0.5f, white, 1, 0.5f, 0.5f, -1, 1, 0, 1.0));
    EXPECT_EQ(1, VokFlare(bitmap.get(), 0.5f, white, 14, 0.5f, 0.5f, 1, 1, 0, 0.0));
    EXPECT_EQ(before, bitmap.bytes());
    EXPECT_EQ(0, VokFlare(nullptr, 0.5f, white, 1, 0.5f, 0.5f, 1, 1, 0, 1.0));
}

TEST(Flare, CentreStretchAndScalePlaceTheGlow) {
    // A round glow peaks at its centre, given as fractions of the image.
    Intensity glow = intensity(kVokFlareGaussianThing2, 0.3f, 0.25f, 0.75f, 1, 1, 1, 64, 32);
    EXPECT_GT(glow.at(16, 24), 240);
    EXPECT_GT(glow.at(16, 24), glow.at(24, 24));
    EXPECT_EQ(glow.at(12, 24), glow.at(19, 24));  // symmetric about x = 16
    EXPECT_EQ(0, glow.at(63, 0));
    // Stretched across, it reaches further sideways than down.
    glow = intensity(kVokFlareGaussianThing2, 0.3f, 0.5f, 0.5f, 2.0f, 1.0f);
    EXPECT_GT(glow.at(32 + 10, 32), glow.at(32, 32 + 10));
    // A larger scale lights more of the image.
    EXPECT_GT(intensity(kVokFlareGaussianThing2, 0.6f).total(),
              intensity(kVokFlareGaussianThing2, 0.3f).total());
    // The glows widen from the first to the third.
    EXPECT_LT(intensity(kVokFlareGaussianThing).total(), intensity(kVokFlareGaussianThing2).total());
    EXPECT_LT(intensity(kVokFlareGaussianThing2).total(), intensity(kVokFlareGaussianThing3).total());
}

TEST(Flare, ShapesAreRecognisable) {
    // Flare unit: 0.5 x 64 = 32 px, centre (32, 32).
    const Intensity sinc = intensity(kVokFlareSinc);
    EXPECT_LT(sinc.at(32 + 8, 32), sinc.at(32 + 12, 32));  // a dark gap before the first ring
    const Intensity star = intensity(kVokFlareStardom);
    EXPECT_GT(star.at(32 + 10, 32), 4 * star.at(32 + 9, 32 + 4));  // rays beat the gaps between
    EXPECT_GT(star.at(32 + 7, 32 + 7), 4 * star.at(32 + 9, 32 + 4));
    const Intensity lobes = intensity(kVokFlareLobes);
    EXPECT_GT(lobes.at(32 + 8, 32), 4 * lobes.at(32 - 8, 32));
    const Intensity stripe = intensity(kVokFlareStripe);
    EXPECT_GT(stripe.at(32 + 20, 32), 100);
    EXPECT_EQ(0, stripe.at(32, 32 + 6));
    const Intensity cross = intensity(kVokFlareCross);
    EXPECT_GT(cross.at(32 + 20, 32), 60);
    EXPECT_GT(cross.at(32, 32 - 20), 60);
    EXPECT_EQ(0, cross.at(32 + 14, 32 + 14));
    const Intensity diamond = intensity(kVokFlareDiamond);
    EXPECT_GT(diamond.at(32 + 10, 32), diamond.at(32 + 7, 32 + 7));
    EXPECT_EQ(0, diamond.at(32 + 16, 32 + 16));
    const Intensity corners = intensity(kVokFlareCorner);
    EXPECT_GT(corners.at(32 + 16, 32 + 16), 200);
    EXPECT_EQ(0, corners.at(32, 32));
    const Intensity ring = intensity(kVokFlareBlah);
    EXPECT_GT(ring.at(32 + 19, 32), 3 * ring.at(32 + 12, 32));
    const Intensity disc = intensity(kVokFlareBlob);
    EXPECT_EQ(255, disc.at(32 + 8, 32));
    EXPECT_EQ(0, disc.at(32 + 14, 32));
    const Intensity ghost = intensity(kVokFlareBlob2);
    EXPECT_GT(ghost.at(32 + 10, 32), 2 * ghost.at(32, 32));
    const Intensity tilted = intensity(kVokFlareAngleGaussian);
    EXPECT_GT(tilted.at(32 + 14, 32 - 8), 100);  // 30 degrees up to the right
    EXPECT_EQ(0, tilted.at(32 + 14, 32 + 8));
}

TEST(Flare, FingerReachesAsFarAsTheStrength) {
    const Intensity full = intensity(kVokFlareFinger, 0.5f, 0.25f, 0.5f, 1, 1, 1.0);
    const Intensity half = intensity(kVokFlareFinger, 0.5f, 0.25f, 0.5f, 1, 1, 0.5);
    EXPECT_GT(full.at(16 + 24, 32), 0);
    EXPECT_EQ(0, half.at(16 + 24, 32));
    EXPECT_GT(half.at(16 + 8, 32), 0);
    EXPECT_EQ(0, full.at(16 - 6, 32));  // one-sided: nothing far to the left
    EXPECT_EQ(0, full.at(16 + 8, 32 + 6));
    EXPECT_EQ(full.v, intensity(kVokFlareFinger, 0.5f, 0.25f, 0.5f, 1, 1, 3.0).v);
}

TEST(Flare, CroppedCanvasesDrawTheSamePixels) {
    // Each half of a 64 x 64 flare equals the flare drawn on a 32 x 64 canvas
    // with its centre on that canvas's edge (same unit: the longer side is 64
    // every time), so no visible part of any shape is skipped.
    for (uint32_t type : kTypes) {
        const Intensity whole = intensity(type, 0.5f, 0.5f, 0.4f, 1.2f, 0.8f, 1.0, 64, 64);
        const Intensity left = intensity(type, 0.5f, 1.0f, 0.4f, 1.2f, 0.8f, 1.0, 32, 64);
        const Intensity right = intensity(type, 0.5f, 0.0f, 0.4f, 1.2f, 0.8f, 1.0, 32, 64);
        for (uint32_t y = 0; y < 64; ++y) {
            for (uint32_t x = 0; x < 32; ++x) {
                ASSERT_EQ(whole.at(x, y), left.at(x, y)) << "type " << type << " at " << x << "," << y;
                ASSERT_EQ(whole.at(x + 32, y), right.at(x, y)) << "type " << type << " at " << x << "," << y;
            }
        }
    }
}
