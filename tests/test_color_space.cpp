// RGB to and from scaled LAB, HSV and HSL.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "support/bitmaps.h"
#include "vok/color.h"

using vok_test::rgba;
using vok_test::TestBitmap;

namespace {

int max_channel_error(const VokColor &a, const VokColor &b) {
    int e = std::abs(a.red - b.red);
    e = std::max(e, std::abs(a.green - b.green));
    return std::max(e, std::abs(a.blue - b.blue));
}

// The sRGB encoding table rebuilt independently from its definition.
std::vector<float> reference_gamma_table() {
    std::vector<float> t(1024);
    for (int k = 0; k < 1024; ++k) {
        double v = k / 1023.0;
        t[k] = static_cast<float>(v <= 0.0031308 ? 12.92 * v : 1.055 * std::pow(v, 1 / 2.4) - 0.055);
    }
    return t;
}

}  // namespace

TEST(LabTables, MatchTheirFormulas) {
    float linear[256];
    VokColorRGB2LABInitMapping(linear);
    for (int i = 0; i < 256; ++i) {
        double c = i / 255.0;
        double expected = c <= 0.04045 ? 100.0 * c / 12.92 : 100.0 * std::pow((c + 0.055) / 1.055, 2.4);
        EXPECT_NEAR(linear[i], expected, 2e-6 * expected + 1e-6) << i;
    }
    EXPECT_EQ(linear[0], 0.0f);
    EXPECT_EQ(linear[255], 100.0f);

    float cube_root[1024];
    VokColorRGB2LABInitMappingCbrt(cube_root);
    for (int k = 0; k < 1024; ++k)
        EXPECT_FLOAT_EQ(cube_root[k], static_cast<float>(std::cbrt(k / 1023.0))) << k;
    EXPECT_EQ(cube_root[0], 0.0f);
    EXPECT_EQ(cube_root[1023], 1.0f);
}

TEST(RgbToLab, KnownColoursAndTheTableIndexing) {
    VokColor white = rgba(255, 255, 255, 9), black = rgba(0, 0, 0, 200);
    VokColorRGB2LAB(&white);
    VokColorRGB2LAB(&black);
    // L = 100 exactly, but 100 * 2.55 lies just below 255 and truncates.
    EXPECT_EQ(max_channel_error(white, rgba(254, 127, 127)), 0);
    EXPECT_EQ(white.alpha, 9);
    EXPECT_EQ(max_channel_error(black, rgba(0, 127, 127)), 0);
    EXPECT_EQ(black.alpha, 200);

    // The table form reads the cube root at trunc(t * 1024) of a table built
    // on the step 1/1023; recompute one colour by hand from that rule.
    float linear[256], cube_root[1024];
    VokColorRGB2LABInitMapping(linear);
    VokColorRGB2LABInitMappingCbrt(cube_root);
    auto f = [&](double t) {
        if (t <= 0.008856) return 0.13793103448275862 + 7.787 * t;
        return static_cast<double>(cube_root[static_cast<int>(t * 1024)]);
    };
    VokColor c = rgba(200, 120, 40);
    double R = linear[200], G = linear[120], B = linear[40];
    double x = 0.00433891 * R + 0.00376234915 * G + 0.0018990604648 * B;
    double y = 0.002126 * R + 0.007152 * G + 0.000722 * B;
    double z = 0.000177255 * R + 0.00109475308 * G + 0.0087295537 * B;
    double L, a, b;
    VokColorRGB2LABDoublesWithCbrtMapping(&c, &L, &a, &b);
    EXPECT_DOUBLE_EQ(L, (116 * f(y) - 16) * 2.55);
    EXPECT_DOUBLE_EQ(a, 500 * (f(x) - f(y)) + 127);
    EXPECT_DOUBLE_EQ(b, 200 * (f(y) - f(z)) + 127);
    VokColorRGB2LAB(&c);
    EXPECT_EQ(c.red, static_cast<int>(L));
    EXPECT_EQ(c.green, static_cast<int>(a));
    EXPECT_EQ(c.blue, static_cast<int>(b));

    // The powf form needs no special case at 1.0 and stays close to the table.
    double Lp, ap, bp;
    VokColor orange = rgba(200, 120, 40);
    VokColorRGB2LABDoublesWithMapping(&orange, &Lp, &ap, &bp, linear);
    EXPECT_NEAR(Lp, L, 1.0);
    EXPECT_NEAR(ap, a, 1.0);
    EXPECT_NEAR(bp, b, 1.0);
    VokColorRGB2LABWithMapping(&orange, linear);
    EXPECT_EQ(orange.red, static_cast<int>(Lp));
    EXPECT_EQ(orange.green, static_cast<int>(ap));
    EXPECT_EQ(orange.blue, static_cast<int>(bp));
}

