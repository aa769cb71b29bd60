// Painting gradients: the plain gradient, the gradient map and the gradient
// flare with its shapes, wrap modes, aspect modes and alpha handling.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "support/bitmaps.h"
#include "support/gradients.h"
#include "vok/generators.h"

using vok_test::TestBitmap;
using vok_test::rgba;

namespace {

using Gradient = vok_test::GradientStops;

const uint32_t kNormal = 0;

bool same_rgb(const VokColor &a, const VokColor &b) {
    return a.red == b.red && a.green == b.green && a.blue == b.blue;
}

// Red of a 1 x 1 black pixel after the flare helper evaluates `shape` at the
// dyadic point (x, y), looked up in a 101-entry ramp whose entry i has red i:
// the red byte is trunc(100 t) of the wrapped t.
int flare_sample(int32_t shape, double x, double y, const double *params, int32_t wrap = 0,
                 uint8_t invert = 0) {
    std::vector<VokColor> ramp(101);
    for (int i = 0; i <= 100; ++i) ramp[i] = rgba(static_cast<uint8_t>(i), 0, 0, 255);
    const int32_t f[16] = {0, 0, 0, static_cast<int32_t>(x * 16777216.0),
                           0, 0, 0, static_cast<int32_t>(y * 16777216.0)};
    TestBitmap px(1, 1);
    px.fill(rgba(0, 0, 0, 255));
    VokFlareApplyHelper(px.get(), shape, f, params, ramp.data(), 101, 24, kNormal, wrap, invert, 0);
    return px.at(0, 0).red;
}

}  // namespace

TEST(GradientApply, LinearAndRadialPickTheirEntries) {
    Gradient g;
    g.color(0, 0, 0, 0).color(250, 100, 20, 100);
    std::vector<VokColor> table = g.table(1024);
    VokGradientShapeParams p;
    VokGradientShapeParamsInit(&p);

    // Origin at the left edge: t = c / 5, entry floor(1023 t + 0.5).
    p.xCenter = 0.0;
    TestBitmap bm(5, 2);
    bm.fill(rgba(9, 9, 9, 77));
    VokGradientApply(bm.get(), &p, g.get(), kNormal, 1.0);
    const int entries[5] = {0, 205, 409, 614, 818};
    for (uint32_t c = 0; c < 5; ++c) {
        EXPECT_TRUE(same_rgb(bm.at(c, 1), table[entries[c]])) << c;
        EXPECT_EQ(bm.at(c, 1).alpha, 77);
    }

    // A quarter turn runs the gradient up the image: u = -Y = 1 - r / H.
    p.angle = 1.5707963267948966;
    p.yCenter = 1.0;
    TestBitmap up(1, 4);
    VokGradientApply(up.get(), &p, g.get(), kNormal, 1.0);
    EXPECT_TRUE(same_rgb(up.at(0, 0), table[1023]));
    EXPECT_TRUE(same_rgb(up.at(0, 2), table[512]));

    // Radial ignores the angle: centre takes entry 0, a corner sqrt(0.5).
    p.gradientShape = 1;
    p.xCenter = p.yCenter = 0.5;
    TestBitmap round(4, 4);
    VokGradientApply(round.get(), &p, g.get(), kNormal, 1.0);
    EXPECT_TRUE(same_rgb(round.at(2, 2), table[0]));
    EXPECT_TRUE(same_rgb(round.at(0, 0), table[723]));

    // Scale 0 disables the call; strength 0 blends with weight 0.
    TestBitmap untouched(3, 3);
    untouched.randomize(5);
    TestBitmap before(untouched);
    p.scale = 0.0;
    VokGradientApply(untouched.get(), &p, g.get(), kNormal, 1.0);
    EXPECT_EQ(untouched.bytes(), before.bytes());
    p.scale = 1.0;
    VokGradientApply(untouched.get(), &p, g.get(), kNormal, 0.0);
    EXPECT_EQ(untouched.bytes(), before.bytes());
}

