// RGB to and from scaled LAB, HSV and HSL.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "support/bitmaps.h"
#include "vok/color.h"

using vok_test::rgba;
using vok_test::TestBitmap;

namespace {

int max_error(const VokColor &a, const VokColor &b) {
    return std::max({std::abs(a.red - b.red), std::abs(a.green - b.green), std::abs(a.blue - b.blue)});
}

}  // namespace

TEST(Lab, TablesMatchTheirFormulas) {
    float linear[256], cube_root[1024];
    VokColorRGB2LABInitMapping(linear);
    VokColorRGB2LABInitMappingCbrt(cube_root);
    for (int i = 0; i < 256; ++i) {
        double c = i / 255.0;
        double expected = c <= 0.04045 ? 100.0 * c / 12.92 : 100.0 * std::pow((c + 0.055) / 1.055, 2.4);
        EXPECT_NEAR(linear[i], expected, 2e-6 * expected + 1e-6) << i;
    }
    EXPECT_EQ(linear[255], 100.0f);
    for (int k = 0; k < 1024; ++k) EXPECT_FLOAT_EQ(cube_root[k], static_cast<float>(std::cbrt(k / 1023.0))) << k;
}

TEST(Lab, KnownColoursAndTheCoarseCubeRootIndex) {
    VokColor white = rgba(255, 255, 255, 9), black = rgba(0, 0, 0, 200);
    VokColorRGB2LAB(&white);  // L = 100, but 100 * 2.55 truncates to 254
    VokColorRGB2LAB(&black);
    EXPECT_EQ(std::memcmp(&white, "\xfe\x7f\x7f\x09", 4), 0);
    EXPECT_EQ(std::memcmp(&black, "\x00\x7f\x7f\xc8", 4), 0);
    VokColorLAB2RGB(&black);
    EXPECT_EQ(std::memcmp(&black, "\x00\x00\x00\xc8", 4), 0);

    // The cube root is read at trunc(t * 1024) of a table on the step 1/1023.
    float linear[256], cube_root[1024];
    VokColorRGB2LABInitMapping(linear);
    VokColorRGB2LABInitMappingCbrt(cube_root);
    auto f = [&](double t) {
        return t <= 0.008856 ? 0.13793103448275862 + 7.787 * t : double{cube_root[static_cast<int>(t * 1024)]};
    };
    const double R = linear[200], G = linear[120], B = linear[40];
    const double x = 0.00433891 * R + 0.00376234915 * G + 0.0018990604648 * B;
    const double y = 0.002126 * R + 0.007152 * G + 0.000722 * B;
    const double z = 0.000177255 * R + 0.00109475308 * G + 0.0087295537 * B;
    VokColor orange = rgba(200, 120, 40);
    double L, a, b, Lp, ap, bp;
    VokColorRGB2LABDoublesWithCbrtMapping(&orange, &L, &a, &b);
    EXPECT_DOUBLE_EQ(L, (116 * f(y) - 16) * 2.55);
    EXPECT_DOUBLE_EQ(a, 500 * (f(x) - f(y)) + 127);
    EXPECT_DOUBLE_EQ(b, 200 * (f(y) - f(z)) + 127);
    // The caller's-table form takes powf cube roots instead: close, not equal.
    VokColorRGB2LABDoublesWithMapping(&orange, &Lp, &ap, &bp, linear);
    EXPECT_NEAR(bp, b, 1.0);
    VokColorRGB2LAB(&orange);
    EXPECT_EQ(orange.green, static_cast<int>(a));
}

TEST(Lab, BitmapRoundTripKeepsAlphaAndFactorsShiftTheNeutral) {
    TestBitmap bitmap(16, 16);
    for (uint32_t i = 0; i < 256; ++i)
        bitmap.at(i % 16, i / 16) = rgba(96 + 8 * (i % 16), 96 + 8 * (i / 16), 220 - 7 * (i % 16), i);
    TestBitmap original(bitmap);
    VokBitmapConvertRGBToLAB(bitmap.get());
    VokBitmapConvertLABToRBG(bitmap.get(), 1.0f, 1.0f);
    for (uint32_t i = 0; i < 256; ++i) {
        // The 1/1024 table steps cost a few levels on mid tones.
        EXPECT_LE(max_error(bitmap.at(i % 16, i / 16), original.at(i % 16, i / 16)), 7) << i;
        EXPECT_EQ(bitmap.at(i % 16, i / 16).alpha, i);
    }

    // A factor scales the stored byte before 127 is removed: 2 x 127 on the
    // a byte is strongly magenta, not neutral.
    VokColor neutral = rgba(150, 127, 127), shifted = neutral;
    VokColorLAB2RGB(&neutral);
    VokColorLAB2RGBScaled(&shifted, 1.0, 2.0, 1.0);
    EXPECT_GT(shifted.red, neutral.red + 50);
    EXPECT_LT(shifted.green, neutral.green - 50);
}

TEST(Hsv, ValueIsTheLargestChannelAndHueIsInDegrees) {
    struct Case { VokColor c; float h, s, v; } cases[] = {
        {rgba(10, 10, 10), 0, 0, 10},
        {rgba(255, 0, 128), 360 - 60 * 128.0f / 255, 1, 255},  // negative sextant wraps
        {rgba(200, 200, 100), 60, 0.5f, 200},                  // red wins the tie
    };
    for (const Case &k : cases) {
        float hsv[3];
        VokColorRGB2HSV(&k.c, hsv);
        EXPECT_FLOAT_EQ(hsv[0], k.h);
        EXPECT_FLOAT_EQ(hsv[1], k.s);
        EXPECT_EQ(hsv[2], k.v);
    }
}

TEST(Hsl, RoundTripsAndReportsHuesAboveOne) {
    float hsl[3];
    for (int i = 0; i < 18 * 18 * 18; ++i) {
        VokColor c = rgba(i % 18 * 15, i / 18 % 18 * 15, i / 324 * 15, 4), back;
        VokColorRGB2HSL(&c, hsl);
        VokColorHSL2RGB(hsl, &back);
        ASSERT_EQ(max_error(c, back), 0) << i;
        ASSERT_EQ(back.alpha, 255);
    }
    VokColor out;
    const float last[3] = {1.0f, 1.0f, 0.5f}, beyond[3] = {1.01f, 1.0f, 0.25f}, nan_hue[3] = {NAN, 0.5f, 0.5f};
    const std::string message = "There was an error in VokColorHSL2RGB...The hPrime value was more than 6 somehow.";
    testing::internal::CaptureStdout();
    VokColorHSL2RGB(last, &out);  // h' = 6 is the last sextant
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(std::memcmp(&out, "\xff\x00\x00\xff", 4), 0);
    testing::internal::CaptureStdout();
    VokColorHSL2RGB(beyond, &out);  // grey m = 0
    EXPECT_EQ(testing::internal::GetCapturedStdout(), message);
    EXPECT_EQ(std::memcmp(&out, "\x00\x00\x00\xff", 4), 0);
    testing::internal::CaptureStdout();
    VokColorHSL2RGB(nan_hue, &out);  // grey m = 0.25: 63.75 rounds to 64
    EXPECT_EQ(testing::internal::GetCapturedStdout(), message);
    EXPECT_EQ(std::memcmp(&out, "\x40\x40\x40\xff", 4), 0);
}
