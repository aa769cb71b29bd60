// Histogram maps, histograms and distributions, and the two tonal curves.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "support/bitmaps.h"
#include "vok/tonal.h"

using vok_test::rgba;
using vok_test::TestBitmap;

namespace {

VokHistMap identity_map() {
    VokHistMap map;
    VokHistMapSetIdentity(&map);
    return map;
}

// Level table of a curve, read back through a 256 x 1 grey ramp.
std::vector<int> curve_of(void (*curve)(VokBitmap *, float), float parameter) {
    TestBitmap ramp(256, 1);
    for (uint32_t v = 0; v < 256; ++v) ramp.at(v, 0) = rgba(v, v, v, static_cast<uint8_t>(255 - v));
    curve(ramp.get(), parameter);
    std::vector<int> levels(256);
    for (uint32_t v = 0; v < 256; ++v) {
        EXPECT_EQ(ramp.at(v, 0).green, ramp.at(v, 0).red);
        EXPECT_EQ(ramp.at(v, 0).alpha, 255 - v);
        levels[v] = ramp.at(v, 0).red;
    }
    return levels;
}

}  // namespace

TEST(HistogramTransform, EachChannelReadsItsOwnTable) {
    VokHistMap map = identity_map();
    TestBitmap bitmap(5, 4);
    bitmap.randomize(7);
    TestBitmap original(bitmap);
    VokBitmapHistogramTransform(bitmap.get(), &map);
    EXPECT_EQ(bitmap.bytes(), original.bytes());

    for (int v = 0; v < 256; ++v) {
        map.table[0][v] = static_cast<uint8_t>(255 - v);
        map.table[1][v] = static_cast<uint8_t>(v / 2);
        map.table[2][v] = 9;
    }
    VokBitmapHistogramTransform(bitmap.get(), &map);
    for (uint32_t y = 0; y < 4; ++y)
        for (uint32_t x = 0; x < 5; ++x) {
            const VokColor &o = original.at(x, y), &c = bitmap.at(x, y);
            EXPECT_EQ(c.red, 255 - o.red);
            EXPECT_EQ(c.green, o.green / 2);
            EXPECT_EQ(c.blue, 9);
            EXPECT_EQ(c.alpha, o.alpha);
        }
}

TEST(IntensityMap, LooksUpByLuminanceThenBlends) {
    VokHistMap map;
    for (int v = 0; v < 256; ++v) {
        map.table[0][v] = static_cast<uint8_t>(255 - v);
        map.table[1][v] = static_cast<uint8_t>(v / 2);
        map.table[2][v] = 9;
    }
    TestBitmap bitmap(3, 1);
    // Luminances 71.46 (index 71), 255 (index 255) and 0.
    bitmap.at(0, 0) = rgba(100, 50, 200, 3);
    bitmap.at(1, 0) = rgba(255, 255, 255, 4);
    bitmap.at(2, 0) = rgba(0, 0, 0, 5);
    TestBitmap half(bitmap), black(bitmap);
    VokBitmapIntensityMap(bitmap.get(), &map, kVokBlendNormal, 1.0);
    EXPECT_EQ(std::memcmp(&bitmap.at(0, 0), "\xb8\x23\x09\x03", 4), 0);
    EXPECT_EQ(std::memcmp(&bitmap.at(1, 0), "\x00\x7f\x09\x04", 4), 0);
    EXPECT_EQ(std::memcmp(&bitmap.at(2, 0), "\xff\x00\x09\x05", 4), 0);

    // Half opacity: 0.5 * 184 + 0.5 * 100 + 0.5 = 142.5 -> 142.
    VokBitmapIntensityMap(half.get(), &map, kVokBlendNormal, 0.5);
    EXPECT_EQ(half.at(0, 0).red, 142);
    EXPECT_EQ(half.at(0, 0).green, 43);
    EXPECT_EQ(half.at(0, 0).blue, 105);
    // The float family knows modes 0 to 6 only.
    VokBitmapIntensityMap(black.get(), &map, kVokBlendLighten, 0.0);
    for (uint32_t x = 0; x < 3; ++x) {
        EXPECT_EQ(black.at(x, 0).red + black.at(x, 0).green + black.at(x, 0).blue, 0);
        EXPECT_EQ(black.at(x, 0).alpha, 3 + x);
    }
}

