// Single-colour blending: the integer family, the float family, the colour
// mode, the memo and colour comparison.
#include <gtest/gtest.h>

#include <memory>
#include <random>

#include "support/bitmaps.h"
#include "vok/color.h"

using vok_test::rgba;

namespace {

// Integer-family result for one channel value pair at full alpha, where the
// output equals the blend value B(d, s).
int blend_full(VokBlendMode mode, int d, int s) {
    VokColor dst = rgba(static_cast<uint8_t>(d), static_cast<uint8_t>(d), static_cast<uint8_t>(d), 17);
    VokColor src = rgba(static_cast<uint8_t>(s), static_cast<uint8_t>(s), static_cast<uint8_t>(s), 255);
    VokColorBlendEmbededAlpha(&dst, &src, mode);
    EXPECT_EQ(dst.alpha, 17);
    EXPECT_EQ(dst.red, dst.green);
    EXPECT_EQ(dst.red, dst.blue);
    return dst.red;
}

struct BlendCase {
    VokBlendMode mode;
    int d, s, expected;
};

template <size_t N>
void expect_cases(const BlendCase (&cases)[N]) {
    for (const BlendCase &c : cases)
        EXPECT_EQ(blend_full(c.mode, c.d, c.s), c.expected) << "mode " << c.mode << " d " << c.d << " s " << c.s;
}

int blend_float(VokBlendMode mode, int d, int s, float opacity) {
    VokColor dst = rgba(static_cast<uint8_t>(d), static_cast<uint8_t>(d), static_cast<uint8_t>(d), 17);
    VokColor src = rgba(static_cast<uint8_t>(s), static_cast<uint8_t>(s), static_cast<uint8_t>(s), 3);
    VokColorBlend(&dst, &src, mode, opacity);
    EXPECT_EQ(dst.alpha, 17);
    return dst.red;
}

}  // namespace

TEST(IntegerBlend, ArithmeticModes) {
    const BlendCase cases[] = {
        {kVokBlendScreen, 255, 255, 254},  // 65025 >> 8, no & 255
        {kVokBlendMultiply, 255, 255, 254},
        {kVokBlendSoft, 100, 200, 134},
        {kVokBlendDarken, 90, 40, 40},
        {kVokBlendLighten, 90, 40, 90},
        {kVokBlendDifference, 50, 200, 150},
        {kVokBlendNegation, 200, 100, 210},
        {kVokBlendNegation, 100, 100, 200},
        {kVokBlendExclusion, 255, 255, 2},
        {kVokBlendAdd, 200, 100, 255},
        {kVokBlendAdd, 100, 50, 150},
        {kVokBlendSubtract, 200, 100, 45},
        {kVokBlendSubtract, 200, 55, 0},
        {kVokBlendSubtract, 201, 55, 1},
        {kVokBlendStamp, 255, 0, 0},
        {kVokBlendStamp, 0, 255, 255},
        {kVokBlendStamp, 255, 128, 255},
        {kVokBlendStamp, 100, 100, 45},
    };
    expect_cases(cases);
}

TEST(IntegerBlend, ThresholdsDifferBetweenOverlayAndHardLight) {
    // Overlay tests the destination: 127 multiplies, 128 screens.
    EXPECT_EQ(blend_full(kVokBlendOverlay, 127, 200), 198);
    EXPECT_EQ(blend_full(kVokBlendOverlay, 128, 200), 199);
    EXPECT_EQ(blend_full(kVokBlendOverlay, 127, 255), 253);
    EXPECT_EQ(blend_full(kVokBlendOverlay, 128, 255), 254);
    // Hard light tests the source against 126: s = 127 already screens, and
    // 65025 - 2 * 255 * 128 is negative, wrapping to 255 through & 255.
    EXPECT_EQ(blend_full(kVokBlendHard, 0, 126), 0);
    EXPECT_EQ(blend_full(kVokBlendHard, 0, 127), 255);
    EXPECT_EQ(blend_full(kVokBlendHard, 100, 126), 98);
}

