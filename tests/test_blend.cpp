// Single-colour blending: the integer family, the float family, the colour
// mode, the memo and colour comparison.
#include <gtest/gtest.h>

#include <memory>
#include <vector>
#include <random>
#include <utility>

#include "support/bitmaps.h"
#include "vok/color.h"

using vok_test::rgba;

namespace {

struct Case {
    VokBlendMode mode;
    uint8_t d, s, expected;
    float opacity = 1.0f;
};

// Channel result on grey inputs; alpha 255 makes the output equal B(d, s) in
// the integer family. The destination's alpha must survive.
uint8_t blend_grey(const Case &c, bool integer) {
    VokColor dst = rgba(c.d, c.d, c.d, 17), src = rgba(c.s, c.s, c.s, 255);
    integer ? VokColorBlendEmbededAlpha(&dst, &src, c.mode) : VokColorBlend(&dst, &src, c.mode, c.opacity);
    EXPECT_EQ(dst.alpha, 17);
    return dst.red;
}

}  // namespace

TEST(Blend, HandWorkedValuesAndThresholds) {
    const Case integer[] = {
        {kVokBlendScreen, 255, 255, 254},   {kVokBlendMultiply, 255, 255, 254}, {kVokBlendSoft, 100, 200, 134},      {kVokBlendDarken, 90, 40, 40},
        {kVokBlendLighten, 90, 40, 90},     {kVokBlendDifference, 50, 200, 150}, {kVokBlendNegation, 200, 100, 210},  {kVokBlendExclusion, 255, 255, 2},
        {kVokBlendAdd, 200, 100, 255},      {kVokBlendSubtract, 200, 55, 0},    {kVokBlendSubtract, 201, 55, 1},     {kVokBlendStamp, 255, 0, 0},
        {kVokBlendStamp, 0, 255, 255},      {kVokBlendStamp, 255, 128, 255},    {kVokBlendStamp, 100, 100, 45},      {kVokBlendColorDodge, 100, 100, 164},
        {kVokBlendColorDodge, 200, 100, 255}, {kVokBlendInvColorDodge, 100, 200, 255}, {kVokBlendSoftDodge, 200, 100, 157}, {kVokBlendSoftDodge, 50, 100, 41},
        {kVokBlendSoftDodge, 0, 255, 127},  {kVokBlendColorBurn, 200, 100, 115}, {kVokBlendColorBurn, 100, 100, 0},    {kVokBlendInvColorBurn, 100, 200, 115},
        {kVokBlendSoftBurn, 200, 100, 186}, {kVokBlendSoftBurn, 100, 50, 40},   {kVokBlendSoftBurn, 255, 0, 255},    {kVokBlendReflect, 100, 100, 64},
        {kVokBlendGlow, 100, 100, 64},      {kVokBlendFreeze, 100, 200, 135},   {kVokBlendFreeze, 0, 100, 0},        {kVokBlendHeat, 200, 100, 135},
        // Overlay tests the destination against 127, hard light the source
        // against 126; s = 127 screens and wraps through & 255.
        {kVokBlendOverlay, 127, 200, 198},  {kVokBlendOverlay, 128, 200, 199},  {kVokBlendHard, 0, 126, 0},          {kVokBlendHard, 0, 127, 255},
        // The two zero-by-zero pairs are guarded and give 255; unknown modes blend black.
        {kVokBlendReflect, 0, 255, 255},    {kVokBlendGlow, 255, 0, 255},       {29, 200, 100, 0},                   {0xffffffffu, 200, 100, 0},
    };
    const Case floating[] = {
        {kVokBlendNormal, 0, 255, 128, 0.5f},  {kVokBlendNormal, 0, 255, 255, 2.0f},  // only the final clamp
        {kVokBlendOverlay, 128, 100, 100},     {kVokBlendOverlay, 129, 100, 102},     // threshold 128 here
        {kVokBlendScreen, 100, 100, 161},      {kVokBlendDarken, 200, 50, 125, 0.5f},
        {kVokBlendMultiply, 200, 0, 150, 0.25f}, {kVokBlendSoft, 101, 200, 117, 0.5f},  // no 0.5 added
        {kVokBlendLighten, 200, 100, 0, 0},    {kVokBlendHeat, 200, 100, 0},           // 7 and up: black
    };
    for (const Case &c : integer) EXPECT_EQ(blend_grey(c, true), c.expected) << c.mode << ": " << +c.d << ", " << +c.s;
    for (const Case &c : floating) EXPECT_EQ(blend_grey(c, false), c.expected) << c.mode << ": " << +c.d << ", " << +c.s;
}

