// The tool framework: records, strokes into the mask, previews, full effects.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <vector>

#include "support/bitmaps.h"
#include "support/log_capture.h"
#include "vok/tools.h"

using vok_test::LogCapture;
using vok_test::rgba;
using vok_test::TestBitmap;

namespace {

struct Tool {
    VokToolDrawParams params;
    VokToolDrawState state;
    VokToolStroke stroke;
    std::vector<VokPoint> points;

    explicit Tool(VokToolType type, double radius = 4.0) {
        VokToolDrawParamsInit(&params);
        VokToolDrawStateInit(&state);
        VokToolStrokeInit(&stroke);
        stroke.pointData = nullptr;
        params.type = type;
        state.type = type;
        stroke.radius = radius;
        points.reserve(16);
    }
    // Appends a touch point the way the host does.
    void touch(float x, float y) {
        points.push_back({x, y});
        stroke.points = points.data();
        stroke.count = static_cast<int32_t>(points.size());
    }
    void draw(TestBitmap &photo, TestBitmap &mask, VokPoint *lo, VokPoint *hi) {
        VokToolDrawStrokeOutRect(photo.get(), mask.get(), &stroke, &params, &state, lo, hi);
        stroke.firstIndex = stroke.count;
    }
};

const VokPoint kUntouched = {-77.0f, -77.0f};

void expect_point(VokPoint p, float x, float y) {
    EXPECT_FLOAT_EQ(p.x, x);
    EXPECT_FLOAT_EQ(p.y, y);
}

}  // namespace

TEST(ToolRecords, InitFillsTheDefaults) {
    VokToolDrawParams params;
    std::memset(&params, 0xAB, sizeof params);
    VokToolDrawParamsInit(&params);
    EXPECT_EQ(params.type, 0);
    EXPECT_EQ(params.color.red + params.color.green + params.color.blue + params.color.alpha,
              4 * 255);
    EXPECT_EQ(params.strength, 1.0);
    EXPECT_EQ(params.tolerance, 10.0);
    EXPECT_EQ(params.deferFullTool + params.showMaskInRed, 0);
    EXPECT_EQ(params.useBrushEngine, 1);

    VokToolStroke stroke;
    double data[1];
    std::memset(&stroke, 0xAB, sizeof stroke);
    stroke.pointData = data;
    VokToolStrokeInit(&stroke);
    EXPECT_EQ(stroke.points, nullptr);
    EXPECT_EQ(stroke.pointData, data);  // left to the host
    EXPECT_EQ(stroke.count + stroke.firstIndex + stroke.ended + stroke.mode + stroke.colorSet, 0);
    EXPECT_EQ(stroke.radius, 0.0);
    EXPECT_EQ(stroke.scale, 1.0);
    EXPECT_EQ(stroke.color.red, 255);
    EXPECT_EQ(stroke.color.green + stroke.color.blue, 0);
    EXPECT_EQ(stroke.color.alpha, 255);
    expect_point(stroke.offsetPoint, -1.0f, -1.0f);

    VokToolDrawState state;
    state.type = 17;
    VokToolDrawStateInit(&state);
    EXPECT_EQ(state.active, 0);
    EXPECT_EQ(state.type, 17);  // the host sets it
    EXPECT_EQ(state.restoreBitmap, nullptr);

    VokToolPoint point;
    std::memset(&point, 0xAB, sizeof point);
    VokToolPointInit(&point);
    expect_point(point.location, 0, 0);
    EXPECT_EQ(point.radius, 0.0);
    EXPECT_EQ(point.mode, 0);
    VokToolShape shape;
    std::memset(&shape, 0xAB, sizeof shape);
    VokToolShapeInit(&shape);
    EXPECT_EQ(shape.type, 0);
    EXPECT_EQ(shape.size + shape.angle + shape.center.x + shape.center.y, 0.0);
}

TEST(ToolRecords, HeapBitmapCopyAndDestroy) {
    TestBitmap photo(5, 3);
    photo.randomize(3);
    VokBitmap *copy = nullptr;
    ASSERT_EQ(VokToolBitmapCopy(&copy, photo.get()), 1);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->width, 5u);
    EXPECT_EQ(copy->height, 3u);
    EXPECT_EQ(std::memcmp(copy->pixels, photo.get()->pixels, 60), 0);
    VokToolBitmapDestroy(&copy);
    EXPECT_EQ(copy, nullptr);
    VokToolBitmapDestroy(&copy);
    VokToolBitmapDestroy(nullptr);

    VokBitmap empty = {nullptr, 0, 0};
    EXPECT_EQ(VokToolBitmapCopy(&copy, &empty), 0);  // the build fails, so does the copy
    VokToolBitmapDestroy(&copy);
}