TEST(GradientApply, VignetteMaskRisesFromTheCentre) {
    Gradient white;
    white.color(255, 255, 255, 0);
    VokGradientShapeParams p;
    VokGradientShapeParamsInit(&p);
    p.gradientShape = 2;
    TestBitmap bm(20, 20);
    bm.fill(rgba(0, 0, 0, 255));
    VokGradientApply(bm.get(), &p, white.get(), kNormal, 1.0);
    // Centre (10, 10); v = d^2 / 400 x 1.15 and the polynomial ramp above 0.04.
    EXPECT_EQ(bm.at(10, 10).red, 0);
    EXPECT_EQ(bm.at(7, 10).red, 0);   // v = 0.0259, below 0.04
    EXPECT_EQ(bm.at(0, 10).red, 39);  // v = 0.2875, weight 0.1543
    EXPECT_EQ(bm.at(10, 0).red, 39);
    EXPECT_EQ(bm.at(0, 0).red, 129);  // v = 0.575, weight 0.5040

    // "sharp" squares v: at the corner 0.3306, weight 0.1997.
    p.vignetteShapeMode = 1;
    bm.fill(rgba(0, 0, 0, 255));
    VokGradientApply(bm.get(), &p, white.get(), kNormal, 1.0);
    EXPECT_EQ(bm.at(0, 0).red, 51);

    // A smaller vignette leaves the corners past 1.15: the full gradient.
    p.vignetteShapeMode = 0;
    p.vignetteSize = 0.5;
    bm.fill(rgba(0, 0, 0, 255));
    VokGradientApply(bm.get(), &p, white.get(), kNormal, 1.0);
    EXPECT_EQ(bm.at(0, 0).red, 255);
    EXPECT_EQ(bm.at(10, 10).red, 0);

    // The offset moves the centre by a fraction of the half size.
    p.vignetteSize = 1.0;
    p.vignetteOffsetX = -1.0;
    bm.fill(rgba(0, 0, 0, 255));
    VokGradientApply(bm.get(), &p, white.get(), kNormal, 1.0);
    EXPECT_EQ(bm.at(0, 10).red, 0);
    EXPECT_EQ(bm.at(10, 10).red, 39);
}

TEST(GradientMap, IndexAndFractionComeFromDifferentRoundings) {
    // Entries 513 and 514 black, 515 white. Red 128: x = 513.5059, i = 514,
    // f = 0.5059, so the colour is 0.4941 x black + 0.5059 x white = 129.
    Gradient step;
    step.color(0, 0, 0, 50.25).color(255, 255, 255, 50.3);
    std::vector<VokColor> t = step.table(1024);
    ASSERT_EQ(t[514].red, 0);
    ASSERT_EQ(t[515].red, 255);
    TestBitmap bm(2, 1);
    bm.at(0, 0) = rgba(128, 0, 0, 200);
    bm.at(1, 0) = rgba(127, 250, 250, 200);
    VokGradientMapApply(bm.get(), step.get(), 2, 0, kNormal, 1.0);
    EXPECT_EQ(bm.at(0, 0).red, 129);
    EXPECT_EQ(bm.at(0, 0).blue, 129);
    EXPECT_EQ(bm.at(0, 0).alpha, 200);
    EXPECT_EQ(bm.at(1, 0).red, 0);  // 127: x = 509.49, all black around it

    // v = 255 takes entry 1023 alone; inversion maps 0 there too.
    Gradient ramp;
    ramp.color(10, 20, 30, 0).color(200, 100, 50, 100);
    TestBitmap top(2, 1);
    top.at(0, 0) = rgba(0, 0, 255);
    top.at(1, 0) = rgba(255, 255, 0);
    VokGradientMapApply(top.get(), ramp.get(), 4, 0, kNormal, 1.0);
    EXPECT_TRUE(same_rgb(top.at(0, 0), rgba(200, 100, 50)));
    EXPECT_TRUE(same_rgb(top.at(1, 0), rgba(10, 20, 30)));
    top.at(0, 0) = rgba(0, 0, 0);
    VokGradientMapApply(top.get(), ramp.get(), 4, 1, kNormal, 1.0);
    EXPECT_TRUE(same_rgb(top.at(0, 0), rgba(200, 100, 50)));
}

TEST(GradientMap, VariablesSelectTheirScalar) {
    Gradient ramp;
    ramp.color(0, 0, 0, 0).color(255, 128, 0, 100);
    // Map one pixel under `variable` and return the result.
    auto map = [&](VokColor c, uint32_t variable) {
        TestBitmap px(1, 1);
        px.at(0, 0) = c;
        VokGradientMapApply(px.get(), ramp.get(), variable, 0, kNormal, 1.0);
        return px.at(0, 0);
    };
    const VokColor c = rgba(200, 50, 120);
    EXPECT_TRUE(same_rgb(map(c, 1), map(rgba(150, 0, 0), 2)));  // chroma = 200 - 50
    EXPECT_TRUE(same_rgb(map(c, 3), map(rgba(50, 0, 0), 2)));   // green
    EXPECT_TRUE(same_rgb(map(c, 5), map(rgba(200, 0, 0), 2)));  // max
    EXPECT_TRUE(same_rgb(map(c, 6), map(rgba(50, 0, 0), 2)));   // min
    EXPECT_TRUE(same_rgb(map(rgba(255, 0, 0), 0), map(rgba(51, 0, 0), 2)));  // 0.2 R
    EXPECT_TRUE(same_rgb(map(c, 99), map(rgba(0, 0, 0), 2)));   // unknown: v = 0
}

