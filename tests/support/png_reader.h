// Reads the sample photos in tests without an image library (none is
// available for every target): 8-bit RGB or RGBA, non-interlaced PNG only.
#ifndef VOK_TESTS_PNG_READER_H
#define VOK_TESTS_PNG_READER_H

#include <memory>
#include <string>

#include "support/bitmaps.h"

namespace vok_test {

// The image, alpha 255 for RGB files; null with a reason in *error otherwise.
std::unique_ptr<TestBitmap> read_png(const std::string &path, std::string *error);

}  // namespace vok_test

#endif
