// Stamp positions along a stroke, and strokes stamped into the mask.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <vector>

#include "support/bitmaps.h"
#include "support/log_capture.h"
#include "vok/tools.h"

using vok_test::rgba;

namespace {

const auto kFirst = VokInterpolateFirstPointToMidpoint;
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

void expect_point(VokPoint p, float x, float y) { expect_xs({p}, {x}, y); }

// A stroke on its own photo and mask; lo and hi keep the last rectangle.
struct Tool {
    VokToolDrawParams params;
    VokToolDrawState state;
    VokToolStroke stroke;
    std::vector<VokPoint> points;
    vok_test::TestBitmap photo, mask;
    VokPoint lo = {-77, -77}, hi = {-77, -77};

    Tool(VokToolType type, double radius, uint32_t w, uint32_t h) : photo(w, h), mask(w, h) {
        VokToolDrawParamsInit(&params);
        VokToolDrawStateInit(&state);
        VokToolStrokeInit(&stroke);
        stroke.pointData = nullptr;
        params.type = state.type = type;
        stroke.radius = radius;
    }
    void draw(std::initializer_list<VokPoint> touches) {  // as the host does
        points.insert(points.end(), touches);
        stroke.points = points.data();
        stroke.count = static_cast<int32_t>(points.size());
        VokToolDrawStrokeOutRect(photo.get(), mask.get(), &stroke, &params, &state, &lo, &hi);
        stroke.firstIndex = stroke.count;
    }
};

}  // namespace

TEST(Interpolate, StraightRunsStartNextToTheEndAndFinishOnIt) {
    expect_xs(run(kFirst, 0, 0, 3, 60, 3, 12), {25, 20, 15, 10, 5, 30}, 3);  // spacing r / 2
    EXPECT_EQ(run(kFirst, 1, 0, 3, 60, 3, 12).size(), 7u);  // draw: sqrt(2r + 1) = 5
    expect_xs(run(kFirst, 0, 5, 3, 5, 3, 4), {5}, 3);
    expect_xs(run(VokInterpolateMidpointToSecondPoint, 0, 0, 3, 8, 3, 2),
              {7.2f, 6.4f, 5.6f, 4.8f, 8}, 3);
    // Length m = 1 - 2^-24 over spacing 1: the count L / s + 1 rounds to 2 in
    // single precision (double would truncate to 1).
    const float m = 1.0f - std::ldexp(1.0f, -24);
    expect_xs(run(kFirst, 0, 0, 0, m + m, 0, 2), {m / 2, m}, 0);
}

TEST(Interpolate, CurvesRunEvenlyInTAndTheFinishWalksBackToTheMiddlePoint) {
    // Collinear: evenly spaced from m1 = 5 (left out) to m2 = 15.
    std::vector<float> xs = {5 + 10 / 6.0f, 5 + 20 / 6.0f, 10, 5 + 40 / 6.0f, 5 + 50 / 6.0f, 15};
    expect_xs(run(kCurve, 0, 0, 0, 10, 0, 20, 0, 4), xs, 0);
    xs.insert(xs.end(), {35 / 3.0f, 40 / 3.0f, 10});
    expect_xs(run(kFinish, 0, 0, 0, 10, 0, 20, 0, 4), xs, 0);
    // A bend: counted along the control polygon (2 sqrt(50)), not the chord;
    // t = 1/2 is m1/4 + b/2 + m2/4.
    std::vector<VokPoint> bend = run(kCurve, 0, 0, 0, 10, 10, 20, 0, 4);
    ASSERT_EQ(bend.size(), 8u);
    expect_point(bend[3], 10, 7.5f);
}

TEST(Interpolate, MeaninglessCountsGiveTheEndPositionAlone) {
    expect_xs(run(kFirst, 0, 0, 0, 10, 0, 0), {5}, 0);
    expect_xs(run(kFirst, 1, 0, 0, 10, 0, -3), {5}, 0);  // sqrt of a negative
    expect_xs(run(kFirst, 0, 0, 0, 1e30f, 0, 1e-6f), {5e29f}, 0);
    expect_xs(run(kCurve, 0, 0, 0, 10, 0, 20, 0, 0), {15}, 0);
    expect_xs(run(kFinish, 0, 0, 0, 10, 0, 20, 0, 0), {10}, 0);  // ends on b
    expect_xs(run(kCurve, 0, INFINITY, 0, 10, 0, 20, 0, 4), {15}, 0);
    expect_xs(run(kFinish, 0, 0, 0, 10, 0, 20, NAN, 4), {10}, 0);
}

