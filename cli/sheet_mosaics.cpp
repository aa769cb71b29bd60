// The mosaics sheet of `vok gallery`: every cell blur, with cells 20 pixels
// across so the shapes read on a thumbnail.
#include "contact_sheet.h"
#include "vok/generators.h"

namespace vok_cli {
namespace {

SheetTile mosaic(const char *caption, void (*engine)(VokBitmap *, float)) {
    return {caption, [engine](VokBitmap &bitmap) {
                engine(&bitmap, 20.0f);
                return true;
            }};
}

std::vector<SheetTile> mosaic_tiles() {
    return {
        mosaic("pixelate", VokBlurModesPixelateProcessor),
        mosaic("triangles", VokBlurModesTrianglesProcessor),
        mosaic("circles", VokBlurModesCirclesProcessor),
        mosaic("diamonds", VokBlurModesDiamondsProcessor),
        mosaic("houndstooth", VokBlurModesHoundstoothProcessor),
        mosaic("chevrons", VokBlurModesChevronsProcessor),
        mosaic("sines", VokBlurModesSinesProcessor),
        mosaic("scales", VokBlurModesScalesProcessor),
        mosaic("bricks", VokBlurModesBricksProcessor),
        mosaic("voronoi", VokBlurModesVoronoi),
        mosaic("hearts", VokBlurModesHeartsProcessor),
        mosaic("hexagons", VokBlurModesHexagons),
        {"motion blur",
         [](VokBitmap &bitmap) {
             VokConvolutionEffectsMotionBlur(&bitmap, 15.0f, 0.4f);
             return true;
         }},
        {"uniform blur x",
         [](VokBitmap &bitmap) {
             VokConvolutionEffectsUniformSharpenX(&bitmap, -600.0f);
             return true;
         }},
    };
}

}  // namespace

extern const GallerySheet mosaics_sheet = {"mosaics.png", "vok-lite mosaics", nullptr,
                                           mosaic_tiles};

}  // namespace vok_cli
