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

VokHistMap constant_shift_map(int shift) {
    VokHistMap map;
    for (int c = 0; c < 3; ++c)
        for (int v = 0; v < 256; ++v) map.table[c][v] = static_cast<uint8_t>(std::min(255, v + shift));
    return map;
}

void expect_all_tables(const VokHistMap &map, int level, int value) {
    for (int c = 0; c < 3; ++c) EXPECT_EQ(map.table[c][level], value) << "channel " << c;
}

}  // namespace

TEST(ExposureCurve, NeutralAndExtremes) {
    VokHistMap map;
    VokBitmapExposureCurveHistogramMapping(0.0f, &map);
    for (int v = 0; v < 256; ++v) expect_all_tables(map, v, v);

    VokBitmapExposureCurveHistogramMapping(100.0f, &map);
    VokHistMap clamped;
    VokBitmapExposureCurveHistogramMapping(101.0f, &clamped);
    EXPECT_EQ(std::memcmp(&map, &clamped, sizeof map), 0);
    expect_all_tables(map, 0, 0);
    expect_all_tables(map, 1, 3);
    expect_all_tables(map, 128, 210);
    expect_all_tables(map, 255, 255);
    for (int v = 1; v < 255; ++v) EXPECT_GT(map.table[1][v], v);

    // Only -100 truncates to n = -1, which scales the whole curve by 0.75.
    VokBitmapExposureCurveHistogramMapping(-100.0f, &map);
    expect_all_tables(map, 128, 55);
    expect_all_tables(map, 255, 191);
    VokBitmapExposureCurveHistogramMapping(-50.0f, &map);
    expect_all_tables(map, 64, 55);
    expect_all_tables(map, 255, 255);
}

TEST(ContrastCurve, MapAndDesaturationMatrix) {
    VokHistMap map;
    double matrix[9];
    VokBitmapContrastCurveHistogramMapping(0.0f, &map, matrix);
    for (int v = 0; v < 256; ++v) expect_all_tables(map, v, v);
    const double identity[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1};
    for (int i = 0; i < 9; ++i) EXPECT_EQ(matrix[i], identity[i]);

    VokBitmapContrastCurveHistogramMapping(100.0f, &map, matrix);
    expect_all_tables(map, 55, 28);
    expect_all_tables(map, 110, 110);
    expect_all_tables(map, 200, 234);
    // Column by column: input red's weights first.
    const double full[9] = {0.7639, 0.0639, 0.0639, 0.2145, 0.9145, 0.2145, 0.0216, 0.0216, 0.7216};
    for (int i = 0; i < 9; ++i) EXPECT_NEAR(matrix[i], full[i], 1e-12) << i;

    VokBitmapContrastCurveHistogramMapping(-100.0f, &map, matrix);
    expect_all_tables(map, 55, 69);
    expect_all_tables(map, 110, 110);
    expect_all_tables(map, 200, 178);
    expect_all_tables(map, 0, 0);
    expect_all_tables(map, 255, 255);
    for (int i = 0; i < 9; ++i) EXPECT_NEAR(matrix[i], full[i], 1e-12) << i;

    VokBitmapContrastCurveHistogramMapping(-50.0f, &map, matrix);
    expect_all_tables(map, 55, 62);
    expect_all_tables(map, 200, 189);
    EXPECT_NEAR(matrix[0], 1.0 - 0.787 * 0.3 * 0.3801035373094189, 1e-12);
}

