// Gradient tables, the flare fields, and painting plain gradients, gradient maps and flares.
#include <gtest/gtest.h>

#include <math.h>

#include <utility>
#include <vector>

#include "support/bitmaps.h"
#include "vok/generators.h"

using vok_test::TestBitmap;
using vok_test::rgba;
using Colours = std::vector<VokColor>;

namespace {

const uint32_t kNormal = 0;

// A gradient that owns its stops; get() is valid until they change.
struct Gradient {
    std::vector<VokColorStop> colors;
    std::vector<VokOpacityStop> opacities{};
    VokGradient gradient{};

    VokGradient *get() {
        gradient = {colors.data(), opacities.data(), static_cast<uint32_t>(colors.size()),
                    static_cast<uint32_t>(opacities.size())};
        return &gradient;
    }
    Colours table(uint32_t n) {
        Colours t(n, VokColor{1, 2, 3, 4});
        VokGradientMemoize(get(), t.data(), n);
        return t;
    }
};

// One pixel mapped through `g` by `variable`, not inverted, under the normal mode.
VokColor map_pixel(Gradient &g, VokColor pixel, uint32_t variable, double opacity = 1.0) {
    TestBitmap px(1, 1);
    px.at(0, 0) = pixel;
    VokGradientMapApply(px.get(), g.get(), variable, 0, kNormal, opacity);
    return px.at(0, 0);
}

// Red of a black pixel after the flare helper evaluates `shape` at the dyadic
// point (x, y) in a 101-entry ramp whose entry i has red i: trunc(100 t).
int flare_sample(int32_t shape, double x, double y, const double *params, int32_t wrap = 0) {
    Colours ramp(101);
    for (int i = 0; i <= 100; ++i) ramp[i] = rgba(static_cast<uint8_t>(i), 0, 0);
    const int32_t f[16] = {0, 0, 0, static_cast<int32_t>(x * 16777216.0), 0, 0, 0, static_cast<int32_t>(y * 16777216.0)};
    TestBitmap px(1, 1);
    px.fill(rgba(0, 0, 0));
    VokFlareApplyHelper(px.get(), shape, f, params, ramp.data(), 101, 24, kNormal, wrap, 0, 0);
    return px.at(0, 0).red;
}

}  // namespace

TEST(GradientTable, StopsEasingAndEnds) {
    Gradient none, one{{{rgba(10, 20, 30), 40}}};
    EXPECT_EQ(none.table(2), Colours(2, rgba(255, 255, 255)));
    EXPECT_EQ(one.table(2), Colours(2, rgba(10, 20, 30)));
    one.opacities.push_back({0.5, 70});
    EXPECT_EQ(one.table(2), Colours(2, rgba(10, 20, 30, 127)));
    one.opacities[0].opacity = 1.7;
    EXPECT_EQ(one.table(1)[0].alpha, 255);

    // Entries at 0, 25, 50, 75 and 100. At t = 0.25 the eased weight is
    // 0.25 - 1.375 * 9/255 = 0.2014706, at 0.75 it is 0.7985294.
    Gradient s{{{rgba(255, 0, 0), 0}, {rgba(0, 0, 255), 100}}, {{0, 0}, {1, 100}}};
    EXPECT_EQ(s.table(5), (Colours{rgba(255, 0, 0, 0), rgba(203, 0, 51, 51), rgba(127, 0, 127, 127),
                                   rgba(51, 0, 203, 203), rgba(0, 0, 255, 255)}));
    // A one-entry table stands at NaN, which takes the upper stop.
    EXPECT_EQ(s.table(1), Colours{rgba(0, 0, 255)});

    // Before the first stop and after the last the end colours hold.
    Gradient inner{{{rgba(0, 0, 0), 20}, {rgba(255, 255, 255), 80}}};
    const Colours t = inner.table(11);
    EXPECT_EQ(Colours(t.begin(), t.begin() + 3), Colours(3, rgba(0, 0, 0)));
    EXPECT_EQ(t[5], rgba(127, 127, 127));
    EXPECT_EQ(Colours(t.begin() + 8, t.end()), Colours(3, rgba(255, 255, 255)));
    // From a location shared by two stops on, the upper one wins.
    Gradient shared{{{rgba(255, 0, 0), 0}, {rgba(0, 255, 0), 50}, {rgba(0, 0, 255), 50}}};
    EXPECT_EQ(shared.table(5), (Colours{rgba(255, 0, 0), rgba(127, 127, 0), rgba(0, 0, 255),
                                        rgba(0, 0, 255), rgba(0, 0, 255)}));
}

