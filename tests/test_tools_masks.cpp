// The similar-colour and draw stamps.
#include <gtest/gtest.h>

#include <cmath>

#include "support/bitmaps.h"
#include "vok/color.h"
#include "vok/tools.h"

using vok_test::rgba;
using vok_test::TestBitmap;

namespace {

const VokColor kWhite = rgba(255, 255, 255);

// Stamp that ignores colour: radius 4, outer radius 5.7199...
void brush(TestBitmap &mask, double x, double y, double strength = 1.0, bool erase = false,
           double radius = 4.0) {
    VokMaskSimilarColors(nullptr, mask.get(), &kWhite, 1, x, y, radius, 99999999.0, 1.0,
                         strength, erase, 0, 1);
}

}  // namespace

TEST(MaskSimilarColors, RadialWeightsRoundHalfUpAndWriteAlphaOnly) {
    struct Row { uint8_t start; double strength; int erase; uint32_t x, y; uint8_t want; };
    const Row rows[] = {
        {0, 1, 0, 10, 10, 255}, {0, 1, 0, 14, 10, 255},  // d <= r: full weight
        {0, 1, 0, 15, 10, 64},  {0, 1, 0, 15, 12, 24},   // (1/2)^2 * 255; 24.099
        {0, 1, 0, 14, 14, 8},   {0, 1, 0, 16, 10, 0},    // near 1/51; outside
        {100, 1, 0, 15, 10, 139}, {100, 1, 1, 15, 10, 75}, {100, 1, 1, 10, 10, 0},
        {100, 1, 1, 16, 10, 100}, {0, 0.5, 0, 10, 10, 128},  // 127.5 rounds up
        {0, 2, 0, 10, 10, 255}};                             // 510 clamps
    for (const auto &row : rows) {
        TestBitmap mask(21, 21);
        mask.fill(rgba(9, 8, 7, row.start));
        brush(mask, 10, 10, row.strength, row.erase != 0);
        EXPECT_EQ(mask.at(row.x, row.y), rgba(9, 8, 7, row.want)) << row.x << "," << row.y;
    }
}

TEST(MaskSimilarColors, ColourWeightFollowsTheLabDistance) {
    TestBitmap image(3, 1), mask(3, 1);
    const VokColor reference = rgba(180, 120, 90);
    image.at(0, 0) = reference;
    image.at(1, 0) = rgba(190, 122, 80);
    image.at(2, 0) = rgba(20, 200, 240);
    double L, a0, b0, a1, b1;
    VokColorRGB2LABDoublesWithCbrtMapping(&reference, &L, &a0, &b0);
    VokColorRGB2LABDoublesWithCbrtMapping(&image.at(1, 0), &L, &a1, &b1);
    // This tolerance puts the middle pixel at weight exp(-1): 93.8.
    const double t = std::sqrt(((a1 - a0) * (a1 - a0) + (b1 - b0) * (b1 - b0)) / 2.0);
    auto stamp = [&](double tolerance, int lightness) {
        mask.fill(rgba(0, 0, 0, 0));
        VokMaskSimilarColors(image.get(), mask.get(), &reference, 0, 1.0, 0.0, 20.0, tolerance,
                             1.0, 1.0, 0, lightness, 0);
        EXPECT_EQ(mask.at(0, 0).alpha, 255);
        EXPECT_EQ(mask.at(2, 0).alpha, 0);
        return mask.at(1, 0).alpha;
    };
    EXPECT_EQ(stamp(t, 0), 94);
    EXPECT_LT(stamp(t, 1), 94);  // lightness only adds distance
    stamp(0.0, 0);               // equal colours match even at tolerance 0
}

TEST(MaskSimilarColors, StampsAtAndBeyondTheBordersStayInside) {
    TestBitmap mask(6, 5), other(6, 5), small(2, 2);
    const std::vector<uint8_t> clear = mask.bytes();
    brush(mask, -100, 2);
    brush(mask, 2, 1e12);
    brush(mask, std::nan(""), 2);
    brush(mask, 2, 2, 1.0, false, 0.0);
    EXPECT_EQ(mask.bytes(), clear);
    brush(mask, 0, 0);  // clipped at the corner
    EXPECT_EQ(mask.at(0, 0).alpha + mask.at(5, 4).alpha, 255);
    // A photo of another size cannot be compared pixel for pixel.
    VokMaskSimilarColors(small.get(), other.get(), &kWhite, 0, 2, 2, 3, 10, 1, 1, 0, 0, 0);
    EXPECT_EQ(other.bytes(), clear);
}

TEST(MaskDraw, PaintsPremultipliedColourWithAFixedSoftEdge) {
    TestBitmap mask(21, 21), other(21, 21);
    const VokColor colour = rgba(200, 100, 50, 7);  // its alpha is not used
    VokMaskDraw(mask.get(), &colour, 10, 10, 4, 1.0, 0);
    EXPECT_EQ(mask.at(10, 10), rgba(200, 100, 50, 255));
    EXPECT_EQ(mask.at(14, 10), rgba(200, 100, 50, 255));
    EXPECT_EQ(mask.at(15, 10), rgba(112, 56, 28, 143));  // w = 0.5625, truncated
    EXPECT_EQ(mask.at(17, 10), rgba(12, 6, 3, 15));      // w = 0.0625: edge r + 3.44
    EXPECT_EQ(mask.at(18, 10), rgba(0, 0, 0, 0));
    // Painting again mixes with what is there; erasing scales all four bytes.
    VokMaskDraw(mask.get(), &colour, 10, 10, 4, 0.5, 0);
    EXPECT_EQ(mask.at(15, 10), rgba(136, 68, 34, 174));  // w = 0.28125
    VokMaskDraw(mask.get(), &colour, 10, 10, 4, 1.0, 1);
    EXPECT_EQ(mask.at(15, 10), rgba(59, 29, 14, 76));
    EXPECT_EQ(mask.at(10, 10), rgba(0, 0, 0, 0));
    // Strength is clamped to 1; a NaN strength paints nothing.
    VokMaskDraw(other.get(), &colour, 10, 10, 4, 3.0, 0);
    EXPECT_EQ(other.at(17, 10).alpha, 47);  // 0.1875 * 255
    VokMaskDraw(other.get(), &colour, 10, 10, 0, std::nan(""), 1);
    EXPECT_EQ(other.at(10, 10).alpha, 255);
}
