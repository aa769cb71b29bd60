// Histogram maps, histograms and distributions, and the two tonal curves.
#include <gtest/gtest.h>

#include <cstring>
#include <tuple>
#include <math.h>

#include <vector>

#include "support/bitmaps.h"
#include "vok/tonal.h"

using vok_test::rgba;
using vok_test::TestBitmap;

namespace {

// Red falls, green halves, blue is constant.
VokHistMap sample_map() {
    VokHistMap map;
    for (int v = 0; v < 256; ++v) {
        map.table[0][v] = static_cast<uint8_t>(255 - v);
        map.table[1][v] = static_cast<uint8_t>(v / 2);
        map.table[2][v] = 9;
    }
    return map;
}

// A curve's levels, read back through a grey ramp.
std::vector<int> curve_of(void (*curve)(VokBitmap *, float), float parameter) {
    TestBitmap ramp(256, 1);
    for (uint32_t v = 0; v < 256; ++v) ramp.at(v, 0) = rgba(v, v, v);
    curve(ramp.get(), parameter);
    std::vector<int> levels(256);
    for (uint32_t v = 0; v < 256; ++v) levels[v] = ramp.at(v, 0).blue;
    return levels;
}

}  // namespace

TEST(HistMap, TransformAndIntensityMapOnSmallAndLargeBitmaps) {
    const VokHistMap map = sample_map();
    TestBitmap bitmap(2, 1);
    bitmap.at(0, 0) = rgba(100, 50, 200, 3);
    bitmap.at(1, 0) = rgba(255, 255, 255, 4);
    TestBitmap transformed(bitmap);
    VokBitmapHistogramTransform(transformed.get(), &map);
    EXPECT_EQ(transformed.at(0, 0), rgba(155, 25, 9, 3));
    // Luminance 71.46 picks level 71 (184, 35, 9); white picks 255.
    VokBitmapIntensityMap(bitmap.get(), &map, kVokBlendNormal, 1.0);
    EXPECT_EQ(bitmap.at(0, 0), rgba(184, 35, 9, 3));
    EXPECT_EQ(bitmap.at(1, 0), rgba(0, 127, 9, 4));

    // Large bitmaps blend through a table of channel pairs; it must agree
    // with the float family pixel by pixel in every mode.
    for (VokBlendMode mode = 0; mode <= 7; ++mode) {
        TestBitmap bitmap(512, 256);
        bitmap.randomize(mode);
        TestBitmap expected(bitmap);
        for (uint32_t i = 0; i < 512 * 256; ++i) {
            VokColor &c = expected.at(i % 512, i / 512);
            const float lum = 0.212671f * c.red + 0.71516f * c.green + 0.072169f * c.blue;
            const int level = lum > 254.5f ? 255 : static_cast<int>(double{lum} + 0.5);
            const VokColor mapped = rgba(map.table[0][level], map.table[1][level], map.table[2][level]);
            VokColorBlend(&c, &mapped, mode, 0.7f);
        }
        VokBitmapIntensityMap(bitmap.get(), &map, mode, 0.7);
        ASSERT_EQ(bitmap.bytes(), expected.bytes()) << "mode " << mode;
    }
}

TEST(HistMap, FadeComposeAndInvert) {
    VokHistMap map = sample_map(), faded = map, identity;
    VokHistMapSetIdentity(&identity);
    faded.table[2][5] = 250;
    VokHistMapFade(&faded, 2.0);
    EXPECT_EQ(faded.table[2][5], 255);  // -5 + 500
    EXPECT_EQ(faded.table[0][200], 0);  // -200 + 110
    VokHistMap zero;
    VokHistMapSet(&zero, std::vector<uint8_t>(256, 0).data(), std::vector<uint8_t>(256, 0).data(),
                  std::vector<uint8_t>(256, 0).data());
    VokHistMapFade(&zero, 0.5);
    EXPECT_EQ(zero.table[0][1], 1);    // 0.5 rounds half up
    EXPECT_EQ(zero.table[1][3], 2);    // 1.5
    EXPECT_EQ(zero.table[2][255], 128);  // 127.5

    // Composition applies the first map first: b(a(v)).
    VokHistMap a = sample_map(), b;
    VokHistMapSet(&b, identity.table[0], map.table[0], map.table[1]);
    VokHistMapMap(&a, &b);
    EXPECT_EQ(rgba(a.table[0][10], a.table[1][10], a.table[2][10]), rgba(245, 250, 4));  // 255 - 5, 9 / 2

    // The inverse is the smallest level reaching each value; unreached -> 255.
    for (int v = 0; v < 256; ++v) {
        a.table[0][v] = 100;
        a.table[1][v] = static_cast<uint8_t>(v < 128 ? 2 * v : 255);
    }
    VokHistMapInvert(&a);
    for (int v = 0; v < 256; ++v) {
        EXPECT_EQ(a.table[0][v], v <= 100 ? 0 : 255) << v;
        EXPECT_EQ(a.table[1][v], (v + 1) / 2) << v;
    }
}