TEST(ToolStroke, OutRectangleCoversTheLastSegmentPaddedByTheDiameter) {
    TestBitmap photo(40, 30), mask(40, 30);
    Tool tool(kVokToolBlur);
    VokPoint lo = kUntouched, hi = kUntouched;

    tool.touch(10, 10);  // one point: stamped, rectangle left alone
    tool.draw(photo, mask, &lo, &hi);
    expect_point(lo, -77, -77);
    expect_point(hi, -77, -77);
    EXPECT_EQ(mask.at(10, 10).alpha, 255);
    EXPECT_EQ(mask.at(16, 10).alpha, 0);

    tool.draw(photo, mask, &lo, &hi);  // nothing new to draw
    expect_point(lo, -77, -77);

    tool.touch(30, 10);  // first to midpoint: 11.67 ... 20, padded by 8
    tool.draw(photo, mask, &lo, &hi);
    expect_point(lo, 35 / 3.0f - 8, 2);
    expect_point(hi, 28, 18);
    EXPECT_EQ(mask.at(20, 10).alpha, 255);
    EXPECT_EQ(mask.at(27, 10).alpha, 0);

    tool.touch(30, 20);  // curve from (20, 10) to (30, 15) around (30, 10)
    tool.draw(photo, mask, &lo, &hi);
    EXPECT_FLOAT_EQ(lo.x, 22.34375f - 8);  // t = 1/8 of eight positions
    expect_point(hi, 38, 23);
    EXPECT_EQ(mask.at(30, 15).alpha, 255);
    EXPECT_EQ(mask.at(30, 23).alpha, 0);

    // Two points drawn in one call: the rectangle covers the last one only.
    Tool late(kVokToolBlur, 2.3);  // pad ceil(4.6) = 5
    late.touch(0, 0);
    late.touch(10, 0);
    late.touch(20, 0);
    TestBitmap mask2(40, 30);
    late.draw(photo, mask2, &lo, &hi);
    expect_point(hi, 15 + 5, 0 + 5);
    EXPECT_GT(lo.x, 5.0f - 5);
}

TEST(ToolStroke, EndedStrokesFinishOnTheMiddlePoint) {
    TestBitmap photo(50, 20), mask(50, 20);
    Tool two(kVokToolBlur);
    two.touch(10, 10);
    two.touch(40, 10);
    two.stroke.ended = 1;
    VokPoint lo = kUntouched, hi = kUntouched;
    two.draw(photo, mask, &lo, &hi);
    // Only the first half is drawn: the last stamp sits on the midpoint 25.
    expect_point(hi, 25 + 8, 18);
    EXPECT_EQ(mask.at(25, 10).alpha, 255);
    EXPECT_EQ(mask.at(32, 10).alpha, 0);
    EXPECT_EQ(mask.at(40, 10).alpha, 0);

    TestBitmap mask3(50, 20);
    Tool three(kVokToolBlur);
    three.touch(0, 10);
    three.touch(20, 10);
    three.touch(40, 10);
    three.stroke.ended = 1;
    three.draw(photo, mask3, &lo, &hi);
    // The finishing run ends on (20, 10): the half toward 40 stays unpainted.
    expect_point(hi, 30 + 8, 18);
    EXPECT_EQ(mask3.at(30, 10).alpha, 255);
    EXPECT_EQ(mask3.at(37, 10).alpha, 0);
}