TEST(IntegerBlend, DodgeAndBurnFamilies) {
    const BlendCase cases[] = {
        {kVokBlendColorDodge, 100, 100, 164},
        {kVokBlendColorDodge, 200, 100, 255},
        {kVokBlendInvColorDodge, 100, 100, 164},
        {kVokBlendInvColorDodge, 100, 200, 255},
        {kVokBlendSoftDodge, 200, 100, 157},
        {kVokBlendSoftDodge, 50, 100, 41},
        {kVokBlendSoftDodge, 0, 255, 127},
        {kVokBlendColorBurn, 200, 100, 115},
        {kVokBlendColorBurn, 100, 100, 0},
        {kVokBlendInvColorBurn, 100, 200, 115},
        {kVokBlendInvColorBurn, 100, 100, 0},
        {kVokBlendSoftBurn, 200, 100, 186},
        {kVokBlendSoftBurn, 100, 50, 40},
        {kVokBlendSoftBurn, 255, 0, 255},
        {kVokBlendReflect, 100, 100, 64},
        {kVokBlendReflect, 200, 100, 255},
        {kVokBlendGlow, 100, 100, 64},
        {kVokBlendFreeze, 100, 200, 135},
        {kVokBlendFreeze, 0, 100, 0},
        {kVokBlendHeat, 200, 100, 135},
        {kVokBlendHeat, 100, 0, 0},
        // The two zero-by-zero pairs are guarded and give 255.
        {kVokBlendReflect, 0, 255, 255},
        {kVokBlendGlow, 255, 0, 255},
    };
    expect_cases(cases);
}

TEST(IntegerBlend, AlphaRoundingChannelModesAndUnknownModes) {
    VokColor dst = rgba(0, 255, 100, 40), src = rgba(255, 0, 100, 128);
    VokColorBlendEmbededAlpha(&dst, &src, kVokBlendNormal);
    // (255 * 128 + 255) >> 8 = 128 and (255 * 127 + 255) >> 8 = 127.
    EXPECT_EQ(dst.red, 128);
    EXPECT_EQ(dst.green, 127);
    EXPECT_EQ(dst.blue, 100);
    EXPECT_EQ(dst.alpha, 40);

    VokColor src_rgb = rgba(10, 20, 30, 255);
    const VokBlendMode channel_modes[3] = {kVokBlendRed, kVokBlendGreen, kVokBlendBlue};
    for (int c = 0; c < 3; ++c) {
        VokColor d = rgba(100, 100, 100);
        VokColorBlendEmbededAlpha(&d, &src_rgb, channel_modes[c]);
        EXPECT_EQ(d.red, c == 0 ? 10 : 100);
        EXPECT_EQ(d.green, c == 1 ? 20 : 100);
        EXPECT_EQ(d.blue, c == 2 ? 30 : 100);
    }

    for (VokBlendMode mode : {29u, 1000u, 0xffffffffu}) {
        VokColor d = rgba(200, 150, 100, 9);
        VokColorBlendEmbededAlpha(&d, &src_rgb, mode);
        EXPECT_EQ(d.red + d.green + d.blue, 0) << mode;
        d = rgba(200, 150, 100, 9);
        VokColor half = rgba(1, 2, 3, 128);
        VokColorBlendEmbededAlpha(&d, &half, mode);  // darkened by the alpha
        EXPECT_EQ(d.red, (200 * 127 + 255) >> 8);
        EXPECT_EQ(d.alpha, 9);
    }

    // Zero alpha returns before anything, in every mode including 2 and 15.
    std::mt19937 engine(11);
    for (VokBlendMode mode = 0; mode <= 30; ++mode)
        for (int i = 0; i < 20; ++i) {
            uint32_t word = engine();
            VokColor d = rgba(word & 255, (word >> 8) & 255, (word >> 16) & 255, word >> 24);
            VokColor before = d;
            VokColor s = rgba(engine() & 255, engine() & 255, engine() & 255, 0);
            VokColorBlendEmbededAlpha(&d, &s, mode);
            ASSERT_TRUE(VokColorCompare(&d, &before)) << mode;
        }
}