TEST(LabToRgb, FollowsTheEncodingTableAndClamps) {
    VokColor black = rgba(0, 127, 127, 33);
    VokColorLAB2RGB(&black);
    EXPECT_EQ(max_channel_error(black, rgba(0, 0, 0)), 0);
    EXPECT_EQ(black.alpha, 33);

    // Far outside the gamut: channels clamp to 0 and 255 without reading
    // the table.
    VokColor vivid = rgba(128, 255, 127);
    VokColorLAB2RGB(&vivid);
    EXPECT_EQ(vivid.red, 255);
    EXPECT_EQ(vivid.green, 0);

    // A neutral grey, worked through from the stored bytes.
    std::vector<float> gamma = reference_gamma_table();
    for (int Lb : {30, 100, 180, 250}) {
        float fy = static_cast<float>((Lb * 0.392156870078234 + 16) * 0.008620689655172414);
        float t = fy * fy * fy > 0.008856 ? fy * fy * fy : (fy - 0.13793103f) * 0.12841916f;
        double X = t * 0.95047, Y = t, Z = t * 1.08883;
        double lin[3] = {3.2406 * X - 1.5372 * Y - 0.4986 * Z, -0.9689 * X + 1.8758 * Y + 0.0415 * Z,
                         0.0557 * X - 0.204 * Y + 1.057 * Z};
        int expected[3];
        for (int i = 0; i < 3; ++i)
            expected[i] = lin[i] >= 1 ? 255
                                      : static_cast<int>(gamma[static_cast<int>(lin[i] * 1024)] * 255.0f + 0.5f);
        VokColor c = rgba(static_cast<uint8_t>(Lb), 127, 127);
        VokColorLAB2RGB(&c);
        EXPECT_EQ(c.red, expected[0]) << Lb;
        EXPECT_EQ(c.green, expected[1]) << Lb;
        EXPECT_EQ(c.blue, expected[2]) << Lb;
    }
}

TEST(LabToRgb, FactorsScaleTheStoredBytesBeforeTheOffset) {
    // A factor multiplies the byte before 127 is removed, so a factor of 2 on
    // a neutral a byte of 127 pushes the colour strongly toward magenta.
    VokColor neutral = rgba(150, 127, 127), shifted = neutral;
    VokColorLAB2RGB(&neutral);
    VokColorLAB2RGBScaled(&shifted, 1.0, 2.0, 1.0);
    EXPECT_GT(shifted.red, neutral.red + 50);
    EXPECT_LT(shifted.green, neutral.green - 50);

    TestBitmap bitmap(3, 2);
    bitmap.randomize(5);
    TestBitmap expected(bitmap);
    for (uint32_t i = 0; i < 6; ++i) VokColorLAB2RGBScaled(&expected.at(i % 3, i / 3), 1.0, 0.5f, 1.5f);
    VokBitmapConvertLABToRBG(bitmap.get(), 0.5f, 1.5f);
    EXPECT_EQ(bitmap.bytes(), expected.bytes());
}

TEST(LabRoundTrip, BitmapConversionsKeepAlphaAndComeBackClose) {
    TestBitmap bitmap(16, 16);
    for (uint32_t y = 0; y < 16; ++y)
        for (uint32_t x = 0; x < 16; ++x)
            bitmap.at(x, y) = rgba(static_cast<uint8_t>(96 + 8 * x), static_cast<uint8_t>(96 + 8 * y),
                                   static_cast<uint8_t>(220 - 7 * x), static_cast<uint8_t>(x * 16 + y));
    TestBitmap original(bitmap);
    VokBitmapConvertRGBToLAB(bitmap.get());
    VokColor first = original.at(3, 4);
    VokColorRGB2LAB(&first);
    EXPECT_EQ(std::memcmp(&bitmap.at(3, 4), &first, 4), 0);
    VokBitmapConvertLABToRBG(bitmap.get(), 1.0f, 1.0f);
    for (uint32_t y = 0; y < 16; ++y)
        for (uint32_t x = 0; x < 16; ++x) {
            EXPECT_LE(max_channel_error(bitmap.at(x, y), original.at(x, y)), 7) << x << "," << y;
            EXPECT_EQ(bitmap.at(x, y).alpha, original.at(x, y).alpha);
        }

    VokBitmap empty = {nullptr, 0, 0};
    VokBitmapConvertRGBToLAB(&empty);
    VokBitmapConvertLABToRBG(&empty, 1.0f, 1.0f);
}

