// The slider tools and the combined adjustment.
#include <gtest/gtest.h>

#include <vector>

#include "support/bitmaps.h"
#include "vok/color.h"
#include "vok/tonal.h"

using vok_test::rgba;
using vok_test::TestBitmap;

namespace {

using Slider = void (*)(VokBitmap *, int32_t, double);

// Every level in every channel (channels offset from each other), alpha
// running the other way.
TestBitmap level_strip() {
    TestBitmap strip(256, 1);
    for (uint32_t v = 0; v < 256; ++v)
        strip.at(v, 0) = rgba(v, (v + 85) & 255, (v + 170) & 255, 255 - v);
    return strip;
}

std::vector<uint8_t> after(Slider slider, double amount, const TestBitmap &input) {
    TestBitmap copy(input);
    slider(copy.get(), 12345, amount);
    return copy.bytes();
}

}  // namespace

TEST(Sliders, NeutralAmountsClampsAndAlpha) {
    const TestBitmap strip = level_strip();
    EXPECT_EQ(after(VokToolBrightness, 0.0, strip), strip.bytes());
    EXPECT_EQ(after(VokToolSaturation, 0.0, strip), strip.bytes());
    EXPECT_EQ(after(VokToolWarmth, 0.0, strip), strip.bytes());
    EXPECT_EQ(after(VokToolWarmth, 400.0, strip), strip.bytes());  // the cosine is back at 0

    // Contrast 0 is no no-op: 0..127 stay, 128..255 drop by one; alpha stays.
    const std::vector<uint8_t> contrast = after(VokToolContrast, 0.0, strip);
    for (uint32_t i = 0; i < 256 * 4; ++i) {
        const uint8_t v = strip.bytes()[i];
        EXPECT_EQ(contrast[i], (i % 4 == 3 || v < 128) ? v : v - 1) << i;
    }

    struct Same { Slider slider; double amount, as; };
    const Same same[] = {{VokToolBrightness, 150, 100}, {VokToolBrightness, -150, -100},
                         {VokToolContrast, 250, 100},   {VokToolContrast, -101, -100},
                         {VokToolSaturation, 180, 100}, {VokToolWarmth, 300, 100}};
    for (const Same &s : same) {
        const std::vector<uint8_t> out = after(s.slider, s.amount, strip);
        EXPECT_EQ(out, after(s.slider, s.as, strip)) << s.amount;
        for (uint32_t v = 0; v < 256; ++v) EXPECT_EQ(out[4 * v + 3], 255 - v);
    }
}

TEST(Sliders, HandWorkedLevels) {
    struct Level { Slider slider; double amount; uint8_t in; int channel; uint8_t out; };
    const Level levels[] = {
        {VokToolBrightness, 100, 100, 0, 160},  // x 1.6
        {VokToolBrightness, 100, 1, 0, 2},      // 1.6 rounds up
        {VokToolBrightness, 100, 200, 0, 255},
        {VokToolBrightness, -100, 128, 0, 64},  // gamma 2: 0.5 + 255 (128 / 255)^2
        {VokToolBrightness, -100, 255, 0, 255},
        {VokToolBrightness, -50, 128, 0, 96},
        {VokToolContrast, 100, 64, 0, 15},      // k = 3.1: 0.5 + 127 (64 / 127)^3.1
        {VokToolContrast, 100, 200, 0, 233},
        {VokToolWarmth, 100, 100, 0, 136},      // targets 345.78, 231, 115
        {VokToolWarmth, 100, 100, 1, 91},
        {VokToolWarmth, 100, 100, 2, 45},
        {VokToolWarmth, -100, 200, 0, 78},      // cool: 100, 299.625, 500.31
        {VokToolWarmth, -100, 200, 1, 235},
        {VokToolWarmth, -100, 100, 2, 196},
        {VokToolWarmth, 200, 100, 0, 171},      // unclamped: w = 200
        {VokToolWarmth, 200, 255, 2, 0},        // blue target -25
    };
    for (const Level &l : levels) {
        TestBitmap pixel(1, 1);
        pixel.fill(rgba(l.in, l.in, l.in, 7));
        l.slider(pixel.get(), 0, l.amount);
        EXPECT_EQ((&pixel.at(0, 0).red)[l.channel], l.out) << l.amount << " at " << int{l.in};
    }

    TestBitmap colour(2, 1);
    colour.at(0, 0) = rgba(255, 0, 0, 9);
    colour.at(1, 0) = rgba(200, 100, 50, 9);
    TestBitmap grey(colour);
    VokToolSaturation(grey.get(), 0, -100.0);
    EXPECT_EQ(grey.at(0, 0), rgba(54, 54, 54, 9));  // 0.213 x 255
    VokToolSaturation(colour.get(), 0, 100.0);      // 282.3, 82.3, -17.7
    EXPECT_EQ(colour.at(1, 0), rgba(255, 82, 0, 9));
}