TEST(FlareShapes, HeartStarAndCrescentAtWorkedPoints) {
    EXPECT_DOUBLE_EQ(VokCalcNoiseHeart(0, -1, 3, 7), 1.0);
    // r = 1, s = 0.6, c = 0.8: 1 - sqrt(0.6) * 0.8 / 1.8 - 0.4.
    EXPECT_NEAR(VokCalcNoiseHeart(0.6, -0.8, 1, 1), 0.2557349, 1e-6);

    // Four arms; straight down is the tip of an arm, 0 on the unit circle.
    EXPECT_NEAR(VokCalcNoiseStar(0, -1, 4, 0.5, 0.2), 0.0, 1e-6);
    // Half-way between two tips, f = 0.5 is subtracted from the angle as it is.
    EXPECT_NEAR(VokCalcNoiseStar(-0.3826834323650897, -0.9238795325112867, 4, 0.5, 0.2),
                0.4034416, 1e-6);

    const double crescent[16] = {0.5, 0.5};  // centre 0.75, inner radius 0.5
    EXPECT_FLOAT_EQ(VokCalcNoiseCrescent(0.75, 0, crescent), 1.0f);
    EXPECT_FLOAT_EQ(VokCalcNoiseCrescent(0, 0, crescent), 0.5f);
    EXPECT_NEAR(VokCalcNoiseCrescent(0.1, 0, crescent), 0.7f, 1e-6);
}

TEST(GradientApply, LinearAndRadialPickTheirEntries) {
    Gradient g{{{rgba(0, 0, 0), 0}, {rgba(250, 100, 20), 100}}};
    const Colours table = g.table(1024);
    VokGradientShapeParams p;
    VokGradientShapeParamsInit(&p);
    // The pixel at (x, y) of a w x h grey painted with `g`; its alpha 77 stays.
    auto painted = [&](uint32_t w, uint32_t h, uint32_t x, uint32_t y) {
        TestBitmap bm(w, h);
        bm.fill(rgba(9, 9, 9, 77));
        VokGradientApply(bm.get(), &p, g.get(), kNormal, 1.0);
        return bm.at(x, y);
    };
    auto entry = [&](int i) { return rgba(table[i].red, table[i].green, table[i].blue, 77); };
    // Origin at the left edge: t = c / 5, entry floor(1023 t + 0.5).
    p.xCenter = 0.0;
    const int entries[5] = {0, 205, 409, 614, 818};
    for (uint32_t c = 0; c < 5; ++c) EXPECT_EQ(painted(5, 2, c, 1), entry(entries[c])) << c;
    // Radial ignores the angle: centre takes entry 0, a corner sqrt(0.5).
    p.gradientShape = 1;
    p.xCenter = p.yCenter = 0.5;
    EXPECT_EQ(painted(4, 4, 2, 2), entry(0));
    EXPECT_EQ(painted(4, 4, 0, 0), entry(723));
    // Scale 0 disables the call.
    p.scale = 0.0;
    EXPECT_EQ(painted(3, 3, 1, 1), rgba(9, 9, 9, 77));
}

TEST(GradientApply, VignetteMaskRisesFromTheCentre) {
    Gradient white{{{rgba(255, 255, 255), 0}}};
    VokGradientShapeParams p;
    VokGradientShapeParamsInit(&p);
    p.gradientShape = 2;
    // Centre (10, 10) of 20 x 20: v = d^2 / 400 x 1.15 / size^2, squared when
    // "sharp"; 0 below 0.04, the full gradient above 1.15, a polynomial between.
    struct Case { int32_t mode; double size, offset_x; uint32_t x, y; int red; };
    const Case cases[] = {{0, 1, 0, 7, 10, 0},      // v = 0.0259
                          {0, 1, 0, 0, 10, 39},     // v = 0.2875, weight 0.1543
                          {0, 1, 0, 0, 0, 129},     // v = 0.575, weight 0.5040
                          {1, 1, 0, 0, 0, 51},      // v = 0.3306, weight 0.1997
                          {0, 0.5, 0, 0, 0, 255},   // v = 2.3
                          {0, 1, -1, 10, 10, 39},   // the centre moved half the width left
                          // Centres far off the image: the whole gradient, no overflow.
                          {0, 1, 1e300, 10, 10, 255}, {0, 1, -1e300, 0, 19, 255},
                          {0, 1, 1e9, 10, 10, 255}};
    for (const Case &c : cases) {
        p.vignetteShapeMode = c.mode;
        p.vignetteSize = c.size;
        p.vignetteOffsetX = c.offset_x;
        TestBitmap bm(20, 20);
        bm.fill(rgba(0, 0, 0));
        VokGradientApply(bm.get(), &p, white.get(), kNormal, 1.0);
        EXPECT_EQ(bm.at(c.x, c.y).red, c.red) << c.mode << " " << c.size << " " << c.offset_x << " " << c.x;
    }
}