TEST(IntegerBlend, ChannelModesAndAlphaZero) {
    // (s a + d (255 - a) + 255) >> 8, the channel modes on their own channel.
    const VokColor source = rgba(10, 20, 30, 128), rgb0 = rgba(10, 20, 30, 0);
    const std::pair<VokBlendMode, VokColor> cases[] = {{kVokBlendNormal, rgba(55, 60, 65, 40)}, {kVokBlendRed, rgba(55, 100, 100, 40)},
                                                       {kVokBlendGreen, rgba(100, 60, 100, 40)}, {kVokBlendBlue, rgba(100, 100, 65, 40)}};
    for (const auto &[mode, expected] : cases) {
        VokColor d = rgba(100, 100, 100, 40);
        VokColorBlendEmbededAlpha(&d, &source, mode);
        EXPECT_EQ(d, expected) << mode;
    }
    // Alpha 0 returns before the two modes whose arithmetic would still move d.
    for (VokBlendMode mode : {kVokBlendColor, kVokBlendInterpolation}) {
        VokColor d = rgba(200, 100, 50, 9);
        VokColorBlendEmbededAlpha(&d, &rgb0, mode);
        EXPECT_EQ(d, rgba(200, 100, 50, 9)) << mode;
    }
}

TEST(Blend, ColorAndInterpolationModes) {
    // A grey source has no saturation: the result is the destination's
    // luminance, 54.23 -> 54, mixed without the + 255: (54 * 255) >> 8 = 53.
    // The float family mixes 0.5 * 54 + 0.5 * 255 = 154.5 and truncates.
    const VokColor red = rgba(255, 0, 0, 77), grey = rgba(50, 50, 50, 255);
    VokColor integer = red, floating = red, via_hsl = red;
    VokColorBlendEmbededAlpha(&integer, &grey, kVokBlendColor);
    VokColorBlend(&floating, &grey, kVokBlendColor, 0.5f);
    float hsl[3];
    VokColorRGB2HSL(&grey, hsl);
    VokColorBlendColorMode(&via_hsl, hsl, 255, 0.5f);
    EXPECT_EQ(integer, rgba(53, 53, 53, 77));
    EXPECT_EQ(floating, rgba(154, 27, 27, 77));
    EXPECT_EQ(via_hsl, floating);
    // c = 127 - 63 (cos dk + cos sk): 1 for two zeros, 253 for two 255s.
    VokColor d = rgba(0, 255, 0), s = rgba(0, 255, 255, 255);
    VokColorBlendInterpolationEmbededAlpha(&d, &s);
    EXPECT_EQ(d, rgba(0, 252, 126));
}

TEST(Memo, MatchesDirectBlendingPerLevel) {
    auto memo = std::make_unique<VokBlendMemo>();
    std::mt19937 engine(3);
    for (VokBlendMode mode : {0u, 1u, 3u, 4u, 5u, 6u, 9u}) {
        const VokColor source = rgba(engine(), engine(), engine(), engine());
        VokColorBlendInitMemozied(memo.get(), mode);
        for (int i = 0; i < 300; ++i) {
            const uint32_t level = i < 2 ? 255 * i : engine() & 255;
            VokColor d = rgba(engine(), engine(), engine(), engine()), expected = d;
            VokColorBlend(&expected, &source, mode, level * 0.003921569f);
            VokColorBlendMemoized(&d, &source, level, memo.get());
            ASSERT_EQ(d, expected) << mode << " level " << level;
        }
    }
    // Levels above 255 are taken as 255; the tables are keyed by level only.
    const VokColor white = rgba(255, 255, 255, 1), black = rgba(0, 0, 0, 1);
    VokColorBlendInitMemozied(memo.get(), kVokBlendNormal);
    VokColor d = black;
    VokColorBlendMemoized(&d, &white, 256, memo.get());
    VokColorBlendMemoized(&d, &black, 0xffffffffu, memo.get());
    EXPECT_TRUE(VokColorCompare(&d, &white));
    d.alpha = 2;  // alpha counts in the comparison
    EXPECT_FALSE(VokColorCompare(&d, &white));
}

// The float family's normal mode over every pair of levels at many opacities,
// against the rule in single precision: o s + (1 - o) d + 0.5, truncated.
TEST(Blend, FloatNormalIsSinglePrecisionEverywhere) {
    std::mt19937 engine(7);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    std::vector<float> opacities = {0.0f, 1.0f, 0.5f, 0.1f, 0.3f, 0.7f, 0.9f};
    while (opacities.size() < 24) opacities.push_back(unit(engine));
    int wrong = 0;
    for (float o : opacities) {
        for (int d = 0; d < 256; ++d) {
            for (int s = 0; s < 256; ++s) {
                VokColor dst = rgba(d, d, d), src = rgba(s, s, s);
                VokColorBlend(&dst, &src, kVokBlendNormal, o);
                const float y = o * s + (1.0f - o) * d + 0.5f;
                const int want = y > 255.0f ? 255 : static_cast<int>(y);
                wrong += dst.red != want || dst.blue != want;
            }
        }
    }
    EXPECT_EQ(wrong, 0);
}
