// The seeded generator and midpoint displacement.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <vector>

#include "vok/core.h"

TEST(RNG, RecurrenceFloatsAndDeviates) {
    VokRNG r;
    VokRNGSeed(&r, 0);
    EXPECT_EQ(VokRNGNextInt(&r), 1u);
    EXPECT_EQ(VokRNGNextInt(&r), 69070u);
    EXPECT_EQ(VokRNGNextInt(&r), 475628535u);
    EXPECT_EQ(r.state >> 32, 0u);
    EXPECT_EQ(VokRNGNextSeedN(5, 0), 5u);
    EXPECT_EQ(VokRNGNextSeedN(0, 3), 475628535u);

    // A seed whose next state is 2^32 - 1 draws exactly 1.0 (69069 is odd, so invertible).
    uint32_t inverse = 69069u;
    for (int i = 0; i < 5; ++i) inverse *= 2u - 69069u * inverse;
    VokRNGSeed(&r, (0xFFFFFFFFu - 1u) * inverse);
    EXPECT_EQ(VokRNGNextFloat(&r), 1.0f);

    VokRNGSeed(&r, 99);
    double sum = 0, sum_sq = 0, abs_sum = 0;
    const int n = 20000;
    for (int i = 0; i < n; ++i) {
        float f = VokRNGNextFloat(&r), x = VokRNGNextFloatNormal(&r);
        ASSERT_TRUE(f >= 0.0f && f <= 1.0f && std::isfinite(x));
        sum += x;
        sum_sq += static_cast<double>(x) * x;
        abs_sum += std::fabs(VokRNGNextFloatLaplace(&r));
    }
    EXPECT_NEAR(sum / n, 0.0, 0.05);
    EXPECT_NEAR(sum_sq / n, 1.0, 0.05);
    EXPECT_NEAR(abs_sum / n, 1.0, 0.05);  // Laplace: E|X| = 1
}

TEST(MPD, PowerOfTwoLengthDrawsOncePerMidpoint) {
    // Replay by hand: levels half = 4, 2, 1 with amplitudes 1, 0.5, 0.25, one
    // draw of the distribution per midpoint, for every distribution and all
    // three ways of preparing the generator.
    for (uint32_t distribution : {0u, 1u, 2u}) {
        VokRNG r, mine, from_init;
        VokRNGSeed(&r, 42);
        VokRNGSeed(&mine, 42);
        srand48(77);
        VokRNGInit(&from_init);
        std::vector<float> e(9, 0.0f), v, w, x;
        e[0] = 1.0f;
        e[8] = 3.0f;
        v = w = x = e;
        std::vector<float> by_init = e;
        auto draw = [distribution](VokRNG *g) {
            return distribution == 0   ? VokRNGNextFloat(g) - 0.5f
                   : distribution == 1 ? VokRNGNextFloatNormal(g)
                                       : VokRNGNextFloatLaplace(g);
        };
        float amp = 1.0f;
        for (int step = 8; step >= 2; step /= 2, amp *= 0.5f) {
            for (int i = 0; i < 8; i += step) {
                e[i + step / 2] = (e[i] + e[i + step]) * 0.5f + draw(&r) * amp;
                by_init[i + step / 2] =
                    (by_init[i] + by_init[i + step]) * 0.5f + draw(&from_init) * amp;
            }
        }
        VokMPDSeed(v.data(), 0, 8, 1.0f, 1.0f, distribution, 42);
        VokMPDRNG(w.data(), 0, 8, 1.0f, 1.0f, distribution, &mine);
        srand48(77);
        VokMPD(x.data(), 0, 8, 1.0f, 1.0f, distribution);
        EXPECT_EQ(v, e) << distribution;
        EXPECT_EQ(w, e) << distribution;
        EXPECT_EQ(x, by_init) << distribution;
        EXPECT_EQ(mine.state, r.state);  // the caller's generator advanced by the draws
    }
}

TEST(MPD, UnknownDistributionIsAStraightLineAndStretches) {
    std::vector<float> v(6, 0.0f), ends = {4.0f, 9.0f};
    v[5] = 10.0f;
    VokMPDSeed(v.data(), 0, 5, 100.0f, 0.5f, 7, 1);  // filled on [0, 4], resampled onto [0, 5]
    for (int j = 0; j <= 5; ++j) EXPECT_NEAR(v[j], 2.0f * j, 1e-5f) << j;
    VokMPDSeed(ends.data(), 1, 1, 1.0f, 1.0f, 0, 1);  // nothing between: nothing written
    EXPECT_EQ(ends[1], 9.0f);
}
