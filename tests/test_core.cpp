// Bitmaps, colours, buffers and transforms.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "support/bitmaps.h"
#include "vok/core.h"

using vok_test::TestBitmap;

TEST(Bitmap, BuildCopyAndFreeRefuseWhatDoesNotFit) {
    VokBitmap b;
    EXPECT_EQ(VokBitmapBuild(&b, 32768, 32768), 0);  // exactly 2^30 pixels
    EXPECT_TRUE(b.width == 32768 && b.height == 32768);  // stored even when refused
    for (auto wh : {std::make_pair(0u, 10u), {10u, 0u}, {65536u, 65537u}}) {
        EXPECT_EQ(VokBitmapBuild(&b, wh.first, wh.second), 0);
        EXPECT_EQ(b.pixels, nullptr);
    }
    TestBitmap a(4, 3), same(4, 3), other(3, 4);
    a.randomize(1);
    const auto before = a.bytes();
    EXPECT_EQ(VokBitmapCopy(a.get(), a.get()), 0);
    EXPECT_EQ(VokBitmapCopy(other.get(), a.get()), 0);
    EXPECT_EQ(other.bytes(), std::vector<uint8_t>(48, 0));
    VokBitmap empty = {nullptr, 4, 3};
    EXPECT_EQ(VokBitmapCopy(&empty, a.get()) + VokBitmapCopy(same.get(), &empty), 0);
    EXPECT_EQ(VokBitmapCopy(same.get(), a.get()), 1);
    EXPECT_EQ(same.bytes(), before);
    VokBitmapFree(&empty);  // already free: harmless
}

TEST(Bitmap, CopyRectAndColorAtPoint) {
    TestBitmap source(8, 6), fits(4, 2), narrow(3, 2), wide(5, 2), past(2, 2);
    source.randomize(2);
    VokBitmapCopyRect(fits.get(), source.get(), 2, 1, 5, 2);
    for (uint32_t y = 0; y < 2; ++y)
        for (uint32_t x = 0; x < 4; ++x) EXPECT_EQ(fits.at(x, y), source.at(x + 2, y + 1));
    VokBitmapCopyRect(narrow.get(), source.get(), 2, 1, 5, 2);
    VokBitmapCopyRect(wide.get(), source.get(), 2, 1, 5, 2);
    VokBitmapCopyRect(past.get(), source.get(), 7, 0, 8, 1);  // x1 outside the source
    EXPECT_EQ(narrow.bytes(), std::vector<uint8_t>(24, 0));
    EXPECT_EQ(wide.bytes(), std::vector<uint8_t>(40, 0));
    EXPECT_EQ(past.bytes(), std::vector<uint8_t>(16, 0));

    VokColor out;
    // Clamped into the image; NaN and huge values saturate instead of misbehaving.
    const struct { VokPoint p; uint32_t x, y; } cases[] = {
        {{-3.7f, 10.9f}, 0, 5}, {{2.9f, 1.2f}, 2, 1}, {{NAN, 1e30f}, 0, 5},
        {{8.0f, 6.0f}, 7, 5}, {{8.5f, 2.0f}, 7, 2}};  // x == width, y == height clamp too
    for (const auto &c : cases) {
        EXPECT_EQ(VokBitmapGetColorAtPoint(source.get(), &c.p, &out), &out);
        EXPECT_EQ(out, source.at(c.x, c.y));
    }
}

TEST(Records, ColorsParamsPointsVersionsAndBuffers) {
    VokColor c;
    VokColorSetARGB(&c, 255, 10, 20, 30);
    EXPECT_EQ(std::memcmp(&c, "\x0a\x14\x1e\xff", 4), 0);
    VokEffectParams params;
    std::memset(&params, 0x5a, sizeof params);
    VokEffectInitParams(&params);
    EXPECT_TRUE(params.seed == 0 && params.strength == 1.0 && params.bordersEnabled == 1 &&
                params.scale == 1.0);
    VokPoint p, q;
    VokPointMake(&p, 1.5f, -2.0f);
    EXPECT_EQ(VokPointScale(&q, p, 2.0f, 3.0f), &q);
    EXPECT_TRUE(q.x == 3.0f && q.y == -6.0f);
    uint32_t major, minor, patch;
    VokLiteVersion(&major, &minor, &patch);
    EXPECT_EQ(major * 100 + minor * 10 + patch, 211u);
    VokLiteProclistVersion(&major, &minor, &patch);
    EXPECT_EQ(major * 100 + minor * 10 + patch, 200u);

    VokGradient g;
    EXPECT_EQ(VokGradientBuild(&g, 268435456u, 1), 0);
    EXPECT_EQ(VokGradientBuild(&g, 1, 268435456u) + (g.colorStops != nullptr), 0);
    ASSERT_EQ(VokGradientBuild(&g, 2, 3), 1);
    VokGradientFree(&g);
    EXPECT_TRUE(g.colorStops == nullptr && g.opacityStops == nullptr && g.colorCount == 2);

    VokArray a;
    EXPECT_EQ(VokArrayBuild(&a, 10, 0) + VokArrayBuild(&a, 0x40000000u, 4), 0);
    // a x b fits 32 bits but a x b x c does not: refused, not wrapped to a small buffer.
    EXPECT_EQ(VokArrayBuild2(&a, 65536, 65536, 2) + VokArrayBuild2(&a, 3, 4, 0) +
                  VokArrayBuild2(&a, 65536, 32769, 4),
              0);
    EXPECT_EQ(a.data, nullptr);
    ASSERT_EQ(VokArrayBuild2(&a, 3, 4, 5), 1);
    uint8_t source[60];
    for (int i = 0; i < 60; ++i) source[i] = static_cast<uint8_t>(i);
    EXPECT_EQ(VokArrayCopy2(a.data, source, 3, 4, 5), 1);
    EXPECT_EQ(std::memcmp(a.data, source, 60), 0);
    EXPECT_EQ(VokArrayCopy2(a.data, source, 65536, 65536, 1), 0);
    EXPECT_EQ(VokArrayCopy2(nullptr, source, 0, 0, 0), 0);
    VokArrayFree(&a);
    EXPECT_EQ(a.data, nullptr);
}

TEST(Transform, ComposesInPostOrderAndInverts) {
    VokTransform t = VokTransformIdentity;
    VokTransformPostTranslate(&t, 1, 0);
    VokTransformPostScale(&t, 2, 2);
    EXPECT_TRUE(t.a + t.b + t.tx == 4.0 && t.c + t.d + t.ty == 2.0);  // (1, 1) -> (4, 2)
    VokTransform r = VokTransformIdentity;
    VokTransformPostRotate(&r, M_PI / 2);
    EXPECT_NEAR(r.c, 1.0, 1e-15);  // (1, 0) -> (0, 1)
    VokTransform self = {1, 2, 3, 4, 5, 6};
    VokTransformConcat(&self, &self);  // aliasing is allowed
    EXPECT_TRUE(self.a == 9.0 && self.tx == 18.0 && self.ty == 48.0);

    VokTransform m = {2, 0, 4, 0, 2, 6}, inv, zero = {0, 0, 0, 0, 0, 0};
    VokTransformGetInverse(&m, &inv);
    EXPECT_TRUE(inv.a == 0.5 && inv.b == 0.0 && inv.tx == -2.0 && inv.d == 0.5 && inv.ty == -3.0);
    VokTransformGetInverse(&zero, &inv);  // singular: all NaN, not the identity
    for (double v : {inv.a, inv.b, inv.tx, inv.c, inv.d, inv.ty}) EXPECT_TRUE(std::isnan(v));
}