TEST(ToolStroke, TypeOneErasesWithModesOneAndThreeOthersWithModeTwo) {
    TestBitmap photo(20, 20), mask(20, 20);
    photo.fill(rgba(90, 60, 30));
    VokToolDrawParams params;
    VokToolDrawParamsInit(&params);
    params.type = kVokToolDesaturate;
    VokToolConfigureMask(photo.get(), mask.get(), &params);
    EXPECT_EQ(mask.at(3, 3).alpha, 255);
    VokToolPoint point;
    VokToolPointInit(&point);
    point.location = {10, 10};
    point.radius = 3;
    const VokColor sampled = rgba(90, 60, 30);

    point.mode = 1;
    VokToolTypesDrawPoint(photo.get(), mask.get(), &point, &sampled, 0, &params);
    EXPECT_EQ(mask.at(10, 10).alpha, 0);
    point.mode = 2;
    VokToolTypesDrawPoint(photo.get(), mask.get(), &point, &sampled, 0, &params);
    EXPECT_EQ(mask.at(10, 10).alpha, 255);
    point.mode = 3;  // colour-aware erase: the photo matches the stroke colour
    VokToolTypesDrawPoint(photo.get(), mask.get(), &point, &sampled, 0, &params);
    EXPECT_EQ(mask.at(10, 10).alpha, 0);
    VokMaskSetOpaque(mask.get());
    point.mode = 0;  // no stamp at all
    VokToolTypesDrawPoint(photo.get(), mask.get(), &point, &sampled, 0, &params);
    EXPECT_EQ(mask.at(10, 10).alpha, 255);

    params.type = kVokToolBlur;
    VokToolConfigureMask(photo.get(), mask.get(), &params);
    EXPECT_EQ(mask.at(3, 3).alpha, 0);
    point.mode = 0;
    VokToolTypesDrawPoint(photo.get(), mask.get(), &point, &sampled, 0, &params);
    EXPECT_EQ(mask.at(10, 10).alpha, 255);
    point.mode = 2;
    VokToolTypesDrawPoint(photo.get(), mask.get(), &point, &sampled, 0, &params);
    EXPECT_EQ(mask.at(10, 10).alpha, 0);

    const std::vector<uint8_t> before = mask.bytes();
    params.type = kVokToolBlemish;  // never stamps
    point.mode = 1;
    VokToolTypesDrawPoint(photo.get(), mask.get(), &point, &sampled, 0, &params);
    EXPECT_EQ(mask.bytes(), before);
}

TEST(ToolStroke, FirstTouchSamplesTheColourUnlessAlreadySet) {
    TestBitmap photo(8, 8), mask(8, 8);
    photo.fill(rgba(1, 2, 3));
    photo.at(7, 2) = rgba(40, 50, 60, 70);
    Tool tool(kVokToolSimilarSoft);
    tool.touch(9.5f, 2.2f);  // clamped into the image
    VokPoint lo, hi;
    tool.draw(photo, mask, &lo, &hi);
    EXPECT_EQ(tool.stroke.color.red, 40);
    EXPECT_EQ(tool.stroke.color.alpha, 70);
    EXPECT_EQ(tool.stroke.colorSet, 0);  // the host sets it

    Tool set(kVokToolDesaturate);
    set.stroke.colorSet = 1;
    set.touch(7, 2);
    set.draw(photo, mask, &lo, &hi);
    EXPECT_EQ(set.stroke.color.red, 255);  // still the default red
    EXPECT_EQ(set.stroke.color.green, 0);

    LogCapture log;
    Tool blemish(kVokToolBlemish);
    blemish.stroke.colorSet = 1;  // type 3 always runs its first touch
    blemish.touch(3, 3);
    blemish.draw(photo, mask, &lo, &hi);
    EXPECT_TRUE(log.only("VokBlemish is not available yet", 3));
}

TEST(ToolStroke, DrawTypePaintsTheStrokeColour) {
    TestBitmap photo(40, 20), by_point(40, 20), by_brush(40, 20);
    Tool point(kVokToolDraw, 3.0);
    point.params.useBrushEngine = 0;
    VokColorSetARGB(&point.stroke.color, 255, 0, 200, 100);
    point.touch(5, 10);
    point.touch(35, 10);
    point.touch(35, 10);
    VokPoint lo, hi;
    point.draw(photo, by_point, &lo, &hi);
    EXPECT_EQ(by_point.at(5, 10).green, 200);
    EXPECT_EQ(by_point.at(5, 10).blue, 100);
    EXPECT_EQ(by_point.at(5, 10).alpha, 255);
    expect_point(hi, 35 + 6, 10 + 6);

    Tool brush(kVokToolDraw, 3.0);
    brush.stroke.color = point.stroke.color;
    VokPoint blo = kUntouched, bhi = kUntouched;
    for (float x : {5.0f, 15.0f, 25.0f, 35.0f}) {
        brush.touch(x, 10);
        VokPoint l = kUntouched, h = kUntouched;
        brush.draw(photo, by_brush, &l, &h);
        if (blo.x == kUntouched.x) blo = l;
        bhi = h;
    }
    // A continuous line from the first touch to the last midpoint.
    for (uint32_t x = 5; x <= 30; ++x) {
        EXPECT_EQ(by_brush.at(x, 10).alpha, 255) << x;
        EXPECT_EQ(by_brush.at(x, 10).green, 200) << x;
    }
    EXPECT_EQ(by_brush.at(10, 17).alpha, 0);  // 7 away: past r + 3.44
    expect_point(blo, 5 - 7, 10 - 7);   // ceil(3 + 3.44) around the first stamp
    expect_point(bhi, 30 + 7, 10 + 7);  // ... and the last midpoint
}