TEST(IntegralImage, BoxSumsMatchBruteForce) {
    std::mt19937 engine(7);
    for (uint32_t trial = 0; trial < 6; ++trial) {
        const uint32_t w = 1 + engine() % 17, h = 1 + engine() % 13;
        TestBitmap image(w, h);
        image.randomize(trial);
        std::vector<uint32_t> red(w * h), green(w * h), blue(w * h), grey(w * h);
        VokBuildIntegralImage(image.get(), red.data(), green.data(), blue.data());
        VokBuildIntegralImageGray(image.get(), grey.data());
        for (int box = 0; box < 40; ++box) {
            uint32_t x0 = engine() % w, x1 = engine() % w, y0 = engine() % h, y1 = engine() % h;
            if (x0 > x1) std::swap(x0, x1);
            if (y0 > y1) std::swap(y0, y1);
            uint32_t sums[4] = {0, 0, 0, 0};
            for (uint32_t y = y0; y <= y1; ++y)
                for (uint32_t x = x0; x <= x1; ++x) {
                    const VokColor &p = image.at(x, y);
                    sums[0] += p.red;
                    sums[1] += p.green;
                    sums[2] += p.blue;
                    sums[3] += static_cast<uint32_t>(
                        static_cast<float>(0.2 * p.red + 0.7 * p.green + 0.1 * p.blue) + 0.5);
                }
            const std::vector<uint32_t> *tables[4] = {&red, &green, &blue, &grey};
            for (int t = 0; t < 4; ++t)
                EXPECT_EQ(VokSumBoxFromIntegralImage(tables[t]->data(), w, h, x0, y0, x1, y1),
                          sums[t]);
        }
        EXPECT_EQ(VokSumBoxFromIntegralImage(grey.data(), w, h, 0, 0, w - 1, h - 1),
                  grey.back());
    }
}

TEST(IntegralImage, GreyLevelAndWrapping) {
    // The grey level rounds single(0.2 R + 0.7 G + 0.1 B); check it across
    // the colour cube, including every exact half.
    TestBitmap strip(256, 1);
    std::vector<uint32_t> table(256);
    for (uint32_t g = 0; g < 256; g += 3)
        for (uint32_t b = 0; b < 256; b += 5) {
            for (uint32_t r = 0; r < 256; ++r) strip.at(r, 0) = rgba(r, g, b);
            VokBuildIntegralImageGray(strip.get(), table.data());
            uint32_t previous = 0;
            for (uint32_t r = 0; r < 256; ++r) {
                const uint32_t expected =
                    static_cast<uint32_t>(static_cast<float>(0.2 * r + 0.7 * g + 0.1 * b) + 0.5);
                ASSERT_EQ(table[r] - previous, expected) << r << " " << g << " " << b;
                previous = table[r];
            }
        }

    // Entries past 2^32 wrap; box sums still come out right.
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

    // No cut-off: the far end of a long array still feels a spike.
    std::vector<float> line(64, 0.0f);
    line[0] = 1000.0f;
    VokLineSmooth1D(line.data(), 64, 40);
    EXPECT_GT(line[63], 0.0f);
    EXPECT_GT(line[0], line[63]);
}

TEST(BlurHistMap, UniformAndBlackImages) {
    // Uniform grey: the mean moves to the mapped level up to truncations
    // (1639 * 120 / 4096 + 2457 * 120 / 4096 = 48 + 71).
    TestBitmap grey(12, 9);
    grey.fill(rgba(100, 100, 100, 17));
    VokHistMap shift = constant_shift_map(20);
    VokBlurHistMap(grey.get(), &shift, 120.0, 0.3);
    for (uint32_t y = 0; y < 9; ++y)
        for (uint32_t x = 0; x < 12; ++x) {
            EXPECT_EQ(grey.at(x, y).red, 119);
            EXPECT_EQ(grey.at(x, y).blue, 119);
            EXPECT_EQ(grey.at(x, y).alpha, 255);
        }

    // A black neighbourhood keeps black even under a map that lifts black:
    // the shift term is divided by 2^24 when the local mean is 0.
    TestBitmap black(10, 10);
    black.fill(rgba(0, 0, 0, 0));
    shift = constant_shift_map(50);
    VokBlurHistMap(black.get(), &shift, 500.0, 1.0);
    for (uint32_t y = 0; y < 10; ++y)
        for (uint32_t x = 0; x < 10; ++x) EXPECT_EQ(black.at(x, y), rgba(0, 0, 0, 255));
}