TEST(Histogram, CountsDistributionsAndInverse) {
    TestBitmap bitmap(2, 1);
    bitmap.at(0, 0) = rgba(3, 4, 5, 0);
    bitmap.at(1, 0) = rgba(3, 200, 255, 0);
    std::vector<uint32_t> counts(768, 0);
    VokHistogramBuild(bitmap.get(), counts.data());
    VokHistogramBuild(bitmap.get(), counts.data());  // accumulates
    EXPECT_EQ(std::vector<uint32_t>({counts[3], counts[256 + 200], counts[512 + 255]}), std::vector<uint32_t>({4, 2, 2}));
    std::vector<double> cdf(768), ramp(256), steps(256, 1.0), short_of_one(256, 0.5);
    VokHistogram2CDF(counts.data(), cdf.data());
    EXPECT_EQ(std::vector<double>({cdf[3], cdf[256 + 199], cdf[512 + 254]}), std::vector<double>({1.0, 0.5, 0.5}));
    VokHistogram2CDFChan(std::vector<uint32_t>(256, 0).data(), ramp.data());  // empty: the uniform ramp
    EXPECT_EQ(ramp[255], 1.0);
    steps[0] = 0.5, steps[1] = 0.75;
    const std::tuple<const double *, double, double> inverses[] = {
        {ramp.data(), 0.5, 127.5}, {steps.data(), 0.25, 0.5}, {steps.data(), 0.875, 1.5}, {short_of_one.data(), 0.9, 255}};
    for (const auto &[table, p, level] : inverses) EXPECT_DOUBLE_EQ(VokCDFINV(table, p), level) << p;
}

TEST(Curves, ContrastAndGamma) {
    const std::vector<int> flat = curve_of(VokBitmapContrastCurve, 1.0f), steep = curve_of(VokBitmapContrastCurve, 0.0f);
    for (int v = 0; v < 256; ++v) {
        EXPECT_EQ(flat[v], v < 128 ? v : v - 1) << v;  // never 255
        EXPECT_EQ(steep[v], v == 0 ? 0 : v == 255 ? 254 : 127) << v;  // exponents 1e-8 and 1e8
    }
    EXPECT_EQ(curve_of(VokBitmapContrastCurve, 2.0f)[192], 217);  // 127 (sqrt(64/127) + 1) = 217.15

    const std::vector<int> same = curve_of(VokBitmapGamma, 1.0f), dark = curve_of(VokBitmapGamma, 2.0f);
    for (int v = 0; v < 256; ++v) EXPECT_EQ(same[v], v) << v;
    EXPECT_EQ(dark[128], 64);   // 255 (128/255)^2 = 64.25
    EXPECT_EQ(dark[200], 157);  // 156.86 + 0.5
    EXPECT_EQ(dark[255], 255);
    // Every level of several exponents against the plain single-precision rule.
    for (float e : {0.3f, 0.45f, 1.6f, 2.2f, 3.0f, 7.5f}) {
        const std::vector<int> curve = curve_of(VokBitmapGamma, e);
        for (int v = 0; v < 256; ++v) {
            const float y = 0.5f + 255.0f * powf(v * 0.003921569f, e);
            EXPECT_EQ(curve[v], y > 255.0f ? 255 : static_cast<int>(y)) << e << " " << v;
        }
    }
}
