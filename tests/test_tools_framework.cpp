// The tool framework: records, strokes into the mask, previews.
#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <vector>

#include "support/bitmaps.h"
#include "support/log_capture.h"
#include "vok/tools.h"

using vok_test::LogCapture;
using vok_test::rgba;
using vok_test::TestBitmap;

namespace {

void expect_point(VokPoint p, float x, float y) {
    EXPECT_FLOAT_EQ(p.x, x);
    EXPECT_FLOAT_EQ(p.y, y);
}

// A stroke on its own photo and mask; lo and hi keep the last rectangle.
struct Tool {
    VokToolDrawParams params;
    VokToolDrawState state;
    VokToolStroke stroke;
    std::vector<VokPoint> points;
    TestBitmap photo, mask;
    VokPoint lo = {-77, -77}, hi = {-77, -77};

    Tool(VokToolType type, double radius, uint32_t w, uint32_t h) : photo(w, h), mask(w, h) {
        VokToolDrawParamsInit(&params);
        VokToolDrawStateInit(&state);
        stroke.pointData = nullptr;
        VokToolStrokeInit(&stroke);
        params.type = state.type = type;
        stroke.radius = radius;
    }
    // Adds touch points and draws what is new, as the host does.
    void draw(std::initializer_list<VokPoint> touches) {
        points.insert(points.end(), touches);
        stroke.points = points.data();
        stroke.count = static_cast<int32_t>(points.size());
        VokToolDrawStrokeOutRect(photo.get(), mask.get(), &stroke, &params, &state, &lo, &hi);
        stroke.firstIndex = stroke.count;
    }
};

}  // namespace

TEST(ToolRecords, DefaultsAndHeapBitmaps) {
    double data[1];
    VokToolStroke stroke;
    std::memset(&stroke, 0xAB, sizeof stroke);
    stroke.pointData = data;
    VokToolStrokeInit(&stroke);
    EXPECT_EQ(stroke.pointData, data);  // the host's to set
    EXPECT_EQ(stroke.count + stroke.firstIndex + stroke.ended + stroke.colorSet, 0);
    EXPECT_EQ(stroke.color, rgba(255, 0, 0));
    expect_point(stroke.offsetPoint, -1, -1);

    TestBitmap photo(5, 3);
    photo.randomize(3);
    VokBitmap *copy = nullptr, empty = {nullptr, 0, 0};
    ASSERT_EQ(VokToolBitmapCopy(&copy, photo.get()), 1);
    EXPECT_EQ(std::memcmp(copy->pixels, photo.get()->pixels, 60), 0);
    VokToolBitmapDestroy(&copy);
    EXPECT_EQ(copy, nullptr);
    VokToolBitmapDestroy(&copy);
    EXPECT_EQ(VokToolBitmapCopy(&copy, &empty), 0);
    VokToolBitmapDestroy(&copy);
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
    EXPECT_EQ(tool.mask.at(20, 10).alpha + tool.mask.at(27, 10).alpha, 255);
    tool.draw({{30, 20}});  // curve (20, 10) to (30, 15); t = 1/8 is the leftmost
    EXPECT_FLOAT_EQ(tool.lo.x, 22.34375f - 8);
    expect_point(tool.hi, 38, 23);
    EXPECT_EQ(tool.mask.at(30, 15).alpha + tool.mask.at(30, 23).alpha, 255);

    Tool late(kVokToolBlur, 2.3, 40, 30);  // pad ceil(4.6)
    late.draw({{0, 0}, {10, 0}, {20, 0}});
    expect_point(late.hi, 15 + 5, 0 + 5);
    EXPECT_GT(late.lo.x, 0.0f);  // the first segment is not in it

    // Ending: two points stop on the midpoint; three reach m2 = 30, then
    // the finishing run walks back to 20.
    Tool two(kVokToolBlur, 4, 50, 20), three(kVokToolBlur, 4, 50, 20);
    two.stroke.ended = three.stroke.ended = 1;
    two.draw({{10, 10}, {40, 10}});
    expect_point(two.hi, 25 + 8, 18);
    EXPECT_EQ(two.mask.at(32, 10).alpha, 0);
    three.draw({{0, 10}, {20, 10}, {40, 10}});
    expect_point(three.hi, 30 + 8, 18);
    EXPECT_EQ(three.mask.at(37, 10).alpha, 0);
}

