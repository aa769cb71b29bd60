// Teeth whitening.
#include <gtest/gtest.h>

#include <cstdlib>

#include "support/bitmaps.h"
#include "vok/tools.h"

using vok_test::rgba;
using vok_test::TestBitmap;

namespace {

VokColor whiten(VokColor colour) {
    TestBitmap one(1, 1);
    one.at(0, 0) = colour;
    VokWhiten(one.get(), nullptr);
    return one.at(0, 0);
}

void expect_near(VokColor got, VokColor want, int slack) {
    EXPECT_LE(std::abs(got.red - want.red), slack);
    EXPECT_LE(std::abs(got.green - want.green), slack);
    EXPECT_LE(std::abs(got.blue - want.blue), slack);
}

}  // namespace

TEST(Whiten, LightensNeutralsAndTakesYellowOut) {
    // Grey 128: scaled L 136.69, a = b = 127, so d^2 = 5^2 (b is not below
    // 127), s = 0.65 exp(-25/98) = 0.5036; L' = 255 (136.69/255)^(1/1.2518)
    // = 154.96 -> 154, which converts back to grey 146.
    const VokColor grey = whiten(rgba(128, 128, 128, 77));
    EXPECT_EQ(grey.red, 146);
    EXPECT_EQ(grey.green, 146);
    EXPECT_EQ(grey.blue, 146);
    EXPECT_EQ(grey.alpha, 77);

    // A yellowish tooth (a near neutral, b = 156): b is pulled toward 127.
    const VokColor tooth = whiten(rgba(230, 215, 160, 200));
    EXPECT_GE(tooth.blue, 180);
    EXPECT_EQ(tooth.alpha, 200);
    // Saturated yellow sits far off in red-green (a = 105): nearly untouched.
    expect_near(whiten(rgba(255, 255, 0)), rgba(255, 255, 0), 2);
    // A blue pixel (b = 94) is judged by both axes, so it stays almost as is,
    // though its red-green position alone would put it in the middle.
    expect_near(whiten(rgba(120, 140, 200)), rgba(120, 140, 200), 2);
}
