// The box-hybrid filter: a Gaussian along one axis approximated by 2n + 1
// equal boxes with normal weights, each box read in constant time from
// running sums, then either kept (blur) or used as an unsharp mask (sharpen).
//
// All sums and weights are 32-bit two's complement in uint32_t: products may
// wrap, the weighted total is small and comes out exact.
#include "vok/generators.h"

#include <math.h>
#include <stddef.h>
#include <stdlib.h>
#include <string.h>

#include "core/numeric.h"

namespace {

// On x86-64 the filtering loops are also built for AVX2, whose 8-lane
// 32-bit multiply the baseline instruction set lacks; the loader picks the
// version the processor supports. The arithmetic is the same integer
// arithmetic, so both give identical bytes. Not under the thread sanitizer,
// whose runtime is not up yet when the loader runs the clone resolvers.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_THREAD__)
#define VOK_VECTOR_CLONES __attribute__((target_clones("avx2", "default")))
#else
#define VOK_VECTOR_CLONES
#endif

#if defined(__GNUC__)
#define VOK_ALWAYS_INLINE __attribute__((always_inline))
#else
#define VOK_ALWAYS_INLINE
#endif

// Output positions filtered together; the running sums of one channel for
// these positions are contiguous, so the multiply-adds run as vectors.
constexpr size_t kLanes = 32;

// Box counts beyond this (only infinite or absurd amounts reach it) are
// treated like a failed allocation: the pass leaves the bitmap alone.
constexpr int64_t kMaxBoxCount = int64_t(1) << 40;

struct BoxPlan {
    bool sharpen;
    int64_t n;      // boxes on each side of the centre one
    int64_t k;      // box half width
    int64_t width;  // box width B = 2k + 1
    size_t taps;    // 2n + 2 weights on running sums
    uint32_t *weights;
};

// Box count and widths for a line pass over a W x H bitmap; false when the
// amount is 0 (nothing to do) or the weights cannot be allocated.
bool plan_boxes(const VokBitmap *bitmap, float amount, BoxPlan *plan) {
    // The constant is a double: the product is formed in double and stored
    // once as the single-precision spread (W + H = 4000 at 100 gives exactly 10).
    float s = static_cast<float>(
        static_cast<float>(bitmap->width + bitmap->height) * 2.5e-5 * amount);
    plan->sharpen = s >= 0.0f;
    s = fabsf(s);
    if (s == 0.0f) return false;

    const int64_t steps = vok::trunc_to<int64_t>(floorf(1.5f * s));
    if (steps >= kMaxBoxCount) return false;
    int64_t n = steps + 1;
    int64_t k = 0;
    int64_t width = 1;
    if (n >= 5) {
        k = static_cast<int64_t>(floor((0.25 * static_cast<double>(n) - 1.0) / 2.0)) + 1;
        width = 2 * k + 1;
        n = n / width + 1;
    }
    plan->n = n;
    plan->k = k;
    plan->width = width;
    plan->taps = static_cast<size_t>(2 * n + 2);

    const size_t boxes = static_cast<size_t>(2 * n + 1);
    float *mass = static_cast<float *>(malloc(boxes * sizeof(float)));
    plan->weights = static_cast<uint32_t *>(malloc(plan->taps * sizeof(uint32_t)));
    if (mass == nullptr || plan->weights == nullptr) {
        free(mass);
        free(plan->weights);
        return false;
    }

    // Normal mass of each unit interval around the box centres, in box units.
    const float sigma = s / static_cast<float>(width);
    float sum = 0.0f;
    for (size_t i = 0; i < boxes; ++i) {
        float centre = static_cast<float>(static_cast<int64_t>(i) - n);
        mass[i] = VokMathNormalCDF(centre + 0.5f, sigma) - VokMathNormalCDF(centre - 0.5f, sigma);
        sum += mass[i];
    }
    const float total = static_cast<float>(width) * sum;
    const float scale = 4096.0f / total;

    // Box weights become weights on the running sums at the box edges:
    // box i spans I(a + (i+1)B) - I(a + iB).
    uint32_t previous = 0;
    for (size_t i = 0; i < boxes; ++i) {
        uint32_t w = static_cast<uint32_t>(vok::trunc_to<int32_t>(mass[i] * scale));
        plan->weights[i] = previous - w;
        previous = w;
    }
    plan->weights[boxes] = previous;
    free(mass);
    return true;
}

// Running sums reach this far before the first and past the last position.
inline size_t pad_before(const BoxPlan &plan) {
    return static_cast<size_t>(plan.k + plan.n * plan.width + 1);
}
inline size_t pad_after(const BoxPlan &plan) {
    return static_cast<size_t>(plan.k + plan.n * plan.width);
}

// Running sums outside a line repeat its end pixels: I(q) = I(0) (q + 1)
// before it (so I(-1) = 0) and I(L-1) + (I(L-1) - I(L-2)) (q - L + 1) after.
// The line's entries start at `line`, with room for the padding around it.
void extend_sums(uint32_t *line, size_t length, size_t before, size_t after) {
    const uint32_t first = line[0];
    for (size_t d = 1; d <= before; ++d) {
        *(line - d) = first * static_cast<uint32_t>(1 - d);
    }
    const uint32_t last = line[length - 1];
    const uint32_t below = length >= 2 ? line[length - 2] : 0u;
    const uint32_t rise = last - below;
    for (size_t d = 1; d <= after; ++d) line[length - 1 + d] = last + rise * static_cast<uint32_t>(d);
}

// acc[l] = 2048 + sum over taps of weight[j] * base[j * stride + l].
VOK_ALWAYS_INLINE inline void weigh_lanes(const uint32_t *base, size_t stride,
                                          const uint32_t *weights, size_t taps, uint32_t *acc) {
    for (size_t l = 0; l < kLanes; ++l) acc[l] = 2048u;
    for (size_t j = 0; j < taps; ++j) {
        const uint32_t w = weights[j];
        const uint32_t *row = base + j * stride;
        for (size_t l = 0; l < kLanes; ++l) acc[l] += w * row[l];
    }
}

// Blurred value b = total / 4096 (truncating); the sharpened value moves the
// pixel half its distance away from b, (3 o - b + 1) / 2, again truncating.
template <bool Sharpen>
VOK_ALWAYS_INLINE inline uint8_t finish(uint32_t total, uint8_t original) {
    int32_t b = static_cast<int32_t>(total) / 4096;
    int32_t r = Sharpen ? (3 * static_cast<int32_t>(original) - b + 1) / 2 : b;
    return static_cast<uint8_t>(vok::clamp_int(r, 0, 255));
}

// Writes the filtered red, green and blue of `count` consecutive pixels. The arithmetic runs over whole lane arrays so that it
// vectorises; only the byte gathering and scattering is per pixel.
template <bool Sharpen>
VOK_ALWAYS_INLINE inline void store_lanes(uint8_t *pixel, size_t count,
                                          const uint32_t acc[3][kLanes]) {
    uint8_t bytes[3][kLanes] = {};
    for (size_t l = 0; l < count; ++l) {
        for (int c = 0; c < 3; ++c) bytes[c][l] = pixel[4 * l + c];
    }
    for (int c = 0; c < 3; ++c) {
        for (size_t l = 0; l < kLanes; ++l) bytes[c][l] = finish<Sharpen>(acc[c][l], bytes[c][l]);
    }
    for (size_t l = 0; l < count; ++l) {
        for (int c = 0; c < 3; ++c) pixel[4 * l + c] = bytes[c][l];
    }
}

// Horizontal pass: one row at a time, its running sums kept per channel in
// a padded line so that every tap is a plain read.
template <bool Sharpen>
VOK_VECTOR_CLONES void filter_rows(VokBitmap *bitmap, const BoxPlan &plan, uint32_t *scratch,
                                   size_t channel_stride) {
    const size_t width = bitmap->width;
    const size_t before = pad_before(plan);
    const size_t after = pad_after(plan);
    const size_t tap_stride = static_cast<size_t>(plan.width);
    uint32_t acc[3][kLanes];
    for (uint32_t y = 0; y < bitmap->height; ++y) {
        uint8_t *row = bitmap->pixels + static_cast<size_t>(y) * width * 4;
        uint32_t *line[3];
        for (int c = 0; c < 3; ++c) line[c] = scratch + c * channel_stride + before;
        uint32_t sum[3] = {0, 0, 0};
        for (size_t x = 0; x < width; ++x) {
            for (int c = 0; c < 3; ++c) {
                sum[c] += row[4 * x + c];
                line[c][x] = sum[c];
            }
        }
        for (int c = 0; c < 3; ++c) extend_sums(line[c], width, before, after);
        // Tap 0 of position x sits at padded index x, i.e. x - before in line.
        for (size_t x = 0; x < width; x += kLanes) {
            for (int c = 0; c < 3; ++c) {
                weigh_lanes(line[c] - before + x, tap_stride, plan.weights, plan.taps, acc[c]);
            }
            size_t count = width - x < kLanes ? width - x : kLanes;
            store_lanes<Sharpen>(row + 4 * x, count, acc);
        }
    }
}

// Columns of one vertical strip: wide enough that each visit to a row of
// the image reads whole cache lines and pages, narrow enough that the
// strip's window of running sums stays in cache.
constexpr size_t kStripWidth = 8 * kLanes;

// One row of a strip's running sums: the row above plus the pixels.
inline void add_pixels(const uint8_t *pixel, const uint32_t *above, uint32_t *row, size_t count) {
    for (int c = 0; c < 3; ++c) {
        for (size_t l = 0; l < count; ++l) {
            row[c * kStripWidth + l] = above[c * kStripWidth + l] + pixel[4 * l + c];
        }
    }
}

// Entries of the vertical pass's scratch: a ring of twice the tap window
// and the first row of the strip.
inline size_t column_scratch_rows(const BoxPlan &plan) {
    return 2 * (pad_before(plan) + pad_after(plan) + 1) + 1;
}

// Vertical pass: strips of kStripWidth columns swept top to bottom once.
// The running sums of the rows a tap window spans live in a ring in which
// every row is stored twice, at slot p and p + window, so that any window
// of consecutive rows is contiguous and the taps are plain strided reads.
template <bool Sharpen>
VOK_VECTOR_CLONES void filter_columns(VokBitmap *bitmap, const BoxPlan &plan, uint32_t *scratch) {
    const size_t width = bitmap->width;
    const size_t height = bitmap->height;
    const size_t before = pad_before(plan);
    const size_t window = before + pad_after(plan) + 1;
    const size_t row_stride = 3 * kStripWidth;
    const size_t tap_stride = static_cast<size_t>(plan.width) * row_stride;
    uint32_t *ring = scratch;
    uint32_t *first = scratch + 2 * window * row_stride;
    uint32_t acc[3][kLanes];
    for (size_t x0 = 0; x0 < width; x0 += kStripWidth) {
        const size_t count = width - x0 < kStripWidth ? width - x0 : kStripWidth;
        const uint8_t *strip = bitmap->pixels + x0 * 4;
        auto slot = [&](size_t p) { return ring + (p % window) * row_stride; };
        memset(first, 0, row_stride * sizeof(uint32_t));
        add_pixels(strip, first, first, count);

        // Padded row p holds the sums down to image row p - before,
        // extended past both ends so that the end pixels repeat.
        auto build = [&](size_t p) {
            uint32_t *row = slot(p);
            const int64_t q = static_cast<int64_t>(p) - static_cast<int64_t>(before);
            const int64_t h = static_cast<int64_t>(height);
            if (q < 0) {
                const uint32_t times = static_cast<uint32_t>(q + 1);
                for (size_t e = 0; e < row_stride; ++e) row[e] = first[e] * times;
            } else if (q == 0) {
                memcpy(row, first, row_stride * sizeof(uint32_t));
            } else if (q < h) {
                const uint8_t *pixel = strip + static_cast<size_t>(q) * width * 4;
                if (count == kStripWidth) {
                    add_pixels(pixel, slot(p - 1), row, kStripWidth);
                } else {
                    add_pixels(pixel, slot(p - 1), row, count);
                }
            } else {
                const uint32_t *last = slot(before + height - 1);
                const uint32_t *below = slot(before + height - 2);
                const uint32_t times = static_cast<uint32_t>(q - h + 1);
                for (size_t e = 0; e < row_stride; ++e) row[e] = last[e] + (last[e] - below[e]) * times;
            }
            memcpy(row + window * row_stride, row, row_stride * sizeof(uint32_t));
        };

        for (size_t p = 0; p + 1 < window; ++p) build(p);
        for (size_t y = 0; y < height; ++y) {
            build(y + window - 1);
            const uint32_t *base = slot(y);
            for (size_t b = 0; b < count; b += kLanes) {
                for (int c = 0; c < 3; ++c) {
                    weigh_lanes(base + c * kStripWidth + b, tap_stride, plan.weights, plan.taps, acc[c]);
                }
                const size_t lanes = count - b < kLanes ? count - b : kLanes;
                store_lanes<Sharpen>(bitmap->pixels + (y * width + x0 + b) * 4, lanes, acc);
            }
        }
    }
}

// Scratch of `entries` uint32 values, or null when the size cannot exist.
uint32_t *allocate_sums(size_t entries, size_t factor) {
    if (entries > SIZE_MAX / sizeof(uint32_t) / factor) return nullptr;
    return static_cast<uint32_t *>(calloc(entries * factor, sizeof(uint32_t)));
}

// The padded lines above hold every running sum a tap can reach. When the
// boxes reach far past the line (huge amounts on small images), the padding
// would dwarf the image; such passes read the unpadded sums of
// VokBuildIntegralLineX/Y and extend them tap by tap instead.
inline bool padding_fits(const BoxPlan &plan, size_t length) {
    return 2 * (plan.k + plan.n * plan.width) + 1 <= 4 * static_cast<int64_t>(length) + 4096;
}

// Running sums of red, green and blue along `length` pixels `step` bytes apart.
void build_integral_line(const uint8_t *pixel, size_t length, size_t step, uint32_t *line) {
    uint32_t r = 0, g = 0, b = 0;
    for (size_t i = 0; i < length; ++i, pixel += step, line += 3) {
        r += pixel[0];
        g += pixel[1];
        b += pixel[2];
        line[0] = r;
        line[1] = g;
        line[2] = b;
    }
}

// Running sum of channel c at index q of an interleaved line of `length`.
inline uint32_t sum_at(const uint32_t *line, int64_t length, int c, int64_t q) {
    if (q < 0) return line[c] * static_cast<uint32_t>(q + 1);
    if (q < length) return line[3 * q + c];
    const uint32_t last = line[3 * (length - 1) + c];
    const uint32_t below = length >= 2 ? line[3 * (length - 2) + c] : 0u;
    return last + (last - below) * static_cast<uint32_t>(q - length + 1);
}

using IntegralLineBuilder = void (*)(const VokBitmap *, uint32_t, uint32_t *);

template <bool Sharpen>
void filter_far_reaching(VokBitmap *bitmap, const BoxPlan &plan, uint32_t *line,
                         IntegralLineBuilder build, uint32_t lines, size_t length,
                         size_t line_step, size_t pixel_step) {
    const int64_t before = plan.k + plan.n * plan.width + 1;
    for (uint32_t i = 0; i < lines; ++i) {
        build(bitmap, i, line);
        uint8_t *pixel = bitmap->pixels + i * line_step;
        for (size_t x = 0; x < length; ++x, pixel += pixel_step) {
            const int64_t a = static_cast<int64_t>(x) - before;
            for (int c = 0; c < 3; ++c) {
                uint32_t total = 2048u;
                for (size_t j = 0; j < plan.taps; ++j) {
                    int64_t q = a + static_cast<int64_t>(j) * plan.width;
                    total += plan.weights[j] * sum_at(line, static_cast<int64_t>(length), c, q);
                }
                pixel[c] = finish<Sharpen>(total, pixel[c]);
            }
        }
    }
}

// Both passes through one door: `along_rows` picks the horizontal pass.
void box_hybrid_pass(VokBitmap *bitmap, float amount, bool along_rows) {
    if (bitmap->width == 0 || bitmap->height == 0) return;
    BoxPlan plan;
    if (!plan_boxes(bitmap, amount, &plan)) return;
    const size_t width = bitmap->width;
    const size_t height = bitmap->height;
    const size_t length = along_rows ? width : height;
    uint32_t *scratch = nullptr;
    if (padding_fits(plan, length)) {
        const size_t padded = pad_before(plan) + length + pad_after(plan);
        if (along_rows) {
            const size_t channel_stride = padded + kLanes;
            scratch = allocate_sums(channel_stride, 3);
            if (scratch != nullptr && plan.sharpen) filter_rows<true>(bitmap, plan, scratch, channel_stride);
            if (scratch != nullptr && !plan.sharpen) filter_rows<false>(bitmap, plan, scratch, channel_stride);
        } else {
            scratch = allocate_sums(column_scratch_rows(plan), 3 * kStripWidth);
            if (scratch != nullptr && plan.sharpen) filter_columns<true>(bitmap, plan, scratch);
            if (scratch != nullptr && !plan.sharpen) filter_columns<false>(bitmap, plan, scratch);
        }
    } else {
        scratch = allocate_sums(length, 3);
        IntegralLineBuilder build = along_rows ? VokBuildIntegralLineX : VokBuildIntegralLineY;
        const uint32_t lines = along_rows ? bitmap->height : bitmap->width;
        const size_t line_step = along_rows ? width * 4 : 4;
        const size_t pixel_step = along_rows ? 4 : width * 4;
        if (scratch != nullptr && plan.sharpen) {
            filter_far_reaching<true>(bitmap, plan, scratch, build, lines, length, line_step, pixel_step);
        }
        if (scratch != nullptr && !plan.sharpen) {
            filter_far_reaching<false>(bitmap, plan, scratch, build, lines, length, line_step, pixel_step);
        }
    }
    free(scratch);
    free(plan.weights);
}

}  // namespace

extern "C" {

void VokBuildIntegralLineX(const VokBitmap *bitmap, uint32_t row, uint32_t *line) {
    build_integral_line(bitmap->pixels + static_cast<size_t>(row) * bitmap->width * 4,
                        bitmap->width, 4, line);
}

void VokBuildIntegralLineY(const VokBitmap *bitmap, uint32_t column, uint32_t *line) {
    build_integral_line(bitmap->pixels + static_cast<size_t>(column) * 4, bitmap->height,
                        static_cast<size_t>(bitmap->width) * 4, line);
}

void VokBoxHybridSharpenX(VokBitmap *bitmap, float amount) {
    box_hybrid_pass(bitmap, amount, true);
}

void VokBoxHybridSharpenY(VokBitmap *bitmap, float amount) {
    box_hybrid_pass(bitmap, amount, false);
}

void VokConvolutionEffectBoxHybridSharpen(VokBitmap *bitmap, float amount) {
    VokBoxHybridSharpenX(bitmap, amount);
    VokBoxHybridSharpenY(bitmap, amount);
}

}  // extern "C"
