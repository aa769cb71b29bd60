// Running out of memory: the k-th allocation of a call fails, for every k up
// to the number the call makes. Nothing crashes, nothing leaks, and a call
// that promises to leave its bitmap alone on failure does. malloc, calloc and
// realloc are replaced in this executable, hence a suite of its own
// (AddressSanitizer owns them, so that build skips it).
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "support/bitmaps.h"
#include "support/golden.h"
#include "vok/vok_lite.h"

namespace {
int fail_countdown = -1;  // the allocation that fails when it reaches 0; negative: none
bool counting = false;
long live_blocks = 0;  // blocks taken minus blocks given back while counting

bool fail_now() { return fail_countdown >= 0 && fail_countdown-- == 0; }
void taken(void *p) { live_blocks += counting && p != nullptr; }
}  // namespace

#if !defined(__SANITIZE_ADDRESS__)
extern "C" void *__libc_malloc(size_t);
extern "C" void *__libc_calloc(size_t, size_t);
extern "C" void *__libc_realloc(void *, size_t);
extern "C" void __libc_free(void *);

extern "C" void *malloc(size_t size) {
    void *p = fail_now() ? nullptr : __libc_malloc(size);
    taken(p);
    return p;
}
extern "C" void *calloc(size_t count, size_t size) {
    void *p = fail_now() ? nullptr : __libc_calloc(count, size);
    taken(p);
    return p;
}
extern "C" void *realloc(void *old, size_t size) {
    if (old == nullptr) return malloc(size);
    if (fail_now()) return nullptr;  // the old block stays
    return __libc_realloc(old, size);
}
extern "C" void free(void *p) {
    live_blocks -= counting && p != nullptr;
    __libc_free(p);
}
#endif

namespace {

using vok_test::TestBitmap;

// The window in which allocations are failed and counted: `work` wraps the
// call under test in it, and prepares and checks outside it.
int armed = -1, left_over = -1;
void open_window() {
    live_blocks = 0;
    counting = true;
    fail_countdown = armed;
}
void close_window() {
    left_over = fail_countdown;
    fail_countdown = -1;
    counting = false;
}

// Runs `work` with the k-th allocation of its window failing, k = 0, 1, ...
// until a run makes no more allocations than that. Returns how many runs had
// one fail. `work` reports whether it left its input untouched, which counts
// for the calls that promise so.
int with_each_allocation_failing(const std::function<void(bool &unchanged)> &work,
                                 bool promises_unchanged, const std::string &what) {
    int failures = 0;
    for (int k = 0;; ++k) {
        bool unchanged = true;
        armed = k;
        work(unchanged);
        const bool all_served = left_over >= 0;
        EXPECT_EQ(live_blocks, 0) << what << ": leak with allocation " << k << " failing";
        if (all_served) return failures;
        ++failures;
        EXPECT_TRUE(unchanged || !promises_unchanged) << what << ": allocation " << k;
    }
}

}  // namespace

TEST(AllocationFailure, EnginesLeaveTheirBitmapOrFinish) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "AddressSanitizer owns the allocator in this build";
#else
    const TestBitmap photo = vok_test::coffee_crop();
    VokColorStop stops[2] = {{{20, 40, 200, 255}, 0.0}, {{250, 180, 10, 255}, 100.0}};
    VokOpacityStop opacities[2] = {{1.0, 0.0}, {0.5, 100.0}};
    VokGradient gradient{stops, opacities, 2, 2};
    VokHistMap map;
    VokHistMapSetIdentity(&map);
    VokHistMapInvert(&map);
    // Single-step engines promise an untouched bitmap when they cannot allocate.
    const struct {
        const char *name;
        bool promises_unchanged;
        std::function<void(VokBitmap *)> run;
    } engines[] = {
        {"local contrast", true, VokLocalContrastEnhance},
        {"night", true, VokNightEnhance},
        {"blur map", true, [&](VokBitmap *b) { VokBlurHistMap(b, &map, 400.0, 0.5); }},
        {"box-hybrid x", true, [](VokBitmap *b) { VokBoxHybridSharpenX(b, -300.0f); }},
        {"box-hybrid y", true, [](VokBitmap *b) { VokBoxHybridSharpenY(b, 300.0f); }},
        {"gradient", true,
         [&](VokBitmap *b) {
             VokGradientShapeParams p;
             VokGradientShapeParamsInit(&p);
             p.gradientShape = 2;
             VokGradientApply(b, &p, &gradient, 0, 0.8);
         }},
        {"gradient map", true,
         [&](VokBitmap *b) { VokGradientMapApply(b, &gradient, 0, 0, 3, 0.7); }},
        {"border", true,
         [](VokBitmap *b) {
             VokBorderParams p;
             VokBorderInitParams(&p);
             VokBorders(b, &p);
         }},
        {"pixelate", true, [](VokBitmap *b) { VokBlurModesPixelateProcessor(b, 0.0f); }},
        {"voronoi", true, [](VokBitmap *b) { VokBlurModesVoronoi(b, 0.0f); }},
        {"uniform box", true,
         [](VokBitmap *b) { VokConvolutionEffectsUniformSharpenY(b, -200.0f); }},
        {"motion blur", true, [](VokBitmap *b) { VokConvolutionEffectsMotionBlur(b, 9.0f, 0.5f); }},
        {"soft focus", false, [](VokBitmap *b) { VokConvolutionEffectSoftFocus(b); }},
        {"sharpen and blend", false,
         [](VokBitmap *b) { VokConvolutionProcessorSharpenAndBlendWithOriginal(b, 40, 0.5f, 3); }},
    };
    for (const auto &engine : engines) {
        with_each_allocation_failing(
            [&](bool &unchanged) {
                TestBitmap copy(photo);
                open_window();
                engine.run(copy.get());
                close_window();
                unchanged = copy.bytes() == photo.bytes();
            },
            engine.promises_unchanged, engine.name);
    }
    for (uint32_t type = 0; type < kVokFlareTypeCount; ++type) {
        if (type == kVokFlareUnnamed8) continue;
        with_each_allocation_failing(
            [&](bool &unchanged) {
                TestBitmap copy(photo);
                open_window();
                VokFlare(copy.get(), 0.6f, {255, 220, 180, 200}, type, 0.4f, 0.5f, 1, 1,
                         kVokBlendScreen, 1.0);
                close_window();
                unchanged = copy.bytes() == photo.bytes();
            },
            true, "flare " + std::to_string(type));
    }
#endif
}

TEST(AllocationFailure, LoadingAndRunningEveryBundledLook) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "AddressSanitizer owns the allocator in this build";
#else
    const TestBitmap photo = vok_test::coffee_crop();
    VokEffectParams params;
    VokEffectInitParams(&params);
    for (const auto &[name, look] : vok_test::bundled_looks()) {
        SCOPED_TRACE(name);
        // Loading gives the effect or nothing, and never a crash inside the parser.
        const int failed = with_each_allocation_failing(
            [&](bool &) {
                open_window();
                VokJsonValue effect = TESKLoadEffect(look.c_str());
                TESKUnloadEffect(&effect);
                close_window();
            },
            false, "load");
        EXPECT_GT(failed, 0);
        VokJsonValue effect = TESKLoadEffect(look.c_str());
        ASSERT_NE(effect, nullptr);
        with_each_allocation_failing(
            [&](bool &) {
                TestBitmap copy(photo);
                open_window();
                const int result = TESKRunEffect(effect, copy.get(), &params);
                close_window();
                EXPECT_TRUE(result == 0 || result == 1);
            },
            false, "run");
        TESKUnloadEffect(&effect);
    }
#endif
}
