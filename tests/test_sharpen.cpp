// The box-hybrid filter and its error-function weights.
#include <gtest/gtest.h>

#include <math.h>

#include <vector>

#include "support/bitmaps.h"
#include "vok/generators.h"

using vok_test::TestBitmap;
using vok_test::rgba;

namespace {

// The filter written out pixel by pixel, tap by tap, straight from its rules,
// to hold the vectorised passes to.
struct Reference {
    int64_t n = 0, k = 0, width = 1;
    bool sharpen = true;
    std::vector<uint32_t> taps;

    bool plan(uint32_t w, uint32_t h, float amount) {
        float s = static_cast<float>(w + h) * 2.5e-5f * amount;
        sharpen = s >= 0.0f;
        s = fabsf(s);
        if (s == 0.0f) return false;
        n = static_cast<int64_t>(floorf(1.5f * s)) + 1;
        k = 0;
        width = 1;
        if (n >= 5) {
            k = static_cast<int64_t>(floor((0.25 * n - 1) / 2)) + 1;
            width = 2 * k + 1;
            n = n / width + 1;
        }
        float sigma = s / static_cast<float>(width);
        std::vector<float> p;
        float sum = 0;
        for (int64_t i = 0; i <= 2 * n; ++i) {
            float c = static_cast<float>(i - n);
            p.push_back(VokMathNormalCDF(c + 0.5f, sigma) - VokMathNormalCDF(c - 0.5f, sigma));
            sum += p.back();
        }
        float scale = 4096.0f / (static_cast<float>(width) * sum);
        std::vector<int32_t> box;
        for (float m : p) box.push_back(static_cast<int32_t>(m * scale));
        taps.assign(2 * n + 2, 0);
        taps[0] = -static_cast<uint32_t>(box[0]);
        for (int64_t j = 1; j <= 2 * n; ++j) taps[j] = static_cast<uint32_t>(box[j - 1] - box[j]);
        taps[2 * n + 1] = static_cast<uint32_t>(box[2 * n]);
        return true;
    }

    // One line of `length` channel values (stride `step`) filtered in place.
    void line(uint8_t *first, int64_t length, int64_t step) const {
        std::vector<uint32_t> sums(length);
        uint32_t run = 0;
        for (int64_t i = 0; i < length; ++i) sums[i] = run += first[i * step];
        auto at = [&](int64_t q) -> uint32_t {
            if (q < 0) return sums[0] * static_cast<uint32_t>(q + 1);
            if (q < length) return sums[q];
            uint32_t below = length >= 2 ? sums[length - 2] : 0;
            return sums[length - 1] + (sums[length - 1] - below) * static_cast<uint32_t>(q - length + 1);
        };
        for (int64_t x = 0; x < length; ++x) {
            int64_t a = x - k - n * width - 1;
            uint32_t value = 2048;
            for (int64_t j = 0; j <= 2 * n + 1; ++j) value += taps[j] * at(a + j * width);
            int32_t b = static_cast<int32_t>(value) / 4096;
            int32_t r = sharpen ? (3 * first[x * step] - b + 1) / 2 : b;
            first[x * step] = static_cast<uint8_t>(r < 0 ? 0 : (r > 255 ? 255 : r));
        }
    }

    void pass(TestBitmap &bm, float amount, bool rows) {
        const uint32_t w = bm.get()->width, h = bm.get()->height;
        if (!plan(w, h, amount)) return;
        for (int c = 0; c < 3; ++c) {
            if (rows) {
                for (uint32_t y = 0; y < h; ++y) line(&bm.at(0, y).red + c, w, 4);
            } else {
                for (uint32_t x = 0; x < w; ++x) line(&bm.at(x, 0).red + c, h, 4 * int64_t(w));
            }
        }
    }
};

// Red channel of row y after the horizontal pass of a row holding `background`
// everywhere except `peak` at column `at`.
std::vector<int> impulse_row(uint32_t w, uint32_t h, float amount, uint8_t background,
                             uint8_t peak, uint32_t at) {
    TestBitmap bm(w, h);
    bm.fill(rgba(background, background, background, 255));
    bm.at(at, 0) = rgba(peak, peak, peak, 255);
    VokBoxHybridSharpenX(bm.get(), amount);
    std::vector<int> out;
    for (uint32_t x = 0; x < w; ++x) out.push_back(bm.at(x, 0).red);
    return out;
}

// Columns around `at` that the impulse reaches (non-zero on a black row).
int reach(const std::vector<int> &row, int at) {
    int r = 0;
    while (at - r - 1 >= 0 && row[at - r - 1] != 0) ++r;
    return r;
}

}  // namespace

