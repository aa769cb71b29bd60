// Reading and writing photos as 8-bit RGBA bitmaps.
//
// Reading recognises PNG and JPEG by their signature, whatever the file is
// called: grey, grey + alpha, palette, low-bit and 16-bit PNGs become 8-bit
// RGBA (transparency chunks become alpha); grey, colour and CMYK JPEGs become
// opaque RGBA. Writing picks the format by the extension (.png, .jpg, .jpeg,
// any case), writes a temporary file next to the target and renames it over
// the target only when everything was written, so a failure never leaves a
// partial or clobbered output.
#ifndef VOK_CLI_IMAGE_IO_H
#define VOK_CLI_IMAGE_IO_H

#include <cstdint>
#include <string>

#include "vok/core.h"

namespace vok_cli {

// A bitmap owned by the CLI, freed when it goes out of scope.
class Image {
public:
    Image() = default;
    ~Image() { VokBitmapFree(&bitmap); }
    Image(const Image &) = delete;
    Image &operator=(const Image &) = delete;

    VokBitmap bitmap{};
};

enum class ImageFormat { png, jpeg };

// The format that the extension of `path` names; false when it names none.
bool format_for_path(const std::string &path, ImageFormat &format);

// False with a one-phrase reason in `error` ("not a PNG or JPEG file",
// "No such file or directory", "corrupt PNG: ...", "corrupt JPEG: ..."). A
// JPEG warning (a truncated or damaged file) fails the read too. An image of
// more than `max_pixels` pixels is refused from its header, before any pixel
// memory is taken.
constexpr uint64_t kDefaultMaxPixels = 100000000;
bool read_image(const std::string &path, Image &image, std::string &error,
                uint64_t max_pixels = kDefaultMaxPixels);

// JPEG drops alpha; `jpeg_quality` is 1 to 100.
bool write_image(const std::string &path, const VokBitmap &bitmap, std::string &error,
                 int jpeg_quality = 92);

}  // namespace vok_cli

#endif
