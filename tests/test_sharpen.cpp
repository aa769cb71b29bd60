// The box-hybrid filter, its error-function weights and its public wrappers.
#include <gtest/gtest.h>

#include <math.h>

#include <algorithm>
#include <vector>

#include "support/bitmaps.h"
#include "vok/generators.h"

using vok_test::TestBitmap;
using vok_test::rgba;

namespace {

// The boxes of a pass over a W x H bitmap: n_old = floor(1.5 s) + 1 single
// pixels, or 2n + 1 boxes of width 2k + 1 once n_old reaches 5.
struct Boxes {
    bool sharpen;
    float s;
    int64_t n_old, n, k, width;
};

Boxes plan(uint32_t w, uint32_t h, float amount) {
    Boxes b{};
    // 2.5e-5 is a double: the product is double, stored once as a float.
    b.s = static_cast<float>(static_cast<float>(w + h) * 2.5e-5 * amount);
    b.sharpen = b.s >= 0.0f;
    b.s = fabsf(b.s);
    b.n_old = b.n = static_cast<int64_t>(floorf(1.5f * b.s)) + 1;
    b.width = 1;
    if (b.n >= 5) {
        b.k = static_cast<int64_t>(floor((0.25 * b.n - 1) / 2)) + 1;
        b.width = 2 * b.k + 1;
        b.n = b.n / b.width + 1;
    }
    return b;
}

// One pass as a plain convolution: 2n + 1 side-by-side boxes of `width` pixels weighted
// by their truncated normal masses, the line's end pixels repeated past its ends.
void reference_pass(TestBitmap &bm, float amount, bool rows) {
    const uint32_t w = bm.get()->width, h = bm.get()->height;
    const Boxes b = plan(w, h, amount);
    if (b.s == 0.0f) return;
    const bool sharpen = b.sharpen;
    const float s = b.s;
    const int64_t n = b.n, k = b.k, width = b.width;
    const float sigma = s / static_cast<float>(width);
    std::vector<float> mass;
    float sum = 0;
    for (int64_t i = -n; i <= n; ++i) {
        const float c = static_cast<float>(i);
        mass.push_back(VokMathNormalCDF(c + 0.5f, sigma) - VokMathNormalCDF(c - 0.5f, sigma));
        sum += mass.back();
    }
    const float scale = 4096.0f / (static_cast<float>(width) * sum);
    std::vector<int64_t> weight;
    for (float m : mass) weight.push_back(static_cast<int32_t>(m * scale));
    const int64_t reach = k + n * width, length = rows ? w : h, step = rows ? 4 : 4 * int64_t(w);
    for (uint32_t line = 0; line < (rows ? h : w); ++line) {
        for (int c = 0; c < 3; ++c) {
            uint8_t *first = (rows ? &bm.at(0, line).red : &bm.at(line, 0).red) + c;
            std::vector<int64_t> in(length);
            for (int64_t i = 0; i < length; ++i) in[i] = first[i * step];
            for (int64_t x = 0; x < length; ++x) {
                int64_t total = 2048;
                for (int64_t j = 0; j <= 2 * n; ++j) {
                    for (int64_t i = 0; weight[j] != 0 && i < width; ++i) {
                        total += weight[j] * in[std::clamp<int64_t>(x - reach + j * width + i, 0, length - 1)];
                    }
                }
                const int64_t r = sharpen ? (3 * in[x] - total / 4096 + 1) / 2 : total / 4096;
                first[x * step] = static_cast<uint8_t>(std::clamp<int64_t>(r, 0, 255));
            }
        }
    }
}

// Red of row 0 after the horizontal pass over `background` with `peak` at column `at`.
std::vector<int> impulse_row(uint32_t w, uint32_t h, float amount, uint8_t background, uint8_t peak, uint32_t at) {
    TestBitmap bm(w, h);
    bm.fill(rgba(background, background, background));
    bm.at(at, 0) = rgba(peak, peak, peak);
    VokBoxHybridSharpenX(bm.get(), amount);
    std::vector<int> out;
    for (uint32_t x = 0; x < w; ++x) out.push_back(bm.at(x, 0).red);
    return out;
}

// Whether an impulse at `at` on a black row spreads exactly `r` pixels each way.
bool reaches(const std::vector<int> &row, int at, int r) {
    return row[at - r] != 0 && row[at - r - 1] == 0 && row[at + r] != 0 && row[at + r + 1] == 0;
}

}  // namespace

