// `vok gallery`: renders every bundled look on one photo into a contact sheet
// (gallery.png) and a web page (index.html) with the full-size results.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "args.h"
#include "bitmap_font.h"
#include "command.h"
#include "effect_file.h"
#include "image_io.h"
#include "log_printer.h"
#include "vok/color.h"
#include "vok/effects.h"

namespace vok_cli {
namespace {

namespace fs = std::filesystem;

const char kName[] = "gallery";

// Contact-sheet layout, in pixels.
constexpr uint32_t kThumbMaxWidth = 300;
constexpr uint32_t kThumbMaxHeight = 240;
constexpr uint32_t kColumns = 4;
constexpr uint32_t kMargin = 20;
constexpr uint32_t kHeader = 64;
constexpr uint32_t kCaption = 30;
constexpr int kTitleScale = 3;
constexpr int kCaptionScale = 2;
const VokColor kBackground = {24, 25, 28, 255};
const VokColor kEmptyTile = {44, 45, 50, 255};
const VokColor kTitleColor = {240, 236, 228, 255};
const VokColor kCaptionColor = {200, 198, 192, 255};
const VokColor kFailedColor = {240, 90, 80, 255};

struct Look {
    std::string name;
    std::string path;
    bool ok = false;
};

// Shrinks by the smallest whole factor that fits the thumbnail box, each
// thumbnail pixel the plain average of a factor x factor block.
bool box_downscale(const VokBitmap &photo, Image &thumb) {
    const uint32_t fx = (photo.width + kThumbMaxWidth - 1) / kThumbMaxWidth;
    const uint32_t fy = (photo.height + kThumbMaxHeight - 1) / kThumbMaxHeight;
    const uint32_t f = std::max<uint32_t>(1, std::max(fx, fy));
    const uint32_t w = std::max<uint32_t>(1, photo.width / f);
    const uint32_t h = std::max<uint32_t>(1, photo.height / f);
    if (!VokBitmapBuild(&thumb.bitmap, w, h)) return false;
    const uint32_t area = f * f;
    for (uint32_t y = 0; y < h; ++y) {
        for (uint32_t x = 0; x < w; ++x) {
            uint32_t sum[4] = {};
            for (uint32_t j = 0; j < f; ++j) {
                const uint8_t *p = photo.pixels + ((size_t{y} * f + j) * photo.width + x * f) * 4;
                for (uint32_t i = 0; i < f; ++i, p += 4)
                    for (int c = 0; c < 4; ++c) sum[c] += p[c];
            }
            uint8_t *out = thumb.bitmap.pixels + (size_t{y} * w + x) * 4;
            for (int c = 0; c < 4; ++c) out[c] = static_cast<uint8_t>((sum[c] + area / 2) / area);
        }
    }
    return true;
}

void fill_rect(VokBitmap &bitmap, uint32_t left, uint32_t top, uint32_t width, uint32_t height,
               VokColor color) {
    for (uint32_t y = top; y < top + height; ++y) {
        VokColor *row = reinterpret_cast<VokColor *>(bitmap.pixels) + size_t{y} * bitmap.width;
        std::fill(row + left, row + left + width, color);
    }
}

void paste(VokBitmap &sheet, const VokBitmap &tile, uint32_t left, uint32_t top) {
    for (uint32_t y = 0; y < tile.height; ++y)
        memcpy(sheet.pixels + ((size_t{top} + y) * sheet.width + left) * 4,
               tile.pixels + size_t{y} * tile.width * 4, size_t{tile.width} * 4);
}

// The caption centred under a tile, shortened with ".." when too long.
void caption(VokBitmap &sheet, const std::string &text, uint32_t left, uint32_t top,
             uint32_t width, VokColor color) {
    std::string shown = text;
    while (shown.size() > 3 && text_width(shown.c_str(), kCaptionScale) > static_cast<int>(width))
        shown = shown.substr(0, shown.size() - 3) + "..";
    const int x = static_cast<int>(left) +
                  (static_cast<int>(width) - text_width(shown.c_str(), kCaptionScale)) / 2;
    draw_text(sheet, x, static_cast<int>(top) + (kCaption - kGlyphHeight * kCaptionScale) / 2,
              shown.c_str(), color, kCaptionScale);
}

std::vector<Look> find_looks(const std::string &dir, std::string &error) {
    std::vector<Look> looks;
    std::error_code ec;
    for (fs::directory_iterator it(dir, ec), end; !ec && it != end; it.increment(ec))
        if (it->path().extension() == ".json")
            looks.push_back({it->path().stem().string(), it->path().string()});
    if (ec) error = ec.message();
    std::sort(looks.begin(), looks.end(),
              [](const Look &a, const Look &b) { return a.name < b.name; });
    return looks;
}

std::string html_escape(const std::string &text) {
    std::string out;
    for (char c : text) {
        switch (c) {
            case '&': out += "&amp;"; break;
            case '<': out += "&lt;"; break;
            case '>': out += "&gt;"; break;
            case '"': out += "&quot;"; break;
            default: out += c;
        }
    }
    return out;
}

bool write_index(const std::string &path, const std::string &photo, const std::vector<Look> &looks) {
    FILE *out = fopen(path.c_str(), "w");
    if (out == nullptr) return false;
    fprintf(out,
            "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
            "<title>vok-lite looks</title>\n<style>\n"
            "body { background: #18191c; color: #ece8e0; font-family: sans-serif; margin: 2em; }\n"
            "h1 { font-weight: normal; }\n"
            ".sheet { max-width: 100%%; }\n"
            ".grid { display: grid; grid-template-columns: repeat(auto-fill, minmax(320px, 1fr));"
            " gap: 1.5em; }\n"
            "figure { margin: 0; }\nfigure img { width: 100%%; display: block; }\n"
            "figcaption { padding: 0.4em 0; color: #c8c6c0; }\n.failed { color: #f05a50; }\n"
            "</style>\n</head>\n<body>\n<h1>vok-lite looks</h1>\n"
            "<p>Every bundled look applied to <code>%s</code>.</p>\n"
            "<p><a href=\"gallery.png\"><img class=\"sheet\" src=\"gallery.png\" "
            "alt=\"contact sheet\"></a></p>\n<div class=\"grid\">\n"
            "<figure><a href=\"original.jpg\"><img src=\"original.jpg\" alt=\"original\"></a>"
            "<figcaption>original</figcaption></figure>\n",
            html_escape(photo).c_str());
    for (const Look &look : looks) {
        const std::string name = html_escape(look.name);
        if (look.ok) {
            fprintf(out,
                    "<figure><a href=\"%s.jpg\"><img src=\"%s.jpg\" alt=\"%s\"></a>"
                    "<figcaption>%s</figcaption></figure>\n",
                    name.c_str(), name.c_str(), name.c_str(), name.c_str());
        } else {
            fprintf(out, "<figure><figcaption class=\"failed\">%s: failed</figcaption></figure>\n",
                    name.c_str());
        }
    }
    fputs("</div>\n</body>\n</html>\n", out);
    return fclose(out) == 0;
}

// Runs one look on a copy of `source` into `out`; false when loading or the run failed.
bool render(const Look &look, const VokBitmap &source, Image &out) {
    EffectFile effect;
    if (effect.load(look.path) != kExitOk) return false;
    if (!VokBitmapBuild(&out.bitmap, source.width, source.height) ||
        !VokBitmapCopy(&out.bitmap, &source))
        return false;
    VokEffectParams params;
    VokEffectInitParams(&params);
    return TESKRunEffect(effect.root(), &out.bitmap, &params) != 0;
}

int run_gallery(int argc, char **argv) {
    Arguments args;
    std::string error;
    if (!args.parse(argc, argv, {{"--input", true}, {"--out", true}, {"--effects", true}}, error))
        return usage_error(kName, error);
    if (!args.positional().empty()) return usage_error(kName, "unexpected argument");
    const std::string input = args.has("--input") ? args.value("--input")
                                                  : "examples/images/coffee.png";
    const std::string out_dir = args.has("--out") ? args.value("--out") : "out";
    const std::string effects_dir = args.has("--effects") ? args.value("--effects")
                                                          : "examples/effects";

    std::vector<Look> looks = find_looks(effects_dir, error);
    if (!error.empty()) return file_error("read", effects_dir, error);
    if (looks.empty()) return file_error("read", effects_dir, "no effect descriptions (*.json)");
    Image photo;
    if (!read_image(input, photo, error)) return file_error("read", input, error);
    std::error_code ec;
    fs::create_directories(out_dir, ec);
    if (ec) return file_error("create", out_dir, ec.message());

    Image thumb;
    if (!box_downscale(photo.bitmap, thumb)) return file_error("read", input, "image too large");
    const uint32_t tw = thumb.bitmap.width, th = thumb.bitmap.height;
    const uint32_t tiles = static_cast<uint32_t>(looks.size()) + 1;
    const uint32_t columns = std::min(kColumns, tiles);
    const uint32_t rows = (tiles + columns - 1) / columns;
    Image sheet;
    if (!VokBitmapBuild(&sheet.bitmap, kMargin + columns * (tw + kMargin),
                        kHeader + rows * (th + kCaption + kMargin)))
        return file_error("write", out_dir + "/gallery.png", "contact sheet too large");
    fill_rect(sheet.bitmap, 0, 0, sheet.bitmap.width, sheet.bitmap.height, kBackground);
    draw_text(sheet.bitmap, static_cast<int>(kMargin), (kHeader - kGlyphHeight * kTitleScale) / 2,
              "vok-lite looks", kTitleColor, kTitleScale);

    LogPrinter log(stderr, "  ");
    int status = kExitOk;
    for (uint32_t i = 0; i < tiles; ++i) {
        const uint32_t left = kMargin + (i % columns) * (tw + kMargin);
        const uint32_t top = kHeader + (i / columns) * (th + kCaption + kMargin);
        if (i == 0) {
            paste(sheet.bitmap, thumb.bitmap, left, top);
            caption(sheet.bitmap, "original", left, top + th, tw, kCaptionColor);
            if (!write_image(out_dir + "/original.jpg", photo.bitmap, error))
                return file_error("write", out_dir + "/original.jpg", error);
            continue;
        }
        Look &look = looks[i - 1];
        Image small, full;
        look.ok = render(look, thumb.bitmap, small) && render(look, photo.bitmap, full);
        if (!look.ok) {
            fprintf(stderr, "vok gallery: look '%s' failed\n", look.name.c_str());
            status = kExitFailed;
            fill_rect(sheet.bitmap, left, top, tw, th, kEmptyTile);
            caption(sheet.bitmap, look.name + " failed", left, top + th, tw, kFailedColor);
            continue;
        }
        paste(sheet.bitmap, small.bitmap, left, top);
        caption(sheet.bitmap, look.name, left, top + th, tw, kCaptionColor);
        const std::string path = out_dir + "/" + look.name + ".jpg";
        if (!write_image(path, full.bitmap, error)) return file_error("write", path, error);
    }
    const std::string sheet_path = out_dir + "/gallery.png";
    if (!write_image(sheet_path, sheet.bitmap, error)) return file_error("write", sheet_path, error);
    const std::string index_path = out_dir + "/index.html";
    if (!write_index(index_path, input, looks))
        return file_error("write", index_path, strerror(errno));
    printf("%s: %zu looks on %s\n%s\n", sheet_path.c_str(), looks.size(), input.c_str(),
           index_path.c_str());
    return status;
}

}  // namespace

extern const Command gallery_command = {
    kName,
    "render every bundled look on a photo into a contact sheet",
    "Usage: vok gallery [OPTIONS]\n"
    "Applies every effect description of the effects folder to a photo and\n"
    "writes DIR/gallery.png (a contact sheet of thumbnails with the look names),\n"
    "DIR/index.html, and each look at full size as DIR/NAME.jpg.\n"
    "\n"
    "Options:\n"
    "  --input PHOTO  photo to use, PNG or JPEG (default examples/images/coffee.png)\n"
    "  --out DIR      output folder, created when missing (default out)\n"
    "  --effects DIR  folder of effect descriptions (default examples/effects)\n"
    "  -h, --help     show this help\n"
    "\n"
    "Exit status: 0 success, 1 some look failed (the others are still drawn),\n"
    "2 usage or file errors.\n",
    run_gallery,
};

}  // namespace vok_cli
