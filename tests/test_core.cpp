// Bitmaps, colours, buffers and transforms.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "support/bitmaps.h"
#include "vok/core.h"

using vok_test::rgba;
using vok_test::TestBitmap;

TEST(Bitmap, BuildRefusesOversizedAndEmpty) {
    VokBitmap b;
    EXPECT_EQ(VokBitmapBuild(&b, 32768, 32768), 0);  // exactly 2^30 pixels
    EXPECT_EQ(b.pixels, nullptr);
    EXPECT_EQ(b.width, 32768u);
    EXPECT_EQ(b.height, 32768u);
    EXPECT_EQ(VokBitmapBuild(&b, 0, 10), 0);
    EXPECT_EQ(VokBitmapBuild(&b, 10, 0), 0);
    EXPECT_EQ(VokBitmapBuild(&b, 65536, 65537), 0);  // product overflows 32 bits
    EXPECT_EQ(b.pixels, nullptr);

    ASSERT_EQ(VokBitmapBuild(&b, 3, 2), 1);
    for (int i = 0; i < 24; ++i) EXPECT_EQ(b.pixels[i], 0);
    VokBitmapFree(&b);
    EXPECT_EQ(b.pixels, nullptr);
    VokBitmapFree(&b);  // already free: harmless
}

TEST(Bitmap, CopyChecksSizesAndIdentity) {
    TestBitmap a(4, 3), b(4, 3), c(3, 4);
    a.randomize(1);
    std::vector<uint8_t> before = a.bytes();
    EXPECT_EQ(VokBitmapCopy(a.get(), a.get()), 0);
    EXPECT_EQ(a.bytes(), before);
    EXPECT_EQ(VokBitmapCopy(c.get(), a.get()), 0);
    EXPECT_EQ(c.bytes(), std::vector<uint8_t>(48, 0));
    EXPECT_EQ(VokBitmapCopy(b.get(), a.get()), 1);
    EXPECT_EQ(b.bytes(), before);

    VokBitmap empty = {nullptr, 4, 3};
    EXPECT_EQ(VokBitmapCopy(&empty, a.get()), 0);
    EXPECT_EQ(VokBitmapCopy(b.get(), &empty), 0);
}

TEST(Bitmap, CopyRectNeedsTheExactDestinationSize) {
    TestBitmap source(8, 6);
    source.randomize(2);
    TestBitmap fits(4, 2), narrow(3, 2), wide(5, 2);
    VokBitmapCopyRect(fits.get(), source.get(), 2, 1, 5, 2);
    for (uint32_t y = 0; y < 2; ++y)
        for (uint32_t x = 0; x < 4; ++x)
            EXPECT_EQ(std::memcmp(&fits.at(x, y), &source.at(x + 2, y + 1), 4), 0);
    VokBitmapCopyRect(narrow.get(), source.get(), 2, 1, 5, 2);
    VokBitmapCopyRect(wide.get(), source.get(), 2, 1, 5, 2);
    EXPECT_EQ(narrow.bytes(), std::vector<uint8_t>(24, 0));
    EXPECT_EQ(wide.bytes(), std::vector<uint8_t>(40, 0));

    TestBitmap past_edge(2, 2);
    VokBitmapCopyRect(past_edge.get(), source.get(), 7, 0, 8, 1);  // x1 outside the source
    EXPECT_EQ(past_edge.bytes(), std::vector<uint8_t>(16, 0));
}

TEST(Bitmap, ColorAtPointClampsIntoTheImage) {
    TestBitmap b(5, 5);
    b.randomize(3);
    VokColor out;
    VokPoint p = {-3.7f, 10.9f};
    EXPECT_EQ(VokBitmapGetColorAtPoint(b.get(), &p, &out), &out);
    EXPECT_EQ(std::memcmp(&out, &b.at(0, 4), 4), 0);
    p = {2.9f, 1.2f};
    VokBitmapGetColorAtPoint(b.get(), &p, &out);
    EXPECT_EQ(std::memcmp(&out, &b.at(2, 1), 4), 0);
    p = {NAN, 1e30f};  // out-of-range conversions saturate instead of misbehaving
    VokBitmapGetColorAtPoint(b.get(), &p, &out);
    EXPECT_EQ(std::memcmp(&out, &b.at(0, 4), 4), 0);
}

