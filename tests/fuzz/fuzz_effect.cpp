// libFuzzer target for the description road: any text goes to the loader,
// and whatever loads runs on tiny bitmaps (1 x 1, 1 x N, N x 1, a few pixels,
// and the empty ones), whole and step by step. Beyond the sanitizers it
// checks what every run promises: a result of 0 or 1, the same bytes on a
// second run, and a step that is refused leaves its bitmap as it was.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <yajl/yajl_tree.h>

#include "vok/effects.h"

namespace {

struct Size {
    uint32_t width, height;
};
const Size kSizes[] = {{1, 1}, {1, 7}, {7, 1}, {5, 4}, {0, 3}, {3, 0}};

std::vector<uint8_t> pixels_for(Size size, uint8_t salt) {
    std::vector<uint8_t> pixels(size_t{size.width} * size.height * 4 + 4);
    for (size_t i = 0; i < pixels.size(); ++i) pixels[i] = static_cast<uint8_t>(i * 37 + salt);
    return pixels;
}

void check(bool condition) {
    if (!condition) abort();
}

// One whole run on fresh pixels: its result and the pixels afterwards.
int run_whole(VokJsonValue effect, Size size, bool adjustable, const VokEffectParams &params,
              std::vector<uint8_t> &pixels) {
    pixels = pixels_for(size, 11);
    VokBitmap bitmap = {pixels.data(), size.width, size.height};
    return adjustable ? TESKRunAdjustableAlphaEffect(effect, &bitmap, &params)
                      : TESKRunEffect(effect, &bitmap, &params);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const std::string text(reinterpret_cast<const char *>(data), size);
    VokJsonValue effect = TESKLoadEffect(text.c_str());
    if (effect == nullptr) return 0;
    VokEffectParams params;
    VokEffectInitParams(&params);
    params.seed = static_cast<int32_t>(size);
    params.strength = (size % 5) * 0.25;
    for (const Size bitmap_size : kSizes) {
        for (const bool adjustable : {false, true}) {
            std::vector<uint8_t> first, second;
            const int a = run_whole(effect, bitmap_size, adjustable, params, first);
            const int b = run_whole(effect, bitmap_size, adjustable, params, second);
            check(a == 0 || a == 1);
            check(a == b && first == second);
        }
        // Step by step: a refused step changes nothing.
        const yajl_val_s *root = effect;
        for (size_t k = 0; k < root->u.object.len; ++k) {
            if (strcmp(root->u.object.keys[k], "processors") != 0) continue;
            const yajl_val steps = root->u.object.values[k];
            std::vector<uint8_t> pixels = pixels_for(bitmap_size, 5);
            VokBitmap bitmap = {pixels.data(), bitmap_size.width, bitmap_size.height};
            for (size_t i = 0; i < steps->u.array.len; ++i) {
                const std::vector<uint8_t> before = pixels;
                const int result = TESKRunProcessor(steps->u.array.values[i], &bitmap, &params);
                check(result == 0 || result == 1);
                if (result == 0) check(pixels == before);
            }
        }
    }
    TESKUnloadEffect(&effect);
    return 0;
}