TEST(Erf, MatchesLibmAndScalesBySigma) {
    double worst = 0;
    for (int i = -6000; i <= 6000; ++i) worst = fmax(worst, fabs(VokMathErf(i * 0.001f) - erf(i * 0.001f)));
    EXPECT_LT(worst, 1e-6);
    EXPECT_EQ(VokMathErfccheb(-0.5f), 0.0f);
    EXPECT_NEAR(VokMathNormalCDF(-2.0f, 2.0f), 0.1586553f, 1e-6);
}

TEST(BoxHybrid, WeightsAndBoxesWorkedByHand) {
    // 100 x 100 at amount 100: s = 0.5, one box of width 1 each side; sigma 0.5
    // gives masses 0.1573, 0.6827, 0.1573 and weights 646, 2803, 646.
    auto around_50 = [](std::vector<int> row) { return std::vector<int>(row.begin() + 48, row.begin() + 53); };
    // Blur: (2048 + 646 x 100 + 2803 x 200 + 646 x 100) / 4096 = 168, neighbours 116.
    EXPECT_EQ(around_50(impulse_row(100, 100, -100.0f, 100, 200, 50)), (std::vector<int>{100, 116, 168, 116, 100}));
    // Sharpen moves each pixel half-way away from that blur: (3o - b + 1) / 2.
    EXPECT_EQ(around_50(impulse_row(100, 100, 100.0f, 100, 200, 50)), (std::vector<int>{100, 92, 216, 92, 100}));
    // A white dot on black overshoots and clamps, and so does a black dot on white.
    EXPECT_EQ(around_50(impulse_row(100, 100, 100.0f, 0, 255, 50)), (std::vector<int>{0, 0, 255, 0, 0}));
    EXPECT_EQ(around_50(impulse_row(100, 100, 100.0f, 255, 0, 50)), (std::vector<int>{255, 255, 0, 255, 255}));

    // W + H = 50: amount 2000 gives s = 2.5, four single-pixel boxes a side;
    // 2400 gives s = 3, where n = 5 turns into two boxes of width 3 a side.
    EXPECT_TRUE(reaches(impulse_row(40, 10, -2000.0f, 0, 255, 20), 20, 4));
    EXPECT_TRUE(reaches(impulse_row(40, 10, -2400.0f, 0, 255, 20), 20, 7));
    // W + H = 4000 at amount 100: s = 10 exactly, n_old = 16, nine boxes of
    // width 5 reaching 22 (a single-precision product would give 9.999999 and 15).
    const Boxes worked = plan(2000, 2000, 100.0f);
    EXPECT_EQ(worked.s, 10.0f);
    EXPECT_EQ(worked.n_old, 16);
    EXPECT_EQ(worked.k, 2);
    EXPECT_EQ(worked.width, 5);
    EXPECT_EQ(worked.n, 4);
    EXPECT_TRUE(reaches(impulse_row(3990, 10, -100.0f, 0, 255, 2000), 2000, 22));

    // The anti-aliasing blur is amount -5: on W + H = 4000 the weights above.
    TestBitmap aa(3990, 10);
    aa.fill(rgba(100, 100, 100));
    for (uint32_t y = 0; y < 10; ++y) aa.at(2000, y) = rgba(200, 200, 200);
    VokConvolutionAntialiasGL(aa.get());
    EXPECT_EQ(aa.at(1999, 5), rgba(116, 116, 116));
    EXPECT_EQ(aa.at(2000, 5), rgba(168, 168, 168));
}