TEST(GradientMap, RoundingQuirksOpacityAndVariables) {
    // Entries 513 and 514 black, 515 white. Red 128: x = 513.5059, i = 514,
    // f = 0.5059, so the colour is 0.4941 x black + 0.5059 x white = 129.
    Gradient step{{{rgba(0, 0, 0), 50.25}, {rgba(255, 255, 255), 50.3}}};
    EXPECT_EQ(map_pixel(step, rgba(128, 0, 0, 200), 2), rgba(129, 129, 129, 200));
    EXPECT_EQ(map_pixel(step, rgba(127, 250, 250, 200), 2), rgba(0, 0, 0, 200));  // x = 509.49
    // The opacity scales the entry's alpha and keeps the low byte: 382 -> 126.
    Gradient white{{{rgba(255, 255, 255), 0}}};
    for (auto [opacity, red] : {std::pair<double, int>{1.0, 255}, {1.5, 126}, {0.5, 127}}) {
        EXPECT_EQ(map_pixel(white, rgba(0, 0, 0), 2, opacity).red, red) << opacity;
    }
    // Each variable of one pixel against the red that carries the same scalar.
    Gradient ramp{{{rgba(0, 0, 0), 0}, {rgba(255, 128, 0), 100}}};
    for (auto [variable, red] : {std::pair<uint32_t, uint8_t>{0, 87}, {1, 150}, {3, 50}, {4, 120}, {5, 200},
                                 {6, 50}, {99, 0}}) {
        EXPECT_EQ(map_pixel(ramp, rgba(200, 50, 120), variable), map_pixel(ramp, rgba(red, 0, 0), 2)) << variable;
    }
}

TEST(GradientMap, IntensityKeysMatchThePlainRuleOnRandomPixels) {
    Gradient g{{{rgba(20, 40, 160), 0}, {rgba(240, 200, 40), 45}, {rgba(250, 80, 60), 100}}, {{1, 0}, {0.3, 100}}};
    const Colours table = g.table(1024);
    auto mix = [](float f, uint8_t a, uint8_t b) { return static_cast<uint8_t>((1.0f - f) * a + f * b); };
    for (uint32_t invert : {0u, 1u}) {
        for (uint32_t mode : {0u, 1u, 17u, 40u}) {
            TestBitmap image(19, 13);
            image.randomize(100 + mode + invert);
            image.at(0, 0) = rgba(255, 255, 255);
            image.at(1, 0) = rgba(0, 0, 0);
            TestBitmap want(image);
            VokGradientMapApply(image.get(), g.get(), 0, invert, mode, 0.7);
            for (uint32_t i = 0; i < 19 * 13; ++i) {
                VokColor &p = want.at(i % 19, i / 19);
                const double v = 0.2 * p.red + 0.7 * p.green + 0.1 * p.blue;
                const float x = static_cast<float>(fmin(fmax(invert ? 255.0 - v : v, 0.0), 255.0)) * 4.011765f;
                const int e = static_cast<int>(roundf(x));
                const float f = x - truncf(x);
                VokColor m = table[e];
                if (e != 1023) {
                    const VokColor &a = table[e], &b = table[e + 1];
                    m = {mix(f, a.red, b.red), mix(f, a.green, b.green), mix(f, a.blue, b.blue), mix(f, a.alpha, b.alpha)};
                }
                m.alpha = static_cast<uint8_t>(static_cast<uint32_t>(m.alpha * 0.7));
                VokColorBlendEmbededAlpha(&p, &m, mode);
            }
            EXPECT_EQ(image.bytes(), want.bytes()) << "invert " << invert << " mode " << mode;
        }
    }
}

