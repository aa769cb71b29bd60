// Stamp positions along a stroke.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <vector>

#include "vok/tools.h"

namespace {

const auto kFirst = VokInterpolateFirstPointToMidpoint;
const auto kSecond = VokInterpolateMidpointToSecondPoint;
const auto kCurve = VokInterpolateBetweenPointsWithBezierQuadCurve;
const auto kFinish = VokInterpolateBetweenPointsWithBezierQuadCurveAndFinishToPoint;

// Positions from interpolator f over the given coordinates and radius.
template <typename F, typename... A>
std::vector<VokPoint> run(F f, int draw, A... a) {
    VokPoint *list = nullptr;
    int32_t n = -1;
    f(static_cast<float>(a)..., &list, &n, draw);
    std::vector<VokPoint> out(list, list + n);
    free(list);
    return out;
}

void expect_xs(const std::vector<VokPoint> &got, const std::vector<float> &xs, float y) {
    ASSERT_EQ(got.size(), xs.size());
    for (size_t i = 0; i < xs.size(); ++i) {
        EXPECT_FLOAT_EQ(got[i].x, xs[i]) << i;
        EXPECT_FLOAT_EQ(got[i].y, y) << i;
    }
}

}  // namespace

TEST(Interpolate, StraightRunsStartNextToTheEndAndFinishOnIt) {
    expect_xs(run(kFirst, 0, 0, 3, 60, 3, 12), {25, 20, 15, 10, 5, 30}, 3);  // spacing r / 2
    EXPECT_EQ(run(kFirst, 1, 0, 3, 60, 3, 12).size(), 7u);  // draw: sqrt(2r + 1) = 5
    expect_xs(run(kFirst, 0, 5, 3, 5, 3, 4), {5}, 3);
    expect_xs(run(kSecond, 0, 0, 3, 8, 3, 2), {7.2f, 6.4f, 5.6f, 4.8f, 8}, 3);
    // Length 1 - 2^-24 over spacing 1: the count L / s + 1 rounds to 2 in
    // single precision (double would truncate to 1).
    std::vector<VokPoint> tight = run(kFirst, 0, 0, 0, 2.0f - std::ldexp(1.0f, -23), 0, 2);
    ASSERT_EQ(tight.size(), 2u);
    EXPECT_FLOAT_EQ(tight[1].x, 1.0f - std::ldexp(1.0f, -24));
}

TEST(Interpolate, CurvesRunEvenlyInTAndTheFinishWalksBackToTheMiddlePoint) {
    // Collinear: evenly spaced from m1 = 5 (left out) to m2 = 15.
    std::vector<float> xs = {5 + 10 / 6.0f, 5 + 20 / 6.0f, 10, 5 + 40 / 6.0f, 5 + 50 / 6.0f, 15};
    expect_xs(run(kCurve, 0, 0, 0, 10, 0, 20, 0, 4), xs, 0);
    xs.insert(xs.end(), {35 / 3.0f, 40 / 3.0f, 10});
    expect_xs(run(kFinish, 0, 0, 0, 10, 0, 20, 0, 4), xs, 0);
    // A bend: control polygon 2 sqrt(50), eight positions; t = 1/2 is
    // m1/4 + b/2 + m2/4.
    std::vector<VokPoint> bend = run(kCurve, 0, 0, 0, 10, 10, 20, 0, 4);
    ASSERT_EQ(bend.size(), 8u);
    EXPECT_FLOAT_EQ(bend[3].x, 10.0f);
    EXPECT_FLOAT_EQ(bend[3].y, 7.5f);
    EXPECT_FLOAT_EQ(bend[7].x, 15.0f);
    EXPECT_FLOAT_EQ(bend[7].y, 5.0f);
}

TEST(Interpolate, MeaninglessCountsGiveTheEndPositionAlone) {
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    expect_xs(run(kFirst, 0, 0, 0, 10, 0, 0), {5}, 0);
    expect_xs(run(kFirst, 1, 0, 0, 10, 0, -3), {5}, 0);  // sqrt of a negative
    expect_xs(run(kFirst, 0, 0, 0, 1e30f, 0, 1e-6f), {5e29f}, 0);
    expect_xs(run(kCurve, 0, 0, 0, 10, 0, 20, 0, 0), {15}, 0);
    expect_xs(run(kFinish, 0, 0, 0, 10, 0, 20, 0, 0), {10}, 0);  // ends on b
    expect_xs(run(kCurve, 0, inf, 0, 10, 0, 20, 0, 4), {15}, 0);
    expect_xs(run(kFinish, 0, 0, 0, 10, 0, 20, nan, 4), {10}, 0);
}