TEST(ToolStroke, BrushPressureScalesTheRadius) {
    TestBitmap photo(60, 30), mask(60, 30);
    Tool tool(kVokToolDraw, 4.0);
    double pressure[] = {0.5, 2.0};
    tool.stroke.pointData = pressure;
    tool.touch(10, 15);
    VokPoint lo, hi;
    tool.draw(photo, mask, &lo, &hi);
    expect_point(lo, 10 - 6, 15 - 6);  // radius 2: ceil(5.44)
    EXPECT_EQ(mask.at(12, 15).alpha, 255);
    EXPECT_LT(mask.at(15, 15).alpha, 255);
    EXPECT_EQ(mask.at(17, 15).alpha, 0);
    tool.touch(50, 15);
    tool.draw(photo, mask, &lo, &hi);
    // The last stamp (the midpoint 30) has radius 8 at full pressure.
    expect_point(hi, 30 + 12, 15 + 12);
    EXPECT_EQ(mask.at(30, 22).alpha, 255);
}

TEST(ToolPreview, MixesThroughTheMaskWithAShift) {
    TestBitmap out(4, 3), base(4, 3), full(4, 3), mask(4, 3);
    base.fill(rgba(100, 0, 255, 1));
    full.fill(rgba(200, 255, 0, 2));
    mask.fill(rgba(0, 0, 0, 128));
    mask.at(1, 1).alpha = 255;
    mask.at(2, 1).alpha = 0;
    out.fill(rgba(7, 7, 7, 7));
    VokToolDrawState state;
    VokToolDrawStateInit(&state);
    state.type = kVokToolBlur;

    // Corners in either order; the far corner is clamped.
    VokToolRenderPreviewBox(out.get(), base.get(), full.get(), mask.get(), 9, 1, 1, 0, &state);
    EXPECT_EQ(out.at(1, 0).red, 150);   // (100*127 + 200*128 + 127) >> 8
    EXPECT_EQ(out.at(1, 0).green, 127);  // 255 * 128 + 127 = 32767
    EXPECT_EQ(out.at(1, 0).blue, 127);
    EXPECT_EQ(out.at(1, 1).red, 199);   // a = 255 still loses a little
    EXPECT_EQ(out.at(1, 1).green, 254);
    EXPECT_EQ(out.at(2, 1).red, 100);
    EXPECT_EQ(out.at(2, 1).blue, 254);
    EXPECT_EQ(out.at(3, 0).alpha, 7);   // alpha never written
    EXPECT_EQ(out.at(0, 0).red, 7);     // outside the box
    EXPECT_EQ(out.at(1, 2).red, 7);

    const std::vector<uint8_t> before = out.bytes();
    VokToolRenderPreviewBox(out.get(), base.get(), full.get(), mask.get(), -9, 0, -1, 2, &state);
    VokToolRenderPreviewBox(out.get(), base.get(), full.get(), mask.get(), 0, 3, 3, 5, &state);
    TestBitmap small(3, 3);
    VokToolRenderPreviewBox(out.get(), base.get(), full.get(), small.get(), 0, 0, 3, 2, &state);
    EXPECT_EQ(out.bytes(), before);

    // The whole preview reaches the last row despite its bottom of height.
    VokToolRenderPreview(out.get(), base.get(), full.get(), mask.get(), &state);
    EXPECT_EQ(out.at(0, 2).red, 150);
    EXPECT_EQ(out.at(3, 2).red, 150);
    EXPECT_EQ(out.at(3, 2).alpha, 7);
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
    {
        LogCapture log;
        VokToolRenderPreviewBox(out.get(), base.get(), full.get(), mask.get(), 0, 0, 1, 0, &state);
        EXPECT_TRUE(log.only("Preview Draw Tool!", 3));
    }
    EXPECT_EQ(out.at(0, 0).red, 149);  // (200*127 + 100*128 + 127) >> 8

    VokToolRenderPreview(out.get(), base.get(), mask.get(), mask.get(), &state);
    EXPECT_EQ(out.at(0, 0).red, 199);    // 100 + (200*127 >> 8)
    EXPECT_EQ(out.at(0, 0).green, 149);
    EXPECT_EQ(out.at(0, 0).blue, 99);
    EXPECT_EQ(out.at(1, 0).red, 193);    // (250 + 199) mod 256
    EXPECT_EQ(out.at(1, 0).green, 199);
}