TEST(CombinedAdjustment, NeutralAndHandWorked) {
    TestBitmap image(7, 5);
    image.randomize(11);
    TestBitmap neutral(image);
    VokToolAdjustBrightnessContrastWarmthSaturationProcessor(neutral.get(), 0, 0, 0, 0,
                                                             kVokBlendNormal, 1.0f);
    EXPECT_EQ(neutral.bytes(), image.bytes());  // contrast 0 is skipped here
    VokToolAdjustBrightnessContrastWarmthSaturationProcessor(neutral.get(), 80, -30, 50, 60,
                                                             kVokBlendNormal, 0.0f);
    EXPECT_EQ(neutral.bytes(), image.bytes());

    // Brightness 100 at half opacity: (160 x 127 + 100 x 128 + 255) >> 8.
    TestBitmap pixel(1, 1);
    pixel.fill(rgba(100, 100, 100, 33));
    VokToolAdjustBrightnessContrastWarmthSaturation(pixel.get(), 100, 0, 0, 0, kVokBlendNormal,
                                                    0.5f);
    EXPECT_EQ(pixel.at(0, 0), rgba(130, 130, 130, 33));
}

TEST(CombinedAdjustment, MatchesItsPartsInEveryPath) {
    TestBitmap image(40, 30);  // crosses the internal run length
    image.randomize(21);
    struct Case { double b, c, w, s; VokBlendMode mode; float opacity; };
    const Case cases[] = {
        {0, 0, 75, 0, kVokBlendNormal, 1.0f},        // tool type 13
        {-15, 40, 0, 0, kVokBlendNormal, 1.0f},      // tool type 14
        {30, -60, -40, 0, kVokBlendMultiply, 0.6f},  // folded into one table
        {30, -60, -40, 0, kVokBlendColor, 0.8f},     // colour mode never folds
        {-70, 100, 20, 45, kVokBlendNormal, 1.0f},   // saturation matrix
        {10, 0, -90, -100, kVokBlendInterpolation, 0.3f},
        {150, 0, 0, 180, kVokBlendOverlay, 1.5f},    // beyond the clamps; opacity wraps
    };
    for (const Case &c : cases) {
        // The parts: non-zero sliders on an opaque copy, blended back.
        TestBitmap expected(image), copy(image);
        for (uint32_t i = 0; i < 40 * 30; ++i) copy.at(i % 40, i / 40).alpha = 255;
        if (c.b != 0) VokToolBrightness(copy.get(), 0, c.b);
        if (c.c != 0) VokToolContrast(copy.get(), 0, c.c);
        if (c.w != 0) VokToolWarmth(copy.get(), 0, c.w);
        if (c.s != 0) VokToolSaturation(copy.get(), 0, c.s);
        VokBitmapBlendBitmap(expected.get(), copy.get(), c.mode, c.opacity);

        TestBitmap out(image);
        VokToolAdjustBrightnessContrastWarmthSaturationProcessor(out.get(), c.b, c.c, c.w, c.s,
                                                                 c.mode, c.opacity);
        EXPECT_EQ(out.bytes(), expected.bytes()) << c.b << " " << c.c << " " << c.w << " " << c.s;
    }
}