TEST(IntegerBlend, ColorAndInterpolationModes) {
    // A grey source has no saturation, so colour mode gives the destination's
    // luminance: 0.212671 * 255 = 54.23 rounds to 54, then (54 * 255) >> 8 =
    // 53 because this mode mixes without the + 255.
    VokColor dst = rgba(255, 0, 0, 77), grey = rgba(50, 50, 50, 255);
    VokColorBlendEmbededAlpha(&dst, &grey, kVokBlendColor);
    EXPECT_EQ(dst.red, 53);
    EXPECT_EQ(dst.green, 53);
    EXPECT_EQ(dst.blue, 53);
    EXPECT_EQ(dst.alpha, 77);
    VokColor direct = rgba(255, 0, 0, 77);
    VokColorBlendColorEmbededAlpha(&direct, &grey);
    EXPECT_TRUE(VokColorCompare(&direct, &dst));

    // A saturated red source over a mid grey keeps red's hue.
    VokColor mid = rgba(128, 128, 128), red = rgba(255, 0, 0, 255);
    VokColorBlendEmbededAlpha(&mid, &red, kVokBlendColor);
    EXPECT_GT(mid.red, 200);
    EXPECT_LT(mid.green, 60);
    EXPECT_EQ(mid.green, mid.blue);

    // Cosine interpolation: c = 127 - 63 (cos dk + cos sk).
    VokColor d = rgba(0, 255, 0), s = rgba(0, 255, 255, 255);
    VokColorBlendEmbededAlpha(&d, &s, kVokBlendInterpolation);
    EXPECT_EQ(d.red, 0);     // c = 1: 255 >> 8
    EXPECT_EQ(d.green, 252);  // c = 253: 253 * 255 >> 8
    EXPECT_EQ(d.blue, 126);   // c = 127
}

TEST(FloatBlend, ModesZeroToSix) {
    EXPECT_EQ(blend_float(kVokBlendNormal, 0, 255, 0.5f), 128);
    EXPECT_EQ(blend_float(kVokBlendNormal, 40, 200, 0.0f), 40);
    EXPECT_EQ(blend_float(kVokBlendNormal, 40, 200, 1.0f), 200);
    // Overlay's float threshold is 128: 128 still multiplies, 129 screens.
    EXPECT_EQ(blend_float(kVokBlendOverlay, 128, 100, 1.0f), 100);
    EXPECT_EQ(blend_float(kVokBlendOverlay, 129, 100, 1.0f), 102);
    EXPECT_EQ(blend_float(kVokBlendScreen, 0, 0, 1.0f), 0);
    EXPECT_EQ(blend_float(kVokBlendScreen, 100, 100, 1.0f), 161);
    EXPECT_EQ(blend_float(kVokBlendDarken, 200, 50, 0.5f), 125);
    EXPECT_EQ(blend_float(kVokBlendMultiply, 200, 255, 1.0f), 200);
    EXPECT_EQ(blend_float(kVokBlendMultiply, 200, 0, 0.25f), 150);
    EXPECT_EQ(blend_float(kVokBlendSoft, 100, 200, 1.0f), 134);  // T without the 0.5
    EXPECT_EQ(blend_float(kVokBlendSoft, 101, 200, 0.5f), 117);  // (101 + 134) / 2 = 117.5
    // The final clamp is the only guard on the opacity.
    EXPECT_EQ(blend_float(kVokBlendNormal, 0, 255, 2.0f), 255);
    EXPECT_EQ(blend_float(kVokBlendNormal, 255, 0, 2.0f), 0);
    // From mode 7 up the float family writes black at any opacity.
    for (VokBlendMode mode : {7u, 15u, 28u, 5000u}) {
        EXPECT_EQ(blend_float(mode, 200, 100, 0.0f), 0) << mode;
    }

    // Colour mode uses the source alpha for the saturation, truncates, and
    // does not round: 54 * 0.5 + 255 * 0.5 = 154.5 -> 154.
    VokColor dst = rgba(255, 0, 0, 1), grey = rgba(50, 50, 50, 255);
    VokColorBlend(&dst, &grey, kVokBlendColor, 0.5f);
    EXPECT_EQ(dst.red, 154);
    EXPECT_EQ(dst.green, 27);
    EXPECT_EQ(dst.alpha, 1);
    float hsl[3];
    VokColorRGB2HSL(&grey, hsl);
    VokColor via_hsl = rgba(255, 0, 0, 1);
    VokColorBlendColorMode(&via_hsl, hsl, 255, 0.5f);
    EXPECT_TRUE(VokColorCompare(&via_hsl, &dst));
}