TEST(BoxHybrid, PassesMatchThePlainRuleOnRandomImages) {
    const uint32_t sizes[][2] = {{37, 21}, {16, 16}, {1, 9}, {9, 1}, {50, 3}};
    uint32_t seed = 1;
    for (const auto &size : sizes) {
        for (float amount : {0.0f, 100.0f, -100.0f, 2400.0f, -7000.0f, 37.5f, 1e6f, -4e7f}) {
            TestBitmap image(size[0], size[1]);
            image.randomize(seed++);
            TestBitmap got(image), want(image), both(image);
            VokBoxHybridSharpenX(got.get(), amount);
            reference_pass(want, amount, true);
            EXPECT_EQ(got.bytes(), want.bytes()) << size[0] << "x" << size[1] << " X " << amount;
            VokBoxHybridSharpenY(got.get(), amount);
            VokConvolutionEffectBoxHybridSharpen(both.get(), amount);
            reference_pass(want, amount, false);
            EXPECT_EQ(got.bytes(), want.bytes()) << size[0] << "x" << size[1] << " Y " << amount;
            EXPECT_EQ(both.bytes(), got.bytes()) << size[0] << "x" << size[1] << " " << amount;
        }
    }
    // Sizes and amounts where a single-precision spread would move the weights.
    const struct { uint32_t w, h; float amount; } spread_cases[] = {
        {3998, 2, 20.0f}, {2, 3998, 20.0f}, {600, 40, -125.0f}, {3998, 2, 100.0f}};
    for (const auto &c : spread_cases) {
        TestBitmap got(c.w, c.h);
        got.randomize(seed++);
        TestBitmap want(got);
        VokConvolutionEffectBoxHybridSharpen(got.get(), c.amount);
        reference_pass(want, c.amount, true);
        reference_pass(want, c.amount, false);
        EXPECT_EQ(got.bytes(), want.bytes()) << c.w << "x" << c.h << " " << c.amount;
    }
}

TEST(SharpenWrappers, SharpenAndBlendAndSoftFocus) {
    TestBitmap image(21, 17);
    image.randomize(77);
    // A sharpened copy screened back over the original; amount 0 leaves it alone.
    TestBitmap got(image), sharpened(image), want(image), same(image);
    VokConvolutionProcessorSharpenAndBlendWithOriginal(got.get(), 300.0f, 0.6f, kVokBlendScreen);
    VokConvolutionEffectBoxHybridSharpen(sharpened.get(), 300.0f);
    VokBitmapBlendBitmap(want.get(), sharpened.get(), kVokBlendScreen, 0.6f);
    EXPECT_EQ(got.bytes(), want.bytes());
    VokConvolutionProcessorSharpenAndBlendWithOriginal(same.get(), 0.0f, 0.8f, kVokBlendScreen);
    EXPECT_EQ(same.bytes(), image.bytes());
    // Soft focus: 0.5 x the blur + 0.6 x the original, alpha kept.
    TestBitmap grey(20, 20);
    grey.fill(rgba(100, 200, 0, 9));
    EXPECT_NE(VokConvolutionEffectSoftFocus(grey.get()), 0);
    EXPECT_EQ(grey.at(7, 7), rgba(110, 220, 0, 9));
    // On a textured image (W + H = 440: a real blur) the weights are not interchangeable.
    TestBitmap texture(400, 40);
    texture.randomize(78);
    TestBitmap soft(texture), blurred(texture);
    ASSERT_NE(VokConvolutionEffectSoftFocus(soft.get()), 0);
    VokConvolutionEffectBoxHybridSharpen(blurred.get(), -100.0f);
    for (uint32_t y = 0; y < 40; y += 3) {
        for (uint32_t x = 0; x < 400; x += 7) {
            const float b = blurred.at(x, y).green, o = texture.at(x, y).green;
            const float v = 0.5f * b + 0.6f * o;
            ASSERT_EQ(soft.at(x, y).green, v > 255.0f ? 255 : static_cast<int>(v)) << x << "," << y;
        }
    }
}
