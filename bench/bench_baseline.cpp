/* The bandwidth limit: copying the whole 12-megapixel image once. A
 * single-pass operation cannot beat this figure. */
#include <cstring>

#include "fixture.h"

static void BM_Memcpy(benchmark::State &state) {
    vok_bench::Photo photo;
    const uint8_t *source = vok_bench::pristine().pixels;
    for (auto _ : state) {
        memcpy(photo.bitmap.pixels, source, vok_bench::kBytes);
        benchmark::ClobberMemory();
    }
    vok_bench::report_pixels(state);
}
BENCHMARK(BM_Memcpy)->Unit(benchmark::kMillisecond);
