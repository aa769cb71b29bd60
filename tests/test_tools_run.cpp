// A tool run: start state, full effects per type, previews, the final render.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "support/bitmaps.h"
#include "support/log_capture.h"
#include "vok/tools.h"

using vok_test::LogCapture;
using vok_test::rgba;
using vok_test::TestBitmap;

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
    VokToolStroke stroke;
    stroke.pointData = &params.strength;
    VokToolStrokeInit(&stroke);
    EXPECT_EQ(stroke.pointData, &params.strength);  // the host's to set
    TestBitmap result(60, 50), mask(60, 50);
    params.type = state.type = kVokToolDesaturate;
    params.deferFullTool = 1;
    VokToolInit(photo.get(), result.get(), mask.get(), &params, &state);
    EXPECT_EQ(result.bytes(), photo.bytes());
    EXPECT_EQ(mask.bytes(), std::vector<uint8_t>(60 * 50 * 4, 255));
    params.deferFullTool = 0;
    VokToolInit(photo.get(), result.get(), mask.get(), &params, &state);
    EXPECT_NE(result.bytes(), photo.bytes());
}

TEST_F(ToolRun, FullEffectsPerType) {
    const double any = 99999999.0;
    const VokColor white = rgba(255, 255, 255);
    // Tints keep their colour for the stamps, with the opacity as alpha.
    const struct { VokToolType type; bool changes; double tolerance; VokColor colour; } rows[] = {
        {0, false, any, white}, {3, false, any, white}, {15, false, any, white},
        {32, false, any, white}, {36, false, any, white}, {1, true, 10, white}, {2, true, any, white},
        {5, true, any, white}, {11, true, any, white}, {13, true, any, white},
        {14, true, any, white}, {6, true, 10, rgba(55, 44, 38, 128)},
        {7, true, 10, rgba(205, 144, 115, 77)}, {8, true, any, rgba(190, 89, 106, 89)},
        {9, true, 5.5, rgba(230, 55, 49, 128)}, {12, false, 1, rgba(230, 55, 49, 128)}};
    for (const auto &row : rows) {
        EXPECT_EQ(full_of(row.type).bytes() != photo.bytes(), row.changes) << row.type;
        EXPECT_EQ(params.tolerance, row.tolerance) << row.type;
        EXPECT_EQ(params.color, row.colour) << row.type;
    }
    TestBitmap blur = full_of(kVokToolBlur);
    EXPECT_EQ(full_of(kVokToolBlur2).bytes(), blur.bytes());
    state.restoreBitmap = blur.get();
    EXPECT_EQ(full_of(kVokToolRestore).bytes(), blur.bytes());
    params.showMaskInRed = 1;  // every colour becomes red, alpha stays; draw skips it all
    TestBitmap red = full_of(kVokToolWarm);
    for (uint32_t x = 0; x < 6; ++x) EXPECT_EQ(red.at(x, 0), rgba(255, 0, 0, 40 * x));
    EXPECT_EQ(full_of(kVokToolDraw).bytes(), photo.bytes());
}

TEST_F(ToolRun, HiResMixesThePhotoAndItsEffectThroughTheMask) {
    TestBitmap effect = full_of(kVokToolBlur);
    TestBitmap none(photo), all(photo), clear(12, 10), opaque(12, 10), paint(60, 50);
    VokMaskSetOpaque(opaque.get());  // the masks are scaled up
    VokToolRenderHiRes(none.get(), clear.get(), &params, &state);
    VokToolRenderHiRes(all.get(), opaque.get(), &params, &state);
    EXPECT_EQ(none.bytes(), photo.bytes());
    for (uint32_t y = 0; y < 50; y += 7)
        for (uint32_t x = 0; x < 60; x += 5) EXPECT_NEAR(all.at(x, y).red, effect.at(x, y).red, 1);
    params.type = state.type = kVokToolDraw;  // the paint is composited over the photo
    paint.at(2, 2) = rgba(0, 0, 255);
    VokToolRenderHiRes(all.get(), paint.get(), &params, &state);
    EXPECT_EQ(all.at(2, 2), rgba(0, 0, 255, photo.at(2, 2).alpha));
    EXPECT_EQ(all.at(3, 2), effect.at(3, 2));
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
    auto box = [&](const TestBitmap &m, int32_t x0, int32_t y0, int32_t x1, int32_t y1) {
        VokToolRenderPreviewBox(out.get(), base.get(), full.get(), m.get(), x0, y0, x1, y1,
                                &state);
    };
    box(mask, 9, 1, 1, 0);  // corners in either order, clamped
    EXPECT_EQ(out.at(1, 0), rgba(150, 127, 127, 7));  // (100*127 + 200*128 + 127) >> 8
    EXPECT_EQ(out.at(1, 1), rgba(199, 254, 0, 7));    // a = 255 still loses a little
    EXPECT_EQ(out.at(2, 1), rgba(100, 0, 254, 7));
    EXPECT_EQ(out.at(0, 0), rgba(7, 7, 7, 7));
    box(mask, -9, 0, -1, 2);
    box(small, 0, 0, 3, 2);
    EXPECT_EQ(out.at(0, 0), rgba(7, 7, 7, 7));
    VokToolRenderPreview(out.get(), base.get(), full.get(), mask.get(), &state);
    EXPECT_EQ(out.at(3, 2), rgba(150, 127, 127, 7));  // the last row too
    // Draw mode mixes in the mask colour; the whole preview adds the
    // premultiplied paint, and the sum wraps.
    state.type = kVokToolDraw;
    LogCapture log;
    box(mask, 0, 0, 0, 0);
    EXPECT_TRUE(log.only("Preview Draw Tool!", 3));
    EXPECT_EQ(out.at(0, 0).red, 100);  // the mask's red, not the full bitmap's
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
    // Grey: L 136.69, a = b = 127 so d = 5; s = 0.65 exp(-25/98); L' = 255
    // (136.69/255)^(1/(1 + s/2)) = 154.96 -> 154, grey 146.
    EXPECT_EQ(px.at(0, 0), rgba(146, 146, 146, 77));
    EXPECT_GE(px.at(1, 0).blue, 180);       // yellow (b above neutral): judged by a alone
    EXPECT_NEAR(px.at(2, 0).blue, 200, 2);  // blue: judged by both axes, barely changes
}
