// The similar-colour and draw stamps, and the mask fills.
#include <gtest/gtest.h>

#include <cmath>

#include "support/bitmaps.h"
#include "vok/color.h"
#include "vok/tools.h"

using vok_test::rgba;
using vok_test::TestBitmap;

namespace {

const VokColor kWhite = rgba(255, 255, 255);

// Brush stamp that ignores colour: radius 4, outer radius 5.7199...
void brush(TestBitmap &mask, double x, double y, double strength, bool erase,
           double radius = 4.0) {
    VokMaskSimilarColors(nullptr, mask.get(), &kWhite, 1, x, y, radius, 99999999.0, 1.0,
                         strength, erase, 0, 1);
}

}  // namespace

TEST(MaskSimilarColors, RadialWeightsAtCentreRadiusAndEdge) {
    TestBitmap mask(21, 21);
    mask.fill(rgba(9, 8, 7, 0));
    brush(mask, 10, 10, 1.0, false);
    EXPECT_EQ(mask.at(10, 10).alpha, 255);  // centre
    EXPECT_EQ(mask.at(14, 10).alpha, 255);  // d = r: still full weight
    EXPECT_EQ(mask.at(15, 10).alpha, 64);   // d = 5: (1 - 1/2)^2 = 0.25 -> 63.75
    EXPECT_EQ(mask.at(15, 12).alpha, 24);   // d = 5.385: 24.099
    EXPECT_EQ(mask.at(14, 14).alpha, 8);    // d = 5.657, near 1/51 at the outer radius
    EXPECT_EQ(mask.at(16, 10).alpha, 0);    // d = 6 is outside
    EXPECT_EQ(mask.at(10, 4).alpha, 0);
    // Only alpha is written.
    EXPECT_EQ(mask.at(10, 10).red, 9);
    EXPECT_EQ(mask.at(15, 10).green, 8);
    EXPECT_EQ(mask.at(15, 10).blue, 7);
}

TEST(MaskSimilarColors, AddingAndErasingRoundHalfUp) {
    TestBitmap mask(21, 21);
    mask.fill(rgba(0, 0, 0, 100));
    brush(mask, 10, 10, 1.0, false);
    EXPECT_EQ(mask.at(15, 10).alpha, 139);  // (0.25 + 100/255 * 0.75) * 255 = 138.75
    mask.fill(rgba(0, 0, 0, 100));
    brush(mask, 10, 10, 1.0, true);
    EXPECT_EQ(mask.at(15, 10).alpha, 75);  // 0.75 * 100
    EXPECT_EQ(mask.at(10, 10).alpha, 0);
    EXPECT_EQ(mask.at(16, 10).alpha, 100);

    mask.fill(rgba(0, 0, 0, 0));
    brush(mask, 10, 10, 0.5, false);
    EXPECT_EQ(mask.at(10, 10).alpha, 128);  // 127.5 rounds up
    mask.fill(rgba(0, 0, 0, 0));
    brush(mask, 10, 10, 2.0, false);
    EXPECT_EQ(mask.at(10, 10).alpha, 255);  // 510 clamps
}

TEST(MaskSimilarColors, ColourWeightFollowsTheLabDistance) {
    TestBitmap image(3, 1), mask(3, 1);
    const VokColor reference = rgba(180, 120, 90);
    image.at(0, 0) = reference;            // exact match
    image.at(1, 0) = rgba(190, 122, 80);   // between the two limits
    image.at(2, 0) = rgba(20, 200, 240);   // far away
    double L0, a0, b0, L1, a1, b1;
    VokColorRGB2LABDoublesWithCbrtMapping(&reference, &L0, &a0, &b0);
    VokColorRGB2LABDoublesWithCbrtMapping(&image.at(1, 0), &L1, &a1, &b1);
    const double c2 = (a1 - a0) * (a1 - a0) + (b1 - b0) * (b1 - b0);
    // A tolerance that puts the middle pixel between exact match and no match.
    const double t = std::sqrt(c2 / 2.0);
    ASSERT_GT(c2, t * t * 0.03960525459235951);
    ASSERT_LT(c2, t * t * 7.8636512654486515);
    const double expected = std::floor(expf(static_cast<float>(-c2 / (2 * t * t))) * 255 + 0.5);

    VokMaskSimilarColors(image.get(), mask.get(), &reference, 0, 1.0, 0.0, 20.0, t, 1.0, 1.0, 0,
                         0, 0);
    EXPECT_EQ(mask.at(0, 0).alpha, 255);
    EXPECT_EQ(mask.at(1, 0).alpha, expected);
    EXPECT_EQ(mask.at(2, 0).alpha, 0);

    // With lightness the middle pixel moves further away, never closer.
    mask.fill(rgba(0, 0, 0, 0));
    VokMaskSimilarColors(image.get(), mask.get(), &reference, 0, 1.0, 0.0, 20.0, t, 1.0, 1.0, 0,
                         1, 0);
    EXPECT_LE(mask.at(1, 0).alpha, expected);
    EXPECT_EQ(mask.at(0, 0).alpha, 255);

    // Equal colours match even at tolerance 0.
    mask.fill(rgba(0, 0, 0, 0));
    VokMaskSimilarColors(image.get(), mask.get(), &reference, 0, 1.0, 0.0, 20.0, 0.0, 1.0, 1.0,
                         0, 0, 0);
    EXPECT_EQ(mask.at(0, 0).alpha, 255);
    EXPECT_EQ(mask.at(2, 0).alpha, 0);
}