namespace {

// The plain rule: brute-force box means, float grey levels, a mapped copy.
std::vector<uint8_t> blur_histmap_reference(const TestBitmap &image, const VokHistMap &map,
                                            double factor, double strength) {
    const int w = image.get()->width, h = image.get()->height;
    const int inner = static_cast<int>((w + h) * 0.000625 * factor);
    const int r = std::max(0, static_cast<int>(0.5f + 0.1f * static_cast<float>(inner)));
    const int k = static_cast<int>(static_cast<float>(strength) * 4096.0f);
    auto grey = [](int red, int green, int blue) {
        return static_cast<int>(static_cast<float>(0.2 * red + 0.7 * green + 0.1 * blue) + 0.5);
    };
    std::vector<uint8_t> out = image.bytes();
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            int sum0 = 0, sum1 = 0, n = 0;
            for (int yy = std::max(y - r, 0); yy <= std::min(y + r, h - 1); ++yy)
                for (int xx = std::max(x - r, 0); xx <= std::min(x + r, w - 1); ++xx, ++n) {
                    const VokColor &p = image.at(xx, yy);
                    sum0 += grey(p.red, p.green, p.blue);
                    sum1 += grey(map.table[0][p.red], map.table[1][p.green], map.table[2][p.blue]);
                }
            const int m0 = sum0 / n, m1 = sum1 / n, d = m1 - m0;
            const VokColor &p = image.at(x, y);
            const int yp = (28672 * p.green + 8192 * p.red + 4096 * p.blue + 2048) / 40960;
            const int t = k * (yp - m0) / 4096;
            const int channels[3] = {p.red, p.green, p.blue};
            for (int c = 0; c < 3; ++c) {
                const int cc = channels[c] + t;
                const int v = m0 != 0 ? 1639 * (cc + d) / 4096 + 2457 * (m1 * cc / m0) / 4096
                                      : 1639 * (cc + d) / 16777216 + 2457 * (m1 * cc) / 4096;
                out[4 * (y * w + x) + c] = static_cast<uint8_t>(std::clamp(v, 0, 255));
            }
            out[4 * (y * w + x) + 3] = 255;
        }
    return out;
}

}  // namespace

TEST(BlurHistMap, MatchesPlainRuleOnRandomImages) {
    std::mt19937 engine(3);
    const double factors[4] = {120.0, 1000.0, 3000.0, -50.0};
    const double strengths[4] = {0.3, 0.5, 1.7, -0.4};
    for (int trial = 0; trial < 4; ++trial) {
        TestBitmap image(9 + trial * 4, 7 + trial * 3);
        image.randomize(40 + trial);
        if (trial == 1)  // dark patches reach the m0 = 0 branch
            for (uint32_t y = 0; y < 4; ++y)
                for (uint32_t x = 0; x < 4; ++x) image.at(x, y) = rgba(0, 0, 0, 9);
        VokHistMap map;
        for (int c = 0; c < 3; ++c)
            for (int v = 0; v < 256; ++v) map.table[c][v] = static_cast<uint8_t>(engine());
        const std::vector<uint8_t> expected =
            blur_histmap_reference(image, map, factors[trial], strengths[trial]);
        VokBlurHistMap(image.get(), &map, factors[trial], strengths[trial]);
        EXPECT_EQ(image.bytes(), expected) << "trial " << trial;
    }
}

TEST(LocalEnhancement, NightAndLocalContrastOnUniformImages) {
    // Night curve: 64 -> 113; 1639 * 113 / 4096 + 2457 * 113 / 4096 = 45 + 67.
    TestBitmap night(8, 6);
    night.fill(rgba(64, 64, 64, 3));
    VokNightEnhance(night.get());
    for (uint32_t y = 0; y < 6; ++y)
        for (uint32_t x = 0; x < 8; ++x) EXPECT_EQ(night.at(x, y), rgba(112, 112, 112, 255));

    // A dark image lies entirely below the ramp, so its levels are lifted;
    // a uniform input stays uniform.
    TestBitmap dark(8, 6);
    dark.fill(rgba(40, 40, 40, 3));
    VokLocalContrastEnhance(dark.get());
    const VokColor first = dark.at(0, 0);
    EXPECT_GT(first.red, 40);
    EXPECT_EQ(first.alpha, 255);
    for (uint32_t y = 0; y < 6; ++y)
        for (uint32_t x = 0; x < 8; ++x) EXPECT_EQ(dark.at(x, y), first);

    // Only the green histogram drives the gains: a black green channel
    // puts everything below the ramp at every level.
    TestBitmap reds(8, 6), greens(8, 6);
    reds.fill(rgba(40, 200, 40));
    greens.fill(rgba(40, 0, 40));
    VokLocalContrastEnhanceProcessor(reds.get());
    VokLocalContrastEnhanceProcessor(greens.get());
    EXPECT_NE(reds.at(3, 3), greens.at(3, 3));
}
