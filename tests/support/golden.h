// Golden checksums: an engine's output on a fixed input reduced to one number,
// pinned in the test so the host and the armhf runs prove they agree byte for byte.
#ifndef VOK_TESTS_GOLDEN_H
#define VOK_TESTS_GOLDEN_H

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "support/bitmaps.h"
#include "vok/core.h"

namespace vok_test {

// 64-bit FNV-1a over the width, the height and every pixel byte.
uint64_t checksum(const VokBitmap *bitmap);

// Every bundled look of examples/effects as (file name, JSON text), by name.
std::vector<std::pair<std::string, std::string>> bundled_looks();

// The 160 x 120 crop of the coffee photo (tests/data/coffee-crop.rgba), opaque RGBA.
TestBitmap coffee_crop();

}  // namespace vok_test

#endif
