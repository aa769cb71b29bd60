// Curve builders, summed-area tables, smoothing and local contrast.
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

namespace {

// Checks map entries given as {level, value} pairs, in all three tables.
void expect_levels(const VokHistMap &map, std::initializer_list<std::pair<int, int>> levels) {
    for (const auto &[level, value] : levels)
        for (int c = 0; c < 3; ++c) EXPECT_EQ(map.table[c][level], value) << "level " << level;
}

}  // namespace

TEST(CurveBuilders, ExposureAndContrastMaps) {
    VokHistMap map, other;
    VokBitmapExposureCurveHistogramMapping(0.0f, &map);
    for (int v = 0; v < 256; ++v) expect_levels(map, {{v, v}});
    VokBitmapExposureCurveHistogramMapping(100.0f, &map);
    VokBitmapExposureCurveHistogramMapping(101.0f, &other);
    EXPECT_EQ(0, memcmp(&map, &other, sizeof map));
    expect_levels(map, {{1, 3}, {128, 210}, {255, 255}});
    // Only -100 truncates to n = -1 and scales the whole curve by 0.75.
    VokBitmapExposureCurveHistogramMapping(-100.0f, &map);
    expect_levels(map, {{128, 55}, {255, 191}});
    VokBitmapExposureCurveHistogramMapping(-50.0f, &map);
    expect_levels(map, {{64, 55}, {255, 255}});

    double matrix[9];
    VokBitmapContrastCurveHistogramMapping(0.0f, &map, matrix);
    for (int v = 0; v < 256; ++v) expect_levels(map, {{v, v}});
    for (int i = 0; i < 9; ++i) EXPECT_EQ(matrix[i], i % 4 == 0 ? 1.0 : 0.0);
    // Full contrast either way removes 30 % of the saturation; column by
    // column, the input red's weights first.
    const double full[9] = {0.7639, 0.0639, 0.0639, 0.2145, 0.9145, 0.2145, 0.0216, 0.0216, 0.7216};
    VokBitmapContrastCurveHistogramMapping(100.0f, &map, matrix);
    expect_levels(map, {{55, 28}, {110, 110}, {200, 234}});
    for (int i = 0; i < 9; ++i) EXPECT_NEAR(matrix[i], full[i], 1e-12);
    VokBitmapContrastCurveHistogramMapping(-100.0f, &map, matrix);
    expect_levels(map, {{0, 0}, {55, 69}, {110, 110}, {200, 178}, {255, 255}});
    for (int i = 0; i < 9; ++i) EXPECT_NEAR(matrix[i], full[i], 1e-12);
}

TEST(IntegralImage, BoxSumsGreyLevelsAndWrapping) {
    TestBitmap image(13, 9);
    image.randomize(7);
    std::vector<uint32_t> tables[4];
    for (auto &table : tables) table.resize(13 * 9);
    VokBuildIntegralImage(image.get(), tables[0].data(), tables[1].data(), tables[2].data());
    VokBuildIntegralImageGray(image.get(), tables[3].data());
    for (uint32_t box = 0; box < 13 * 9 * 13; ++box) {
        const uint32_t x0 = box % 13, y0 = box / 13 % 9, x1 = std::max(x0, box / 117), y1 = std::min(8u, y0 + box % 4);
        uint32_t sums[4] = {0, 0, 0, 0};
        for (uint32_t y = y0; y <= y1; ++y)
            for (uint32_t x = x0; x <= x1; ++x) {
                const VokColor &p = image.at(x, y);
                sums[0] += p.red, sums[1] += p.green, sums[2] += p.blue;
                sums[3] += static_cast<uint32_t>(static_cast<float>(0.2 * p.red + 0.7 * p.green + 0.1 * p.blue) + 0.5);
            }
        for (int t = 0; t < 4; ++t)
            ASSERT_EQ(VokSumBoxFromIntegralImage(tables[t].data(), 13, 9, x0, y0, x1, y1), sums[t]);
    }

    // The grey level across the colour cube, every exact half included.
    TestBitmap strip(256, 1);
    std::vector<uint32_t> table(256);
    for (uint32_t g = 0; g < 256; g += 3)
        for (uint32_t b = 0; b < 256; b += 5) {
            for (uint32_t r = 0; r < 256; ++r) strip.at(r, 0) = rgba(r, g, b);
            VokBuildIntegralImageGray(strip.get(), table.data());
            for (uint32_t r = 0; r < 256; ++r)
                ASSERT_EQ(table[r] - (r > 0 ? table[r - 1] : 0),
                          static_cast<uint32_t>(static_cast<float>(0.2 * r + 0.7 * g + 0.1 * b) + 0.5));
        }

    const uint32_t wrapped[4] = {4294967290u, 4294967295u, 4294967293u, 9u};
    EXPECT_EQ(VokSumBoxFromIntegralImage(wrapped, 2, 2, 1, 1, 1, 1), 7u);  // 9 + 1 + 3 - 6
    EXPECT_EQ(VokSumBoxFromIntegralImage(wrapped, 2, 2, 1, 0, 1, 1), 12u);
    EXPECT_EQ(VokSumBoxFromIntegralImage(wrapped, 2, 2, 0, 1, 1, 1), 10u);
}

