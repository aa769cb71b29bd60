// Allocation failures leave the bitmap as it was. This executable replaces
// calloc with a wrapper that fails on request, so it is a suite of its own;
// under AddressSanitizer, which owns calloc, it is skipped.
#include <gtest/gtest.h>

#include <vector>

#include "support/bitmaps.h"
#include "vok/tonal.h"

#if defined(__SANITIZE_ADDRESS__)
#define VOK_CALLOC_WRAPPER 0
#else
#define VOK_CALLOC_WRAPPER 1
namespace {
int calls_before_failure = -1;  // negative: never fail
int failures = 0;
}  // namespace

extern "C" void *__libc_calloc(size_t count, size_t size);
extern "C" void *calloc(size_t count, size_t size) {
    if (calls_before_failure >= 0 && calls_before_failure-- == 0) {
        ++failures;
        return nullptr;
    }
    return __libc_calloc(count, size);
}

// Fails the first, second, ... calloc of `operation` in turn until a run
// goes through; every failed run must leave the image alone.
template <typename Operation>
void expect_unchanged_on_failure(const vok_test::TestBitmap &image, Operation operation) {
    for (int allowed = 0;; ++allowed) {
        vok_test::TestBitmap copy(image);
        failures = 0;
        calls_before_failure = allowed;
        operation(copy.get());
        calls_before_failure = -1;
        if (failures == 0) {
            EXPECT_NE(copy.bytes(), image.bytes());
            return;
        }
        EXPECT_EQ(copy.bytes(), image.bytes()) << "calloc failed after " << allowed << " calls";
    }
}
#endif

TEST(AllocationFailure, LeavesEverythingUnchanged) {
#if VOK_CALLOC_WRAPPER
    vok_test::TestBitmap image(11, 8);
    image.randomize(4);
    VokHistMap map;
    VokBitmapExposureCurveHistogramMapping(60.0f, &map);
    expect_unchanged_on_failure(image, [&map](VokBitmap *b) { VokBlurHistMap(b, &map, 120.0, 0.3); });
    expect_unchanged_on_failure(image, VokLocalContrastEnhance);
    expect_unchanged_on_failure(image, VokNightEnhance);

    std::vector<float> values = {1.0f, 5.0f, 2.0f};
    calls_before_failure = 0;
    VokLineSmooth1D(values.data(), 3, 2);
    EXPECT_EQ(values, (std::vector<float>{1.0f, 5.0f, 2.0f}));
#else
    GTEST_SKIP() << "AddressSanitizer owns calloc in this build";
#endif
}
