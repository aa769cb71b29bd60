// Curve builders, summed-area tables, smoothing and neighbourhood tone maps.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "support/bitmaps.h"
#include "vok/tonal.h"

using vok_test::rgba;
using vok_test::TestBitmap;

// The grey level of the summed-area tables in its float form.
static int grey(int red, int green, int blue) {
    return static_cast<int>(static_cast<float>(0.2 * red + 0.7 * green + 0.1 * blue) + 0.5);
}

static void expect_levels(const VokHistMap &map, std::initializer_list<std::pair<int, int>> levels) {
    for (const auto &[level, value] : levels)
        for (int c = 0; c < 3; ++c) EXPECT_EQ(map.table[c][level], value) << "level " << level;
}

TEST(CurveBuilders, ExposureAndContrastMaps) {
    VokHistMap map, other;
    double matrix[18];
    VokBitmapExposureCurveHistogramMapping(0.0f, &map);
    VokBitmapContrastCurveHistogramMapping(0.0f, &other, matrix);
    for (int v = 0; v < 256; ++v) expect_levels(map, {{v, v}}), expect_levels(other, {{v, v}});
    for (int i = 0; i < 9; ++i) EXPECT_EQ(matrix[i], i % 4 == 0 ? 1.0 : 0.0);

    VokBitmapExposureCurveHistogramMapping(100.0f, &map);
    VokBitmapExposureCurveHistogramMapping(101.0f, &other);
    EXPECT_EQ(0, memcmp(&map, &other, sizeof map));
    expect_levels(map, {{1, 3}, {128, 210}, {255, 255}});
    VokBitmapExposureCurveHistogramMapping(-100.0f, &map);  // only -100 scales the curve by 0.75
    VokBitmapExposureCurveHistogramMapping(-50.0f, &other);
    expect_levels(map, {{128, 55}, {255, 191}});
    expect_levels(other, {{64, 55}, {255, 255}});

    // Full contrast either way removes 30 % of the saturation; input red's weights first.
    const double full[9] = {0.7639, 0.0639, 0.0639, 0.2145, 0.9145, 0.2145, 0.0216, 0.0216, 0.7216};
    VokBitmapContrastCurveHistogramMapping(100.0f, &map, matrix);
    VokBitmapContrastCurveHistogramMapping(-100.0f, &other, matrix + 9);
    expect_levels(map, {{55, 28}, {110, 110}, {200, 234}});
    expect_levels(other, {{0, 0}, {55, 69}, {110, 110}, {200, 178}, {255, 255}});
    for (int i = 0; i < 18; ++i) EXPECT_NEAR(matrix[i], full[i % 9], 1e-12);
}

TEST(IntegralImage, BoxSumsGreyLevelsWrappingAndLineSmooth) {
    // Every red and green pair with a varying blue: the grey level meets every exact half.
    TestBitmap image(256, 256);
    for (uint32_t i = 0; i < 65536; ++i)
        image.at(i % 256, i / 256) = rgba(i % 256, i / 256, (7 * i + 13 * (i / 256)) & 255);
    std::vector<std::vector<uint32_t>> tables(4, std::vector<uint32_t>(65536));
    VokBuildIntegralImage(image.get(), tables[0].data(), tables[1].data(), tables[2].data());
    VokBuildIntegralImageGray(image.get(), tables[3].data());
    auto expect_box = [&](uint32_t x0, uint32_t y0, uint32_t x1, uint32_t y1) {
        uint32_t sums[4] = {0, 0, 0, 0};
        for (uint32_t y = y0; y <= y1; ++y)
            for (uint32_t x = x0; x <= x1; ++x) {
                const VokColor &p = image.at(x, y);
                sums[0] += p.red, sums[1] += p.green, sums[2] += p.blue;
                sums[3] += grey(p.red, p.green, p.blue);
            }
        for (int t = 0; t < 4; ++t)
            ASSERT_EQ(VokSumBoxFromIntegralImage(tables[t].data(), 256, 256, x0, y0, x1, y1), sums[t]);
    };
    for (uint32_t i = 0; i < 65536; ++i) expect_box(i % 256, i / 256, i % 256, i / 256);
    for (uint32_t i = 0; i < 2048; ++i)
        expect_box(i % 256, i / 256 * 31, std::min(255u, i % 256 + i % 13), i / 256 * 31 + i % 5);
    const uint32_t wrapped[4] = {4294967290u, 4294967295u, 4294967293u, 9u};
    EXPECT_EQ(VokSumBoxFromIntegralImage(wrapped, 2, 2, 1, 1, 1, 1), 7u);  // 9 + 1 + 3 - 6

    float values[3] = {0.0f, 3.0f, 0.0f};  // the kernel spans the whole array
    VokLineSmooth1D(values, 3, 1);
    EXPECT_NEAR(values[2], 3.0 * exp(-0.5) / (1.0 + exp(-0.5) + exp(-2.0)), 1e-5);
}

