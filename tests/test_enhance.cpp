// Automatic enhancement: a colour cast is taken out, a dark flat photo opens
// up, a good photo is left nearly alone, and the strength rules hold.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

#include "support/bitmaps.h"
#include "support/golden.h"
#include "vok/color.h"
#include "vok/tonal.h"

using vok_test::rgba;
using vok_test::TestBitmap;

namespace {

const VokColor kWarm = {255, 200, 150, 255};

// The three enhancements with one signature, for the rules they share.
const std::vector<std::pair<const char *, std::function<void(VokBitmap *, float)>>> kAll = {
    {"lab", VokLabCorrect},
    {"contrast", VokVaryingContrast},
    {"colours", [](VokBitmap *b, float s) { VokAutoColorsFadeMaxColor(b, s, &kWarm); }},
};

struct Spread {
    int p5, p95;
    double mean;
};

// 5th and 95th percentile and mean of the summed-area grey level.
Spread intensity(const TestBitmap &bitmap) {
    std::vector<int> levels;
    double sum = 0;
    const uint8_t *p = bitmap.get()->pixels;
    for (size_t k = 0; k < size_t{bitmap.get()->width} * bitmap.get()->height; ++k, p += 4) {
        levels.push_back((2 * p[0] + 7 * p[1] + p[2] + 5) / 10);
        sum += levels.back();
    }
    std::sort(levels.begin(), levels.end());
    return {levels[levels.size() / 20], levels[levels.size() * 19 / 20], sum / levels.size()};
}

// Mean a and b (scaled LAB) of the near-neutral pixels.
std::pair<double, double> neutral_mean(const TestBitmap &bitmap) {
    TestBitmap lab(bitmap);
    VokBitmapConvertRGBToLAB(lab.get());
    double a = 0, b = 0;
    int n = 0;
    for (uint32_t y = 0; y < lab.get()->height; ++y)
        for (uint32_t x = 0; x < lab.get()->width; ++x) {
            const VokColor &c = lab.at(x, y);
            if (std::abs(c.green - 127) > 12 || std::abs(c.blue - 127) > 12 || c.red < 26 ||
                c.red > 242)
                continue;
            a += c.green, b += c.blue, ++n;
        }
    return {a / n, b / n};
}

}  // namespace

TEST(Enhance, LabCorrectionTakesOutABlueCast) {
    TestBitmap photo = vok_test::coffee_crop();
    const VokColorMatrix blue = {{0.8f, 0, 0, 0, 0, 0.92f, 0, 0, 0, 0, 1.0f, 40.0f}};
    VokBitmapColorMatrixTransform(photo.get(), &blue);
    const auto cast = neutral_mean(photo);
    EXPECT_LT(cast.second, 127 - 4.0);  // b below neutral: blue
    VokLabCorrect(photo.get(), 1.0f);
    const auto fixed = neutral_mean(photo);
    EXPECT_NEAR(fixed.first, 127, 3);
    EXPECT_NEAR(fixed.second, 127, 3);
}

TEST(Enhance, VaryingContrastOpensADarkFlatPhoto) {
    // The crop is a little dark; lifted by a gamma it is well exposed.
    TestBitmap photo = vok_test::coffee_crop();
    VokBitmapGamma(photo.get(), 0.7f);  // median 95, 5 %-95 % from 29 to 242
    const Spread good = intensity(photo);
    TestBitmap same(photo);
    VokVaryingContrast(same.get(), 1.0f);
    EXPECT_NEAR(intensity(same).mean, good.mean, 4);  // well exposed: nearly alone
    for (uint8_t *p = photo.get()->pixels, *end = p + 160 * 120 * 4; p != end; ++p)
        if ((p - photo.get()->pixels) % 4 != 3) *p = static_cast<uint8_t>(30 + *p * 50 / 255);
    const Spread dark = intensity(photo);
    VokVaryingContrast(photo.get(), 1.0f);
    const Spread opened = intensity(photo);
    EXPECT_GE(opened.p95 - opened.p5, 1.5 * (dark.p95 - dark.p5));
    EXPECT_GT(opened.mean, dark.mean + 10);
}

TEST(Enhance, AutoColoursStretchAndWarmTheHighlights) {
    // Levels 40 to 167, two pixels each: the 0.5 % and 99.5 % levels are 40 and
    // 167, a range of 127 widened to 128 (39 to 167) to keep the gain at 2.
    TestBitmap ramp(256, 1);
    for (uint32_t v = 0; v < 256; ++v) ramp.at(v, 0) = rgba(v / 2 + 40, v / 2 + 40, v / 2 + 40);
    VokAutoColorsFadeMaxColor(ramp.get(), 1.0, &kWarm);
    EXPECT_EQ(ramp.at(0, 0), rgba(2, 2, 2));          // (1 x 510 + 128) / 256
    EXPECT_EQ(ramp.at(128, 0), rgba(129, 129, 129));  // 104: (65 x 510 + 128) / 256, no fade
    // White: 255 + (200 - 255) x 40 / 64 = 220.6, 255 - 105 x 40 / 64 = 189.4.
    EXPECT_EQ(ramp.at(255, 0), rgba(255, 221, 189));
}

TEST(Enhance, StrengthAndBadInput) {
    const TestBitmap photo = vok_test::coffee_crop();
    for (const auto &[name, enhance] : kAll) {
        SCOPED_TRACE(name);
        // Strength 0 and NaN change nothing; the strength is clamped to [0, 1].
        for (float strength : {0.0f, -1.0f, NAN}) {
            TestBitmap copy(photo);
            enhance(copy.get(), strength);
            EXPECT_EQ(copy.bytes(), photo.bytes()) << strength;
        }
        TestBitmap full(photo), over(photo), half(photo);
        enhance(full.get(), 1.0f);
        enhance(over.get(), 7.0f);
        enhance(half.get(), 0.5f);
        EXPECT_EQ(over.bytes(), full.bytes());
        EXPECT_NE(full.bytes(), photo.bytes());
        // Uniform stays uniform, alpha stays, tiny and empty bitmaps are fine.
        TestBitmap flat(9, 7);
        flat.fill(rgba(90, 120, 60, 33));
        enhance(flat.get(), 1.0f);
        for (uint32_t i = 0; i < 63; ++i) EXPECT_EQ(flat.at(i % 9, i / 9), flat.at(0, 0));
        EXPECT_EQ(flat.at(0, 0).alpha, 33);
        TestBitmap one(1, 1);
        one.fill(rgba(1, 2, 3));
        enhance(one.get(), 1.0f);
        VokBitmap empty = {nullptr, 0, 0};
        enhance(&empty, 1.0f);
        enhance(nullptr, 1.0f);
    }
    VokAutoColorsFadeMaxColor(TestBitmap(photo).get(), 1.0, nullptr);
}

TEST(Enhance, GoldenChecksums) {
    const uint64_t golden[] = {17238490240933370799ull, 7446251139263134938ull,
                               17707102951068442681ull};
    for (size_t i = 0; i < kAll.size(); ++i) {
        TestBitmap photo = vok_test::coffee_crop();
        kAll[i].second(photo.get(), 0.8f);
        EXPECT_EQ(vok_test::checksum(photo.get()), golden[i]) << kAll[i].first;
    }
}