TEST(ToolStroke, TypeOneErasesWithModesOneAndThreeOthersWithModeTwo) {
    TestBitmap photo(20, 20), mask(20, 20);
    photo.fill(rgba(90, 60, 30));
    const VokColor sampled = rgba(90, 60, 30);
    VokToolDrawParams params;
    VokToolDrawParamsInit(&params);
    params.type = kVokToolDesaturate;
    VokToolConfigureMask(photo.get(), mask.get(), &params);
    const struct { VokToolType type; int32_t mode; uint8_t want; } stamps[] = {
        {kVokToolDesaturate, 0, 255}, {kVokToolDesaturate, 1, 0}, {kVokToolDesaturate, 2, 255},
        {kVokToolDesaturate, 3, 0},  // the photo matches the stroke colour
        {kVokToolBlur, 1, 255}, {kVokToolBlur, 2, 0}, {kVokToolBlemish, 1, 0}};
    for (const auto &s : stamps) {
        params.type = s.type;
        VokToolPoint point = {{10, 10}, 3.0, s.mode};
        VokToolTypesDrawPoint(photo.get(), mask.get(), &point, &sampled, 0, &params);
        EXPECT_EQ(mask.at(10, 10).alpha, s.want) << s.type << "/" << s.mode;
    }
}

TEST(ToolStroke, FirstTouchSamplesTheColourUnlessAlreadySet) {
    Tool soft(kVokToolSimilarSoft, 4, 8, 8), set(kVokToolDesaturate, 4, 8, 8);
    soft.photo.at(7, 2) = rgba(40, 50, 60, 70);
    soft.draw({{9.5f, 2.2f}});  // clamped into the image
    EXPECT_EQ(soft.stroke.color, rgba(40, 50, 60, 70));
    EXPECT_EQ(soft.stroke.colorSet, 0);
    set.photo.at(7, 2) = rgba(40, 50, 60, 70);
    set.stroke.colorSet = 1;
    set.draw({{7, 2}});
    EXPECT_EQ(set.stroke.color, rgba(255, 0, 0));

    LogCapture log;
    Tool blemish(kVokToolBlemish, 4, 8, 8);
    blemish.stroke.colorSet = 1;  // its first touch runs regardless
    blemish.draw({{3, 3}});
    EXPECT_TRUE(log.only("VokBlemish is not available yet", 3));
}

TEST(ToolStroke, DrawTypePaintsTheStrokeColourWithPressure) {
    Tool point(kVokToolDraw, 3, 40, 20), brush(kVokToolDraw, 3, 40, 20);
    point.params.useBrushEngine = 0;  // stamps one by one through the framework
    point.stroke.color = brush.stroke.color = rgba(0, 200, 100);
    point.draw({{5, 10}, {35, 10}, {35, 10}});
    EXPECT_EQ(point.mask.at(5, 10), rgba(0, 200, 100));
    expect_point(point.hi, 35 + 6, 10 + 6);  // padded by 2r

    brush.draw({{5, 10}});
    expect_point(brush.lo, 5 - 7, 10 - 7);  // ceil(r + 3.44) around each stamp
    for (float x : {15.0f, 25.0f, 35.0f}) brush.draw({{x, 10}});
    for (uint32_t x = 5; x <= 30; ++x) EXPECT_EQ(brush.mask.at(x, 10).blue, 100) << x;
    EXPECT_EQ(brush.mask.at(10, 17).alpha, 0);
    expect_point(brush.hi, 30 + 7, 10 + 7);

    Tool pressed(kVokToolDraw, 4, 60, 30);
    double pressure[] = {0.5, 2.0};
    pressed.stroke.pointData = pressure;
    pressed.draw({{10, 15}});
    expect_point(pressed.lo, 10 - 6, 15 - 6);  // radius 2
    EXPECT_EQ(pressed.mask.at(12, 15).alpha, 255);
    EXPECT_EQ(pressed.mask.at(17, 15).alpha, 0);
    pressed.draw({{50, 15}});  // ends on the midpoint 30 with radius 4 * 1.25
    expect_point(pressed.hi, 30 + 9, 15 + 9);
    EXPECT_GT(pressed.mask.at(30, 22).alpha, 0);
    EXPECT_EQ(pressed.mask.at(16, 22).alpha, 0);  // the radius is still about 3 there
}