TEST(GradientMap, IntensityKeysMatchThePlainRuleOnRandomPixels) {
    Gradient g;
    g.color(20, 40, 160, 0).color(240, 200, 40, 45).color(250, 80, 60, 100).opacity(1, 0).opacity(0.3, 100);
    std::vector<VokColor> table = g.table(1024);
    for (uint32_t invert : {0u, 1u}) {
        for (uint32_t mode : {0u, 1u, 17u, 40u}) {
            TestBitmap image(19, 13);
            image.randomize(100 + mode + invert);
            image.at(0, 0) = rgba(255, 255, 255);
            image.at(1, 0) = rgba(0, 0, 0);
            TestBitmap want(image);
            VokGradientMapApply(image.get(), g.get(), 0, invert, mode, 0.7);
            for (uint32_t y = 0; y < 13; ++y) {
                for (uint32_t x = 0; x < 19; ++x) {
                    VokColor &p = want.at(x, y);
                    double v = 0.2 * p.red + 0.7 * p.green + 0.1 * p.blue;
                    if (invert) v = 255.0 - v;
                    v = std::fmin(std::fmax(v, 0.0), 255.0);
                    const float fx = static_cast<float>(v) * 4.011765f;
                    const int i = static_cast<int>(std::round(fx));
                    const float f = fx - std::trunc(fx);
                    VokColor m = table[i];
                    if (i != 1023) {
                        auto mix = [f](uint8_t a, uint8_t b) {
                            return static_cast<uint8_t>((1.0f - f) * a + f * b);
                        };
                        m = {mix(table[i].red, table[i + 1].red), mix(table[i].green, table[i + 1].green),
                             mix(table[i].blue, table[i + 1].blue), mix(table[i].alpha, table[i + 1].alpha)};
                    }
                    m.alpha = static_cast<uint8_t>(static_cast<uint32_t>(m.alpha * 0.7));
                    VokColorBlendEmbededAlpha(&p, &m, mode);
                }
            }
            EXPECT_EQ(image.bytes(), want.bytes()) << "invert " << invert << " mode " << mode;
        }
    }
}

TEST(GradientMap, OpacityScalesAlphaWithoutClamping) {
    Gradient white;
    white.color(255, 255, 255, 0);
    TestBitmap bm(3, 1);
    bm.fill(rgba(0, 0, 0, 255));
    VokGradientMapApply(bm.get(), white.get(), 2, 0, kNormal, 1.0);
    EXPECT_EQ(bm.at(0, 0).red, 255);
    // 255 x 1.5 = 382 keeps its low byte: alpha 126.
    bm.fill(rgba(0, 0, 0, 255));
    VokGradientMapApply(bm.get(), white.get(), 2, 0, kNormal, 1.5);
    EXPECT_EQ(bm.at(1, 0).red, 126);
    bm.fill(rgba(0, 0, 0, 255));
    VokGradientMapApply(bm.get(), white.get(), 2, 0, kNormal, 0.5);
    EXPECT_EQ(bm.at(2, 0).red, 127);
}

TEST(GradientFlare, ShapesAtWorkedPoints) {
    // (0.375, 0.5): rho = 0.390625, radius 0.625, sin(2 theta) = 0.96.
    const double x = 0.375, y = 0.5;
    double p[16] = {};
    EXPECT_EQ(flare_sample(0, x, y, p), 0);
    EXPECT_EQ(flare_sample(1, x, y, p), 68);
    EXPECT_EQ(flare_sample(2, x, y, p), 62);
    EXPECT_EQ(flare_sample(4, x, y, p), 50);
    EXPECT_EQ(flare_sample(5, x, y, p), 50);  // p0 = 0: the square
    EXPECT_EQ(flare_sample(12, x, y, p), 68);  // 0.5 sin(x) + 0.5
    EXPECT_EQ(flare_sample(99, x, y, p), 0);
    p[0] = 2;
    EXPECT_EQ(flare_sample(5, x, y, p), 62);
    EXPECT_EQ(flare_sample(7, x, y, p), 33);  // 1 - 0.98 exp(-rho)
    p[0] = 4;
    EXPECT_EQ(flare_sample(6, x, y, p), 14);  // rho^2 x 0.96
    // Gaussian: x pairs with p3 and y with p2 (swapped it would give 76).
    const double gauss[16] = {-1, 0, 0.5, 0};
    EXPECT_EQ(flare_sample(3, x, y, gauss), 86);
    const double rings[16] = {0, 0, 1};
    EXPECT_EQ(flare_sample(8, x, y, rings), 92);  // cos(rho)
    const double zigzag[16] = {0.25};
    EXPECT_EQ(flare_sample(13, x, y, zigzag, 1), 50);  // t = 0.5 - 1, repeated
    const double spiral[16] = {0.5, 1};
    EXPECT_EQ(flare_sample(14, x, y, spiral), 77);  // 0.625 + theta / 2 pi
    const double star[16] = {4, 0.5, 0.2};
    EXPECT_EQ(flare_sample(10, 0, -0.5, star), 0);  // inside the tip: clamped
}

