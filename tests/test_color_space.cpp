// RGB to and from scaled LAB, HSV and HSL.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "support/bitmaps.h"
#include "vok/color.h"

using vok_test::rgba;
using vok_test::TestBitmap;

TEST(Lab, KnownColoursFactorsAndBitmaps) {
    float linear[256];
    VokColorRGB2LABInitMapping(linear);
    EXPECT_EQ(linear[255], 100.0f);
    // Pure blue reads the cube root at trunc(t * 1024) of a table on the step
    // 1/1023 (the nearest entry would give 82, 205, 19). The caller's-table
    // form takes powf cube roots instead: grey's b lands just below 127.
    VokColor black = rgba(0, 0, 0, 200), blue = rgba(0, 0, 255), powf_blue = blue, grey = rgba(128, 128, 128, 3);
    VokColorRGB2LAB(&black);
    VokColorRGB2LAB(&blue);
    VokColorRGB2LABWithMapping(&powf_blue, linear);
    VokColorRGB2LABWithMapping(&grey, linear);
    EXPECT_EQ(black, rgba(0, 127, 127, 200));
    EXPECT_EQ(blue, rgba(81, 206, 18));
    EXPECT_EQ(powf_blue, rgba(82, 206, 19));
    EXPECT_EQ(grey, rgba(136, 127, 126, 3));
    // A factor scales the stored byte before 127 is removed: 2 x 127 on the
    // a byte is strongly magenta, not neutral.
    VokColor magenta = rgba(150, 127, 127, 5);
    VokColorLAB2RGBScaled(&magenta, 1.0, 2.0, 1.0);
    EXPECT_EQ(magenta, rgba(255, 0, 147, 5));

    // Whole bitmaps keep alpha. White's L is 100, but 100 * 2.55 truncates to 254.
    TestBitmap lab(3, 1);
    lab.at(0, 0) = rgba(200, 120, 40, 7);
    lab.at(1, 0) = rgba(10, 200, 90, 8);
    lab.at(2, 0) = rgba(255, 255, 255, 9);
    VokBitmapConvertRGBToLAB(lab.get());
    TestBitmap rgb(lab), scaled(lab);
    VokBitmapConvertLABToRBG(rgb.get(), 1.0f, 1.0f);
    VokBitmapConvertLABToRBG(scaled.get(), 2.0f, 0.5f);
    const VokColor expected[][3] = {{rgba(147, 152, 181, 7), rgba(180, 61, 170, 8), rgba(254, 127, 127, 9)},
                                    {rgba(199, 119, 39, 7), rgba(0, 199, 89, 8), rgba(254, 254, 254, 9)},
                                    {rgba(255, 0, 208, 7), rgba(95, 179, 249, 8), rgba(255, 110, 255, 9)}};
    const TestBitmap *results[] = {&lab, &rgb, &scaled};
    for (int k = 0; k < 9; ++k) EXPECT_EQ(results[k / 3]->at(k % 3, 0), expected[k / 3][k % 3]) << k;
}

TEST(HsvHsl, HsvInDegreesHslRoundTripsAndHuesAboveOne) {
    // The negative sextant wraps; red wins the tie.
    const struct { VokColor c; float h, s, v; } hsv_cases[] = {
        {rgba(10, 10, 10), 0, 0, 10}, {rgba(255, 0, 128), 360 - 60 * 128.0f / 255, 1, 255}, {rgba(200, 200, 100), 60, 0.5f, 200}};
    for (const auto &k : hsv_cases) {
        float hsv[3];
        VokColorRGB2HSV(&k.c, hsv);
        EXPECT_FLOAT_EQ(hsv[0], k.h);
        EXPECT_FLOAT_EQ(hsv[1], k.s);
        EXPECT_EQ(hsv[2], k.v);
    }
    float hsl[3];
    for (int i = 0; i < 18 * 18 * 18; ++i) {
        VokColor c = rgba(i % 18 * 15, i / 18 % 18 * 15, i / 324 * 15, 4), back;
        VokColorRGB2HSL(&c, hsl);
        VokColorHSL2RGB(hsl, &back);
        c.alpha = 255;
        ASSERT_EQ(back, c) << i;
    }
    // h' = 6 is the last sextant; beyond it (or NaN) the result is the grey m
    // and a message goes to standard output: 63.75 rounds to 64.
    const std::string message = "There was an error in VokColorHSL2RGB...The hPrime value was more than 6 somehow.";
    const struct { float hsl[3]; VokColor rgb; bool warns; } cases[] = {
        {{1.0f, 1.0f, 0.5f}, rgba(255, 0, 0), false}, {{1.01f, 1.0f, 0.25f}, rgba(0, 0, 0), true},
        {{NAN, 0.5f, 0.5f}, rgba(64, 64, 64), true}};
    for (const auto &k : cases) {
        VokColor out;
        testing::internal::CaptureStdout();
        VokColorHSL2RGB(k.hsl, &out);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), k.warns ? message : "");
        EXPECT_EQ(out, k.rgb) << k.hsl[0];
    }
}