TEST(ToolStroke, RectangleCoversTheLastSegmentPaddedByTheDiameter) {
    Tool tool(kVokToolBlur, 4, 40, 30);
    tool.draw({{10, 10}});  // stamped, rectangle left alone
    tool.draw({});
    expect_point(tool.lo, -77, -77);
    EXPECT_EQ(tool.mask.at(10, 10).alpha + tool.mask.at(16, 10).alpha, 255);
    tool.draw({{30, 10}});  // first to midpoint: 11.67 ... 20, padded by 8
    expect_point(tool.lo, 35 / 3.0f - 8, 2);
    expect_point(tool.hi, 28, 18);
    tool.draw({{30, 20}});  // curve (20, 10) to (30, 15); t = 1/8 is the leftmost
    EXPECT_FLOAT_EQ(tool.lo.x, 22.34375f - 8);
    expect_point(tool.hi, 38, 23);
    EXPECT_EQ(tool.mask.at(30, 15).alpha + tool.mask.at(30, 23).alpha, 255);

    Tool late(kVokToolBlur, 2.3, 40, 30);  // pad ceil(4.6)
    late.draw({{0, 0}, {10, 0}, {20, 0}});
    expect_point(late.hi, 15 + 5, 0 + 5);
    EXPECT_GT(late.lo.x, 0.0f);  // the first segment is not in it
    // Ended: two points stop on the midpoint; three reach m2 = 30, then
    // the finishing run walks back to 20.
    Tool two(kVokToolBlur, 4, 50, 20), three(kVokToolBlur, 4, 50, 20);
    two.stroke.ended = three.stroke.ended = 1;
    two.draw({{10, 10}, {40, 10}});
    three.draw({{0, 10}, {20, 10}, {40, 10}});
    expect_point(two.hi, 25 + 8, 18);
    expect_point(three.hi, 30 + 8, 18);
    EXPECT_EQ(two.mask.at(32, 10).alpha + three.mask.at(37, 10).alpha, 0);
}

TEST(ToolStroke, TypeOneErasesWithModesOneAndThreeOthersWithModeTwo) {
    Tool tool(kVokToolDesaturate, 3, 20, 20);
    const VokColor sampled = rgba(90, 60, 30);
    tool.photo.fill(sampled);
    VokToolConfigureMask(tool.photo.get(), tool.mask.get(), &tool.params);
    const struct { VokToolType type; int32_t mode; uint8_t want; } stamps[] = {
        {kVokToolDesaturate, 0, 255}, {kVokToolDesaturate, 1, 0}, {kVokToolDesaturate, 2, 255},
        {kVokToolDesaturate, 3, 0},  // the photo matches the stroke colour
        {kVokToolBlur, 1, 255}, {kVokToolBlur, 2, 0}, {kVokToolBlemish, 1, 0}};
    for (const auto &s : stamps) {
        tool.params.type = s.type;
        VokToolPoint point = {{10, 10}, 3.0, s.mode};
        VokToolTypesDrawPoint(tool.photo.get(), tool.mask.get(), &point, &sampled, 0, &tool.params);
        EXPECT_EQ(tool.mask.at(10, 10).alpha, s.want) << s.type << "/" << s.mode;
    }
}

TEST(ToolStroke, FirstTouchSamplesTheColourUnlessAlreadySet) {
    Tool soft(kVokToolSimilarSoft, 4, 8, 8), set(kVokToolDesaturate, 4, 8, 8);
    soft.photo.at(7, 2) = set.photo.at(7, 2) = rgba(40, 50, 60, 70);
    soft.draw({{9.5f, 2.2f}});  // clamped into the image
    EXPECT_EQ(soft.stroke.color, rgba(40, 50, 60, 70));
    EXPECT_EQ(soft.stroke.colorSet, 0);
    set.stroke.colorSet = 1;
    set.draw({{7, 2}});
    EXPECT_EQ(set.stroke.color, rgba(255, 0, 0));  // the default
    vok_test::LogCapture log;
    Tool blemish(kVokToolBlemish, 4, 8, 8);
    blemish.stroke.colorSet = 1;  // its first touch runs regardless
    blemish.draw({{3, 3}});
    EXPECT_TRUE(log.only("VokBlemish is not available yet", 3));
}

TEST(ToolStroke, DrawBrushPaintsTheStrokeColourWithPressure) {
    Tool brush(kVokToolDraw, 3, 40, 20), pressed(kVokToolDraw, 4, 60, 30);
    brush.stroke.color = rgba(0, 200, 100);
    brush.draw({{5, 10}});
    expect_point(brush.lo, 5 - 7, 10 - 7);  // ceil(r + 3.44) around each stamp
    for (float x : {15.0f, 25.0f, 35.0f}) brush.draw({{x, 10}});
    for (uint32_t x = 5; x <= 30; ++x) EXPECT_EQ(brush.mask.at(x, 10), rgba(0, 200, 100)) << x;
    EXPECT_EQ(brush.mask.at(10, 17).alpha, 0);
    expect_point(brush.hi, 30 + 7, 10 + 7);

    double pressure[] = {0.5, 2.0};
    pressed.stroke.pointData = pressure;
    pressed.draw({{10, 15}});
    expect_point(pressed.lo, 10 - 6, 15 - 6);  // radius 2
    EXPECT_EQ(pressed.mask.at(12, 15).alpha - pressed.mask.at(17, 15).alpha, 255);
    pressed.draw({{50, 15}});  // ends on the midpoint 30 with radius 4 * 1.25
    expect_point(pressed.hi, 30 + 9, 15 + 9);
    EXPECT_GT(pressed.mask.at(30, 22).alpha, 0);
    EXPECT_EQ(pressed.mask.at(16, 22).alpha, 0);  // the radius is still about 3 there
}
