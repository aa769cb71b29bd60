// Sampling gradients into colour tables, and the heart, star and crescent fields.
#include <gtest/gtest.h>

#include <vector>

#include "support/gradients.h"
#include "vok/generators.h"

using Stops = vok_test::GradientStops;

namespace {

void expect_colour(const VokColor &c, int r, int g, int b, int a, const char *what) {
    EXPECT_EQ(c.red, r) << what;
    EXPECT_EQ(c.green, g) << what;
    EXPECT_EQ(c.blue, b) << what;
    EXPECT_EQ(c.alpha, a) << what;
}

}  // namespace

TEST(GradientTable, MissingAndSingleStops) {
    Stops none;
    for (const VokColor &c : none.table(7)) expect_colour(c, 255, 255, 255, 255, "no stops");
    Stops one;
    one.color(10, 20, 30, 40);
    for (const VokColor &c : one.table(7)) expect_colour(c, 10, 20, 30, 255, "one stop");
    one.opacity(0.5, 70);
    for (const VokColor &c : one.table(3)) expect_colour(c, 10, 20, 30, 127, "one opacity");
    one.opacities[0].opacity = 1.7;
    EXPECT_EQ(one.table(1)[0].alpha, 255);
}

TEST(GradientTable, EasedWeightWobblesBetweenStops) {
    // Entries at 0, 25, 50, 75 and 100. At t = 0.25 the weight is
    // 0.25 - 1.375 * 9/255 = 0.2014706, at 0.75 it is 0.7985294.
    Stops s;
    s.color(255, 0, 0, 0).color(0, 0, 255, 100).opacity(0, 0).opacity(1, 100);
    std::vector<VokColor> t = s.table(5);
    expect_colour(t[0], 255, 0, 0, 0, "t = 0");
    expect_colour(t[1], 203, 0, 51, 51, "t = 0.25");
    expect_colour(t[2], 127, 0, 127, 127, "t = 0.5");
    expect_colour(t[3], 51, 0, 203, 203, "t = 0.75");
    expect_colour(t[4], 0, 0, 255, 255, "t = 1");
    // A one-entry table stands at NaN, which takes the upper stop.
    expect_colour(s.table(1)[0], 0, 0, 255, 255, "n = 1");
}

TEST(GradientTable, StopsOutsideTheRangeAndAtOneLocation) {
    Stops inner;
    inner.color(0, 0, 0, 20).color(255, 255, 255, 80);
    std::vector<VokColor> t = inner.table(11);
    for (int i = 0; i <= 2; ++i) expect_colour(t[i], 0, 0, 0, 255, "before the first stop");
    expect_colour(t[5], 127, 127, 127, 255, "midway");
    for (int i = 8; i <= 10; ++i) expect_colour(t[i], 255, 255, 255, 255, "after the last stop");

    // From a location shared by two stops on, the upper one wins.
    Stops shared;
    shared.color(255, 0, 0, 0).color(0, 255, 0, 50).color(0, 0, 255, 50);
    t = shared.table(5);
    expect_colour(t[0], 255, 0, 0, 255, "first");
    expect_colour(t[1], 127, 127, 0, 255, "half-way to the shared location");
    for (int i = 2; i < 5; ++i) expect_colour(t[i], 0, 0, 255, 255, "from the shared location");
}

TEST(FlareShapes, HeartStarAndCrescentAtWorkedPoints) {
    EXPECT_DOUBLE_EQ(VokCalcNoiseHeart(0, -1, 3, 7), 1.0);
    EXPECT_DOUBLE_EQ(VokCalcNoiseHeart(0, 1, 3, 7), -3.0);
    EXPECT_DOUBLE_EQ(VokCalcNoiseHeart(1, 0, 1, 2), -1.0);
    // r = 1, s = 0.6, c = 0.8: 1 - sqrt(0.6) * 0.8 / 1.8 - 0.4.
    EXPECT_NEAR(VokCalcNoiseHeart(0.6, -0.8, 1, 1), 0.2557349, 1e-6);

    // Four arms; straight down is the tip of an arm: 0 on the unit circle,
    // 1 at radius 2 whatever the sharpness.
    EXPECT_NEAR(VokCalcNoiseStar(0, -1, 4, 0.5, 0.2), 0.0, 1e-6);
    EXPECT_NEAR(VokCalcNoiseStar(0, -2, 4, 0.5, 0.2), 1.0, 1e-6);
    // Half-way between two tips, f = 0.5 is subtracted from the angle as it is.
    EXPECT_NEAR(VokCalcNoiseStar(-0.3826834323650897, -0.9238795325112867, 4, 0.5, 0.2),
                0.4034416, 1e-6);

    const double crescent[16] = {0.5, 0.5};  // centre 0.75, inner radius 0.5
    EXPECT_FLOAT_EQ(VokCalcNoiseCrescent(0.75, 0, crescent), 1.0f);
    EXPECT_FLOAT_EQ(VokCalcNoiseCrescent(2, 0, crescent), 1.0f);
    EXPECT_FLOAT_EQ(VokCalcNoiseCrescent(0, 0, crescent), 0.5f);
    EXPECT_FLOAT_EQ(VokCalcNoiseCrescent(-0.5, 0, crescent), 0.5f);
    EXPECT_NEAR(VokCalcNoiseCrescent(0.1, 0, crescent), 0.7f, 1e-6);
}
