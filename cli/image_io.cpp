#include "image_io.h"

#include <csetjmp>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include <jpeglib.h>
#include <png.h>

#include "temp_files.h"

namespace vok_cli {
namespace {

// Both libraries report errors through longjmp. Every call into them happens
// inside a small phase function that arms setjmp first and returns false when
// an error lands there; the phase functions change no local state, so nothing
// is left indeterminate by the jump.

// ---- PNG -------------------------------------------------------------------

struct PngErrors {
    std::string message;
};

void on_png_error(png_structp png, png_const_charp message) {
    static_cast<PngErrors *>(png_get_error_ptr(png))->message = message;
    png_longjmp(png, 1);
}

void on_png_warning(png_structp, png_const_charp) {}

bool png_read_header(png_structp png, png_infop info, FILE *file) {
    if (setjmp(png_jmpbuf(png))) return false;
    png_init_io(png, file);
    png_read_info(png, info);
    png_set_expand(png);    // palette to RGB, low-bit grey to 8 bits, tRNS to alpha
    png_set_scale_16(png);  // 16 bits to 8, rounded
    png_set_gray_to_rgb(png);
    png_set_add_alpha(png, 0xff, PNG_FILLER_AFTER);
    png_set_interlace_handling(png);
    png_read_update_info(png, info);
    return true;
}

bool png_read_pixels(png_structp png, png_bytepp rows) {
    if (setjmp(png_jmpbuf(png))) return false;
    png_read_image(png, rows);
    png_read_end(png, nullptr);
    return true;
}

// Refuses a decoded size over the limit before any pixel memory is taken, so a
// small file that claims a huge image costs nothing.
bool within_limit(uint32_t width, uint32_t height, uint64_t max_pixels, std::string &error) {
    if (uint64_t{width} * height <= max_pixels) return true;
    error = "image of " + std::to_string(width) + " x " + std::to_string(height) +
            " pixels is over the limit of " + std::to_string(max_pixels) +
            " (raise it with --max-pixels)";
    return false;
}

bool read_png(FILE *file, Image &image, std::string &error, uint64_t max_pixels) {
    PngErrors errors;
    png_structp png =
        png_create_read_struct(PNG_LIBPNG_VER_STRING, &errors, on_png_error, on_png_warning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    bool ok = info != nullptr;
    if (!ok) {
        error = "out of memory";
    } else if (!png_read_header(png, info, file)) {
        error = "corrupt PNG: " + errors.message;
        ok = false;
    } else {
        const uint32_t width = png_get_image_width(png, info);
        const uint32_t height = png_get_image_height(png, info);
        if (!within_limit(width, height, max_pixels, error)) {
            ok = false;
        } else if (png_get_rowbytes(png, info) != size_t{width} * 4 ||
            !VokBitmapBuild(&image.bitmap, width, height)) {
            error = "image too large";
            ok = false;
        } else {
            std::vector<png_bytep> rows(height);
            for (uint32_t y = 0; y < height; ++y)
                rows[y] = image.bitmap.pixels + size_t{4} * width * y;
            if (!png_read_pixels(png, rows.data())) {
                error = "corrupt PNG: " + errors.message;
                ok = false;
            }
        }
    }
    png_destroy_read_struct(&png, &info, nullptr);
    return ok;
}

bool write_png(FILE *file, const VokBitmap &bitmap, std::string &error) {
    png_image image;
    memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    image.width = bitmap.width;
    image.height = bitmap.height;
    image.format = PNG_FORMAT_RGBA;
    if (!png_image_write_to_stdio(&image, file, 0, bitmap.pixels, 0, nullptr)) {
        error = image.message;
        png_image_free(&image);
        return false;
    }
    return true;
}

// ---- JPEG ------------------------------------------------------------------

struct JpegErrors {
    jpeg_error_mgr manager;
    jmp_buf jump;
    char message[JMSG_LENGTH_MAX];
};

void on_jpeg_error(j_common_ptr info) {
    auto *errors = reinterpret_cast<JpegErrors *>(info->err);
    (*info->err->format_message)(info, errors->message);
    longjmp(errors->jump, 1);
}

void on_jpeg_message(j_common_ptr) {}

// A warning (level -1: a truncated file, bad data the decoder papered over) is
// as fatal as an error: the picture it would give is not the photo.
void on_jpeg_emit(j_common_ptr info, int level) {
    if (level < 0) on_jpeg_error(info);
}

jpeg_error_mgr *install_jpeg_errors(JpegErrors &errors) {
    jpeg_std_error(&errors.manager);
    errors.manager.error_exit = on_jpeg_error;
    errors.manager.output_message = on_jpeg_message;
    errors.manager.emit_message = on_jpeg_emit;
    errors.message[0] = '\0';
    return &errors.manager;
}

JpegErrors &errors_of(j_common_ptr info) { return *reinterpret_cast<JpegErrors *>(info->err); }

bool is_cmyk(const jpeg_decompress_struct &info) {
    return info.jpeg_color_space == JCS_CMYK || info.jpeg_color_space == JCS_YCCK;
}

bool jpeg_read_start(jpeg_decompress_struct &info, FILE *file) {
    if (setjmp(errors_of(reinterpret_cast<j_common_ptr>(&info)).jump)) return false;
    jpeg_create_decompress(&info);
    jpeg_stdio_src(&info, file);
    jpeg_read_header(&info, TRUE);
    return true;
}

bool jpeg_start(jpeg_decompress_struct &info) {
    if (setjmp(errors_of(reinterpret_cast<j_common_ptr>(&info)).jump)) return false;
    info.out_color_space = is_cmyk(info) ? JCS_CMYK : JCS_EXT_RGBA;
    jpeg_start_decompress(&info);
    return true;
}

// CMYK as Adobe writes it (inverted, the common case) or plain CMYK, to RGB.
void cmyk_row_to_rgba(const uint8_t *cmyk, uint8_t *rgba, uint32_t width, bool inverted) {
    for (uint32_t x = 0; x < width; ++x, cmyk += 4, rgba += 4) {
        const unsigned k = inverted ? cmyk[3] : 255u - cmyk[3];
        for (int c = 0; c < 3; ++c) {
            const unsigned ink = inverted ? cmyk[c] : 255u - cmyk[c];
            rgba[c] = static_cast<uint8_t>((ink * k + 127u) / 255u);
        }
        rgba[3] = 255;
    }
}

// `cmyk_row` is scratch space for one row of a CMYK image, null otherwise.
bool jpeg_read_pixels(jpeg_decompress_struct &info, uint8_t *pixels, uint8_t *cmyk_row) {
    if (setjmp(errors_of(reinterpret_cast<j_common_ptr>(&info)).jump)) return false;
    const size_t stride = size_t{4} * info.output_width;
    while (info.output_scanline < info.output_height) {
        uint8_t *row = pixels + stride * info.output_scanline;
        JSAMPROW target = cmyk_row ? cmyk_row : row;
        jpeg_read_scanlines(&info, &target, 1);
        if (cmyk_row) cmyk_row_to_rgba(cmyk_row, row, info.output_width, info.saw_Adobe_marker);
    }
    jpeg_finish_decompress(&info);
    return true;
}

bool read_jpeg(FILE *file, Image &image, std::string &error, uint64_t max_pixels) {
    JpegErrors errors;
    jpeg_decompress_struct info;
    info.err = install_jpeg_errors(errors);
    bool ok = jpeg_read_start(info, file);
    if (!ok) {
        error = std::string("corrupt JPEG: ") + errors.message;
    } else if (!within_limit(info.image_width, info.image_height, max_pixels, error)) {
        ok = false;
    } else if (!jpeg_start(info)) {
        error = std::string("corrupt JPEG: ") + errors.message;
        ok = false;
    } else if (!VokBitmapBuild(&image.bitmap, info.output_width, info.output_height)) {
        error = "image too large";
        ok = false;
    } else {
        std::vector<uint8_t> cmyk_row(is_cmyk(info) ? size_t{4} * info.output_width : 0);
        if (!jpeg_read_pixels(info, image.bitmap.pixels,
                              cmyk_row.empty() ? nullptr : cmyk_row.data())) {
            error = std::string("corrupt JPEG: ") + errors.message;
            ok = false;
        }
    }
    jpeg_destroy_decompress(&info);
    return ok;
}

bool jpeg_write_all(jpeg_compress_struct &info, FILE *file, const VokBitmap &bitmap,
                    int quality) {
    if (setjmp(errors_of(reinterpret_cast<j_common_ptr>(&info)).jump)) return false;
    jpeg_create_compress(&info);
    jpeg_stdio_dest(&info, file);
    info.image_width = bitmap.width;
    info.image_height = bitmap.height;
    info.input_components = 4;
    info.in_color_space = JCS_EXT_RGBA;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, quality, TRUE);
    jpeg_start_compress(&info, TRUE);
    const size_t stride = size_t{4} * bitmap.width;
    while (info.next_scanline < info.image_height) {
        JSAMPROW row = bitmap.pixels + stride * info.next_scanline;
        jpeg_write_scanlines(&info, &row, 1);
    }
    jpeg_finish_compress(&info);
    return true;
}

bool write_jpeg(FILE *file, const VokBitmap &bitmap, int quality, std::string &error) {
    JpegErrors errors;
    jpeg_compress_struct info;
    info.err = install_jpeg_errors(errors);
    const bool ok = jpeg_write_all(info, file, bitmap, quality);
    if (!ok) error = errors.message;
    jpeg_destroy_compress(&info);
    return ok;
}

// ---- Files -------------------------------------------------------------------

bool ends_with_nocase(const std::string &text, const char *suffix) {
    const size_t length = strlen(suffix);
    return text.size() >= length &&
           strcasecmp(text.c_str() + text.size() - length, suffix) == 0;
}

// New files get the usual 0666 less the umask, not mkstemp's 0600.
void give_default_mode(int fd) {
    const mode_t mask = umask(0);
    umask(mask);
    fchmod(fd, 0666 & ~mask);
}

}  // namespace

bool format_for_path(const std::string &path, ImageFormat &format) {
    if (ends_with_nocase(path, ".png")) {
        format = ImageFormat::png;
    } else if (ends_with_nocase(path, ".jpg") || ends_with_nocase(path, ".jpeg")) {
        format = ImageFormat::jpeg;
    } else {
        return false;
    }
    return true;
}

bool read_image(const std::string &path, Image &image, std::string &error, uint64_t max_pixels) {
    VokBitmapFree(&image.bitmap);
    FILE *file = fopen(path.c_str(), "rb");
    if (file == nullptr) {
        error = strerror(errno);
        return false;
    }
    unsigned char signature[8] = {0};
    const size_t got = fread(signature, 1, sizeof signature, file);
    bool ok = false;
    if (ferror(file)) {
        error = strerror(errno);
    } else if (got == sizeof signature && png_sig_cmp(signature, 0, sizeof signature) == 0) {
        rewind(file);
        ok = read_png(file, image, error, max_pixels);
    } else if (got >= 3 && signature[0] == 0xFF && signature[1] == 0xD8 && signature[2] == 0xFF) {
        rewind(file);
        ok = read_jpeg(file, image, error, max_pixels);
    } else {
        error = "not a PNG or JPEG file";
    }
    fclose(file);
    if (!ok) VokBitmapFree(&image.bitmap);
    return ok;
}

bool write_image(const std::string &path, const VokBitmap &bitmap, std::string &error,
                 int jpeg_quality) {
    ImageFormat format;
    if (!format_for_path(path, format)) {
        error = "unknown image type (use .png, .jpg or .jpeg)";
        return false;
    }
    if (bitmap.pixels == nullptr) {
        error = "no image to write";
        return false;
    }
    const size_t slash = path.rfind('/');
    const size_t name_start = slash == std::string::npos ? 0 : slash + 1;
    std::string temporary =
        path.substr(0, name_start) + "." + path.substr(name_start) + ".XXXXXX";
    const int fd = mkstemp(&temporary[0]);
    if (fd < 0) {
        error = strerror(errno);
        return false;
    }
    const TempFileGuard guard(temporary);
    give_default_mode(fd);
    FILE *file = fdopen(fd, "wb");
    if (file == nullptr) {
        error = strerror(errno);
        close(fd);
        unlink(temporary.c_str());
        return false;
    }
    bool ok = format == ImageFormat::png ? write_png(file, bitmap, error)
                                         : write_jpeg(file, bitmap, jpeg_quality, error);
    if (fflush(file) != 0 && ok) {
        error = strerror(errno);
        ok = false;
    }
    if (fclose(file) != 0 && ok) {
        error = strerror(errno);
        ok = false;
    }
    if (ok && rename(temporary.c_str(), path.c_str()) != 0) {
        error = strerror(errno);
        ok = false;
    }
    if (!ok) unlink(temporary.c_str());
    return ok;
}

}  // namespace vok_cli