TEST(GradientFlare, ShapesAtWorkedPoints) {
    // At (0.375, 0.5): rho = 0.390625, radius 0.625, sin(2 theta) = 0.96.
    struct Case { int32_t shape; double p[4]; int red; };
    const Case cases[] = {
        {0, {}, 0}, {1, {}, 68}, {2, {}, 62}, {4, {}, 50}, {12, {}, 68} /* 0.5 sin(x) + 0.5 */, {99, {}, 0},
        {5, {}, 50} /* p0 = 0: the square */, {5, {2}, 62} /* p0 = 2: the circle */,
        {6, {4}, 14} /* rho^2 x 0.96 */, {7, {2}, 33} /* 1 - 0.98 exp(-rho) */, {8, {0, 0, 1}, 92} /* cos(rho) */,
        {14, {0.5, 1}, 77},        // 0.625 + theta / 2 pi
        {3, {-1, 0, 0.5, 0}, 86},  // x pairs with p3 and y with p2 (swapped: 76)
    };
    for (const Case &c : cases) {
        const double p[16] = {c.p[0], c.p[1], c.p[2], c.p[3]};
        EXPECT_EQ(flare_sample(c.shape, 0.375, 0.5, p), c.red) << c.shape << " " << c.p[0];
    }
    // Lobes next to a table boundary: exp of the single-precision rho in double
    // gives 20.9999998 (single-precision exp would give 21).
    const double one_lobe[16] = {1};
    EXPECT_EQ(flare_sample(7, -702 / 4096.0, 626 / 4096.0, one_lobe), 20);
    const double zigzag[16] = {0.25}, star[16] = {4, 0.5, 0.2};
    EXPECT_EQ(flare_sample(13, 0.375, 0.5, zigzag, 1), 50);  // t = 0.5 - 1, repeated
    EXPECT_EQ(flare_sample(10, 0, -0.5, star), 0);            // inside the tip: clamped
}

TEST(GradientFlare, WrapModesAtTheirBoundaries) {
    // Line shape along a row: x = c - 3, t = 0.5 x + 0.5 = -1 .. 2 in halves,
    // on a five-entry table whose entry i is rgba(i, 0, 0, 255 - i).
    Colours table(5);
    for (int i = 0; i < 5; ++i) table[i] = rgba(static_cast<uint8_t>(i), 0, 0, static_cast<uint8_t>(255 - i));
    const int32_t f[16] = {16777216, 0, 0, -3 * 16777216, 0, 0, 0, 0};
    const double p[16] = {};
    // Red plus ten times the alpha taken off, per column.
    auto run = [&](int32_t wrap, uint8_t invert, uint8_t replace) {
        TestBitmap row(7, 1);
        row.fill(rgba(0, 0, 0));
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
    EXPECT_EQ(run(0, 0, 1), (std::vector<int>{0, 0, 0, 22, 44, 44, 44}));
}

TEST(GradientFlare, AspectModesAndCompoundingAlpha) {
    // Red up to location 75, blue from there: a circle turns blue at t = 0.75.
    Gradient g{{{rgba(255, 0, 0), 0}, {rgba(255, 0, 0), 75}, {rgba(0, 0, 255), 75}}, {{1, 0}}};
    double identity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}, params[16] = {};
    VokGradientFlareParams r;
    VokGradientFlareParamsInit(&r);
    r.shape = 2;
    r.transform = identity;
    r.params = params;
    r.gradient = g.get();
    auto paint = [&](int32_t aspect) {
        r.aspectMode = aspect;
        TestBitmap bm(8, 4);
        bm.fill(rgba(0, 0, 0));
        VokGradientFlareApply(bm.get(), &r);
        return bm;
    };
    // On 8 x 4, "fit" scales the short side to 1 and puts (0, 2) at (-1, 0),
    // "fill" the long side, (-0.5, 0); "stretch" puts the corner at radius 0.707.
    EXPECT_EQ(paint(0).at(0, 2), rgba(0, 0, 255));
    EXPECT_EQ(paint(1).at(0, 2), rgba(255, 0, 0));
    EXPECT_EQ(paint(2).at(0, 0), rgba(255, 0, 0));
    // Each application multiplies the record's gradient opacities again.
    r.alpha = 0.5;
    paint(0);
    const TestBitmap twice = paint(0);
    EXPECT_EQ(g.opacities[0].opacity, 0.25);
    // Alpha 63 of 255: (255 x 63 + 255) >> 8 = 63 over black.
    EXPECT_EQ(twice.at(4, 2), rgba(63, 0, 0));
}
