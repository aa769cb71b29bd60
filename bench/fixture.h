/* Shared fixture of the benchmarks: a 12-megapixel (4000 x 3000) RGBA photo
 * stand-in with smooth gradients, broad waves and seeded grain (alpha 255),
 * built once per process and identical on every run.
 *
 * Adding a case: create bench/bench_<area>.cpp (it joins vok_bench by itself),
 * then
 *
 *     static void BM_Brighten(benchmark::State &state) {
 *         vok_bench::Photo photo;                  // working copy of the image
 *         for (auto _ : state) {
 *             photo.reset_untimed(state);          // skip if drift does not matter
 *             VokSomething(&photo.bitmap, ...);
 *         }
 *         vok_bench::report_pixels(state);         // bytes/s and MP/s
 *     }
 *     BENCHMARK(BM_Brighten)->Unit(benchmark::kMillisecond);
 *
 * Compare the MP/s figure with BM_Memcpy, the bandwidth limit of one pass. */
#ifndef VOK_BENCH_FIXTURE_H
#define VOK_BENCH_FIXTURE_H

#include <benchmark/benchmark.h>
#include <cstddef>
#include <cstdint>

#include "vok/core.h"

namespace vok_bench {

constexpr uint32_t kWidth = 4000;
constexpr uint32_t kHeight = 3000;
constexpr size_t kPixels = size_t{kWidth} * kHeight;
constexpr size_t kBytes = kPixels * 4;

/* The untouched image; never write to it. */
const VokBitmap &pristine();

/* A working copy of the pristine image that an operation may change. */
class Photo {
public:
    Photo();
    ~Photo();
    Photo(const Photo &) = delete;
    Photo &operator=(const Photo &) = delete;

    /* Restores the pristine pixels (one 48 MB memcpy). */
    void reset();
    /* The same, with the benchmark's clock paused. */
    void reset_untimed(benchmark::State &state);

    VokBitmap bitmap;
};

/* Sets bytes_processed and an "MP/s" rate counter for `pixels` pixels handled
 * per iteration (one whole image by default). */
void report_pixels(benchmark::State &state, size_t pixels = kPixels);

}  // namespace vok_bench

#endif