TEST(Memo, MatchesDirectBlendingAndFillsLevelsOnce) {
    auto memo = std::make_unique<VokBlendMemo>();
    std::mt19937 engine(3);
    for (VokBlendMode mode : {0u, 1u, 3u, 4u, 5u, 6u, 9u}) {
        VokColor source = rgba(engine() & 255, engine() & 255, engine() & 255, engine() & 255);
        VokColorBlendInitMemozied(memo.get(), mode);
        EXPECT_EQ(memo->mode, mode);
        for (int i = 0; i < 300; ++i) {
            uint32_t level = engine() & 255;
            if (i < 4) level = i == 0 ? 0 : (i == 1 ? 255 : 128);
            VokColor d = rgba(engine() & 255, engine() & 255, engine() & 255, engine() & 255);
            VokColor expected = d;
            VokColorBlend(&expected, &source, mode, level * 0.003921569f);
            VokColorBlendMemoized(&d, &source, level, memo.get());
            ASSERT_TRUE(VokColorCompare(&d, &expected)) << mode << " level " << level;
            ASSERT_EQ(memo->filled[level], 1);
        }
    }

    // Tables are keyed by level only: a later source colour is ignored until
    // the memo is initialised again, which clears the flags but not tables.
    VokColorBlendInitMemozied(memo.get(), kVokBlendNormal);
    VokColor white = rgba(255, 255, 255), black = rgba(0, 0, 0), d = rgba(0, 0, 0);
    VokColorBlendMemoized(&d, &white, 255, memo.get());
    EXPECT_EQ(d.red, 255);
    d = rgba(0, 0, 0);
    VokColorBlendMemoized(&d, &black, 255, memo.get());
    EXPECT_EQ(d.red, 255);
    VokColorBlendInitMemozied(memo.get(), kVokBlendNormal);
    for (int level = 0; level < 256; ++level) EXPECT_EQ(memo->filled[level], 0);
    EXPECT_EQ(memo->tables[255][0][0], 255);
    VokColorBlendMemoized(&d, &black, 255, memo.get());
    EXPECT_EQ(d.red, 0);

    // Colour mode in the memo is the grey-input result, channel by channel.
    VokColorBlendInitMemozied(memo.get(), kVokBlendColor);
    VokColor red = rgba(255, 0, 0, 255), pixel = rgba(200, 10, 10, 5);
    VokColorBlendMemoized(&pixel, &red, 255, memo.get());
    VokColor grey200 = rgba(200, 200, 200), grey10 = rgba(10, 10, 10);
    VokColorBlend(&grey200, &red, kVokBlendColor, 255 * 0.003921569f);
    VokColorBlend(&grey10, &red, kVokBlendColor, 255 * 0.003921569f);
    EXPECT_EQ(pixel.red, grey200.red);
    EXPECT_EQ(pixel.green, grey10.green);
    EXPECT_EQ(pixel.blue, grey10.blue);
    EXPECT_EQ(pixel.alpha, 5);
}

TEST(ColorCompare, AllFourBytesCount) {
    VokColor a = rgba(1, 2, 3, 4), b = rgba(1, 2, 3, 4), c = rgba(1, 2, 3, 5), d = rgba(1, 2, 4, 4);
    EXPECT_EQ(VokColorCompare(&a, &b), 1);
    EXPECT_EQ(VokColorCompare(&a, &c), 0);
    EXPECT_EQ(VokColorCompare(&a, &d), 0);
}
