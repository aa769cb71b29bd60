// The slider tools and the combined adjustment.
#include <gtest/gtest.h>

#include <vector>

#include "support/bitmaps.h"
#include "vok/color.h"
#include "vok/generators.h"
#include "vok/tonal.h"

using vok_test::rgba;
using vok_test::TestBitmap;

namespace {

using Slider = void (*)(VokBitmap *, int32_t, double);

// One pixel per level, each channel shifted so the three channels differ,
// with alpha running the other way.
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

// Level v's result in one channel after a slider on a grey pixel.
int on_grey(Slider slider, double amount, uint8_t v, int channel = 0) {
    TestBitmap pixel(1, 1);
    pixel.fill(rgba(v, v, v, 7));
    slider(pixel.get(), 0, amount);
    EXPECT_EQ(pixel.at(0, 0).alpha, 7);
    const uint8_t *bytes = &pixel.at(0, 0).red;
    return bytes[channel];
}

}  // namespace

TEST(Sliders, NeutralAmountsAndAlpha) {
    const TestBitmap strip = level_strip();
    EXPECT_EQ(after(VokToolBrightness, 0.0, strip), strip.bytes());
    EXPECT_EQ(after(VokToolSaturation, 0.0, strip), strip.bytes());
    EXPECT_EQ(after(VokToolWarmth, 0.0, strip), strip.bytes());
    EXPECT_EQ(after(VokToolWarmth, 400.0, strip), strip.bytes());  // the cosine comes back to 0

    // Contrast 0 is not a no-op: 0..127 stay, 128..255 drop by one.
    const std::vector<uint8_t> contrast = after(VokToolContrast, 0.0, strip);
    for (uint32_t i = 0; i < 256 * 4; ++i) {
        const uint8_t v = strip.bytes()[i];
        EXPECT_EQ(contrast[i], (i % 4 == 3 || v < 128) ? v : v - 1) << i;
    }

    const Slider sliders[4] = {VokToolBrightness, VokToolContrast, VokToolSaturation,
                               VokToolWarmth};
    for (Slider slider : sliders)
        for (double amount : {-100.0, 63.0, 100.0}) {
            const std::vector<uint8_t> out = after(slider, amount, strip);
            for (uint32_t v = 0; v < 256; ++v) EXPECT_EQ(out[4 * v + 3], 255 - v);
        }
}

TEST(Sliders, BrightnessScalesUpAndBendsDown) {
    EXPECT_EQ(on_grey(VokToolBrightness, 100.0, 100), 160);
    EXPECT_EQ(on_grey(VokToolBrightness, 100.0, 1), 2);  // 1.6 rounds up
    EXPECT_EQ(on_grey(VokToolBrightness, 100.0, 200), 255);
    EXPECT_EQ(on_grey(VokToolBrightness, 50.0, 100), 130);
    // Gamma 2 at -100: 0.5 + 255 (128 / 255)^2 = 64.75.
    EXPECT_EQ(on_grey(VokToolBrightness, -100.0, 128), 64);
    EXPECT_EQ(on_grey(VokToolBrightness, -100.0, 64), 16);
    EXPECT_EQ(on_grey(VokToolBrightness, -50.0, 128), 96);
    EXPECT_EQ(on_grey(VokToolBrightness, -100.0, 255), 255);
    EXPECT_EQ(on_grey(VokToolBrightness, -100.0, 0), 0);

    const TestBitmap strip = level_strip();
    EXPECT_EQ(after(VokToolBrightness, 150.0, strip), after(VokToolBrightness, 100.0, strip));
    EXPECT_EQ(after(VokToolBrightness, -150.0, strip), after(VokToolBrightness, -100.0, strip));
}

TEST(Sliders, ContrastAndSaturation) {
    // k = 3.1 at 100: 0.5 + 127 (64 / 127)^3.1 = 15.68.
    EXPECT_EQ(on_grey(VokToolContrast, 100.0, 64), 15);
    EXPECT_EQ(on_grey(VokToolContrast, 100.0, 200), 233);
    EXPECT_EQ(on_grey(VokToolContrast, 100.0, 127), 127);
    const TestBitmap strip = level_strip();
    EXPECT_EQ(after(VokToolContrast, 250.0, strip), after(VokToolContrast, 100.0, strip));
    EXPECT_EQ(after(VokToolContrast, -101.0, strip), after(VokToolContrast, -100.0, strip));

    TestBitmap colour(2, 1);
    colour.at(0, 0) = rgba(255, 0, 0, 9);
    colour.at(1, 0) = rgba(200, 100, 50, 9);
    TestBitmap grey(colour), vivid(colour), beyond(colour);
    VokToolSaturation(grey.get(), 0, -100.0);
    EXPECT_EQ(grey.at(0, 0), rgba(54, 54, 54, 9));  // 0.213 * 255 = 54.3
    // Doubling the distance from grey: 282.3, 82.3 and -17.7 before clamping.
    VokToolSaturation(vivid.get(), 0, 100.0);
    EXPECT_EQ(vivid.at(1, 0), rgba(255, 82, 0, 9));
    VokToolSaturation(beyond.get(), 0, 180.0);
    EXPECT_EQ(beyond.bytes(), vivid.bytes());
}

