#include "support/golden.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace vok_test {

uint64_t checksum(const VokBitmap *bitmap) {
    uint64_t hash = 14695981039346656037ull;
    auto mix = [&hash](uint8_t byte) {
        hash ^= byte;
        hash *= 1099511628211ull;
    };
    for (uint32_t value : {bitmap->width, bitmap->height})
        for (int shift = 0; shift < 32; shift += 8) mix(static_cast<uint8_t>(value >> shift));
    const size_t n = static_cast<size_t>(bitmap->width) * bitmap->height * 4;
    for (size_t i = 0; i < n; ++i) mix(bitmap->pixels[i]);
    return hash;
}

std::vector<std::pair<std::string, std::string>> bundled_looks() {
    std::vector<std::pair<std::string, std::string>> looks;
    for (const auto &entry :
         std::filesystem::directory_iterator(std::string(getenv("VOK_EXAMPLES")) + "/effects")) {
        if (entry.path().extension() != ".json") continue;
        std::ifstream file(entry.path(), std::ios::binary);
        looks.emplace_back(
            entry.path().filename().string(),
            std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>()));
    }
    std::sort(looks.begin(), looks.end());
    return looks;
}

TestBitmap coffee_crop() {
    const std::string path = std::string(getenv("VOK_TEST_DATA")) + "/coffee-crop.rgba";
    std::ifstream file(path, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(file)),
                            std::istreambuf_iterator<char>());
    TestBitmap bitmap(160, 120);
    if (bytes.size() != 160u * 120 * 4) throw std::runtime_error("bad fixture " + path);
    std::copy(bytes.begin(), bytes.end(), bitmap.get()->pixels);
    return bitmap;
}

}  // namespace vok_test
