// Every bundled look runs step by step on a real photo: each step succeeds,
// the photo changes, its alpha stays, and the whole run repeats exactly.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "support/bitmaps.h"
#include "support/json_doc.h"
#include "support/png_reader.h"
#include "vok/effects.h"

using vok_test::TestBitmap;

namespace {

std::string examples() {
    const char *dir = getenv("VOK_EXAMPLES");
    return dir ? dir : "examples";
}

std::vector<std::filesystem::path> bundled_looks() {
    std::vector<std::filesystem::path> looks;
    for (const auto &entry : std::filesystem::directory_iterator(examples() + "/effects"))
        if (entry.path().extension() == ".json") looks.push_back(entry.path());
    std::sort(looks.begin(), looks.end());
    return looks;
}

std::string read_text(const std::filesystem::path &path) {
    std::ifstream file(path);
    return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
}

// The photo shrunk by a 4 x 4 box average, to keep the emulated runs short.
TestBitmap photo() {
    std::string error;
    const auto full = vok_test::read_png(examples() + "/images/coffee.png", &error);
    if (!full) ADD_FAILURE() << error;
    const uint32_t w = full ? full->get()->width / 4 : 1, h = full ? full->get()->height / 4 : 1;
    TestBitmap small(w, h);
    for (uint32_t y = 0; full && y < h; ++y) {
        for (uint32_t x = 0; x < w; ++x) {
            uint32_t sum[4] = {};
            for (uint32_t j = 0; j < 16; ++j) {
                const VokColor &p = full->at(4 * x + j % 4, 4 * y + j / 4);
                sum[0] += p.red, sum[1] += p.green, sum[2] += p.blue, sum[3] += p.alpha;
            }
            small.at(x, y) = vok_test::rgba(sum[0] / 16, sum[1] / 16, sum[2] / 16, sum[3] / 16);
        }
    }
    return small;
}

}  // namespace

TEST(Looks, EveryBundledLookRunsOnAPhoto) {
    const std::vector<std::filesystem::path> looks = bundled_looks();
    EXPECT_GE(looks.size(), 12u);
    const TestBitmap original = photo();
    VokEffectParams params;
    VokEffectInitParams(&params);
    params.seed = 1234;
    for (const auto &path : looks) {
        SCOPED_TRACE(path.filename().string());
        const vok_test::Effect effect(read_text(path));
        ASSERT_NE(nullptr, effect.get());
        const yajl_val steps = vok_test::member(effect.get(), "processors");
        ASSERT_TRUE(YAJL_IS_ARRAY(steps));
        EXPECT_GE(steps->u.array.len, 2u);

        TestBitmap stepwise(original);
        for (size_t i = 0; i < steps->u.array.len; ++i) {
            const yajl_val step = steps->u.array.values[i];
            const yajl_val name = vok_test::member(step, "name");
            EXPECT_EQ(1, TESKRunProcessor(step, stepwise.get(), &params))
                << "step " << i << ": " << (YAJL_IS_STRING(name) ? name->u.string : "?");
        }
        EXPECT_NE(original.bytes(), stepwise.bytes());
        for (uint32_t y = 0; y < original.get()->height; ++y)
            for (uint32_t x = 0; x < original.get()->width; ++x)
                ASSERT_EQ(original.at(x, y).alpha, stepwise.at(x, y).alpha);

        TestBitmap whole(original);
        EXPECT_EQ(1, TESKRunEffect(effect.get(), whole.get(), &params));
        EXPECT_EQ(stepwise.bytes(), whole.bytes());
    }
}