TEST(LineSmooth, GaussianOverWholeArray) {
    float values[3] = {0.0f, 3.0f, 0.0f};
    VokLineSmooth1D(values, 3, 1);
    const double near = std::exp(-0.5), far = std::exp(-2.0);
    EXPECT_NEAR(values[0], 3.0 * near / (1.0 + near + far), 1e-5);
    EXPECT_NEAR(values[1], 3.0 / (1.0 + 2.0 * near), 1e-5);
    EXPECT_EQ(values[0], values[2]);
}

TEST(BlurHistMap, UniformAndBlackImages) {
    VokHistMap lift;
    for (int c = 0; c < 3; ++c)
        for (int v = 0; v < 256; ++v) lift.table[c][v] = static_cast<uint8_t>(std::min(255, v + 20));
    // Uniform 100 mapped to 120: 1639 x 120 / 4096 + 2457 x 120 / 4096 = 48 + 71.
    TestBitmap grey(12, 9), black(10, 10);
    grey.fill(rgba(100, 100, 100, 17));
    VokBlurHistMap(grey.get(), &lift, 120.0, 0.3);
    for (uint32_t i = 0; i < 12 * 9; ++i) EXPECT_EQ(grey.at(i % 12, i / 12), rgba(119, 119, 119, 255));
    // Black stays black under a map that lifts black: with a local mean of 0
    // the shift term is divided by 2^24.
    black.fill(rgba(0, 0, 0, 0));
    VokBlurHistMap(black.get(), &lift, 500.0, 1.0);
    for (uint32_t i = 0; i < 100; ++i) EXPECT_EQ(black.at(i % 10, i / 10), rgba(0, 0, 0, 255));
}

TEST(BlurHistMap, MatchesPlainRuleOnRandomImages) {
    std::mt19937 engine(3);
    const double factors[4] = {120.0, 1000.0, 3000.0, -50.0};
    const double strengths[4] = {0.3, 0.5, 1.7, -0.4};
    for (int trial = 0; trial < 4; ++trial) {
        const int w = 9 + trial * 4, h = 7 + trial * 3;
        TestBitmap image(w, h);
        image.randomize(40 + trial);
        for (int i = 0; i < 16 && trial == 1; ++i) image.at(i % 4, i / 4) = rgba(0, 0, 0, 9);
        VokHistMap map;
        for (int c = 0; c < 3; ++c)
            for (int v = 0; v < 256; ++v) map.table[c][v] = static_cast<uint8_t>(engine());

        // The plain rule: brute-force box means of float grey levels.
        const int inner = static_cast<int>((w + h) * 0.000625 * factors[trial]);
        const int r = std::max(0, static_cast<int>(0.5f + 0.1f * static_cast<float>(inner)));
        const int k = static_cast<int>(static_cast<float>(strengths[trial]) * 4096.0f);
        auto grey = [](int red, int green, int blue) {
            return static_cast<int>(static_cast<float>(0.2 * red + 0.7 * green + 0.1 * blue) + 0.5);
        };
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
                const int channels[3] = {p.red + t, p.green + t, p.blue + t};
                for (int c = 0; c < 3; ++c) {
                    const int v = m0 != 0 ? 1639 * (channels[c] + m1 - m0) / 4096 + 2457 * (m1 * channels[c] / m0) / 4096
                                          : 1639 * (channels[c] + m1 - m0) / 16777216 + 2457 * (m1 * channels[c]) / 4096;
                    expected[4 * (y * w + x) + c] = static_cast<uint8_t>(std::clamp(v, 0, 255));
                }
                expected[4 * (y * w + x) + 3] = 255;
            }
        VokBlurHistMap(image.get(), &map, factors[trial], strengths[trial]);
        EXPECT_EQ(image.bytes(), expected) << "trial " << trial;
    }
}

TEST(LocalEnhancement, NightAndLocalContrast) {
    // Night curve 64 -> 113; 1639 x 113 / 4096 + 2457 x 113 / 4096 = 45 + 67.
    TestBitmap night(8, 6), dark(8, 6);
    night.fill(rgba(64, 64, 64, 3));
    VokNightEnhance(night.get());
    for (uint32_t i = 0; i < 48; ++i) EXPECT_EQ(night.at(i % 8, i / 8), rgba(112, 112, 112, 255));

    // A dark image lies wholly below the ramp, so it is lifted, uniformly.
    dark.fill(rgba(40, 40, 40, 3));
    VokLocalContrastEnhance(dark.get());
    EXPECT_GT(dark.at(0, 0).red, 40);
    for (uint32_t i = 0; i < 48; ++i) EXPECT_EQ(dark.at(i % 8, i / 8), dark.at(0, 0));
}