TEST(BlurHistMap, PlainRuleOnRandomImagesAndBothEnhancements) {
    std::mt19937 engine(3);
    const double factors[4] = {120.0, 1000.0, 3000.0, -1000.0}, strengths[4] = {0.3, 0.5, 1.7, -0.4};
    for (int trial = 0; trial < 4; ++trial) {
        const int w = 9 + trial * 4, h = 7 + trial * 3;
        TestBitmap image(w, h);
        image.randomize(40 + trial);
        for (int i = 0; i < 16 && trial == 1; ++i) image.at(i % 4, i / 4) = rgba(0, 0, 0, 9);
        VokHistMap map;
        for (auto &table : map.table)
            for (auto &level : table) level = static_cast<uint8_t>(engine());

        const int inner = static_cast<int>((w + h) * 0.000625 * factors[trial]);
        const int r = std::max(0, static_cast<int>(0.5f + 0.1f * static_cast<float>(inner)));
        const int k = static_cast<int>(static_cast<float>(strengths[trial]) * 4096.0f);
        std::vector<uint8_t> expected = image.bytes();
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                int sum0 = 0, sum1 = 0, n = 0;
                for (int yy = std::max(y - r, 0); yy <= std::min(y + r, h - 1); ++yy)
                    for (int xx = std::max(x - r, 0); xx <= std::min(x + r, w - 1); ++xx, ++n) {
                        const VokColor &p = image.at(xx, yy);
                        sum0 += grey(p.red, p.green, p.blue);
                        sum1 += grey(map.table[0][p.red], map.table[1][p.green], map.table[2][p.blue]);
                    }
                const int m0 = sum0 / n, m1 = sum1 / n;
                const VokColor &p = image.at(x, y);
                const int t = k * ((28672 * p.green + 8192 * p.red + 4096 * p.blue + 2048) / 40960 - m0) / 4096;
                uint8_t *out = &expected[4 * (y * w + x)];
                for (int c = 0; c < 3; ++c) {
                    // A black neighbourhood divides the shift term by 2^24.
                    const int s = (&p.red)[c] + t;
                    const int v = m0 != 0 ? 1639 * (s + m1 - m0) / 4096 + 2457 * (m1 * s / m0) / 4096
                                          : 1639 * (s + m1 - m0) / 16777216 + 2457 * (m1 * s) / 4096;
                    out[c] = static_cast<uint8_t>(std::clamp(v, 0, 255));
                }
                out[3] = 255;
            }
        VokBlurHistMap(image.get(), &map, factors[trial], strengths[trial]);
        EXPECT_EQ(image.bytes(), expected) << "trial " << trial;
    }

    // Night curve 64 -> 113; 1639 x 113 / 4096 + 2457 x 113 / 4096 = 45 + 67. A dark image lies
    // wholly below the ramp of local contrast, so it is lifted.
    TestBitmap night(8, 6), dark(8, 6);
    night.fill(rgba(64, 64, 64, 3));
    dark.fill(rgba(40, 40, 40, 3));
    VokNightEnhance(night.get());
    VokLocalContrastEnhance(dark.get());
    EXPECT_GT(dark.at(3, 2).red, 40);
    // The gains come from the green histogram: bright green lifts little,
    // dark green a lot, whatever red holds (red-driven gains would give
    // (48, 218, 48) and (201, 39, 90)).
    const VokColor colours[][2] = {{rgba(40, 200, 40), rgba(42, 205, 42)},
                                   {rgba(200, 40, 90), rgba(234, 52, 109)}};
    for (const auto &c : colours) {
        TestBitmap flat(8, 6);
        flat.fill(c[0]);
        VokLocalContrastEnhance(flat.get());
        EXPECT_EQ(flat.at(5, 4), c[1]);
    }
    for (uint32_t i = 0; i < 48; ++i) EXPECT_EQ(night.at(i % 8, i / 8), rgba(112, 112, 112, 255));
}
