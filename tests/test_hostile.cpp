// Hostile input to the engines: empty bitmaps, extreme indices and far-off
// parameters never crash, never touch memory they should not, and draw nothing.
// The sanitizer build is where these earn their keep.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <vector>

#include "support/bitmaps.h"
#include "vok/color.h"
#include "vok/generators.h"
#include "vok/tonal.h"
#include "vok/tools.h"

using vok_test::rgba;

namespace {

// Zero-width and zero-height bitmaps over a guarded buffer: any write at all
// shows in the guard, any read past it in the sanitizer.
struct EmptyBitmap {
    EmptyBitmap(uint32_t w, uint32_t h) : guard(16, 0xA5) { bitmap = {guard.data(), w, h}; }
    bool untouched() const { return guard == std::vector<uint8_t>(16, 0xA5); }
    std::vector<uint8_t> guard;
    VokBitmap bitmap;
};

}  // namespace

TEST(Hostile, EmptyBitmapsDrawNothing) {
    for (const auto &size : {std::pair<uint32_t, uint32_t>{0, 5}, {5, 0}, {0, 0}}) {
        EmptyBitmap e(size.first, size.second);
        VokBitmap *b = &e.bitmap;
        SCOPED_TRACE(std::to_string(size.first) + "x" + std::to_string(size.second));
        for (uint32_t type = 0; type < kVokFlareTypeCount; ++type)
            EXPECT_EQ(type != kVokFlareUnnamed8, VokFlare(b, 0.5f, rgba(255, 255, 255), type, 0.5f, 0.5f, 1, 1,
                                  kVokBlendNormal, 1.0));
        VokConvolutionEffectBoxHybridSharpen(b, 100.0f);
        VokConvolutionEffectBoxHybridSharpen(b, -100.0f);
        EXPECT_EQ(0, VokConvolutionEffectSoftFocus(b));  // no working copy of nothing
        VokBitmapAddNoise(b, 0.5f, 1);
        VokBitmapAddChannelIndependentNoise(b, 0.5f, 1);
        VokLocalContrastEnhance(b);
        VokNightEnhance(b);
        VokToolSharpness(b, 0, 50.0);
        VokBitmapContrastCurve(b, 0.5f);
        VokBitmapGamma(b, 2.0f);
        VokBitmapConvertRGBToLAB(b);
        VokBitmapConvertLABToRBG(b, 1.0f, 1.0f);
        VokWhiten(b, b);
        VokBorderParams border;
        VokBorderInitParams(&border);
        VokBorders(b, &border);
        EXPECT_TRUE(e.untouched());
    }
}

TEST(Hostile, MidpointDisplacementRefusesRangesItCannotIndex) {
    // Indices whose difference or sum overflows 32 bits, or that start before
    // the array: nothing is written.
    std::vector<float> values(8, 1.0f);
    const int32_t ranges[][2] = {{INT32_MIN, 1}, {INT32_MAX, INT32_MIN}, {-4, 3}, {5, 5}, {6, 2}};
    VokRNG rng;
    VokRNGSeed(&rng, 3);
    for (const auto &r : ranges) {
        EXPECT_EQ(1, VokMPD(values.data(), r[0], r[1], 1.0f, 0.5f, 0));
        EXPECT_EQ(1, VokMPDSeed(values.data(), r[0], r[1], 1.0f, 0.5f, 1, 9));
        EXPECT_EQ(1, VokMPDRNG(values.data(), r[0], r[1], 1.0f, 0.5f, 2, &rng));
        EXPECT_EQ(values, std::vector<float>(8, 1.0f)) << r[0] << " " << r[1];
    }
}
