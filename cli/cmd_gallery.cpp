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
#include "command.h"
#include "contact_sheet.h"
#include "effect_file.h"
#include "image_io.h"
#include "log_printer.h"
#include "vok/color.h"
#include "vok/effects.h"

namespace vok_cli {

// The engine sheets beside the looks, one line each in gallery_sheets.def.
#define VOK_GALLERY_SHEET(name) extern const GallerySheet name##_sheet;
#include "gallery_sheets.def"
#undef VOK_GALLERY_SHEET

namespace {

namespace fs = std::filesystem;

const char kName[] = "gallery";

struct Look {
    std::string name;
    std::string path;
    bool ok = false;
};

// Null-terminated, so the list may be empty.
const GallerySheet *const kSheets[] = {
#define VOK_GALLERY_SHEET(name) &name##_sheet,
#include "gallery_sheets.def"
#undef VOK_GALLERY_SHEET
    nullptr,
};

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
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                out += c;
        }
    }
    return out;
}

bool write_index(const std::string &path, const std::string &photo,
                 const std::vector<Look> &looks) {
    std::string sheet_links;
    for (const GallerySheet *const *sheet = kSheets; *sheet != nullptr; ++sheet)
        sheet_links += std::string(" &middot; <a href=\"") + (*sheet)->file + "\">" +
                       html_escape((*sheet)->title) + "</a>";
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
            "<p>Sheets: <a href=\"gallery.png\">looks</a>%s</p>\n"
            "<p><a href=\"gallery.png\"><img class=\"sheet\" src=\"gallery.png\" "
            "alt=\"contact sheet\"></a></p>\n<div class=\"grid\">\n"
            "<figure><a href=\"original.jpg\"><img src=\"original.jpg\" alt=\"original\"></a>"
            "<figcaption>original</figcaption></figure>\n",
            html_escape(photo).c_str(), sheet_links.c_str());
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

// Runs one look on `bitmap` in place; false when loading or the run failed.
bool run_look(const Look &look, VokBitmap &bitmap) {
    EffectFile effect;
    if (effect.load(look.path) != kExitOk) return false;
    VokEffectParams params;
    VokEffectInitParams(&params);
    return TESKRunEffect(effect.root(), &bitmap, &params) != 0;
}

int run_gallery(int argc, char **argv) {
    Arguments args;
    std::string error;
    if (!args.parse(argc, argv, {{"--input", true}, {"--out", true}, {"--effects", true}}, error))
        return usage_error(kName, error);
    if (!args.positional().empty()) return usage_error(kName, "unexpected argument");
    const std::string input =
        args.has("--input") ? args.value("--input") : "examples/images/coffee.png";
    const std::string out_dir = args.has("--out") ? args.value("--out") : "out";
    const std::string effects_dir =
        args.has("--effects") ? args.value("--effects") : "examples/effects";

    std::vector<Look> looks = find_looks(effects_dir, error);
    if (!error.empty()) return file_error("read", effects_dir, error);
    if (looks.empty()) return file_error("read", effects_dir, "no effect descriptions (*.json)");
    Image photo;
    if (!read_image(input, photo, error)) return file_error("read", input, error);
    std::error_code ec;
    fs::create_directories(out_dir, ec);
    if (ec) return file_error("create", out_dir, ec.message());

    Image thumb;
    if (!box_downscale(photo.bitmap, kThumbMaxWidth, kThumbMaxHeight, thumb))
        return file_error("read", input, "image too large");
    if (!write_image(out_dir + "/original.jpg", photo.bitmap, error))
        return file_error("write", out_dir + "/original.jpg", error);

    LogPrinter log(stderr, "  ");
    int status = kExitOk;
    std::vector<SheetTile> tiles;
    for (const Look &look : looks)
        tiles.push_back({look.name, [&look](VokBitmap &bitmap) { return run_look(look, bitmap); }});
    std::vector<bool> ok;
    const std::string sheet_path = out_dir + "/gallery.png";
    if (!write_contact_sheet(sheet_path, "vok-lite looks", thumb.bitmap, tiles, ok, error))
        return file_error("write", sheet_path, error);
    for (size_t i = 0; i < looks.size(); ++i) {
        Look &look = looks[i];
        Image full;
        look.ok = ok[i] && VokBitmapBuild(&full.bitmap, photo.bitmap.width, photo.bitmap.height) &&
                  VokBitmapCopy(&full.bitmap, &photo.bitmap) && run_look(look, full.bitmap);
        if (!look.ok) {
            fprintf(stderr, "vok gallery: look '%s' failed\n", look.name.c_str());
            status = kExitFailed;
            continue;
        }
        const std::string path = out_dir + "/" + look.name + ".jpg";
        if (!write_image(path, full.bitmap, error)) return file_error("write", path, error);
    }
    for (const GallerySheet *const *entry = kSheets; *entry != nullptr; ++entry) {
        const GallerySheet &sheet = **entry;
        const std::string path = out_dir + "/" + sheet.file;
        const fs::path own =
            fs::path(effects_dir).parent_path() / "images" / (sheet.photo ? sheet.photo : "");
        const std::string source =
            sheet.photo != nullptr && fs::exists(own, ec) ? own.string() : input;
        Image sheet_photo, sheet_thumb;
        if (!read_image(source, sheet_photo, error)) return file_error("read", source, error);
        if (!box_downscale(sheet_photo.bitmap, kThumbMaxWidth, kThumbMaxHeight, sheet_thumb))
            return file_error("read", source, "image too large");
        const std::vector<SheetTile> sheet_tiles = sheet.tiles();
        if (!write_contact_sheet(path, sheet.title, sheet_thumb.bitmap, sheet_tiles, ok, error))
            return file_error("write", path, error);
        for (size_t i = 0; i < sheet_tiles.size(); ++i) {
            if (ok[i]) continue;
            fprintf(stderr, "vok gallery: %s: '%s' failed\n", sheet.file,
                    sheet_tiles[i].caption.c_str());
            status = kExitFailed;
        }
        printf("%s: %zu tiles on %s\n", path.c_str(), sheet_tiles.size(), source.c_str());
    }
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
    "DIR/index.html, and each look at full size as DIR/NAME.jpg; then one sheet\n"
    "per engine family (mosaics, borders, ...) linked from the page.\n"
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
