// `vok validate`: checks effect descriptions by loading them and running every
// step on a small generated image. Each step is run and judged on its own: a
// whole run reports only its last step's result, which would hide a failing
// step in the middle.
#include <cstdio>
#include <string>

#include <yajl/yajl_tree.h>

#include "args.h"
#include "command.h"
#include "effect_file.h"
#include "image_io.h"
#include "log_printer.h"
#include "vok/effects.h"

namespace vok_cli {
namespace {

const char kName[] = "validate";
constexpr uint32_t kTestWidth = 64;
constexpr uint32_t kTestHeight = 48;

// Hue sweep across, light to dark down, a mid-grey band at the bottom, alpha
// falling from opaque to half along the rows: enough for every step to have
// something to change.
bool build_test_image(Image &image) {
    if (!VokBitmapBuild(&image.bitmap, kTestWidth, kTestHeight)) return false;
    uint8_t *p = image.bitmap.pixels;
    for (uint32_t y = 0; y < kTestHeight; ++y) {
        for (uint32_t x = 0; x < kTestWidth; ++x, p += 4) {
            const uint32_t shade = 255 - y * 4;
            const bool band = y >= kTestHeight - 4;
            p[0] = band ? 128 : static_cast<uint8_t>((x * 4) * shade / 255);
            p[1] = band ? 128 : static_cast<uint8_t>(((x * 8) % 256) * shade / 255);
            p[2] = band ? 128 : static_cast<uint8_t>((255 - x * 4) * shade / 255);
            p[3] = static_cast<uint8_t>(255 - x * 2);
        }
    }
    return true;
}

std::string step_label(yajl_val processor) {
    static const char *name_path[] = {"name", nullptr};
    const yajl_val name = yajl_tree_get(processor, name_path, yajl_t_string);
    return name ? std::string("\"") + YAJL_GET_STRING(name) + "\"" : "(unnamed)";
}

// 0 when every step succeeded, otherwise kExitFailed or kExitUsage.
int validate_file(const std::string &path, const VokEffectParams &params) {
    printf("%s\n", path.c_str());
    fflush(stdout);
    LogPrinter log(stdout, "    ");
    EffectFile effect;
    int status = effect.load(path);
    Image image;
    if (status == kExitOk && !build_test_image(image)) {
        fprintf(stderr, "vok: out of memory\n");
        status = kExitUsage;
    }
    if (status == kExitOk) {
        static const char *processors_path[] = {"processors", nullptr};
        const yajl_val processors = yajl_tree_get(effect.root(), processors_path, yajl_t_array);
        const size_t count = processors->u.array.len;
        if (count == 0) printf("  no steps\n");
        for (size_t i = 0; i < count; ++i) {
            const yajl_val processor = processors->u.array.values[i];
            const int result = TESKRunProcessor(processor, &image.bitmap, &params);
            printf("  step %zu %s: %s\n", i + 1, step_label(processor).c_str(),
                   result ? "ok" : "FAILED");
            if (!result) status = kExitFailed;
        }
    }
    printf("%s: %s\n", path.c_str(), status == kExitOk ? "OK" : "FAILED");
    fflush(stdout);
    return status;
}

int run_validate(int argc, char **argv) {
    Arguments args;
    std::string error;
    if (!args.parse(argc, argv, {{"--strength", true}, {"--seed", true}}, error))
        return usage_error(kName, error);
    if (args.positional().empty()) return usage_error(kName, "expected EFFECT.json...");
    VokEffectParams params;
    if (!read_effect_params(args, params, error)) return usage_error(kName, error);

    int worst = kExitOk;
    for (const char *path : args.positional()) {
        const int status = validate_file(path, params);
        if (status > worst) worst = status;
    }
    return worst;
}

}  // namespace

extern const Command validate_command = {
    kName,
    "check effect descriptions step by step",
    "Usage: vok validate [OPTIONS] EFFECT.json...\n"
    "Loads each effect description and runs its steps one by one on a small\n"
    "generated image, printing the library's messages, ok or FAILED for each\n"
    "step, and OK or FAILED for each file.\n"
    "\n"
    "Options:\n"
    "  --strength S  effect strength used for the runs (default 1)\n"
    "  --seed N      seed of the effects' random numbers (default 0)\n"
    "  -h, --help    show this help\n"
    "\n"
    "Exit status: 0 every file is valid, 1 a description was refused or a step\n"
    "failed, 2 usage error or unreadable file.\n",
    run_validate,
};

}  // namespace vok_cli
