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
void brush(TestBitmap &mask, double x, double y, double strength = 1, int erase = 0,
           double radius = 4) {
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
    for (const Row &row : rows) {
        TestBitmap mask(21, 21);
        mask.fill(rgba(9, 8, 7, row.start));
        brush(mask, 10, 10, row.strength, row.erase);
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
    // t puts the middle pixel at weight exp(-1) (93.8 / 255); lightness adds
    // dL^2 = 15.4 to c^2 = 65.5: exp(-1.235) = 74.2 / 255. Equal colours
    // match even at tolerance 0.
    const double t = std::sqrt(((a1 - a0) * (a1 - a0) + (b1 - b0) * (b1 - b0)) / 2);
    const struct { double tolerance; int lightness; uint8_t want; } rows[] = {
        {t, 0, 94}, {t, 1, 74}, {0, 0, 0}};
    for (const auto &row : rows) {
        mask.fill(rgba(0, 0, 0, 0));
        VokMaskSimilarColors(image.get(), mask.get(), &reference, 0, 1, 0, 20, row.tolerance, 1,
                             1, 0, row.lightness, 0);
        EXPECT_EQ(mask.at(0, 0), rgba(0, 0, 0, 255));
        EXPECT_EQ(mask.at(1, 0).alpha, row.want);
        EXPECT_EQ(mask.at(2, 0).alpha, 0);
    }
}

TEST(MaskSimilarColors, StampsAtAndBeyondTheBordersStayInside) {
    TestBitmap mask(6, 5), other(6, 5), small(2, 2);
    const std::vector<uint8_t> clear = mask.bytes();
    brush(mask, -100, 2);
    brush(mask, 2, 1e12);
    brush(mask, std::nan(""), 2);
    brush(mask, 2, 2, 1, 0, 0);
    VokMaskSimilarColors(small.get(), mask.get(), &kWhite, 0, 2, 2, 3, 10, 1, 1, 0, 0, 0);
    EXPECT_EQ(mask.bytes(), clear);  // a photo of another size is refused
    brush(mask, 0, 0);  // clipped at the corner
    EXPECT_EQ(mask.at(0, 0).alpha + mask.at(5, 4).alpha, 255);
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
    EXPECT_EQ(mask.at(10, 10), rgba(0, 0, 0, 0));
    VokMaskDraw(other.get(), &colour, 10, 10, 4, 3.0, 0);  // strength clamped to 1
    VokMaskDraw(other.get(), &colour, 10, 10, 0, std::nan(""), 1);  // paints nothing
    EXPECT_EQ(other.at(17, 10).alpha, 47);  // 0.1875 * 255
    EXPECT_EQ(other.at(10, 10).alpha, 255);
}
