// Contact sheets: captioned thumbnails on a dark page, as `vok gallery` draws
// them. The looks sheet and every engine family's sheet share this layout.
#ifndef VOK_CLI_CONTACT_SHEET_H
#define VOK_CLI_CONTACT_SHEET_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "image_io.h"
#include "vok/core.h"

namespace vok_cli {

// One tile: its caption and what to do to a copy of the thumbnail, in place;
// false when the work failed (the tile is then drawn empty with a red caption).
struct SheetTile {
    std::string caption;
    std::function<bool(VokBitmap &bitmap)> apply;
};

// The largest thumbnail a sheet holds.
constexpr uint32_t kThumbMaxWidth = 300;
constexpr uint32_t kThumbMaxHeight = 240;

// Shrinks by the smallest whole factor that fits max_width x max_height, each
// output pixel the rounded mean of a factor x factor block; false when out of memory.
bool box_downscale(const VokBitmap &photo, uint32_t max_width, uint32_t max_height, Image &out);

// Draws `tiles` applied to copies of `thumb` under a title, the untouched thumb
// first as "original", and writes the sheet to `path`. `ok` receives one flag a
// tile. False with `error` set when the sheet could not be built or written.
bool write_contact_sheet(const std::string &path, const char *title, const VokBitmap &thumb,
                         const std::vector<SheetTile> &tiles, std::vector<bool> &ok,
                         std::string &error);

// A sheet of the gallery beyond the looks: every engine of one family on one photo.
struct GallerySheet {
    const char *file;     // file name in the output folder, e.g. "mosaics.png"
    const char *title;    // drawn at the top and used as the link text in index.html
    const char *photo;    // a photo of the images folder beside the effects folder, or null;
                          // the gallery's own photo stands in when it is missing
    std::vector<SheetTile> (*tiles)();
};

}  // namespace vok_cli

#endif
