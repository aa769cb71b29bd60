// The borders sheet of `vok gallery`: every border style in shape mode 0.
#include <string>

#include "contact_sheet.h"
#include "vok/generators.h"

namespace vok_cli {
namespace {

const char *const kStyleNames[] = {
    "halftone", "lines", "smooth", "shadow", "fade",      "rough",   "bulge",    "torn",
    "torn_2",   "rect",  "round",  "flickr", "hard_rand", "instant", "vignette", "viewfinder"};

std::vector<SheetTile> border_tiles() {
    std::vector<SheetTile> tiles;
    for (uint32_t style = kVokBorderHalftone; style <= kVokBorderViewfinder; ++style) {
        tiles.push_back(
            {kStyleNames[style - 1], [style](VokBitmap &bitmap) {
                 VokBorderParams params;
                 VokBorderInitParams(&params);
                 params.style = style;
                 params.seed = 7;
                 // Dark shadows and vignettes, paper-white frames.
                 const bool dark = style == kVokBorderShadow || style == kVokBorderVignette;
                 params.color = dark ? VokColor{20, 18, 16, 255} : VokColor{248, 245, 238, 255};
                 return VokBorders(&bitmap, &params) == 1;
             }});
    }
    return tiles;
}

}  // namespace

extern const GallerySheet borders_sheet = {"borders.png", "vok-lite borders", nullptr,
                                           border_tiles};

}  // namespace vok_cli
