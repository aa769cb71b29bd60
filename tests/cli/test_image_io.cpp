// Photo files in and out of the vok tool.
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <png.h>
#include <jpeglib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "support/bitmaps.h"
#include "cli_files.h"
#include "image_io.h"
#include "temp_files.h"

namespace {

using vok_cli::Image;
using vok_test::ScratchDir;
using vok_test::TestBitmap;

std::vector<uint8_t> pixels_of(const Image &image) {
    const VokBitmap &b = image.bitmap;
    return std::vector<uint8_t>(b.pixels, b.pixels + size_t{4} * b.width * b.height);
}

// Writes pixels in any layout libpng's simplified writer offers.
void write_png_as(const std::string &path, uint32_t width, uint32_t height, uint32_t format,
                  const void *pixels, const void *colormap = nullptr, uint32_t entries = 0) {
    png_image image;
    memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    image.width = width;
    image.height = height;
    image.format = format;
    image.colormap_entries = entries;
    ASSERT_TRUE(png_image_write_to_file(&image, path.c_str(), 0, pixels, 0, colormap))
        << image.message;
}

TEST(ImageIo, PngRoundTripKeepsEveryByteAndJpegStaysClose) {
    ScratchDir dir;
    TestBitmap original(13, 7);
    original.randomize(42);
    std::string error;
    ASSERT_TRUE(vok_cli::write_image(dir.path("a.PNG"), *original.get(), error)) << error;
    Image back;
    ASSERT_TRUE(vok_cli::read_image(dir.path("a.PNG"), back, error)) << error;
    EXPECT_EQ(back.bitmap.width, 13u);
    EXPECT_EQ(back.bitmap.height, 7u);
    EXPECT_EQ(pixels_of(back), original.bytes());

    // A smooth image survives JPEG nearly unchanged; alpha becomes opaque.
    TestBitmap smooth(32, 16);
    for (uint32_t y = 0; y < 16; ++y)
        for (uint32_t x = 0; x < 32; ++x)
            smooth.at(x, y) = vok_test::rgba(x * 8, 60 + y * 8, 200 - x * 4, 17);
    ASSERT_TRUE(vok_cli::write_image(dir.path("b.Jpeg"), *smooth.get(), error)) << error;
    ASSERT_TRUE(vok_cli::read_image(dir.path("b.Jpeg"), back, error)) << error;
    ASSERT_EQ(back.bitmap.width, 32u);
    int worst = 0;
    for (uint32_t i = 0; i < 32 * 16 * 4; i += 4) {
        EXPECT_EQ(back.bitmap.pixels[i + 3], 255);
        for (int c = 0; c < 3; ++c)
            worst = std::max(worst, std::abs(back.bitmap.pixels[i + c] - smooth.get()->pixels[i + c]));
    }
    EXPECT_LE(worst, 12);
}

TEST(ImageIo, PngLayoutsBecomeEightBitRgba) {
    ScratchDir dir;
    std::string error;
    Image image;

    const uint8_t grey[] = {0, 77, 255};
    write_png_as(dir.path("grey.png"), 3, 1, PNG_FORMAT_GRAY, grey);
    ASSERT_TRUE(vok_cli::read_image(dir.path("grey.png"), image, error)) << error;
    EXPECT_EQ(pixels_of(image), (std::vector<uint8_t>{0, 0, 0, 255, 77, 77, 77, 255,
                                                       255, 255, 255, 255}));

    const uint8_t grey_alpha[] = {10, 0, 200, 128};
    write_png_as(dir.path("ga.png"), 2, 1, PNG_FORMAT_GA, grey_alpha);
    ASSERT_TRUE(vok_cli::read_image(dir.path("ga.png"), image, error)) << error;
    EXPECT_EQ(pixels_of(image), (std::vector<uint8_t>{10, 10, 10, 0, 200, 200, 200, 128}));

    // Palette with a transparency chunk.
    const uint8_t palette[] = {255, 0, 0, 255, 0, 0, 255, 64};
    const uint8_t indices[] = {1, 0, 1};
    write_png_as(dir.path("pal.png"), 3, 1, PNG_FORMAT_RGBA_COLORMAP, indices, palette, 2);
    ASSERT_TRUE(vok_cli::read_image(dir.path("pal.png"), image, error)) << error;
    EXPECT_EQ(pixels_of(image), (std::vector<uint8_t>{0, 0, 255, 64, 255, 0, 0, 255,
                                                       0, 0, 255, 64}));

    // 16 bits a channel are scaled to 8 with rounding (taking the high byte
    // would give 0 and 255 for the first two).
    const uint16_t deep[] = {0x00FF, 0xFF00, 0x8080, 0xFFFF, 0xFFFF, 0x0000, 0x0101, 0xFFFF};
    write_png_as(dir.path("deep.png"), 2, 1, PNG_FORMAT_LINEAR_RGB_ALPHA, deep);
    ASSERT_TRUE(vok_cli::read_image(dir.path("deep.png"), image, error)) << error;
    EXPECT_EQ(pixels_of(image), (std::vector<uint8_t>{1, 254, 128, 255, 255, 0, 1, 255}));
}

TEST(ImageIo, FailuresExplainAndNeverClobberTheTarget) {
    ScratchDir dir;
    std::string error;
    Image image;
    EXPECT_FALSE(vok_cli::read_image(dir.path("none.png"), image, error));
    EXPECT_EQ(error, "No such file or directory");

    vok_test::write_file(dir.path("text.png"), "just some text, long enough");
    EXPECT_FALSE(vok_cli::read_image(dir.path("text.png"), image, error));
    EXPECT_EQ(error, "not a PNG or JPEG file");

    // A PNG cut short after its header.
    TestBitmap small(20, 20);
    small.randomize(7);
    ASSERT_TRUE(vok_cli::write_image(dir.path("whole.png"), *small.get(), error));
    const std::string whole = vok_test::read_file(dir.path("whole.png"));
    vok_test::write_file(dir.path("cut.png"), whole.substr(0, whole.size() / 2));
    EXPECT_FALSE(vok_cli::read_image(dir.path("cut.png"), image, error));
    EXPECT_EQ(error.rfind("corrupt PNG: ", 0), 0u) << error;
    EXPECT_EQ(image.bitmap.pixels, nullptr);
    vok_test::write_file(dir.path("cut.jpg"), std::string("\xFF\xD8\xFF\xE0", 4));
    EXPECT_FALSE(vok_cli::read_image(dir.path("cut.jpg"), image, error));
    EXPECT_EQ(error.rfind("corrupt JPEG: ", 0), 0u) << error;

    EXPECT_FALSE(vok_cli::write_image(dir.path("out.tiff"), *small.get(), error));
    EXPECT_FALSE(vok_cli::write_image(dir.path("missing/out.png"), *small.get(), error));
    EXPECT_EQ(error, "No such file or directory");

    // JPEG cannot hold 70000 columns: the encoder fails part way, and the
    // existing file and the directory are exactly as before.
    vok_test::write_file(dir.path("keep.jpg"), "precious");
    const auto before = dir.entries();
    TestBitmap wide(70000, 1);
    EXPECT_FALSE(vok_cli::write_image(dir.path("keep.jpg"), *wide.get(), error));
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(vok_test::read_file(dir.path("keep.jpg")), "precious");
    EXPECT_EQ(dir.entries(), before);
}

// A flat 8 x 8 CMYK JPEG, with or without the Adobe marker that says its inks are inverted.
void write_cmyk_jpeg(const std::string &path, const uint8_t (&cmyk)[4], bool adobe) {
    jpeg_compress_struct info;
    jpeg_error_mgr errors;
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    FILE *file = fopen(path.c_str(), "wb");
    ASSERT_NE(file, nullptr);
    jpeg_stdio_dest(&info, file);
    info.image_width = info.image_height = 8;
    info.input_components = 4;
    info.in_color_space = JCS_CMYK;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, 100, TRUE);
    info.write_Adobe_marker = adobe;
    jpeg_start_compress(&info, TRUE);
    std::vector<uint8_t> row(8 * 4);
    for (size_t i = 0; i < row.size(); ++i) row[i] = cmyk[i % 4];
    JSAMPROW pointer = row.data();
    while (info.next_scanline < 8) jpeg_write_scanlines(&info, &pointer, 1);
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    fclose(file);
}

