// Tools: mask stamps, stamp positions, strokes, full effects, previews, renders.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <set>
#include <string>
#include <vector>

#include "support/bitmaps.h"
#include "support/log_capture.h"
#include "vok/generators.h"
#include "vok/tools.h"

using vok_test::LogCapture;
using vok_test::rgba;
using vok_test::TestBitmap;

namespace {

const auto kFirst = VokInterpolateFirstPointToMidpoint;
const auto kCurve = VokInterpolateBetweenPointsWithBezierQuadCurve;
const auto kFinish = VokInterpolateBetweenPointsWithBezierQuadCurveAndFinishToPoint;

// Similar-colour stamp that ignores colour: radius 4, outer radius 5.7199...
void brush(TestBitmap &mask, double x, double y, double strength = 1, int erase = 0) {
    VokMaskSimilarColors(nullptr, mask.get(), nullptr, 1, x, y, 4, 99999999.0, 1, strength, erase,
                         0, 1);
}

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
    VokToolDrawState state{};
    VokToolStroke stroke{};
    std::vector<VokPoint> points;
    TestBitmap photo, mask;
    VokPoint lo = {-77, -77}, hi = {-77, -77};

    // Init leaves the pressure data (pointData) to the host.
    Tool(VokToolType type, double radius, uint32_t w, uint32_t h, double *pressure = nullptr)
        : photo(w, h), mask(w, h) {
        VokToolDrawParamsInit(&params);
        stroke.pointData = pressure;
        VokToolStrokeInit(&stroke);
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

TEST(MaskSimilarColors, WeightsFallWithDistanceAndColourAndRoundHalfUp) {
    struct Row { uint8_t start; double strength; int erase; uint32_t x, y; uint8_t want; };
    const Row rows[] = {
        {0, 1, 0, 10, 10, 255}, {0, 1, 0, 14, 10, 255},  // d <= r: full weight
        {0, 1, 0, 15, 10, 64},  {0, 1, 0, 15, 12, 24},   // (1/2)^2 * 255; 24.099
        {0, 1, 0, 14, 14, 8},   {0, 1, 0, 16, 10, 0},    // near 1/51; outside
        {100, 1, 0, 15, 10, 139}, {101, 1, 1, 15, 10, 76}, {101, 1, 1, 10, 10, 0},  // 75.75
        {101, 1, 1, 16, 10, 101}, {0, 0.5, 0, 10, 10, 128},  // 127.5 rounds up
        {0, 2, 0, 10, 10, 255}};                             // 510 clamps
    for (const Row &row : rows) {
        TestBitmap mask(21, 21);
        mask.fill(rgba(9, 8, 7, row.start));
        brush(mask, 10, 10, row.strength, row.erase);
        EXPECT_EQ(mask.at(row.x, row.y), rgba(9, 8, 7, row.want)) << row.x << "," << row.y;
    }
    TestBitmap edge(6, 5), small(2, 2);
    const std::vector<uint8_t> clear = edge.bytes();
    for (VokPoint at : {VokPoint{-100, 2}, VokPoint{2, 1e12f}, VokPoint{NAN, 2}})
        brush(edge, at.x, at.y);
    VokMaskSimilarColors(small.get(), edge.get(), &small.at(0, 0), 0, 2, 2, 3, 10, 1, 1, 0, 0, 0);
    EXPECT_EQ(edge.bytes(), clear);  // a photo of another size is refused
    brush(edge, 0, 0);  // clipped at the corner
    EXPECT_EQ(edge.at(0, 0).alpha + edge.at(5, 4).alpha, 255);

    TestBitmap image(3, 1), mask(3, 1);
    const VokColor reference = rgba(180, 120, 90);
    image.at(0, 0) = reference;
    image.at(1, 0) = rgba(190, 122, 80);  // c^2 = 65.47 in a and b, dL^2 = 15.41
    image.at(2, 0) = rgba(20, 200, 240);
    // Tolerance 6: exp(-65.47 / 72) = 102.7 / 255; with lightness exp(-80.88 / 72) = 82.9 / 255.
    const struct { double tolerance; int lightness; uint8_t want; } matches[] = {
        {6, 0, 103}, {6, 1, 83}, {0, 0, 0}};  // equal colours match even at tolerance 0
    for (const auto &row : matches) {
        mask.fill(rgba(0, 0, 0, 0));
        VokMaskSimilarColors(image.get(), mask.get(), &reference, 0, 1, 0, 20, row.tolerance, 1,
                             1, 0, row.lightness, 0);
        EXPECT_EQ(mask.at(0, 0), rgba(0, 0, 0, 255));
        EXPECT_EQ(mask.at(1, 0).alpha, row.want);
        EXPECT_EQ(mask.at(2, 0).alpha, 0);
    }
}

TEST(MaskDraw, PaintsPremultipliedColourWithAFixedSoftEdge) {
    TestBitmap mask(21, 21), other(21, 21);
    const VokColor colour = rgba(200, 100, 50, 7);  // its alpha is not used
    VokMaskDraw(mask.get(), &colour, 10, 10, 4, 1.0, 0);
    EXPECT_EQ(mask.at(14, 10), rgba(200, 100, 50, 255));  // d = r
    EXPECT_EQ(mask.at(15, 10), rgba(112, 56, 28, 143));   // w = 0.5625, truncated
    EXPECT_EQ(mask.at(17, 10), rgba(12, 6, 3, 15));       // w = 0.0625: edge r + 3.44
    EXPECT_EQ(mask.at(18, 10), rgba(0, 0, 0, 0));
    VokMaskDraw(mask.get(), &colour, 10, 10, 4, 0.5, 0);  // mixes with what is there
    EXPECT_EQ(mask.at(15, 10), rgba(136, 68, 34, 174));   // w = 0.28125
    VokMaskDraw(mask.get(), &colour, 10, 10, 4, 1.0, 1);  // erasing scales all four
    EXPECT_EQ(mask.at(15, 10), rgba(59, 29, 14, 76));
    VokMaskDraw(other.get(), &colour, 10, 10, 4, 3.0, 0);  // strength clamped to 1
    VokMaskDraw(other.get(), &colour, 10, 10, 0, NAN, 1);  // paints nothing
    EXPECT_EQ(other.at(17, 10).alpha, 47);                 // 0.1875 * 255
    EXPECT_EQ(other.at(10, 10).alpha, 255);
}

TEST(Interpolate, RunsStartNextToTheEndAndFinishOnIt) {
    expect_xs(run(kFirst, 0, 0, 3, 60, 3, 12), {25, 20, 15, 10, 5, 30}, 3);  // spacing r / 2
    EXPECT_EQ(run(kFirst, 1, 0, 3, 60, 3, 12).size(), 7u);  // draw: sqrt(2r + 1) = 5
    expect_xs(run(VokInterpolateMidpointToSecondPoint, 0, 0, 3, 8, 3, 2),
              {7.2f, 6.4f, 5.6f, 4.8f, 8}, 3);
    // Length m = 1 - 2^-24 over spacing 1: the count L / s + 1 rounds to 2 in
    // single precision (double would truncate to 1).
    const float m = 1.0f - std::ldexp(1.0f, -24);
    expect_xs(run(kFirst, 0, 0, 0, m + m, 0, 2), {m / 2, m}, 0);
    // Meaningless counts give the end position alone.
    expect_xs(run(kFirst, 1, 0, 0, 10, 0, -3), {5}, 0);  // sqrt of a negative
    expect_xs(run(kFirst, 0, 0, 0, 1e30f, 0, 1e-6f), {5e29f}, 0);

    // Collinear: evenly spaced from m1 = 5 (left out) to m2 = 15.
    std::vector<float> xs = {5 + 10 / 6.0f, 5 + 20 / 6.0f, 10, 5 + 40 / 6.0f, 5 + 50 / 6.0f, 15};
    expect_xs(run(kCurve, 0, 0, 0, 10, 0, 20, 0, 4), xs, 0);
    xs.insert(xs.end(), {35 / 3.0f, 40 / 3.0f, 10});
    expect_xs(run(kFinish, 0, 0, 0, 10, 0, 20, 0, 4), xs, 0);
    // Counted along the control polygon (2 sqrt(50)), not the chord (10).
    EXPECT_EQ(run(kCurve, 0, 0, 0, 10, 10, 20, 0, 4).size(), 8u);
    expect_xs(run(kCurve, 0, 0, 0, 10, 0, 20, 0, 0), {15}, 0);
    expect_xs(run(kFinish, 0, 0, 0, 10, 0, 20, 0, 0), {10}, 0);  // ends on b
    expect_xs(run(kCurve, 0, INFINITY, 0, 10, 0, 20, 0, 4), {15}, 0);
    expect_xs(run(kFinish, 0, 0, 0, 10, 0, 20, NAN, 4), {10}, 0);
}

TEST(ToolStroke, RectangleCoversTheLastSegmentPaddedByTheDiameter) {
    Tool tool(kVokToolBlur, 4, 40, 30), late(kVokToolBlur, 2.3, 40, 30);
    tool.draw({{10, 10}});  // stamped, rectangle left alone
    expect_point(tool.lo, -77, -77);
    EXPECT_EQ(tool.mask.at(10, 10).alpha + tool.mask.at(16, 10).alpha, 255);
    tool.draw({{30, 10}});  // first to midpoint: 11.67 ... 20, padded by 8
    expect_point(tool.lo, 35 / 3.0f - 8, 2);
    expect_point(tool.hi, 28, 18);
    tool.draw({{30, 20}});  // curve (20, 10) to (30, 15); t = 1/8 is the leftmost
    EXPECT_FLOAT_EQ(tool.lo.x, 22.34375f - 8);
    expect_point(tool.hi, 38, 23);
    late.draw({{0, 0}, {10, 0}, {20, 0}});  // pad ceil(4.6); the first segment is left out
    expect_point(late.hi, 15 + 5, 0 + 5);
    EXPECT_GT(late.lo.x, 0.0f);
    // Ended, the last curve (peak y 25) ends on m2 = (30, 20) and walks back to b = (20, 30).
    Tool ended(kVokToolBlur, 4, 50, 40);
    ended.stroke.ended = 1;
    ended.draw({{0, 10}, {20, 30}, {40, 10}});
    expect_point(ended.hi, 30 + 8, 30 + 8);
    EXPECT_EQ(ended.mask.at(20, 30).alpha, 255);
}

TEST(ToolStroke, FirstTouchSamplesAndTypeOneErasesWithModesOneAndThree) {
    Tool soft(kVokToolSimilarSoft, 4, 8, 8), set(kVokToolDesaturate, 4, 8, 8);
    soft.photo.at(7, 2) = set.photo.at(7, 2) = rgba(40, 50, 60, 70);
    set.stroke.colorSet = 1;
    soft.draw({{9.5f, 2.2f}});  // clamped into the image
    set.draw({{7, 2}});
    EXPECT_EQ(soft.stroke.color, rgba(40, 50, 60, 70));
    EXPECT_EQ(set.stroke.color, rgba(255, 0, 0));  // the default
    Tool blemish(kVokToolBlemish, 3, 30, 12);
    blemish.photo.fill(rgba(200, 160, 140));
    blemish.photo.at(6, 6) = rgba(40, 30, 30);
    blemish.stroke.colorSet = 1;  // its first touch runs regardless, and heals the photo
    blemish.draw({{6.5f, 6.5f}});
    EXPECT_EQ(blemish.photo.at(6, 6), rgba(200, 160, 140));
    EXPECT_EQ(blemish.stroke.offsetPoint.x, 7.5f);  // the patch 2.5 radii to the right
    EXPECT_EQ(blemish.mask.bytes(), std::vector<uint8_t>(30 * 12 * 4, 0));  // no stamp

    Tool tool(kVokToolDesaturate, 3, 20, 20);  // the mask starts opaque; mode 3 matches
    tool.photo.fill(rgba(90, 60, 30));
    VokToolConfigureMask(tool.photo.get(), tool.mask.get(), &tool.params);
    const struct { VokToolType type; int32_t mode; uint8_t want; } stamps[] = {
        {1, 0, 255}, {1, 1, 0}, {1, 2, 255}, {1, 3, 0}, {2, 1, 255}, {2, 2, 0}, {3, 1, 0}};
    for (const auto &s : stamps) {
        tool.params.type = s.type;
        VokToolPoint point = {{10, 10}, 3.0, s.mode};
        VokToolTypesDrawPoint(tool.photo.get(), tool.mask.get(), &point, &tool.photo.at(0, 0), 0,
                              &tool.params);
        EXPECT_EQ(tool.mask.at(10, 10).alpha, s.want) << s.type << "/" << s.mode;
    }
}

TEST(ToolStroke, DrawBrushPaintsTheStrokeColourWithPressure) {
    double pressure[] = {0.5, 2.0};
    Tool brush(kVokToolDraw, 3, 40, 20), pressed(kVokToolDraw, 4, 60, 30, pressure);
    brush.stroke.color = rgba(0, 200, 100);
    brush.draw({{5, 10}});
    expect_point(brush.lo, 5 - 7, 10 - 7);  // ceil(r + 3.44) around each stamp
    for (float x : {15.0f, 25.0f, 35.0f}) brush.draw({{x, 10}});
    for (uint32_t x = 5; x <= 30; ++x) EXPECT_EQ(brush.mask.at(x, 10), rgba(0, 200, 100)) << x;
    expect_point(brush.hi, 30 + 7, 10 + 7);
    pressed.draw({{10, 15}});
    expect_point(pressed.lo, 10 - 6, 15 - 6);  // radius 2
    EXPECT_EQ(pressed.mask.at(12, 15).alpha - pressed.mask.at(17, 15).alpha, 255);
    pressed.draw({{50, 15}});  // ends on the midpoint 30 with radius 4 * 1.25
    expect_point(pressed.hi, 30 + 9, 15 + 9);
    EXPECT_EQ(pressed.mask.at(16, 22).alpha, 0);  // the radius is still about 3 there
}

struct ToolRun : ::testing::Test {
    ToolRun() : photo(60, 50) {  // big enough for the blurs' radius to matter
        photo.randomize(21);
        for (uint32_t x = 0; x < 6; ++x) photo.at(x, 0).alpha = static_cast<uint8_t>(40 * x);
        VokToolDrawParamsInit(&params);
        VokToolDrawStateInit(&state);
    }
    TestBitmap full_of(VokToolType type) {
        TestBitmap full(photo);
        params.type = state.type = type;
        params.tolerance = 1.0;
        VokToolApplyFullTool(full.get(), &params, &state);
        return full;
    }

    TestBitmap photo;
    VokToolDrawParams params;
    VokToolDrawState state;
};

TEST_F(ToolRun, InitCopiesThePhotoAndStartsTheMask) {
    TestBitmap result(60, 50), mask(60, 50);
    mask.fill(rgba(1, 1, 1, 1));
    params.type = state.type = kVokToolBlemish;
    params.deferFullTool = 1;  // blemish runs its full step regardless
    VokToolInit(photo.get(), result.get(), mask.get(), &params, &state);
    EXPECT_EQ(params.tolerance, 99999999.0);
    EXPECT_EQ(mask.bytes(), std::vector<uint8_t>(60 * 50 * 4, 0));
    params.type = state.type = kVokToolDesaturate;
    VokToolInit(photo.get(), result.get(), mask.get(), &params, &state);
    EXPECT_EQ(result.bytes(), photo.bytes());
    EXPECT_EQ(mask.bytes(), std::vector<uint8_t>(60 * 50 * 4, 255));
    params.deferFullTool = 0;
    VokToolInit(photo.get(), result.get(), mask.get(), &params, &state);
    EXPECT_NE(result.bytes(), photo.bytes());
}

TEST_F(ToolRun, FullEffectsPerTypeAndTheFinalRender) {
    const double any = 99999999.0;
    const VokColor white = rgba(255, 255, 255);
    // Tints keep their colour for the stamps, with the opacity as alpha.
    const struct { VokToolType type; bool changes; double tolerance; VokColor colour; } rows[] = {
        {0, false, any, white},  {3, false, any, white},  {15, false, any, white},
        {32, true, any, white},  {36, false, any, white}, {1, true, 10, white},
        {2, true, any, white},   {5, true, any, white},   {11, true, any, white},
        {13, true, any, white},  {14, true, any, white},  {6, true, 10, rgba(55, 44, 38, 128)},
        {7, true, 10, rgba(205, 144, 115, 77)}, {8, true, any, rgba(190, 89, 106, 89)},
        {9, true, 5.5, rgba(230, 55, 49, 128)}, {12, false, 1, rgba(230, 55, 49, 128)}};
    for (const auto &row : rows) {
        EXPECT_EQ(full_of(row.type).bytes() != photo.bytes(), row.changes) << row.type;
        EXPECT_EQ(params.tolerance, row.tolerance) << row.type;
        EXPECT_EQ(params.color, row.colour) << row.type;
    }
    TestBitmap blur = full_of(kVokToolBlur);
    EXPECT_EQ(full_of(kVokToolBlur2).bytes(), blur.bytes());
    EXPECT_EQ(full_of(kVokToolVoronoi2).bytes(), full_of(kVokToolVoronoi).bytes());  // on purpose
    TestBitmap cells = full_of(kVokToolHexagons), hexagons(photo);
    VokBlurModesHexagons(hexagons.get(), 0.0f);  // mosaics take the default cell size
    EXPECT_EQ(cells.bytes(), hexagons.bytes());
    state.restoreBitmap = blur.get();
    EXPECT_EQ(full_of(kVokToolRestore).bytes(), blur.bytes());
    TestBitmap none(photo), all(photo), clear(12, 10), opaque(12, 10), paint(60, 50);
    VokMaskSetOpaque(opaque.get());  // the masks are scaled up
    VokToolRenderHiRes(none.get(), clear.get(), &params, &state);
    VokToolRenderHiRes(all.get(), opaque.get(), &params, &state);
    EXPECT_EQ(none.bytes(), photo.bytes());
    for (uint32_t y = 0; y < 50; y += 7)
        for (uint32_t x = 0; x < 60; x += 5) EXPECT_NEAR(all.at(x, y).red, blur.at(x, y).red, 1);
    params.type = state.type = kVokToolDraw;  // the paint is composited over the photo
    paint.at(2, 2) = rgba(0, 0, 255);
    VokToolRenderHiRes(all.get(), paint.get(), &params, &state);
    EXPECT_EQ(all.at(2, 2), rgba(0, 0, 255, photo.at(2, 2).alpha));
    EXPECT_EQ(all.at(3, 2), blur.at(3, 2));
    params.showMaskInRed = 1;  // every colour becomes red, alpha stays; draw skips it all
    TestBitmap red = full_of(kVokToolWarm);
    for (uint32_t x = 0; x < 6; ++x) EXPECT_EQ(red.at(x, 0), rgba(255, 0, 0, 40 * x));
    EXPECT_EQ(full_of(kVokToolDraw).bytes(), photo.bytes());
}

TEST(ToolTypes, EveryTypeHasAUniqueNameAndADescription) {
    std::set<std::string> names;
    for (VokToolType type = 1; type <= kVokToolRestore; ++type) {
        ASSERT_NE(nullptr, VokToolTypeName(type)) << type;
        ASSERT_NE(nullptr, VokToolTypeDescription(type)) << type;
        EXPECT_TRUE(names.insert(VokToolTypeName(type)).second) << VokToolTypeName(type);
    }
    for (VokToolType type : {0, -1, 36}) {
        EXPECT_EQ(nullptr, VokToolTypeName(type));
        EXPECT_EQ(nullptr, VokToolTypeDescription(type));
    }
}

TEST(ToolPreview, MixesThroughTheMaskWithAShift) {
    TestBitmap out(4, 3), base(4, 3), full(4, 3), mask(4, 3), small(3, 3);
    base.fill(rgba(100, 0, 255, 1));
    full.fill(rgba(200, 255, 0, 2));
    mask.fill(rgba(100, 50, 0, 128));
    mask.at(1, 1).alpha = 255;
    mask.at(2, 1) = rgba(250, 0, 0, 0);
    out.fill(rgba(7, 7, 7, 7));
    VokToolDrawState state = {0, kVokToolBlur, nullptr};
    auto box = [&](const VokBitmap *m, int32_t x0, int32_t y0, int32_t x1, int32_t y1) {
        VokToolRenderPreviewBox(out.get(), base.get(), full.get(), m, x0, y0, x1, y1, &state);
    };
    box(mask.get(), 9, 1, 1, 0);  // corners in either order, clamped
    EXPECT_EQ(out.at(1, 0), rgba(150, 127, 127, 7));  // (100*127 + 200*128 + 127) >> 8
    EXPECT_EQ(out.at(1, 1), rgba(199, 254, 0, 7));    // a = 255 still loses a little
    EXPECT_EQ(out.at(2, 1), rgba(100, 0, 254, 7));
    box(small.get(), 0, 0, 3, 2);
    EXPECT_EQ(out.at(0, 0), rgba(7, 7, 7, 7));
    VokToolRenderPreview(out.get(), base.get(), full.get(), mask.get(), &state);
    EXPECT_EQ(out.at(3, 2), rgba(150, 127, 127, 7));  // the last row too
    state.type = kVokToolDraw;  // the mask's colour, premultiplied: the sum wraps
    LogCapture log;
    box(mask.get(), 0, 0, 0, 0);
    EXPECT_TRUE(log.only("Preview Draw Tool!", 3));
    EXPECT_EQ(out.at(0, 0).red, 100);  // not the full bitmap's
    VokToolRenderPreview(out.get(), base.get(), mask.get(), mask.get(), &state);
    EXPECT_EQ(out.at(0, 0), rgba(149, 50, 126, 7));  // mask + (base * 127 >> 8)
    EXPECT_EQ(out.at(2, 1).red, 93);                  // (250 + 99) mod 256
}

TEST(Whiten, LightensNeutralsAndTakesYellowOut) {
    TestBitmap px(3, 1);
    px.at(0, 0) = rgba(128, 128, 128, 77);
    px.at(1, 0) = rgba(230, 215, 160, 200);
    px.at(2, 0) = rgba(120, 140, 200);
    VokWhiten(px.get(), nullptr);
    // Grey: a = b = 127, s = 0.65 exp(-25/98); L 136.69 -> 154.96 -> 154, grey 146.
    EXPECT_EQ(px.at(0, 0), rgba(146, 146, 146, 77));
    EXPECT_GE(px.at(1, 0).blue, 180);       // yellow (b above neutral): judged by a alone
    EXPECT_NEAR(px.at(2, 0).blue, 200, 2);  // blue: judged by both axes, barely changes
    // Colours whose lightness lands next to a byte boundary: the exponent of
    // the single-precision power is formed in double (in float these differ).
    TestBitmap edge(3, 1);
    edge.at(0, 0) = rgba(137, 75, 123);
    edge.at(1, 0) = rgba(168, 124, 180);
    edge.at(2, 0) = rgba(219, 136, 172);
    VokWhiten(edge.get(), nullptr);
    EXPECT_EQ(edge.at(0, 0), rgba(136, 75, 125));
    EXPECT_EQ(edge.at(1, 0), rgba(167, 123, 179));
    EXPECT_EQ(edge.at(2, 0), rgba(217, 136, 172));
}
