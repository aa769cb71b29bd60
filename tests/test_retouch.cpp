// Retouching, shape masks and region look-ups.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>
#include <vector>

#include "support/bitmaps.h"
#include "support/golden.h"
#include "vok/tools.h"

using vok_test::rgba;
using vok_test::TestBitmap;

namespace {

double spread(const std::vector<int> &values) {
    double mean = 0, square = 0;
    for (int v : values) mean += v;
    mean /= values.size();
    for (int v : values) square += (v - mean) * (v - mean);
    return std::sqrt(square / values.size());
}

const VokColor kShadow = {74, 56, 50, 255};

const std::vector<std::pair<const char *, std::function<void(VokBitmap *)>>> kRetouches = {
    {"red eye", [](VokBitmap *b) { VokRedEye(b, b); }},
    {"eye bright", VokEyeBright},
    {"eye colour", [](VokBitmap *b) { VokEyeColor(b, b); }},
    {"eye shadow", [](VokBitmap *b) { VokEyeShadow(b, &kShadow); }},
    {"mascara", VokMascara},
    {"airbrush", VokAirbrush},
};

}  // namespace

TEST(Retouch, RedEyeTakesTheGlareOutAndLeavesSkin) {
    TestBitmap eye(40, 40);
    for (uint32_t y = 0; y < 40; ++y)
        for (uint32_t x = 0; x < 40; ++x) {
            const int d2 = (int(x) - 20) * (int(x) - 20) + (int(y) - 20) * (int(y) - 20);
            eye.at(x, y) =
                d2 < 64 ? rgba(210 - x, 40 + y % 7, 35, 200) : rgba(224 - y % 5, 172, 140);
        }
    eye.at(20, 20) = rgba(250, 245, 240);  // a glint
    const TestBitmap before(eye);
    VokRedEye(eye.get(), nullptr);
    for (uint32_t y = 0; y < 40; ++y)
        for (uint32_t x = 0; x < 40; ++x) {
            const VokColor &was = before.at(x, y), &now = eye.at(x, y);
            const int d2 = (int(x) - 20) * (int(x) - 20) + (int(y) - 20) * (int(y) - 20);
            if (d2 < 64 && !(x == 20 && y == 20)) {
                ASSERT_LT(now.red * 10, now.green * 13) << x << "," << y;
                ASSERT_EQ(now.green, was.green);  // detail kept
            } else {
                ASSERT_LE(std::abs(now.red - was.red), 2) << x << "," << y;
            }
            ASSERT_EQ(now.alpha, was.alpha);
        }
    EXPECT_EQ(eye.at(20, 20), rgba(250, 245, 240));
}

TEST(Retouch, AirbrushFlattensTextureAndKeepsEdges) {
    // Wide enough (W + H = 1040) for the blur to reach a few pixels.
    TestBitmap skin(1000, 40);
    std::mt19937 engine(5);
    for (uint32_t y = 0; y < 40; ++y)
        for (uint32_t x = 0; x < 1000; ++x) {
            const int level = (x < 60 ? 70 : 190) + static_cast<int>(engine() % 17) - 8;
            skin.at(x, y) = rgba(level, level, level);
        }
    const TestBitmap before(skin);
    VokAirbrush(skin.get());
    std::vector<int> was, now;
    for (uint32_t y = 5; y < 35; ++y)
        for (uint32_t x = 10; x < 50; ++x)
            was.push_back(before.at(x, y).red), now.push_back(skin.at(x, y).red);
    EXPECT_LE(spread(now), spread(was) / 2);
    // Across the step the levels stay within 2 of where they were.
    for (uint32_t y = 0; y < 40; ++y)
        for (uint32_t x : {59u, 60u})
            EXPECT_LE(std::abs(skin.at(x, y).red - before.at(x, y).red), 2) << x;
}

TEST(Retouch, BlemishHealsFromTheRing) {
    TestBitmap face(60, 40);
    std::mt19937 engine(9);
    for (uint32_t y = 0; y < 40; ++y)
        for (uint32_t x = 0; x < 60; ++x)
            face.at(x, y) = rgba(200 + engine() % 9, 150 + engine() % 9, 130);
    for (uint32_t y = 16; y < 24; ++y)
        for (uint32_t x = 16; x < 24; ++x) face.at(x, y) = rgba(90, 50, 40);
    VokPoint touch = {20, 20};
    VokToolStroke stroke;
    VokToolStrokeInit(&stroke);
    stroke.points = &touch;
    stroke.count = 1;
    stroke.radius = 7;
    VokBlemish(face.get(), &stroke);
    double disc = 0, ring = 0;
    int n_disc = 0, n_ring = 0;
    for (uint32_t y = 0; y < 40; ++y)
        for (uint32_t x = 0; x < 60; ++x) {
            const double d = std::hypot(x + 0.5 - 20, y + 0.5 - 20);
            if (d <= 5) disc += face.at(x, y).red, ++n_disc;
            if (d > 8 && d < 11) ring += face.at(x, y).red, ++n_ring;
        }
    EXPECT_NEAR(disc / n_disc, ring / n_ring, 6);
    EXPECT_EQ(stroke.offsetPoint.x, 17.5f);
    // No radius, no points, NaN: nothing happens.
    const TestBitmap healed(face);
    stroke.radius = NAN;
    VokBlemish(face.get(), &stroke);
    stroke.radius = 5, stroke.count = 0;
    VokBlemish(face.get(), &stroke);
    VokBlemish(nullptr, &stroke);
    EXPECT_EQ(face.bytes(), healed.bytes());
}