TEST(ImageIo, CmykJpegsBecomeRgbWithTheirInkConvention) {
    ScratchDir dir;
    std::string error;
    Image image;
    const uint8_t inks[4] = {255, 128, 0, 204};
    // Adobe-inverted: the stored bytes are 255 - ink, so red = 255 x 204 / 255.
    write_cmyk_jpeg(dir.path("adobe.jpg"), inks, true);
    ASSERT_TRUE(vok_cli::read_image(dir.path("adobe.jpg"), image, error)) << error;
    const std::vector<uint8_t> adobe = pixels_of(image);
    EXPECT_NEAR(adobe[0], 204, 2);
    EXPECT_NEAR(adobe[1], 102, 2);
    EXPECT_NEAR(adobe[2], 0, 2);
    EXPECT_EQ(adobe[3], 255);
    // Plain CMYK: red = (255 - 255)(255 - 204) / 255 = 0, green 25, blue 51.
    write_cmyk_jpeg(dir.path("plain.jpg"), inks, false);
    ASSERT_TRUE(vok_cli::read_image(dir.path("plain.jpg"), image, error)) << error;
    const std::vector<uint8_t> plain = pixels_of(image);
    EXPECT_NEAR(plain[0], 0, 2);
    EXPECT_NEAR(plain[1], 25, 2);
    EXPECT_NEAR(plain[2], 51, 2);
}

