// A tool run: start state, full effects per type, the final render, whitening.
#include <gtest/gtest.h>

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

TEST_F(ToolRun, TypesWithoutAnEffectLeaveThePhoto) {
    for (VokToolType type : {3, 15, 18, 35, 36, 0}) {
        EXPECT_EQ(full_of(type).bytes(), photo.bytes()) << type;
        EXPECT_EQ(params.tolerance, 99999999.0) << type;
    }
    params.showMaskInRed = 1;  // draw skips the step, red overlay included
    EXPECT_EQ(full_of(kVokToolDraw).bytes(), photo.bytes());
    EXPECT_EQ(params.tolerance, 1.0);
    params.showMaskInRed = 0;
    TestBitmap kept(60, 50);
    kept.randomize(9);
    state.restoreBitmap = kept.get();
    EXPECT_EQ(full_of(kVokToolRestore).bytes(), kept.bytes());
    for (VokToolType type : {31, 32}) {
        LogCapture log;
        EXPECT_EQ(full_of(type).bytes(), photo.bytes());
        EXPECT_TRUE(log.only("VokBlurModesVoronoi is not available yet", 3));
    }
}

TEST_F(ToolRun, FullEffectsPerType) {
    TestBitmap grey = full_of(kVokToolDesaturate);
    EXPECT_EQ(params.tolerance, 10.0);
    for (uint32_t x = 0; x < 6; ++x) {
        EXPECT_NEAR(grey.at(x, 2).red, grey.at(x, 2).green, 1);
        EXPECT_NEAR(grey.at(x, 2).blue, grey.at(x, 2).green, 1);
        EXPECT_EQ(grey.at(x, 0).alpha, 40 * x);
    }
    EXPECT_EQ(full_of(kVokToolBlur).bytes(), full_of(kVokToolBlur2).bytes());
    for (VokToolType type : {2, 5, 11, 13, 14}) {
        EXPECT_NE(full_of(type).bytes(), photo.bytes()) << type;
        EXPECT_EQ(params.tolerance, 99999999.0) << type;
    }
    // The similar-colour types keep their effect colour (alpha: the opacity) for the stamps.
    const struct { VokToolType type; VokColor colour; double tolerance; } tints[] = {
        {6, rgba(55, 44, 38, 128), 10.0}, {7, rgba(205, 144, 115, 77), 10.0},
        {8, rgba(190, 89, 106, 89), 99999999.0}, {9, rgba(230, 55, 49, 128), 5.5}};
    for (const auto &tint : tints) {
        EXPECT_NE(full_of(tint.type).bytes(), photo.bytes()) << tint.type;
        EXPECT_EQ(params.color, tint.colour) << tint.type;
        EXPECT_EQ(params.tolerance, tint.tolerance) << tint.type;
    }
    params.showMaskInRed = 1;  // every colour becomes red, alpha stays
    TestBitmap red = full_of(kVokToolWarm);
    for (uint32_t x = 0; x < 6; ++x) EXPECT_EQ(red.at(x, 0), rgba(255, 0, 0, 40 * x));
}

TEST_F(ToolRun, HiResMixesThePhotoAndItsEffectThroughTheMask) {
    TestBitmap effect = full_of(kVokToolBlur);
    // The mask is a fifth of the size, scaled up.
    TestBitmap none(photo), all(photo), clear(12, 10), opaque(12, 10);
    VokMaskSetOpaque(opaque.get());
    VokToolRenderHiRes(none.get(), clear.get(), &params, &state);
    VokToolRenderHiRes(all.get(), opaque.get(), &params, &state);
    EXPECT_EQ(none.bytes(), photo.bytes());
    for (uint32_t y = 0; y < 50; y += 7)
        for (uint32_t x = 0; x < 60; x += 5) EXPECT_NEAR(all.at(x, y).red, effect.at(x, y).red, 1);

    // Draw: the premultiplied paint is composited over the photo.
    params.type = state.type = kVokToolDraw;
    TestBitmap painted(photo), paint(60, 50);
    const VokColor blue = rgba(0, 0, 255);
    VokMaskDraw(paint.get(), &blue, 2, 2, 1.5, 1.0, 0);
    VokToolRenderHiRes(painted.get(), paint.get(), &params, &state);
    EXPECT_EQ(painted.at(2, 2), rgba(0, 0, 255, photo.at(2, 2).alpha));
    EXPECT_EQ(painted.at(30, 30), photo.at(30, 30));
}

TEST(Whiten, LightensNeutralsAndTakesYellowOut) {
    auto whiten = [](VokColor colour) {
        TestBitmap one(1, 1);
        one.at(0, 0) = colour;
        VokWhiten(one.get(), nullptr);
        return one.at(0, 0);
    };
    // Grey 128: L 136.69, a = b = 127 (b is not below 127, so d^2 = 5^2),
    // s = 0.65 exp(-25/98); L' = 255 (136.69/255)^(1/(1 + s/2)) = 154.96.
    EXPECT_EQ(whiten(rgba(128, 128, 128, 77)), rgba(146, 146, 146, 77));
    const VokColor tooth = whiten(rgba(230, 215, 160, 200));  // b = 156 pulled toward 127
    EXPECT_GE(tooth.blue, 180);
    EXPECT_EQ(tooth.alpha, 200);
    // Far from neutral in red-green (yellow), or in both axes (blue): nearly untouched.
    for (VokColor c : {rgba(255, 255, 0), rgba(120, 140, 200)}) {
        const VokColor got = whiten(c);
        EXPECT_NEAR(got.red, c.red, 2);
        EXPECT_NEAR(got.green, c.green, 2);
        EXPECT_NEAR(got.blue, c.blue, 2);
    }
}
