// A tool run: records, start state, full effects per type, previews and the
// final render; whitening.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "support/bitmaps.h"
#include "support/log_capture.h"
#include "vok/tools.h"

using vok_test::LogCapture;
using vok_test::rgba;
using vok_test::TestBitmap;

class ToolRun : public ::testing::Test {
protected:
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
    TestBitmap result(60, 50), mask(60, 50), wrong(5, 4);
    VokToolStroke stroke;
    std::memset(&stroke, 0xAB, sizeof stroke);
    stroke.pointData = &params.strength;
    VokToolStrokeInit(&stroke);
    EXPECT_EQ(stroke.pointData, &params.strength);  // the host's to set
    EXPECT_EQ(stroke.count + stroke.firstIndex + stroke.ended + stroke.colorSet, 0);

    params.type = state.type = kVokToolDesaturate;
    params.deferFullTool = 1;
    VokToolInit(photo.get(), result.get(), mask.get(), &params, &state);
    EXPECT_EQ(result.bytes(), photo.bytes());
    EXPECT_EQ(mask.bytes(), std::vector<uint8_t>(60 * 50 * 4, 255));
    params.deferFullTool = 0;
    VokToolInit(photo.get(), result.get(), mask.get(), &params, &state);
    EXPECT_NE(result.bytes(), photo.bytes());
    mask.fill(rgba(1, 2, 3, 4));
    VokToolInit(photo.get(), wrong.get(), mask.get(), &params, &state);  // the copy fails
    EXPECT_EQ(mask.at(0, 0), rgba(1, 2, 3, 4));
}

TEST_F(ToolRun, FullEffectsPerType) {
    for (VokToolType type : {3, 15, 18, 35, 36, 0}) {
        EXPECT_EQ(full_of(type).bytes(), photo.bytes()) << type;
        EXPECT_EQ(params.tolerance, 99999999.0) << type;
    }
    for (VokToolType type : {2, 5, 11, 13, 14}) {
        EXPECT_NE(full_of(type).bytes(), photo.bytes()) << type;
        EXPECT_EQ(params.tolerance, 99999999.0) << type;
    }
    TestBitmap blur = full_of(kVokToolBlur);
    EXPECT_EQ(full_of(kVokToolBlur2).bytes(), blur.bytes());
    state.restoreBitmap = blur.get();
    EXPECT_EQ(full_of(kVokToolRestore).bytes(), blur.bytes());
    const VokColor grey = full_of(kVokToolDesaturate).at(5, 2);
    EXPECT_EQ(params.tolerance, 10.0);
    EXPECT_NEAR(grey.red, grey.green, 1);
    EXPECT_NEAR(grey.blue, grey.green, 1);
    // The similar-colour types keep their effect colour (alpha: the opacity).
    const struct { VokToolType type; VokColor colour; double tolerance; } tints[] = {
        {6, rgba(55, 44, 38, 128), 10.0}, {7, rgba(205, 144, 115, 77), 10.0},
        {8, rgba(190, 89, 106, 89), 99999999.0}, {9, rgba(230, 55, 49, 128), 5.5}};
    for (const auto &tint : tints) {
        EXPECT_NE(full_of(tint.type).bytes(), photo.bytes()) << tint.type;
        EXPECT_EQ(params.color, tint.colour) << tint.type;
        EXPECT_EQ(params.tolerance, tint.tolerance) << tint.type;
    }
    for (VokToolType type : {31, 32}) {
        LogCapture log;
        EXPECT_EQ(full_of(type).bytes(), photo.bytes());
        EXPECT_TRUE(log.only("VokBlurModesVoronoi is not available yet", 3));
    }
    params.showMaskInRed = 1;  // every colour becomes red, alpha stays
    TestBitmap red = full_of(kVokToolWarm);
    for (uint32_t x = 0; x < 6; ++x) EXPECT_EQ(red.at(x, 0), rgba(255, 0, 0, 40 * x));
    EXPECT_EQ(full_of(kVokToolDraw).bytes(), photo.bytes());  // skipped, overlay included
    EXPECT_EQ(params.tolerance, 1.0);
}

TEST_F(ToolRun, HiResMixesThePhotoAndItsEffectThroughTheMask) {
    TestBitmap effect = full_of(kVokToolBlur);
    TestBitmap none(photo), all(photo), clear(12, 10), opaque(12, 10);  // masks scale up
    VokMaskSetOpaque(opaque.get());
    VokToolRenderHiRes(none.get(), clear.get(), &params, &state);
    VokToolRenderHiRes(all.get(), opaque.get(), &params, &state);
    EXPECT_EQ(none.bytes(), photo.bytes());
    for (uint32_t y = 0; y < 50; y += 7)
        for (uint32_t x = 0; x < 60; x += 5) EXPECT_NEAR(all.at(x, y).red, effect.at(x, y).red, 1);
    // Draw: the premultiplied paint is composited over the photo.
    params.type = state.type = kVokToolDraw;
    TestBitmap paint(60, 50);
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
    const std::vector<uint8_t> before = out.bytes();
    box(mask, -9, 0, -1, 2);
    box(mask, 0, 3, 3, 5);
    box(small, 0, 0, 3, 2);
    EXPECT_EQ(out.bytes(), before);
    // The whole preview reaches the last row despite its bottom of height.
    VokToolRenderPreview(out.get(), base.get(), full.get(), mask.get(), &state);
    EXPECT_EQ(out.at(3, 2), rgba(150, 127, 127, 7));

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
    EXPECT_GE(px.at(1, 0).blue, 180);  // a yellowish tooth is judged by a alone
    EXPECT_EQ(px.at(1, 0).alpha, 200);
    EXPECT_NEAR(px.at(2, 0).blue, 200, 2);  // blue is judged by both axes: kept
    EXPECT_NEAR(px.at(2, 0).red, 120, 2);
}
