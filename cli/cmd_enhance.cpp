// `vok enhance`: the one-tap automatic correction, colour and tone in LAB
// then varying contrast, on one photo.
#include <cstdio>
#include <string>

#include "args.h"
#include "command.h"
#include "image_io.h"
#include "vok/tonal.h"

namespace vok_cli {
namespace {

const char kName[] = "enhance";

int run_enhance(int argc, char **argv) {
    Arguments args;
    std::string error;
    if (!args.parse(argc, argv, {{"--strength", true}, {"--max-pixels", true}}, error))
        return usage_error(kName, error);
    if (args.positional().size() != 2) return usage_error(kName, "expected INPUT OUTPUT");
    double strength = 1.0;
    uint64_t max_pixels = 0;
    if (!args.get_double("--strength", strength, error) ||
        !read_max_pixels(args, max_pixels, error))
        return usage_error(kName, error);

    const std::string input = args.positional()[0];
    const std::string output = args.positional()[1];
    ImageFormat format;
    if (!format_for_path(output, format))
        return file_error("write", output, "unknown image type (use .png, .jpg or .jpeg)");
    Image image;
    if (!read_image(input, image, error, max_pixels)) return file_error("read", input, error);
    VokLabCorrect(&image.bitmap, static_cast<float>(strength));
    VokVaryingContrast(&image.bitmap, static_cast<float>(strength));
    if (!write_image(output, image.bitmap, error)) return file_error("write", output, error);
    return kExitOk;
}

}  // namespace

extern const Command enhance_command = {
    kName,
    "correct colour, tone and contrast of a photo automatically",
    "Usage: vok enhance [OPTIONS] INPUT OUTPUT\n"
    "Measures the photo INPUT (PNG or JPEG) and corrects it: a colour cast\n"
    "taken out and the tones spread in LAB, then exposure and contrast chosen\n"
    "from its brightness. Writes OUTPUT as PNG or JPEG by its extension; OUTPUT\n"
    "is replaced only once it is completely written.\n"
    "\n"
    "Options:\n"
    "  --strength S    how much of the correction, 0 (none) to 1 (full; the default)\n"
    "  --max-pixels N  refuse photos of more than N pixels (default 100000000)\n"
    "  -h, --help      show this help\n"
    "\n"
    "Exit status: 0 written, 2 usage error or unreadable/unwritable file.\n",
    run_enhance,
};

}  // namespace vok_cli