TEST(HistMapAlgebra, FadeComposeCopyAndSet) {
    VokHistMap map;
    uint8_t red[256], green[256], blue[256];
    for (int v = 0; v < 256; ++v) {
        red[v] = static_cast<uint8_t>(v * 37 % 256);  // not monotonic
        green[v] = 255;
        blue[v] = static_cast<uint8_t>(v < 10 ? 250 : v);
    }
    VokHistMapSet(&map, red, green, blue);
    EXPECT_EQ(std::memcmp(map.table[0], red, 256), 0);
    EXPECT_EQ(std::memcmp(map.table[2], blue, 256), 0);

    VokHistMap same = map;
    VokHistMapFade(&same, 1.0);
    EXPECT_EQ(std::memcmp(&same, &map, sizeof map), 0);
    VokHistMap faded = map;
    VokHistMapFade(&faded, 0.0);
    VokHistMap identity = identity_map();
    EXPECT_EQ(std::memcmp(&faded, &identity, sizeof map), 0);
    faded = map;
    VokHistMapFade(&faded, 0.5);
    EXPECT_EQ(faded.table[1][0], 128);    // 127.5 rounds up
    EXPECT_EQ(faded.table[1][100], 178);  // 177.5
    faded = map;
    VokHistMapFade(&faded, 2.0);
    EXPECT_EQ(faded.table[1][100], 255);  // -100 + 510 clamps
    EXPECT_EQ(faded.table[2][100], 100);
    EXPECT_EQ(faded.table[2][5], 255);    // -5 + 500
    EXPECT_EQ(faded.table[0][200], 255);  // entry 232: -200 + 464
}

TEST(HistMapAlgebra, ComposeAppliesTheFirstMapFirst) {
    VokHistMap a, b;
    for (int c = 0; c < 3; ++c)
        for (int v = 0; v < 256; ++v) {
            a.table[c][v] = static_cast<uint8_t>(v < 255 ? v + 1 : 255);
            b.table[c][v] = static_cast<uint8_t>(v < 128 ? 2 * v : 255 - c);
        }
    VokHistMap copy;
    VokHistMapCopy(&copy, &a);
    EXPECT_EQ(std::memcmp(&copy, &a, sizeof a), 0);
    VokHistMapMap(&a, &b);
    EXPECT_EQ(a.table[0][10], 22);   // b(a(10)) = 2 * 11
    EXPECT_EQ(a.table[1][126], 254);
    EXPECT_EQ(a.table[1][127], 254);  // a(127) = 128 -> 255 - 1
    EXPECT_EQ(a.table[2][127], 253);
}

TEST(HistMapAlgebra, InvertSearchesForwardOnly) {
    VokHistMap map = identity_map();
    VokHistMapInvert(&map);
    VokHistMap identity = identity_map();
    EXPECT_EQ(std::memcmp(&map, &identity, sizeof map), 0);

    for (int c = 0; c < 3; ++c)
        for (int v = 0; v < 256; ++v) map.table[c][v] = 100;
    // Doubling on green: v -> min(2v, 255).
    for (int v = 0; v < 256; ++v) map.table[1][v] = static_cast<uint8_t>(v < 128 ? 2 * v : 255);
    VokHistMapInvert(&map);
    for (int v = 0; v < 256; ++v) {
        EXPECT_EQ(map.table[0][v], v <= 100 ? 0 : 255) << v;
        EXPECT_EQ(map.table[1][v], (v + 1) / 2) << v;
    }
}

