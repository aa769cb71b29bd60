// Stamp positions along a stroke.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <vector>

#include "vok/tools.h"

namespace {

using Positions = std::vector<VokPoint>;

// Copies an interpolator's list and frees it.
Positions take(VokPoint *list, int32_t count) {
    Positions run(list, list + count);
    free(list);
    return run;
}

Positions first_to_mid(float ax, float ay, float bx, float by, float r, int draw = 0) {
    VokPoint *list = nullptr;
    int32_t n = -1;
    VokInterpolateFirstPointToMidpoint(ax, ay, bx, by, r, &list, &n, draw);
    return take(list, n);
}

Positions curve(float ax, float ay, float bx, float by, float cx, float cy, float r, bool finish) {
    VokPoint *list = nullptr;
    int32_t n = -1;
    if (finish)
        VokInterpolateBetweenPointsWithBezierQuadCurveAndFinishToPoint(ax, ay, bx, by, cx, cy, r,
                                                                       &list, &n, 0);
    else
        VokInterpolateBetweenPointsWithBezierQuadCurve(ax, ay, bx, by, cx, cy, r, &list, &n, 0);
    return take(list, n);
}

void expect_xs(const Positions &run, const std::vector<float> &xs, float y) {
    ASSERT_EQ(run.size(), xs.size());
    for (size_t i = 0; i < xs.size(); ++i) {
        EXPECT_FLOAT_EQ(run[i].x, xs[i]) << "position " << i;
        EXPECT_FLOAT_EQ(run[i].y, y) << "position " << i;
    }
}

}  // namespace

TEST(Interpolate, StraightRunsStartNextToTheEndAndFinishOnIt) {
    // |m - a| = 30 with spacing 6: six positions, nearest the midpoint first.
    expect_xs(first_to_mid(0, 0, 60, 0, 12), {25, 20, 15, 10, 5, 30}, 0);
    // The draw tool spaces by sqrt(2r + 1) = 5: seven positions.
    EXPECT_EQ(first_to_mid(0, 0, 60, 0, 12, 1).size(), 7u);
    // a = b: a zero-length run is just the midpoint.
    expect_xs(first_to_mid(5, 5, 5, 5, 4), {5}, 5);

    VokPoint *list = nullptr;
    int32_t n = 0;
    VokInterpolateMidpointToSecondPoint(3, 0, 3, 8, 2, &list, &n, 0);
    Positions run = take(list, n);
    ASSERT_EQ(run.size(), 5u);  // |b - m| = 4, spacing 1
    const float ys[] = {7.2f, 6.4f, 5.6f, 4.8f, 8.0f};
    for (int i = 0; i < 5; ++i) {
        EXPECT_FLOAT_EQ(run[i].x, 3.0f);
        EXPECT_FLOAT_EQ(run[i].y, ys[i]);
    }
}

TEST(Interpolate, CountIsTruncatedInSinglePrecision) {
    // |m - a| = 1 - 2^-24 with spacing 1: L / s + 1 rounds to 2 as a float
    // (it would truncate to 1 in double precision).
    Positions run = first_to_mid(0, 0, 2.0f - std::ldexp(1.0f, -23), 0, 2);
    ASSERT_EQ(run.size(), 2u);
    EXPECT_FLOAT_EQ(run[1].x, 1.0f - std::ldexp(1.0f, -24));
}

TEST(Interpolate, CurvesPassThroughMidpointsEvenlyInT) {
    // Collinear points: 5u^2 + 20ut + 15t^2 = 5 + 10t, so the positions are
    // evenly spaced along the line and end on m2 = 15; m1 = 5 is left out.
    expect_xs(curve(0, 0, 10, 0, 20, 0, 4, false),
              {5 + 10 / 6.0f, 5 + 20 / 6.0f, 10, 5 + 40 / 6.0f, 5 + 50 / 6.0f, 15}, 0);

    // A bend: control polygon 2 * sqrt(50) long, eight positions; t = 1/2
    // is m1/4 + b/2 + m2/4.
    Positions bend = curve(0, 0, 10, 10, 20, 0, 4, false);
    ASSERT_EQ(bend.size(), 8u);
    EXPECT_FLOAT_EQ(bend[3].x, 10.0f);
    EXPECT_FLOAT_EQ(bend[3].y, 7.5f);
    EXPECT_FLOAT_EQ(bend[7].x, 15.0f);
    EXPECT_FLOAT_EQ(bend[7].y, 5.0f);
}

TEST(Interpolate, FinishingRunWalksBackToTheMiddlePoint) {
    // The curve's six positions, then three more from near b toward m2,
    // ending on b = (10, 0): the half toward c is never reached.
    expect_xs(curve(0, 0, 10, 0, 20, 0, 4, true),
              {5 + 10 / 6.0f, 5 + 20 / 6.0f, 10, 5 + 40 / 6.0f, 5 + 50 / 6.0f, 15, 35 / 3.0f,
               40 / 3.0f, 10},
              0);
}

TEST(Interpolate, MeaninglessCountsGiveTheEndPositionAlone) {
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    expect_xs(first_to_mid(0, 0, 10, 0, 0), {5}, 0);                // radius 0
    expect_xs(first_to_mid(0, 0, 10, 0, -3, 1), {5}, 0);            // sqrt of a negative
    expect_xs(curve(0, 0, 10, 0, 20, 0, 0, false), {15}, 0);
    expect_xs(curve(0, 0, 10, 0, 20, 0, 0, true), {10}, 0);         // ends on b
    expect_xs(curve(inf, 0, 10, 0, 20, 0, 4, false), {15}, 0);
    expect_xs(curve(0, 0, 10, 0, 20, nan, 4, true), {10}, 0);
    expect_xs(first_to_mid(0, 0, 1e30f, 0, 1e-6f), {5e29f}, 0);     // absurdly many
}
