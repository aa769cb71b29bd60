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

TEST(ToolRecords, DefaultsAndHeapBitmaps) {
    VokToolStroke stroke;
    double data[1];
    std::memset(&stroke, 0xAB, sizeof stroke);
    stroke.pointData = data;
    VokToolStrokeInit(&stroke);
    EXPECT_EQ(stroke.pointData, data);  // the host decides what it holds
    EXPECT_EQ(stroke.count + stroke.firstIndex + stroke.ended + stroke.colorSet, 0);
    EXPECT_EQ(stroke.scale, 1.0);
    EXPECT_EQ(stroke.color.red + stroke.color.green + stroke.color.blue, 255);  // opaque red
    expect_point(stroke.offsetPoint, -1.0f, -1.0f);
    VokToolDrawParams params;
    VokToolDrawParamsInit(&params);
    EXPECT_EQ(params.tolerance, 10.0);
    EXPECT_EQ(params.useBrushEngine, 1);

    TestBitmap photo(5, 3);
    photo.randomize(3);
    VokBitmap *copy = nullptr;
    ASSERT_EQ(VokToolBitmapCopy(&copy, photo.get()), 1);
    EXPECT_EQ(std::memcmp(copy->pixels, photo.get()->pixels, 60), 0);
    VokToolBitmapDestroy(&copy);
    EXPECT_EQ(copy, nullptr);
    VokToolBitmapDestroy(&copy);
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
    TestBitmap photo(50, 20), mask(50, 20), mask3(50, 20);
    VokPoint lo, hi;
    Tool two(kVokToolBlur);
    two.touch(10, 10);
    two.touch(40, 10);
    two.stroke.ended = 1;
    two.draw(photo, mask, &lo, &hi);
    // Only the first half is drawn: the last stamp sits on the midpoint 25.
    expect_point(hi, 25 + 8, 18);
    EXPECT_EQ(mask.at(32, 10).alpha, 0);

    Tool three(kVokToolBlur);
    for (float x : {0.0f, 20.0f, 40.0f}) three.touch(x, 10);
    three.stroke.ended = 1;
    three.draw(photo, mask3, &lo, &hi);
    // The curve reaches m2 = 30, then the finishing run walks back to 20.
    expect_point(hi, 30 + 8, 18);
    EXPECT_EQ(mask3.at(37, 10).alpha, 0);
}

TEST(ToolStroke, TypeOneErasesWithModesOneAndThreeOthersWithModeTwo) {
    TestBitmap photo(20, 20), mask(20, 20);
    photo.fill(rgba(90, 60, 30));
    const VokColor sampled = rgba(90, 60, 30);
    VokToolDrawParams params;
    VokToolDrawParamsInit(&params);
    // Stamps one point at (10, 10) and returns the mask's alpha there.
    auto stamp = [&](VokToolType type, int32_t mode) {
        params.type = type;
        VokToolPoint point = {{10, 10}, 3.0, mode};
        VokToolTypesDrawPoint(photo.get(), mask.get(), &point, &sampled, 0, &params);
        return mask.at(10, 10).alpha;
    };
    params.type = kVokToolDesaturate;
    VokToolConfigureMask(photo.get(), mask.get(), &params);
    EXPECT_EQ(mask.at(3, 3).alpha, 255);  // starts opaque
    EXPECT_EQ(stamp(kVokToolDesaturate, 0), 255);  // no stamp at all
    EXPECT_EQ(stamp(kVokToolDesaturate, 1), 0);
    EXPECT_EQ(stamp(kVokToolDesaturate, 2), 255);
    EXPECT_EQ(stamp(kVokToolDesaturate, 3), 0);  // the photo matches the stroke colour
    EXPECT_EQ(stamp(kVokToolBlur, 1), 255);
    EXPECT_EQ(stamp(kVokToolBlur, 2), 0);
    EXPECT_EQ(stamp(kVokToolBlemish, 1), 0);  // never stamps
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
    Tool point(kVokToolDraw, 3.0), brush(kVokToolDraw, 3.0);
    point.params.useBrushEngine = 0;  // stamps through VokMaskDraw one by one
    VokColorSetARGB(&point.stroke.color, 255, 0, 200, 100);
    brush.stroke.color = point.stroke.color;
    VokPoint lo, hi, first = kUntouched;
    for (float x : {5.0f, 35.0f, 35.0f}) point.touch(x, 10);
    point.draw(photo, by_point, &lo, &hi);
    EXPECT_EQ(by_point.at(5, 10).green, 200);
    EXPECT_EQ(by_point.at(5, 10).alpha, 255);
    expect_point(hi, 35 + 6, 10 + 6);  // the framework pads by 2r

    for (float x : {5.0f, 15.0f, 25.0f, 35.0f}) {
        brush.touch(x, 10);
        brush.draw(photo, by_brush, &lo, &hi);
        if (first.x == kUntouched.x) first = lo;
    }
    // A continuous line from the first touch to the last midpoint; the brush
    // reports ceil(r + 3.44) around each stamp, the first one included.
    for (uint32_t x = 5; x <= 30; ++x) EXPECT_EQ(by_brush.at(x, 10).blue, 100) << x;
    EXPECT_EQ(by_brush.at(10, 17).alpha, 0);
    expect_point(first, 5 - 7, 10 - 7);
    expect_point(hi, 30 + 7, 10 + 7);
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
    // The path ends on the midpoint 30 with the mean radius 4 * 1.25 = 5.
    expect_point(hi, 30 + 9, 15 + 9);
    EXPECT_GT(mask.at(30, 22).alpha, 0);  // 7 away: inside 5 + 3.44
    EXPECT_EQ(mask.at(16, 22).alpha, 0);  // the radius is still about 3 there
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