TEST(Hsv, ValueIsTheLargestChannelAndHueIsInDegrees) {
    float hsv[3];
    VokColor black = rgba(0, 0, 0), grey = rgba(10, 10, 10), blue = rgba(0, 0, 255),
             pink = rgba(255, 0, 128), yellowish = rgba(200, 200, 100);
    VokColorRGB2HSV(&black, hsv);
    EXPECT_EQ(hsv[0], 0.0f);
    EXPECT_EQ(hsv[1], 0.0f);
    EXPECT_EQ(hsv[2], 0.0f);
    VokColorRGB2HSV(&grey, hsv);
    EXPECT_EQ(hsv[0], 0.0f);
    EXPECT_EQ(hsv[1], 0.0f);
    EXPECT_EQ(hsv[2], 10.0f);
    VokColorRGB2HSV(&blue, hsv);
    EXPECT_FLOAT_EQ(hsv[0], 240.0f);
    EXPECT_FLOAT_EQ(hsv[1], 1.0f);
    EXPECT_EQ(hsv[2], 255.0f);
    VokColorRGB2HSV(&pink, hsv);  // red is largest with G < B: negative, wrapped
    EXPECT_FLOAT_EQ(hsv[0], 360.0f - 60.0f * 128.0f / 255.0f);
    // Red and green tie for the largest: red is tested first.
    VokColorRGB2HSV(&yellowish, hsv);
    EXPECT_FLOAT_EQ(hsv[0], 60.0f);
    EXPECT_FLOAT_EQ(hsv[1], 0.5f);
}

TEST(Hsl, RoundTripsEveryColourOnAGrid) {
    float hsl[3];
    VokColor red = rgba(255, 0, 0), dark = rgba(0, 0, 64);
    VokColorRGB2HSL(&red, hsl);
    EXPECT_FLOAT_EQ(hsl[0], 0.0f);
    EXPECT_FLOAT_EQ(hsl[1], 1.0f);
    EXPECT_FLOAT_EQ(hsl[2], 0.5f);
    VokColorRGB2HSL(&dark, hsl);
    EXPECT_FLOAT_EQ(hsl[0], 4.0f / 6.0f);
    EXPECT_FLOAT_EQ(hsl[1], 1.0f);  // L below one half: d / (max + min)

    for (int r = 0; r < 256; r += 15)
        for (int g = 0; g < 256; g += 15)
            for (int b = 0; b < 256; b += 15) {
                VokColor c = rgba(static_cast<uint8_t>(r), static_cast<uint8_t>(g), static_cast<uint8_t>(b), 4);
                VokColor back;
                VokColorRGB2HSL(&c, hsl);
                VokColorHSL2RGB(hsl, &back);
                ASSERT_EQ(max_channel_error(c, back), 0) << r << "," << g << "," << b;
                ASSERT_EQ(back.alpha, 255);
            }
}

TEST(Hsl, HueAboveOneReportsOnStandardOutputAndGivesGrey) {
    VokColor out;
    const float last[3] = {1.0f, 1.0f, 0.5f};
    testing::internal::CaptureStdout();
    VokColorHSL2RGB(last, &out);  // h' = 6 is the last sextant: red
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(max_channel_error(out, rgba(255, 0, 0)), 0);

    const float beyond[3] = {1.01f, 1.0f, 0.25f};
    const float nan_hue[3] = {NAN, 0.5f, 0.5f};
    const std::string message =
        "There was an error in VokColorHSL2RGB...The hPrime value was more than 6 somehow.";
    testing::internal::CaptureStdout();
    VokColorHSL2RGB(beyond, &out);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), message);
    // C = 0.5, m = 0: all channels zero.
    EXPECT_EQ(max_channel_error(out, rgba(0, 0, 0)), 0);
    testing::internal::CaptureStdout();
    VokColorHSL2RGB(nan_hue, &out);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), message);
    EXPECT_EQ(max_channel_error(out, rgba(64, 64, 64)), 0);  // m = 0.25, 63.75 rounds to 64
    EXPECT_EQ(out.alpha, 255);
}
