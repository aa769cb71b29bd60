// Every bundled look runs step by step on a real photo: each step succeeds,
// the photo changes, its alpha stays, and the whole run repeats exactly.
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "support/bitmaps.h"
#include "support/golden.h"
#include "support/json_doc.h"
#include "vok/effects.h"

using vok_test::TestBitmap;

TEST(Looks, EveryBundledLookRunsOnAPhoto) {
    const auto looks = vok_test::bundled_looks();
    EXPECT_GE(looks.size(), 14u);
    const TestBitmap original = vok_test::coffee_crop();
    VokEffectParams params;
    VokEffectInitParams(&params);
    params.seed = 1234;
    for (const auto &[name, text] : looks) {
        SCOPED_TRACE(name);
        const vok_test::Effect effect(text);
        ASSERT_NE(nullptr, effect.get());
        const yajl_val steps = vok_test::member(effect.get(), "processors");
        ASSERT_TRUE(YAJL_IS_ARRAY(steps));
        EXPECT_GE(steps->u.array.len, 2u);

        TestBitmap stepwise(original);
        for (size_t i = 0; i < steps->u.array.len; ++i)
            EXPECT_EQ(1, TESKRunProcessor(steps->u.array.values[i], stepwise.get(), &params)) << "step " << i;
        EXPECT_NE(original.bytes(), stepwise.bytes());
        for (uint32_t y = 0; y < 120; ++y)
            for (uint32_t x = 0; x < 160; ++x) ASSERT_EQ(original.at(x, y).alpha, stepwise.at(x, y).alpha);

        TestBitmap whole(original);
        EXPECT_EQ(1, TESKRunEffect(effect.get(), whole.get(), &params));
        EXPECT_EQ(stepwise.bytes(), whole.bytes());
    }
}

// The library keeps no shared state: one loaded effect run from four threads
// at once gives every thread the bytes of a run on its own.
TEST(Looks, OneLoadedEffectRunsOnFourThreadsAtOnce) {
#if defined(VOK_TEST_NO_THREADS)
    GTEST_SKIP() << "threads are not emulated here; the host and ThreadSanitizer runs cover this";
#endif
    const TestBitmap original = vok_test::coffee_crop();
    VokEffectParams params;
    VokEffectInitParams(&params);
    params.seed = 99;
    for (const auto &[name, text] : vok_test::bundled_looks()) {
        SCOPED_TRACE(name);
        const vok_test::Effect effect(text);
        ASSERT_NE(nullptr, effect.get());
        TestBitmap alone(original);
        ASSERT_EQ(1, TESKRunEffect(effect.get(), alone.get(), &params));
        std::vector<TestBitmap> copies(4, original);
        std::vector<int> results(4, 0);
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([&, t] {
                results[t] = TESKRunEffect(effect.get(), copies[t].get(), &params);
            });
        for (std::thread &thread : threads) thread.join();
        for (int t = 0; t < 4; ++t) {
            EXPECT_EQ(results[t], 1) << t;
            EXPECT_EQ(copies[t].bytes(), alone.bytes()) << t;
        }
    }
}