TEST(ToolPreview, MixesThroughTheMaskWithAShift) {
    TestBitmap out(4, 3), base(4, 3), full(4, 3), mask(4, 3), small(3, 3);
    base.fill(rgba(100, 0, 255, 1));
    full.fill(rgba(200, 255, 0, 2));
    mask.fill(rgba(0, 0, 0, 128));
    mask.at(1, 1).alpha = 255;
    mask.at(2, 1).alpha = 0;
    out.fill(rgba(7, 7, 7, 7));
    VokToolDrawState state;
    VokToolDrawStateInit(&state);
    state.type = kVokToolBlur;
    auto box = [&](const TestBitmap &m, int32_t x0, int32_t y0, int32_t x1, int32_t y1) {
        VokToolRenderPreviewBox(out.get(), base.get(), full.get(), m.get(), x0, y0, x1, y1,
                                &state);
    };
    box(mask, 9, 1, 1, 0);  // corners in either order, clamped
    EXPECT_EQ(out.at(1, 0), rgba(150, 127, 127, 7));  // (100*127 + 200*128 + 127) >> 8
    EXPECT_EQ(out.at(1, 1), rgba(199, 254, 0, 7));    // a = 255 still loses a little
    EXPECT_EQ(out.at(2, 1), rgba(100, 0, 254, 7));
    EXPECT_EQ(out.at(0, 0), rgba(7, 7, 7, 7));
    EXPECT_EQ(out.at(1, 2), rgba(7, 7, 7, 7));
    const std::vector<uint8_t> before = out.bytes();
    box(mask, -9, 0, -1, 2);
    box(mask, 0, 3, 3, 5);
    box(small, 0, 0, 3, 2);
    EXPECT_EQ(out.bytes(), before);
    // The whole preview reaches the last row despite its bottom of height.
    VokToolRenderPreview(out.get(), base.get(), full.get(), mask.get(), &state);
    EXPECT_EQ(out.at(3, 2), rgba(150, 127, 127, 7));
}

TEST(ToolPreview, DrawModeTakesItsColourFromThePremultipliedMask) {
    TestBitmap out(2, 1), base(2, 1), full(2, 1), mask(2, 1);
    base.fill(rgba(200, 200, 200));
    full.fill(rgba(9, 9, 9));
    mask.at(0, 0) = rgba(100, 50, 0, 128);
    mask.at(1, 0) = rgba(250, 0, 0, 0);  // not premultiplied: the sum wraps
    VokToolDrawState state;
    VokToolDrawStateInit(&state);
    state.type = kVokToolDraw;
    LogCapture log;
    VokToolRenderPreviewBox(out.get(), base.get(), full.get(), mask.get(), 0, 0, 1, 0, &state);
    EXPECT_TRUE(log.only("Preview Draw Tool!", 3));
    EXPECT_EQ(out.at(0, 0).red, 149);  // (200*127 + 100*128 + 127) >> 8
    VokToolRenderPreview(out.get(), base.get(), mask.get(), mask.get(), &state);
    EXPECT_EQ(out.at(0, 0).red, 199);  // 100 + (200*127 >> 8)
    EXPECT_EQ(out.at(0, 0).blue, 99);
    EXPECT_EQ(out.at(1, 0).red, 193);  // (250 + 199) mod 256
}
