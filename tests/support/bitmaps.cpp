#include "support/bitmaps.h"

#include <cstring>
#include <random>
#include <stdexcept>

namespace vok_test {

TestBitmap::TestBitmap(uint32_t width, uint32_t height) {
    if (!VokBitmapBuild(&bitmap_, width, height)) throw std::runtime_error("bitmap build failed");
}

TestBitmap::~TestBitmap() { VokBitmapFree(&bitmap_); }

TestBitmap::TestBitmap(const TestBitmap &other) : TestBitmap(other.bitmap_.width, other.bitmap_.height) {
    std::memcpy(bitmap_.pixels, other.bitmap_.pixels,
                static_cast<size_t>(bitmap_.width) * bitmap_.height * 4);
}

VokColor &TestBitmap::at(uint32_t x, uint32_t y) {
    return reinterpret_cast<VokColor *>(bitmap_.pixels)[static_cast<size_t>(y) * bitmap_.width + x];
}

const VokColor &TestBitmap::at(uint32_t x, uint32_t y) const {
    return reinterpret_cast<const VokColor *>(bitmap_.pixels)[static_cast<size_t>(y) * bitmap_.width + x];
}

void TestBitmap::fill(VokColor color) {
    for (uint32_t y = 0; y < bitmap_.height; ++y)
        for (uint32_t x = 0; x < bitmap_.width; ++x) at(x, y) = color;
}

void TestBitmap::randomize(uint32_t seed) {
    std::mt19937 engine(seed);
    size_t n = static_cast<size_t>(bitmap_.width) * bitmap_.height * 4;
    for (size_t i = 0; i < n; ++i) bitmap_.pixels[i] = static_cast<uint8_t>(engine() & 255u);
}

std::vector<uint8_t> TestBitmap::bytes() const {
    size_t n = static_cast<size_t>(bitmap_.width) * bitmap_.height * 4;
    return std::vector<uint8_t>(bitmap_.pixels, bitmap_.pixels + n);
}

}  // namespace vok_test
