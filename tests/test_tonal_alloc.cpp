// Allocation failures inside the tonal operations leave the bitmap as it
// was. This executable replaces calloc with a wrapper that can be told to
// fail, so it has a suite of its own.
#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "support/bitmaps.h"
#include "vok/tonal.h"

#if defined(__SANITIZE_ADDRESS__)
#define VOK_CALLOC_WRAPPER 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VOK_CALLOC_WRAPPER 0
#endif
#endif
#ifndef VOK_CALLOC_WRAPPER
#define VOK_CALLOC_WRAPPER 1
#endif

namespace {

// Calls left before calloc fails once; negative means never.
int calls_before_failure = -1;
int failures = 0;

}  // namespace

#if VOK_CALLOC_WRAPPER
extern "C" void *__libc_calloc(size_t count, size_t size);

extern "C" void *calloc(size_t count, size_t size) {
    if (calls_before_failure == 0) {
        calls_before_failure = -1;
        ++failures;
        return nullptr;
    }
    if (calls_before_failure > 0) --calls_before_failure;
    return __libc_calloc(count, size);
}
#endif

namespace {

// Runs `operation` failing the first, second, ... calloc in turn until a run
// goes through without a failure; every failed run must leave `image` alone.
template <typename Operation>
void expect_unchanged_on_failure(const vok_test::TestBitmap &image, Operation operation) {
    for (int allowed = 0;; ++allowed) {
        vok_test::TestBitmap copy(image);
        failures = 0;
        calls_before_failure = allowed;
        operation(copy.get());
        calls_before_failure = -1;
        if (failures == 0) {
            EXPECT_GT(allowed, 0) << "the operation allocated nothing";
            EXPECT_NE(copy.bytes(), image.bytes()) << "the successful run changed nothing";
            return;
        }
        EXPECT_EQ(copy.bytes(), image.bytes()) << "calloc failed after " << allowed << " calls";
    }
}

}  // namespace

TEST(AllocationFailure, LeavesEverythingUnchanged) {
    if (!VOK_CALLOC_WRAPPER) GTEST_SKIP() << "AddressSanitizer owns calloc in this build";
    vok_test::TestBitmap image(11, 8);
    image.randomize(4);
    for (uint32_t x = 0; x < 11; ++x) image.at(x, 0).alpha = 0;  // blurring sets alpha 255

    VokHistMap map;
    VokBitmapExposureCurveHistogramMapping(60.0f, &map);
    expect_unchanged_on_failure(image, [&map](VokBitmap *b) { VokBlurHistMap(b, &map, 120.0, 0.3); });
    expect_unchanged_on_failure(image, VokLocalContrastEnhance);
    expect_unchanged_on_failure(image, VokNightEnhance);

    std::vector<float> values = {1.0f, 5.0f, 2.0f, 8.0f};
    failures = 0;
    calls_before_failure = 0;
    VokLineSmooth1D(values.data(), 4, 2);
    calls_before_failure = -1;
    EXPECT_EQ(failures, 1);
    EXPECT_EQ(values, (std::vector<float>{1.0f, 5.0f, 2.0f, 8.0f}));
}