TEST(MaskSimilarColors, StampsAtAndBeyondTheBordersStayInside) {
    TestBitmap mask(6, 5);
    const std::vector<uint8_t> clear = mask.bytes();
    brush(mask, -100, 2, 1.0, false);
    brush(mask, 2, 1e12, 1.0, false);
    brush(mask, std::nan(""), 2, 1.0, false);
    brush(mask, 2, 2, 1.0, false, 0.0);
    EXPECT_EQ(mask.bytes(), clear);
    brush(mask, 0, 0, 1.0, false);  // a corner stamp is clipped
    EXPECT_EQ(mask.at(0, 0).alpha, 255);
    EXPECT_EQ(mask.at(5, 4).alpha, 0);

    // A photo of another size cannot be compared pixel for pixel.
    TestBitmap small(2, 2), other(6, 5);
    VokMaskSimilarColors(small.get(), other.get(), &kWhite, 0, 2, 2, 3, 10, 1, 1, 0, 0, 0);
    EXPECT_EQ(other.bytes(), clear);
}

TEST(MaskDraw, PaintsPremultipliedColourWithAFixedSoftEdge) {
    TestBitmap mask(21, 21);
    const VokColor colour = rgba(200, 100, 50, 7);  // the colour's alpha is not used
    VokMaskDraw(mask.get(), &colour, 10, 10, 4, 1.0, 0);
    auto expect_pixel = [&](uint32_t x, uint32_t y, VokColor want) {
        const VokColor got = mask.at(x, y);
        EXPECT_EQ(got.red, want.red) << x << "," << y;
        EXPECT_EQ(got.green, want.green) << x << "," << y;
        EXPECT_EQ(got.blue, want.blue) << x << "," << y;
        EXPECT_EQ(got.alpha, want.alpha) << x << "," << y;
    };
    expect_pixel(10, 10, rgba(200, 100, 50, 255));
    expect_pixel(14, 10, rgba(200, 100, 50, 255));  // d = r
    // d = 5: w = (1 - 1/4)^2 = 0.5625, truncated: 112.5, 56.25, 28.125, 143.4375
    expect_pixel(15, 10, rgba(112, 56, 28, 143));
    // d = 7: w = 0.0625 (the outer radius is r + 3.44 whatever r is)
    expect_pixel(17, 10, rgba(12, 6, 3, 15));
    expect_pixel(18, 10, rgba(0, 0, 0, 0));

    // Painting again mixes with what is there; erasing scales all four bytes.
    VokMaskDraw(mask.get(), &colour, 10, 10, 4, 0.5, 0);
    expect_pixel(15, 10, rgba(136, 68, 34, 174));  // w = 0.28125: 136.75 ... 174.5
    VokMaskDraw(mask.get(), &colour, 10, 10, 4, 1.0, 1);
    expect_pixel(15, 10, rgba(59, 29, 14, 76));    // * 0.4375, truncated
    expect_pixel(10, 10, rgba(0, 0, 0, 0));

    // Strength is clamped to 1; a NaN strength paints nothing.
    TestBitmap other(21, 21);
    VokMaskDraw(other.get(), &colour, 10, 10, 4, 3.0, 0);
    EXPECT_EQ(other.at(17, 10).alpha, 47);  // 0.1875 * 255
    VokMaskDraw(other.get(), &colour, 10, 10, 0, std::nan(""), 1);
    EXPECT_EQ(other.at(10, 10).alpha, 255);
}