TEST(Sliders, WarmthGainsFollowTheCosine) {
    // 100: targets 345.78, 231, 115 over 255.
    EXPECT_EQ(on_grey(VokToolWarmth, 100.0, 100, 0), 136);
    EXPECT_EQ(on_grey(VokToolWarmth, 100.0, 100, 1), 91);
    EXPECT_EQ(on_grey(VokToolWarmth, 100.0, 100, 2), 45);
    EXPECT_EQ(on_grey(VokToolWarmth, 100.0, 255, 0), 255);
    // -100 uses the cool coefficients: targets 100, 299.625, 500.31.
    EXPECT_EQ(on_grey(VokToolWarmth, -100.0, 200, 0), 78);
    EXPECT_EQ(on_grey(VokToolWarmth, -100.0, 200, 1), 235);
    EXPECT_EQ(on_grey(VokToolWarmth, -100.0, 100, 2), 196);
    // Unclamped: 200 gives w = 200, a negative blue target.
    EXPECT_EQ(on_grey(VokToolWarmth, 200.0, 100, 0), 171);
    EXPECT_EQ(on_grey(VokToolWarmth, 200.0, 100, 1), 81);
    EXPECT_EQ(on_grey(VokToolWarmth, 200.0, 255, 2), 0);

    const TestBitmap strip = level_strip();
    EXPECT_EQ(after(VokToolWarmth, 300.0, strip), after(VokToolWarmth, 100.0, strip));
}

TEST(Sliders, SharpnessIsTheSharpeningConvolution) {
    TestBitmap image(9, 7);
    image.randomize(5);
    TestBitmap direct(image);
    VokToolSharpness(image.get(), 0, 0.7);
    VokConvolutionEffectRullSharpen(direct.get(), 0.7f);
    EXPECT_EQ(image.bytes(), direct.bytes());
}

namespace {

// The combined adjustment as its parts: the non-zero sliders on an opaque
// copy, then the copy blended over the original.
std::vector<uint8_t> adjusted_by_parts(const TestBitmap &input, double brightness,
                                       double contrast, double warmth, double saturation,
                                       VokBlendMode mode, float opacity) {
    TestBitmap original(input), copy(input);
    for (uint32_t y = 0; y < input.get()->height; ++y)
        for (uint32_t x = 0; x < input.get()->width; ++x) copy.at(x, y).alpha = 255;
    if (brightness != 0.0) VokToolBrightness(copy.get(), 0, brightness);
    if (contrast != 0.0) VokToolContrast(copy.get(), 0, contrast);
    if (warmth != 0.0) VokToolWarmth(copy.get(), 0, warmth);
    if (saturation != 0.0) VokToolSaturation(copy.get(), 0, saturation);
    VokBitmapBlendBitmap(original.get(), copy.get(), mode, opacity);
    return original.bytes();
}

}  // namespace

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

    // Brightness 100 at half opacity: 160 over 100 with alpha 127 gives
    // (160 * 127 + 100 * 128 + 255) >> 8 = 130; alpha stays.
    TestBitmap pixel(1, 1);
    pixel.fill(rgba(100, 100, 100, 33));
    VokToolAdjustBrightnessContrastWarmthSaturation(pixel.get(), 100, 0, 0, 0, kVokBlendNormal,
                                                    0.5f);
    EXPECT_EQ(pixel.at(0, 0), rgba(130, 130, 130, 33));
}

TEST(CombinedAdjustment, MatchesItsPartsInEveryPath) {
    // 40 x 30 crosses the internal strip boundary.
    TestBitmap image(40, 30);
    image.randomize(21);
    struct Case {
        double b, c, w, s;
        VokBlendMode mode;
        float opacity;
    };
    const Case cases[] = {
        {0, 0, 75, 0, kVokBlendNormal, 1.0f},       // tool type 13
        {-15, 40, 0, 0, kVokBlendNormal, 1.0f},     // tool type 14
        {30, -60, -40, 0, kVokBlendMultiply, 0.6f}, // folded into one table
        {30, -60, -40, 0, kVokBlendColor, 0.8f},    // colour mode never folds
        {-70, 100, 20, 45, kVokBlendNormal, 1.0f},  // saturation matrix
        {10, 0, -90, -100, kVokBlendScreen, 0.3f},
        {150, 0, 0, 180, kVokBlendOverlay, 1.5f},   // beyond the clamps; opacity wraps
    };
    for (const Case &c : cases) {
        TestBitmap out(image);
        VokToolAdjustBrightnessContrastWarmthSaturationProcessor(out.get(), c.b, c.c, c.w, c.s,
                                                                 c.mode, c.opacity);
        EXPECT_EQ(out.bytes(), adjusted_by_parts(image, c.b, c.c, c.w, c.s, c.mode, c.opacity))
            << c.b << " " << c.c << " " << c.w << " " << c.s << " mode " << c.mode;
    }
}
