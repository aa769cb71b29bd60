// `vok apply`: runs one effect description on one photo.
#include <cstdio>
#include <string>

#include "args.h"
#include "command.h"
#include "effect_file.h"
#include "image_io.h"
#include "log_printer.h"
#include "vok/effects.h"

namespace vok_cli {
namespace {

const char kName[] = "apply";

int run_apply(int argc, char **argv) {
    Arguments args;
    std::string error;
    if (!args.parse(argc, argv, {{"--strength", true}, {"--seed", true}, {"--mix", true}, {"--max-pixels", true}},
                    error))
        return usage_error(kName, error);
    if (args.positional().size() != 3)
        return usage_error(kName, "expected EFFECT.json INPUT OUTPUT");
    if (args.has("--strength") && args.has("--mix"))
        return usage_error(kName, "--strength and --mix cannot be combined");

    VokEffectParams params;
    uint64_t max_pixels = 0;
    if (!read_effect_params(args, params, error) || !read_max_pixels(args, max_pixels, error) ||
        !args.get_double("--mix", params.strength, error))
        return usage_error(kName, error);

    const std::string effect_path = args.positional()[0];
    const std::string input = args.positional()[1];
    const std::string output = args.positional()[2];
    ImageFormat format;
    if (!format_for_path(output, format))
        return file_error("write", output, "unknown image type (use .png, .jpg or .jpeg)");

    LogPrinter log(stderr);
    EffectFile effect;
    if (const int status = effect.load(effect_path)) return status;
    Image image;
    if (!read_image(input, image, error, max_pixels)) return file_error("read", input, error);

    const int result = args.has("--mix")
                           ? TESKRunAdjustableAlphaEffect(effect.root(), &image.bitmap, &params)
                           : TESKRunEffect(effect.root(), &image.bitmap, &params);
    if (!result) {
        fprintf(stderr, "vok: effect '%s' failed on '%s'; '%s' not written\n",
                effect_path.c_str(), input.c_str(), output.c_str());
        return kExitFailed;
    }
    if (!write_image(output, image.bitmap, error)) return file_error("write", output, error);
    return kExitOk;
}

}  // namespace

extern const Command apply_command = {
    kName,
    "apply an effect description to a photo",
    "Usage: vok apply [OPTIONS] EFFECT.json INPUT OUTPUT\n"
    "Runs the effect described in EFFECT.json on the photo INPUT (PNG or JPEG)\n"
    "and writes the result to OUTPUT, as PNG or JPEG by its extension (.png,\n"
    ".jpg, .jpeg). OUTPUT is replaced only once it is completely written.\n"
    "\n"
    "Options:\n"
    "  --strength S  effect strength, 0 (none) to 1 (full; the default)\n"
    "  --seed N      seed of the effect's random numbers (default 0)\n"
    "  --mix S       run at full strength, then mix the result over the photo\n"
    "                with opacity S (instead of --strength)\n"
    "  --max-pixels N  refuse photos of more than N pixels (default 100000000)\n"
    "  -h, --help    show this help\n"
    "\n"
    "The library's messages are shown on standard error.\n"
    "Exit status: 0 written, 1 the effect failed (nothing written),\n"
    "2 usage error or unreadable/unwritable file.\n",
    run_apply,
};

}  // namespace vok_cli
