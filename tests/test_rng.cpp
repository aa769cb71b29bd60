// The seeded generator and midpoint displacement.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "vok/core.h"

TEST(RNG, RecurrenceFromSeedZero) {
    VokRNG r;
    VokRNGSeed(&r, 0);
    EXPECT_EQ(VokRNGNextInt(&r), 1u);
    EXPECT_EQ(VokRNGNextInt(&r), 69070u);
    EXPECT_EQ(VokRNGNextInt(&r), 475628535u);
    EXPECT_EQ(r.state >> 32, 0u);
    EXPECT_EQ(r.seed, 0u);

    VokRNGSeed(&r, 123456789u);
    uint32_t a = VokRNGNextInt(&r);
    uint32_t b = VokRNGNextInt(&r);
    uint32_t c = VokRNGNextInt(&r);
    EXPECT_EQ(VokRNGNextSeedN(123456789u, 0), 123456789u);
    EXPECT_EQ(VokRNGNextSeedN(123456789u, 1), a);
    EXPECT_EQ(VokRNGNextSeedN(123456789u, 3), c);
    (void)b;
}

TEST(RNG, FloatDrawsStayInRangeAndCanReachOne) {
    VokRNG r;
    VokRNGSeed(&r, 7);
    for (int i = 0; i < 10000; ++i) {
        float f = VokRNGNextFloat(&r);
        ASSERT_GE(f, 0.0f);
        ASSERT_LE(f, 1.0f);
    }
    // Find a seed whose next state is at the very top: x with 69069 x + 1 = 2^32 - 1.
    // 69069 is odd, so it has an inverse modulo 2^32.
    uint32_t inverse = 69069u;
    for (int i = 0; i < 5; ++i) inverse *= 2u - 69069u * inverse;
    VokRNGSeed(&r, (0xFFFFFFFFu - 1u) * inverse);
    EXPECT_EQ(VokRNGNextFloat(&r), 1.0f);
}

TEST(RNG, NormalAndLaplaceAreDeterministicAndPlausible) {
    VokRNG r1, r2;
    VokRNGSeed(&r1, 99);
    VokRNGSeed(&r2, 99);
    double sum = 0, sum_sq = 0, abs_sum = 0;
    const int n = 20000;
    for (int i = 0; i < n; ++i) {
        float x = VokRNGNextFloatNormal(&r1);
        ASSERT_EQ(x, VokRNGNextFloatNormal(&r2));
        ASSERT_TRUE(std::isfinite(x));
        sum += x;
        sum_sq += static_cast<double>(x) * x;
    }
    EXPECT_NEAR(sum / n, 0.0, 0.05);
    EXPECT_NEAR(sum_sq / n, 1.0, 0.05);
    for (int i = 0; i < n; ++i) abs_sum += std::fabs(VokRNGNextFloatLaplace(&r1));
    EXPECT_NEAR(abs_sum / n, 1.0, 0.05);  // E|X| = b = 1
}

TEST(MPD, PowerOfTwoLengthDrawsOncePerMidpoint) {
    std::vector<float> v(9, 0.0f);
    v[0] = 1.0f;
    v[8] = 3.0f;
    VokMPDSeed(v.data(), 0, 8, 1.0f, 1.0f, 0, 42);
    // Replay by hand: levels half = 4, 2, 1 with amplitudes 1, 0.5, 0.25.
    VokRNG r;
    VokRNGSeed(&r, 42);
    std::vector<float> e(9, 0.0f);
    e[0] = 1.0f;
    e[8] = 3.0f;
    float amp = 1.0f;
    for (int step = 8; step >= 2; step /= 2) {
        for (int i = 0; i < 8; i += step)
            e[i + step / 2] = (e[i] + e[i + step]) * 0.5f + (VokRNGNextFloat(&r) - 0.5f) * amp;
        amp *= powf(2.0f, -1.0f);
    }
    EXPECT_EQ(v, e);
    // The caller's generator advances by the same 7 draws.
    VokRNG mine;
    VokRNGSeed(&mine, 42);
    std::vector<float> w(9, 0.0f);
    w[0] = 1.0f;
    w[8] = 3.0f;
    VokMPDRNG(w.data(), 0, 8, 1.0f, 1.0f, 0, &mine);
    EXPECT_EQ(w, e);
    EXPECT_EQ(mine.state, r.state);
}

TEST(MPD, UnknownDistributionIsAStraightLineAndStretches) {
    std::vector<float> v(6, 0.0f);
    v[0] = 0.0f;
    v[5] = 10.0f;
    VokMPDSeed(v.data(), 0, 5, 100.0f, 0.5f, 7, 1);
    // Filled on [0, 4] and resampled onto [0, 5]: a straight line from 0 to 10.
    for (int j = 0; j <= 5; ++j) EXPECT_NEAR(v[j], 2.0f * j, 1e-5f) << j;

    std::vector<float> single = {4.0f, 9.0f};
    VokMPDSeed(single.data(), 1, 1, 1.0f, 1.0f, 0, 1);  // nothing between the ends
    EXPECT_EQ(single[1], 9.0f);
}
