// Allocation failures leave the bitmap as it was. calloc fails on request here, hence a suite of
// its own (AddressSanitizer owns calloc, so that build skips it). Local contrast allocates its
// histogram, distribution, smoothing scratch and the two tables of the neighbourhood tone map.
#include <gtest/gtest.h>

#include "support/bitmaps.h"
#include "vok/tonal.h"

#if !defined(__SANITIZE_ADDRESS__)
static int calls_before_failure = -1;  // negative: never fail

extern "C" void *__libc_calloc(size_t count, size_t size);
extern "C" void *calloc(size_t count, size_t size) {
    if (calls_before_failure >= 0 && calls_before_failure-- == 0) return nullptr;
    return __libc_calloc(count, size);
}
#endif

TEST(AllocationFailure, LeavesEverythingUnchanged) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "AddressSanitizer owns calloc in this build";
#else
    vok_test::TestBitmap image(11, 8);
    image.randomize(4);
    // Fails each calloc in turn until a run goes through; the countdown ends at -1 after a failure.
    for (int allowed = 0, done = 0; !done; ++allowed) {
        vok_test::TestBitmap copy(image);
        calls_before_failure = allowed;
        VokLocalContrastEnhance(copy.get());
        done = calls_before_failure >= 0;
        calls_before_failure = -1;
        EXPECT_EQ(copy.bytes() != image.bytes(), done) << "calloc " << allowed << " failed";
    }
#endif
}