TEST(GradientFlare, WrapModesAtTheirBoundaries) {
    // Line shape along a row: x = c - 3, t = 0.5 x + 0.5 = -1 .. 2 in halves,
    // on a five-entry table whose entry i has red i.
    std::vector<VokColor> table(5);
    for (int i = 0; i < 5; ++i) table[i] = rgba(static_cast<uint8_t>(i), 0, 0, static_cast<uint8_t>(255 - i));
    const int32_t f[16] = {16777216, 0, 0, -3 * 16777216, 0, 0, 0, 0};
    const double p[16] = {};
    auto run = [&](int32_t wrap, uint8_t invert, uint8_t replace) {
        TestBitmap row(7, 1);
        row.fill(rgba(0, 0, 0, 255));
        VokFlareApplyHelper(row.get(), 1, f, p, table.data(), 5, 24, kNormal, wrap, invert, replace);
        std::vector<int> out;
        for (uint32_t c = 0; c < 7; ++c) out.push_back(row.at(c, 0).red + 10 * (255 - row.at(c, 0).alpha));
        return out;
    };
    // t:                       -1 -.5  0  .5  1  1.5  2
    EXPECT_EQ(run(0, 0, 0), (std::vector<int>{0, 0, 0, 2, 4, 4, 4}));
    EXPECT_EQ(run(1, 0, 0), (std::vector<int>{4, 2, 0, 2, 0, 2, 0}));
    EXPECT_EQ(run(2, 0, 0), (std::vector<int>{4, 2, 0, 2, 4, 2, 0}));
    EXPECT_EQ(run(0, 1, 0), (std::vector<int>{4, 4, 4, 2, 0, 0, 0}));
    // replaceAlpha copies the entry's alpha (255 - i) into the pixel.
    EXPECT_EQ(run(0, 0, 1), (std::vector<int>{0, 0, 0, 22, 44, 44, 44}));
}

TEST(GradientFlare, AspectModesAndCompoundingAlpha) {
    // Red up to location 75, blue from there: a circle turns blue at t = 0.75.
    Gradient g;
    g.color(255, 0, 0, 0).color(255, 0, 0, 75).color(0, 0, 255, 75).opacity(1, 0);
    VokGradientFlareParams r;
    VokGradientFlareParamsInit(&r);
    double identity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    double params[16] = {};
    r.shape = 2;
    r.transform = identity;
    r.params = params;
    r.gradient = g.get();
    auto paint = [&](int32_t aspect) {
        r.aspectMode = aspect;
        TestBitmap bm(8, 4);
        bm.fill(rgba(0, 0, 0, 255));
        VokGradientFlareApply(bm.get(), &r);
        return bm;
    };
    // "fit" scales the short side to 1: (0, 2) sits at (-1, 0).
    TestBitmap fit = paint(0);
    EXPECT_EQ(fit.at(0, 2).blue, 255);
    EXPECT_EQ(fit.at(4, 2).red, 255);
    EXPECT_EQ(fit.at(2, 2).red, 255);
    // "fill" the long side: (0, 2) sits at (-0.5, 0).
    EXPECT_EQ(paint(1).at(0, 2).red, 255);
    // "stretch": both axes span -0.5 .. 0.5, so the corner is at radius 0.707.
    TestBitmap stretch = paint(2);
    EXPECT_EQ(stretch.at(0, 0).red, 255);
    EXPECT_EQ(stretch.at(4, 2).red, 255);

    // Swapping the axes in the transform: x = r / 4 - 0.5, y = c / 4 - 1.
    double swap[16] = {0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    r.transform = swap;
    TestBitmap swapped = paint(0);
    EXPECT_EQ(swapped.at(0, 2).blue, 255);
    EXPECT_EQ(swapped.at(4, 2).red, 255);

    // Each application multiplies the record's gradient opacities again.
    r.alpha = 0.5;
    g.opacities[0].opacity = 1.0;
    paint(2);
    EXPECT_EQ(g.opacities[0].opacity, 0.5);
    TestBitmap twice = paint(2);
    EXPECT_EQ(g.opacities[0].opacity, 0.25);
    // Alpha 63 of 255: (255 x 63 + 255) >> 8 = 63 over black.
    EXPECT_EQ(twice.at(4, 2).red, 63);
}