TEST(ImageIo, DamagedAndOversizedJpegsAreRefusedFromWhatTheyClaim) {
    ScratchDir dir;
    std::string error;
    Image image;
    TestBitmap photo(64, 48);
    photo.randomize(11);
    ASSERT_TRUE(vok_cli::write_image(dir.path("whole.jpg"), *photo.get(), error));
    const std::string whole = vok_test::read_file(dir.path("whole.jpg"));
    // Cut inside the scan, and cut right after the headers: the decoder would
    // invent the rest with only a warning.
    const size_t scan = whole.find("\xFF\xDA");
    ASSERT_NE(scan, std::string::npos);
    const size_t scan_data = scan + 2 + (uint8_t(whole[scan + 2]) << 8 | uint8_t(whole[scan + 3]));
    for (size_t cut : {whole.size() * 2 / 3, scan_data}) {
        vok_test::write_file(dir.path("cut.jpg"), whole.substr(0, cut));
        EXPECT_FALSE(vok_cli::read_image(dir.path("cut.jpg"), image, error)) << cut;
        EXPECT_EQ(error.rfind("corrupt JPEG: ", 0), 0u) << error;
        EXPECT_EQ(image.bitmap.pixels, nullptr);
    }
    // A small file claiming 30000 x 30000 is refused from its header.
    std::string bomb = whole;
    const size_t frame = bomb.find("\xFF\xC0");
    ASSERT_NE(frame, std::string::npos);
    for (size_t at : {frame + 5, frame + 7}) bomb[at] = '\x75', bomb[at + 1] = '\x30';
    vok_test::write_file(dir.path("bomb.jpg"), bomb);
    EXPECT_FALSE(vok_cli::read_image(dir.path("bomb.jpg"), image, error));
    EXPECT_EQ(error, "image of 30000 x 30000 pixels is over the limit of 100000000 (raise it "
                     "with --max-pixels)");
    // The limit is the caller's, for PNG alike.
    ASSERT_TRUE(vok_cli::write_image(dir.path("small.png"), *photo.get(), error));
    EXPECT_FALSE(vok_cli::read_image(dir.path("small.png"), image, error, 64 * 48 - 1));
    EXPECT_TRUE(vok_cli::read_image(dir.path("small.png"), image, error, 64 * 48)) << error;
}

TEST(ImageIo, TemporaryFilesGoWhenTheProcessIsKilled) {
    ScratchDir dir;
    const std::string path = dir.path(".out.png.tmp");
    vok_test::write_file(path, "half written");
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        const vok_cli::TempFileGuard guard(path);
        raise(SIGTERM);
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
    EXPECT_FALSE(vok_test::file_exists(path));
    vok_test::write_file(path, "kept");
    { const vok_cli::TempFileGuard guard(path); }  // a guard gone leaves the file alone
    EXPECT_TRUE(vok_test::file_exists(path));
}

TEST(ImageIo, FormatFollowsTheExtensionInAnyCase) {
    vok_cli::ImageFormat format;
    ASSERT_TRUE(vok_cli::format_for_path("a/b.JPG", format));
    EXPECT_EQ(format, vok_cli::ImageFormat::jpeg);
    ASSERT_TRUE(vok_cli::format_for_path("x.jpeg", format));
    EXPECT_EQ(format, vok_cli::ImageFormat::jpeg);
    ASSERT_TRUE(vok_cli::format_for_path("x.Png", format));
    EXPECT_EQ(format, vok_cli::ImageFormat::png);
    EXPECT_FALSE(vok_cli::format_for_path("png", format));
    EXPECT_FALSE(vok_cli::format_for_path("x.png.bak", format));
}

}  // namespace
