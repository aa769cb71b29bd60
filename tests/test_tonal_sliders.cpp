// The slider tools and the combined adjustment.
#include <gtest/gtest.h>

#include <math.h>

#include <tuple>
#include <vector>

#include "support/bitmaps.h"
#include "vok/color.h"
#include "vok/tonal.h"

using vok_test::rgba;
using vok_test::TestBitmap;
using Slider = void (*)(VokBitmap *, int32_t, double);

TEST(Sliders, NeutralAmountsClampsAndHandWorkedPixels) {
    // Every level in every channel, channels offset from each other, alpha running the other way.
    TestBitmap strip(256, 1);
    for (uint32_t v = 0; v < 256; ++v) strip.at(v, 0) = rgba(v, (v + 85) & 255, (v + 170) & 255, 255 - v);
    const std::vector<uint8_t> in = strip.bytes();
    auto after = [&strip](Slider slider, double amount) {
        TestBitmap copy(strip);
        slider(copy.get(), 12345, amount);
        return copy.bytes();
    };
    for (Slider slider : {VokToolBrightness, VokToolSaturation, VokToolWarmth}) EXPECT_EQ(after(slider, 0), in);
    // Contrast 0 is no no-op: 0..127 stay, 128..255 drop by one.
    const std::vector<uint8_t> contrast = after(VokToolContrast, 0.0);
    for (uint32_t i = 0; i < 256 * 4; ++i)
        EXPECT_EQ(contrast[i], (i % 4 == 3 || in[i] < 128) ? in[i] : in[i] - 1) << i;
    // Amounts act as the nearer end beyond +-100, except warmth, which goes through a cosine.
    const std::tuple<Slider, double, double> same[] = {
        {VokToolBrightness, 150, 100}, {VokToolBrightness, -150, -100}, {VokToolContrast, -101, -100},
        {VokToolSaturation, 180, 100}, {VokToolWarmth, 300, 100},       {VokToolWarmth, 400, 0}};
    for (const auto &[slider, amount, as] : same)
        EXPECT_EQ(after(slider, amount), after(slider, as)) << amount;

    const std::tuple<Slider, double, VokColor, VokColor> pixels[] = {
        {VokToolBrightness, 100, rgba(100, 1, 200, 7), rgba(160, 2, 255, 7)},   // x 1.6, rounded
        {VokToolBrightness, -100, rgba(128, 255, 0, 7), rgba(64, 255, 0, 7)},   // 0.5 + 255 (128 / 255)^2
        {VokToolBrightness, -50, rgba(128, 255, 0, 7), rgba(96, 255, 0, 7)},
        {VokToolContrast, 100, rgba(64, 200, 64, 7), rgba(15, 233, 15, 7)},     // 0.5 + 127 (64 / 127)^3.1
        {VokToolWarmth, 100, rgba(100, 100, 100, 7), rgba(136, 91, 45, 7)},     // targets 345.78, 231, 115
        {VokToolWarmth, -100, rgba(200, 200, 100, 7), rgba(78, 235, 196, 7)},   // 100, 299.625, 500.31
        {VokToolWarmth, 200, rgba(100, 0, 255, 7), rgba(171, 0, 0, 7)},         // unclamped: blue at -25
        {VokToolSaturation, -100, rgba(255, 0, 0, 9), rgba(54, 54, 54, 9)},     // 0.213 x 255
        {VokToolSaturation, 100, rgba(200, 100, 50, 9), rgba(255, 82, 0, 9)}};  // 282.3, 82.3, -17.7
    for (const auto &[slider, amount, before, want] : pixels) {
        TestBitmap pixel(1, 1);
        pixel.fill(before);
        slider(pixel.get(), 0, amount);
        EXPECT_EQ(pixel.at(0, 0), want) << amount << " on " << before;
    }
}

// Warmth's gain tables at amounts where each coefficient's last digit moves
// some level across a rounding boundary: w = 100 (1 - cos(a pi / 200)), then
// warm targets 255 + 0.9078 w, 255 - 0.24 w, 255 - 1.4 w; cool ones
// 255 + 1.55 w, 255 - 0.44625 w, 255 - 2.4531 w (w < 0); level v x target / 255.
TEST(Sliders, WarmthGainsFollowTheirCoefficients) {
    TestBitmap ramp(256, 1);
    for (uint32_t v = 0; v < 256; ++v) ramp.at(v, 0) = rgba(v, v, v);
    for (double amount : {45.0, 50.0, 55.0, 60.0, 65.0, -270.0, -285.0, -290.0, -295.0, -300.0}) {
        TestBitmap warm(ramp);
        VokToolWarmth(warm.get(), 0, amount);
        const double w = (1.0 - cos(0.015707963267948967 * amount)) * (amount > 0 ? 100.0 : -100.0);
        const double target[3] = {w > 0 ? 255.0 + 0.9078 * w : 255.0 + 1.55 * w,
                                  w > 0 ? 255.0 - 0.24 * w : 255.0 - 0.44625 * w,
                                  w > 0 ? 255.0 - 1.4 * w : 255.0 - 2.4531 * w};
        for (int c = 0; c < 3; ++c) {
            for (uint32_t v = 0; v < 256; ++v) {
                const double level = v * (target[c] * 0.00392156862745098);
                const int want = level > 254.5 ? 255 : level < -0.5 ? 0 : static_cast<int>(level + 0.5);
                ASSERT_EQ((&warm.at(v, 0).red)[c], want) << amount << " channel " << c << " level " << v;
            }
        }
    }
}

TEST(CombinedAdjustment, MatchesItsPartsInEveryPath) {
    TestBitmap image(40, 30);  // crosses the internal run length
    image.randomize(21);

    // The parts: non-zero sliders (so contrast 0 is skipped) on an opaque copy, blended back. The
    // adjustment folds into one table but for saturation and colour mode.
    const Slider sliders[4] = {VokToolBrightness, VokToolContrast, VokToolWarmth, VokToolSaturation};
    const std::tuple<double, double, double, double, VokBlendMode, float> cases[] = {
        {0, 0, 75, 0, kVokBlendNormal, 1.0f},           {-15, 40, 0, 0, kVokBlendNormal, 1.0f},
        {30, -60, -40, 0, kVokBlendMultiply, 0.6f},     {30, -60, -40, 0, kVokBlendColor, 0.8f},
        {-70, 100, 20, 45, kVokBlendNormal, 1.0f},      {10, 0, -90, -100, kVokBlendInterpolation, 0.3f},
        {80, -30, 50, 60, kVokBlendNormal, 0.0f},       {150, 0, 0, 180, kVokBlendOverlay, 1.5f}};
    for (const auto &[b, c, w, s, mode, opacity] : cases) {
        TestBitmap expected(image), copy(image), out(image);
        for (uint32_t i = 0; i < 40 * 30; ++i) copy.at(i % 40, i / 40).alpha = 255;
        const double amounts[4] = {b, c, w, s};
        for (int i = 0; i < 4; ++i) if (amounts[i] != 0) sliders[i](copy.get(), 0, amounts[i]);
        VokBitmapBlendBitmap(expected.get(), copy.get(), mode, opacity);
        VokToolAdjustBrightnessContrastWarmthSaturationProcessor(out.get(), b, c, w, s, mode, opacity);
        EXPECT_EQ(out.bytes(), expected.bytes()) << b << " " << c << " " << w << " " << s;
    }
}