TEST(ShapeMasks, FullAtTheCoreNothingPastTheFalloffAndMonotone) {
    const struct {
        const char *name;
        std::function<void(VokBitmap *)> draw;
    } shapes[] = {
        {"radial", [](VokBitmap *m) { VokMaskRadial(nullptr, m, 30, 20, 16); }},
        {"elliptical", [](VokBitmap *m) { VokMaskEliptical(nullptr, m, 30, 20, 16, 10); }},
        {"linear", [](VokBitmap *m) { VokMaskLinear(nullptr, m, 30, 20, 16, 0.0); }},
    };
    for (const auto &shape : shapes) {
        SCOPED_TRACE(shape.name);
        TestBitmap mask(60, 40);
        mask.fill(rgba(9, 8, 7, 100));
        shape.draw(mask.get());
        const bool edge = shape.name[0] == 'l';  // the linear edge is half-way at its centre
        EXPECT_EQ(mask.at(30, 20), rgba(9, 8, 7, edge ? 116 : 255));  // colour bytes stay
        EXPECT_EQ(mask.at(0, 20).alpha, edge ? 255 : 0);
        EXPECT_EQ(mask.at(59, 20).alpha, 0);
        for (uint32_t x = 31; x < 59; ++x)
            EXPECT_LE(mask.at(x + 1, 20).alpha, mask.at(x, 20).alpha) << x;
    }
    // The tool's shapes: degrees to radians for the linear one.
    TestBitmap turned(60, 40);
    VokToolShape shape;
    VokToolShapeInit(&shape);
    shape.type = 2, shape.center = {30, 20}, shape.size = 10, shape.angle = 90;
    VokToolDrawShapeInMask(nullptr, turned.get(), &shape);
    EXPECT_EQ(turned.at(30, 0).alpha, 255);
    EXPECT_EQ(turned.at(30, 39).alpha, 0);
    for (double bad : {0.0, -3.0, double{NAN}, double{INFINITY}}) {
        TestBitmap same(8, 8);
        VokMaskRadial(nullptr, same.get(), 4, 4, bad);
        VokMaskLinear(nullptr, same.get(), 4, 4, bad, 1.0);
        VokMaskEliptical(nullptr, same.get(), 4, 4, bad, 2);
        EXPECT_EQ(same.bytes(), std::vector<uint8_t>(8 * 8 * 4, 0));
    }
}

TEST(Regions, BrightestAndClosestToLipWithinTheRadius) {
    TestBitmap face(20, 20);
    face.fill(rgba(120, 90, 80));
    face.at(12, 10) = rgba(250, 240, 230);
    face.at(8, 10) = rgba(220, 60, 60);
    face.at(19, 19) = rgba(255, 255, 255);  // outside the radius
    const VokPoint at = {10.5f, 10.5f};
    VokColor colour = rgba(1, 2, 3);
    VokRegionInfoColorBrightest(face.get(), &at, 3, &colour);
    EXPECT_EQ(colour, rgba(250, 240, 230));
    VokRegionInfoColorClosestToLip(face.get(), &at, 3, &colour);
    EXPECT_EQ(colour, rgba(220, 60, 60));
    const VokPoint away = {-50, -50};
    VokRegionInfoColorBrightest(face.get(), &away, 3, &colour);  // misses: colour kept
    EXPECT_EQ(colour, rgba(220, 60, 60));
}

TEST(Retouch, GoldenChecksumsAndBadInput) {
    const uint64_t golden[] = {17292675304905961798ull, 17313700007524047675ull,
                               17792146802149916473ull, 6881233424631511429ull,
                               404403558382341573ull,   11033760836452255730ull};
    for (size_t i = 0; i < kRetouches.size(); ++i) {
        TestBitmap photo = vok_test::coffee_crop();
        kRetouches[i].second(photo.get());
        EXPECT_EQ(vok_test::checksum(photo.get()), golden[i]) << kRetouches[i].first;
        VokBitmap empty = {nullptr, 0, 0};
        kRetouches[i].second(&empty);
        kRetouches[i].second(nullptr);
        TestBitmap one(1, 1);
        kRetouches[i].second(one.get());
    }
}