TEST(Histogram, CountsAccumulateAndDistributionsNormalise) {
    TestBitmap bitmap(2, 1);
    bitmap.at(0, 0) = rgba(3, 4, 5, 0);
    bitmap.at(1, 0) = rgba(3, 200, 255, 0);
    std::vector<uint32_t> counts(768, 0);
    VokHistogramBuild(bitmap.get(), counts.data());
    VokHistogramBuild(bitmap.get(), counts.data());
    EXPECT_EQ(counts[3], 4u);
    EXPECT_EQ(counts[256 + 4], 2u);
    EXPECT_EQ(counts[256 + 200], 2u);
    EXPECT_EQ(counts[512 + 255], 2u);
    EXPECT_EQ(counts[0], 0u);  // alpha is not counted anywhere

    std::vector<double> cdf(768);
    VokHistogram2CDF(counts.data(), cdf.data());
    EXPECT_EQ(cdf[2], 0.0);
    EXPECT_EQ(cdf[3], 1.0);
    EXPECT_EQ(cdf[256 + 4], 0.5);
    EXPECT_EQ(cdf[256 + 199], 0.5);
    EXPECT_EQ(cdf[256 + 200], 1.0);
    EXPECT_EQ(cdf[512 + 254], 0.5);

    std::vector<uint32_t> empty(256, 0);
    std::vector<double> ramp(256);
    VokHistogram2CDFChan(empty.data(), ramp.data());
    EXPECT_EQ(ramp[0], 0.0);
    EXPECT_DOUBLE_EQ(ramp[51], 0.2);
    EXPECT_EQ(ramp[255], 1.0);
}

TEST(Histogram, InverseDistributionInterpolates) {
    std::vector<uint32_t> empty(256, 0);
    std::vector<double> ramp(256);
    VokHistogram2CDFChan(empty.data(), ramp.data());
    EXPECT_DOUBLE_EQ(VokCDFINV(ramp.data(), 0.5), 127.5);
    EXPECT_EQ(VokCDFINV(ramp.data(), 0.0), 0.0);
    EXPECT_EQ(VokCDFINV(ramp.data(), -3.0), 0.0);
    EXPECT_EQ(VokCDFINV(ramp.data(), 1.0), 255.0);

    // Half the pixels at level 0: p up to 0.5 scales inside level 0.
    std::vector<double> cdf(256, 1.0);
    cdf[0] = 0.5;
    cdf[1] = 0.75;
    EXPECT_DOUBLE_EQ(VokCDFINV(cdf.data(), 0.25), 0.5);
    EXPECT_DOUBLE_EQ(VokCDFINV(cdf.data(), 0.625), 0.5);
    EXPECT_DOUBLE_EQ(VokCDFINV(cdf.data(), 0.875), 1.5);

    std::vector<double> short_of_one(256, 0.5);
    EXPECT_EQ(VokCDFINV(short_of_one.data(), 0.9), 255.0);
}

TEST(Curves, ContrastPivotsAndNeverReaches255) {
    std::vector<int> flat = curve_of(VokBitmapContrastCurve, 1.0f);
    for (int v = 0; v < 256; ++v) EXPECT_EQ(flat[v], v < 128 ? v : v - 1) << v;

    std::vector<int> steep = curve_of(VokBitmapContrastCurve, 0.0f);  // exponents 1e-8 and 1e8
    EXPECT_EQ(steep[0], 0);
    for (int v = 1; v < 255; ++v) EXPECT_EQ(steep[v], 127) << v;
    EXPECT_EQ(steep[255], 254);

    std::vector<int> strong = curve_of(VokBitmapContrastCurve, 2.0f);
    EXPECT_EQ(strong[64], 32);   // 127 * (64/127)^2 = 32.25, + 0.5
    EXPECT_EQ(strong[127], 127);
    EXPECT_EQ(strong[128], 127);
    EXPECT_EQ(strong[192], 217);  // 127 * (sqrt(64/127) + 1) = 217.15
    EXPECT_EQ(strong[255], 254);
}

TEST(Curves, GammaFixesTheEnds) {
    std::vector<int> same = curve_of(VokBitmapGamma, 1.0f);
    for (int v = 0; v < 256; ++v) EXPECT_EQ(same[v], v) << v;
    std::vector<int> dark = curve_of(VokBitmapGamma, 2.0f);
    EXPECT_EQ(dark[0], 0);
    EXPECT_EQ(dark[128], 64);  // 255 * (128/255)^2 = 64.25
    EXPECT_EQ(dark[255], 255);
    std::vector<int> light = curve_of(VokBitmapGamma, 0.5f);
    EXPECT_EQ(light[64], 128);  // 255 * sqrt(64/255) = 127.75
    EXPECT_EQ(light[255], 255);
}
