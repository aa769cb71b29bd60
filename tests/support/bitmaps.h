// Small owned bitmaps for tests.
#ifndef VOK_TESTS_BITMAPS_H
#define VOK_TESTS_BITMAPS_H

#include <cstdint>
#include <ostream>
#include <vector>

#include "vok/core.h"

namespace vok_test {

// A VokBitmap that owns its pixels and frees them on destruction.
class TestBitmap {
public:
    TestBitmap(uint32_t width, uint32_t height);
    ~TestBitmap();
    TestBitmap(const TestBitmap &other);
    TestBitmap &operator=(const TestBitmap &) = delete;

    VokBitmap *get() { return &bitmap_; }
    const VokBitmap *get() const { return &bitmap_; }
    VokColor &at(uint32_t x, uint32_t y);
    const VokColor &at(uint32_t x, uint32_t y) const;
    void fill(VokColor color);
    // Pixels from a seeded generator, every byte uniform in 0..255.
    void randomize(uint32_t seed);
    std::vector<uint8_t> bytes() const;

private:
    VokBitmap bitmap_;
};

inline VokColor rgba(uint8_t r, uint8_t g, uint8_t b, uint8_t a = 255) { return {r, g, b, a}; }

}  // namespace vok_test

// Colours compare and print byte by byte, so EXPECT_EQ works on pixels.
inline bool operator==(const VokColor &a, const VokColor &b) {
    return a.red == b.red && a.green == b.green && a.blue == b.blue && a.alpha == b.alpha;
}
inline bool operator!=(const VokColor &a, const VokColor &b) { return !(a == b); }
inline std::ostream &operator<<(std::ostream &out, const VokColor &c) {
    return out << "rgba(" << int{c.red} << ", " << int{c.green} << ", " << int{c.blue} << ", "
               << int{c.alpha} << ")";
}

#endif