TEST(Erf, MatchesLibmAndHandlesTheEdges) {
    double worst = 0;
    for (int i = -6000; i <= 6000; ++i) {
        float x = static_cast<float>(i) * 0.001f;
        worst = fmax(worst, fabs(static_cast<double>(VokMathErf(x)) - erf(static_cast<double>(x))));
    }
    EXPECT_LT(worst, 1e-6);
    EXPECT_EQ(VokMathErfccheb(-0.5f), 0.0f);
    EXPECT_NEAR(VokMathErfccheb(0.0f), 1.0f, 1e-6);
    EXPECT_NEAR(VokMathErfccheb(3.0f), erfc(3.0), 1e-9);
    EXPECT_EQ(VokMathNormalCDF(0.0f, 2.0f), 0.5f);
    EXPECT_NEAR(VokMathNormalCDF(1.0f, 1.0f), 0.8413447f, 1e-6);
    EXPECT_NEAR(VokMathNormalCDF(-2.0f, 2.0f), 0.1586553f, 1e-6);
}

TEST(BoxHybrid, SmallRadiusWeightsWorkedByHand) {
    // 100 x 100 at amount 100: s = 0.5, one box each side of width 1.
    // sigma 0.5 gives masses 0.1573, 0.6827, 0.1573 and weights 646, 2803, 646.
    std::vector<int> sharp = impulse_row(100, 100, 100.0f, 100, 200, 50);
    std::vector<int> blur = impulse_row(100, 100, -100.0f, 100, 200, 50);
    // Blur: (2048 + 646*100 + 2803*200 + 646*100) / 4096 = 168, neighbours 116.
    EXPECT_EQ(blur[50], 168);
    EXPECT_EQ(blur[49], 116);
    EXPECT_EQ(blur[51], 116);
    EXPECT_EQ(blur[48], 100);
    // Sharpen moves each pixel half-way away from that blur: (3o - b + 1) / 2.
    EXPECT_EQ(sharp[50], 216);
    EXPECT_EQ(sharp[49], 92);
    EXPECT_EQ(sharp[51], 92);
    EXPECT_EQ(sharp[48], 100);
    EXPECT_EQ(sharp[0], 100);
    EXPECT_EQ(sharp[99], 100);

    // A white dot on black overshoots to 255 and its black neighbours clamp to 0.
    std::vector<int> dot = impulse_row(100, 100, 100.0f, 0, 255, 50);
    EXPECT_EQ(dot[50], 255);
    EXPECT_EQ(dot[49], 0);
    TestBitmap hole(100, 100);
    hole.fill(rgba(255, 255, 255, 255));
    hole.at(50, 0) = rgba(0, 0, 0, 255);
    VokBoxHybridSharpenX(hole.get(), 100.0f);
    EXPECT_EQ(hole.at(50, 0).red, 0);
    EXPECT_EQ(hole.at(49, 0).red, 255);
}

TEST(BoxHybrid, BoxCountAndWidthFollowTheSizeAndAmount) {
    // W + H = 50: amount 2000 gives s = 2.5, four single-pixel boxes a side.
    EXPECT_EQ(reach(impulse_row(40, 10, -2000.0f, 0, 255, 20), 20), 4);
    // Amount 2400 gives s = 3: n = 5 turns into two boxes of width 3 a side,
    // reaching 2 * 3 + 1 pixels.
    std::vector<int> wide = impulse_row(40, 10, -2400.0f, 0, 255, 20);
    EXPECT_EQ(reach(wide, 20), 7);
    for (int x = 13; x <= 27; x += 3) EXPECT_EQ(wide[x], wide[x + 1]) << x;
    // W + H = 4000 at amount 100: s = 10, nine boxes of width 5 reaching 22.
    std::vector<int> nine = impulse_row(3990, 10, -100.0f, 0, 255, 2000);
    EXPECT_EQ(reach(nine, 2000), 22);
    for (int g = 0; g < 9; ++g) {
        int first = 2000 - 22 + 5 * g;
        for (int x = first; x < first + 5; ++x) EXPECT_EQ(nine[x], nine[first]) << x;
    }
    // -5 on a small image is the lightest blur: a single box each side.
    TestBitmap aa(30, 30);
    aa.fill(rgba(0, 0, 0, 255));
    aa.at(15, 15) = rgba(255, 255, 255, 255);
    VokConvolutionAntialiasGL(aa.get());
    EXPECT_GT(aa.at(15, 15).red, 0);
    EXPECT_GE(aa.at(14, 15).red, 0);
    EXPECT_EQ(aa.at(13, 15).red, 0);
    EXPECT_EQ(aa.at(15, 13).red, 0);
}