TEST(Records, ColorsParamsPointsAndVersions) {
    VokColor c;
    VokColorSetARGB(&c, 255, 10, 20, 30);
    const uint8_t *bytes = reinterpret_cast<const uint8_t *>(&c);
    EXPECT_EQ(bytes[0], 10);
    EXPECT_EQ(bytes[1], 20);
    EXPECT_EQ(bytes[2], 30);
    EXPECT_EQ(bytes[3], 255);

    VokEffectParams params;
    std::memset(&params, 0x5a, sizeof params);
    VokEffectInitParams(&params);
    EXPECT_EQ(params.seed, 0);
    EXPECT_EQ(params.strength, 1.0);
    EXPECT_EQ(params.bordersEnabled, 1);
    EXPECT_EQ(params.scale, 1.0);

    VokPoint p, q;
    VokPointMake(&p, 1.5f, -2.0f);
    EXPECT_EQ(VokPointScale(&q, p, 2.0f, 3.0f), &q);
    EXPECT_EQ(q.x, 3.0f);
    EXPECT_EQ(q.y, -6.0f);

    uint32_t major, minor, patch;
    VokLiteVersion(&major, &minor, &patch);
    EXPECT_EQ(major * 100 + minor * 10 + patch, 211u);
    VokLiteProclistVersion(&major, &minor, &patch);
    EXPECT_EQ(major * 100 + minor * 10 + patch, 200u);
    EXPECT_EQ(kVokRadiusMultiplier, 2.0f);
    EXPECT_EQ(sizeof(VokColorStop), 16u);
    EXPECT_EQ(sizeof(VokOpacityStop), 16u);
}

TEST(Buffers, GradientAndArrayBuilders) {
    VokGradient g;
    ASSERT_EQ(VokGradientBuild(&g, 2, 3), 1);
    EXPECT_EQ(g.colorCount, 2u);
    EXPECT_EQ(g.opacityCount, 3u);
    EXPECT_EQ(g.opacityStops[2].location, 0.0);
    VokGradientFree(&g);
    EXPECT_EQ(g.colorStops, nullptr);
    EXPECT_EQ(g.opacityStops, nullptr);
    EXPECT_EQ(g.colorCount, 2u);
    EXPECT_EQ(VokGradientBuild(&g, 268435456u, 1), 0);
    EXPECT_EQ(g.colorStops, nullptr);
    EXPECT_EQ(VokGradientBuild(&g, 1, 268435456u), 0);
    EXPECT_EQ(g.colorStops, nullptr);
    EXPECT_EQ(g.opacityStops, nullptr);

    VokArray a;
    EXPECT_EQ(VokArrayBuild(&a, 10, 0), 0);
    EXPECT_EQ(VokArrayBuild(&a, 0x40000000u, 4), 0);
    EXPECT_EQ(a.data, nullptr);
    ASSERT_EQ(VokArrayBuild(&a, 10, 4), 1);
    EXPECT_EQ(static_cast<uint8_t *>(a.data)[39], 0);
    VokArrayFree(&a);
    EXPECT_EQ(a.data, nullptr);
    EXPECT_EQ(VokArrayBuild2(&a, 65536, 65536, 2), 0);
    EXPECT_EQ(VokArrayBuild2(&a, 3, 4, 0), 0);
    ASSERT_EQ(VokArrayBuild2(&a, 3, 4, 5), 1);
    uint8_t source[60];
    for (int i = 0; i < 60; ++i) source[i] = static_cast<uint8_t>(i);
    EXPECT_EQ(VokArrayCopy2(a.data, source, 3, 4, 5), 1);
    EXPECT_EQ(std::memcmp(a.data, source, 60), 0);
    EXPECT_EQ(VokArrayCopy2(a.data, source, 65536, 65536, 1), 0);
    EXPECT_EQ(VokArrayCopy2(nullptr, source, 0, 0, 0), 0);
    VokArrayFree(&a);
}

TEST(Transform, ComposesInPostOrderAndInverts) {
    VokTransform t;
    VokTransformSetIdentity(&t);
    VokTransformPostTranslate(&t, 1, 0);
    VokTransformPostScale(&t, 2, 2);
    EXPECT_EQ(t.a * 1 + t.b * 1 + t.tx, 4.0);
    EXPECT_EQ(t.c * 1 + t.d * 1 + t.ty, 2.0);

    VokTransform r = VokTransformIdentity;
    VokTransformPostRotate(&r, M_PI / 2);
    EXPECT_NEAR(r.a * 1 + r.b * 0 + r.tx, 0.0, 1e-15);
    EXPECT_NEAR(r.c * 1 + r.d * 0 + r.ty, 1.0, 1e-15);

    VokTransform self = {1, 2, 3, 4, 5, 6};
    VokTransformConcat(&self, &self);  // aliasing is allowed
    EXPECT_EQ(self.a, 9.0);
    EXPECT_EQ(self.tx, 18.0);
    EXPECT_EQ(self.ty, 48.0);

    VokTransform m = {2, 0, 4, 0, 2, 6}, inv;
    VokTransformGetInverse(&m, &inv);
    EXPECT_EQ(inv.a, 0.5);
    EXPECT_EQ(inv.b, 0.0);
    EXPECT_EQ(inv.tx, -2.0);
    EXPECT_EQ(inv.d, 0.5);
    EXPECT_EQ(inv.ty, -3.0);

    VokTransform zero = {0, 0, 0, 0, 0, 0};
    VokTransformGetInverse(&zero, &inv);
    EXPECT_TRUE(std::isnan(inv.a) && std::isnan(inv.b) && std::isnan(inv.tx));
    EXPECT_TRUE(std::isnan(inv.c) && std::isnan(inv.d) && std::isnan(inv.ty));
}