TEST(BoxHybrid, UniformStaysUniformAlphaStaysAndZeroDoesNothing) {
    TestBitmap bm(23, 19);
    bm.fill(rgba(77, 180, 3, 0));
    for (uint32_t y = 0; y < 19; ++y) bm.at(y % 23, y).alpha = static_cast<uint8_t>(y * 13);
    TestBitmap original(bm);
    VokConvolutionEffectBoxHybridSharpen(bm.get(), 0.0f);
    EXPECT_EQ(bm.bytes(), original.bytes());
    for (float amount : {100.0f, -100.0f, 5000.0f, -30000.0f}) {
        TestBitmap f(original);
        VokConvolutionEffectBoxHybridSharpen(f.get(), amount);
        // Truncated weights lose up to one 4096th per box pixel in each pass:
        // a single pixel's worth on small radii, a few percent on wide boxes.
        const VokColor first = f.at(0, 0);
        const int slack = fabsf(amount) <= 100.0f ? 1 : 180 / 20;
        EXPECT_LE(abs(first.red - 77), slack) << amount;
        EXPECT_LE(abs(first.green - 180), slack) << amount;
        for (uint32_t y = 0; y < 19; ++y) {
            for (uint32_t x = 0; x < 23; ++x) {
                EXPECT_EQ(f.at(x, y).red, first.red);
                EXPECT_EQ(f.at(x, y).green, first.green);
                EXPECT_EQ(f.at(x, y).blue, first.blue);
                EXPECT_EQ(f.at(x, y).alpha, original.at(x, y).alpha);
            }
        }
    }
}

TEST(BoxHybrid, BlurNeverOvershootsAnEdge) {
    TestBitmap step(60, 12);
    for (uint32_t y = 0; y < 12; ++y)
        for (uint32_t x = 0; x < 60; ++x) step.at(x, y) = x < 30 ? rgba(20, 20, 20) : rgba(230, 230, 230);
    TestBitmap blurred(step), sharpened(step);
    VokConvolutionEffectBoxHybridSharpen(blurred.get(), -3000.0f);
    VokConvolutionEffectBoxHybridSharpen(sharpened.get(), 3000.0f);
    for (uint32_t x = 1; x < 60; ++x) {
        EXPECT_GE(blurred.at(x, 5).red, blurred.at(x - 1, 5).red) << x;
        EXPECT_GE(blurred.at(x, 5).red, 19);
        EXPECT_LE(blurred.at(x, 5).red, 230);
    }
    EXPECT_GT(blurred.at(29, 5).red, 20);
    EXPECT_LT(sharpened.at(29, 5).red, 20);
    EXPECT_GT(sharpened.at(30, 5).red, 230);
}

TEST(BoxHybrid, PassesMatchThePlainRuleOnRandomImages) {
    struct Size { uint32_t w, h; };
    const Size sizes[] = {{37, 21}, {16, 16}, {1, 9}, {9, 1}, {50, 3}};
    const float amounts[] = {100.0f, -100.0f, 2400.0f, -7000.0f, 37.5f, 1e6f, -4e7f};
    uint32_t seed = 1;
    for (const Size &size : sizes) {
        for (float amount : amounts) {
            TestBitmap image(size.w, size.h);
            image.randomize(seed++);
            TestBitmap got(image), want(image);
            VokBoxHybridSharpenX(got.get(), amount);
            Reference().pass(want, amount, true);
            EXPECT_EQ(got.bytes(), want.bytes()) << size.w << "x" << size.h << " X " << amount;
            VokBoxHybridSharpenY(got.get(), amount);
            Reference().pass(want, amount, false);
            EXPECT_EQ(got.bytes(), want.bytes()) << size.w << "x" << size.h << " Y " << amount;
        }
    }
}

TEST(SharpenWrappers, BlendWithOriginalAndSoftFocusComposeTheirSteps) {
    TestBitmap image(21, 17);
    image.randomize(77);

    // Either zero leaves the bitmap as it is.
    TestBitmap same(image);
    VokConvolutionProcessorSharpenAndBlendWithOriginal(same.get(), 0.0f, 0.8f, kVokBlendNormal);
    VokConvolutionProcessorSharpenAndBlendWithOriginal(same.get(), 300.0f, 0.0f, kVokBlendNormal);
    VokSharpness(same.get(), 0.0f);
    EXPECT_EQ(same.bytes(), image.bytes());

    // A sharpened copy blended back over the original.
    TestBitmap got(image), sharpened(image), want(image);
    VokConvolutionProcessorSharpenAndBlendWithOriginal(got.get(), 300.0f, 0.6f, kVokBlendScreen);
    VokConvolutionEffectBoxHybridSharpen(sharpened.get(), 300.0f);
    VokBitmapBlendBitmap(want.get(), sharpened.get(), kVokBlendScreen, 0.6f);
    EXPECT_EQ(got.bytes(), want.bytes());
    EXPECT_NE(got.bytes(), image.bytes());

    // Soft focus: 0.5 x blurred + 0.6 x original.
    TestBitmap soft(image), blurred(image);
    EXPECT_NE(VokConvolutionEffectSoftFocus(soft.get()), 0);
    VokConvolutionEffectBoxHybridSharpen(blurred.get(), -100.0f);
    VokBitmapBlendBitmapSeparate(blurred.get(), image.get(), 0.5f, 0.6f);
    EXPECT_EQ(soft.bytes(), blurred.bytes());
    TestBitmap grey(20, 20);
    grey.fill(rgba(100, 200, 0, 9));
    VokConvolutionEffectSoftFocus(grey.get());
    EXPECT_EQ(grey.at(7, 7).red, 110);
    EXPECT_EQ(grey.at(7, 7).green, 220);
    EXPECT_EQ(grey.at(7, 7).alpha, 9);
}
