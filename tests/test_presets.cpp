// The legacy presets: every one runs by name, repeats for a seed, obeys the
// strength, and the 24 borders stand aside when borders are disabled.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "support/bitmaps.h"
#include "support/golden.h"
#include "support/json_doc.h"
#include "vok/effects.h"

using vok_test::TestBitmap;

namespace {

int run_preset(const std::string &name, TestBitmap &bitmap, double strength, int32_t seed,
               uint8_t borders = 1) {
    vok_test::Effect effect(R"({"identifier":"p","processors":[{"name":"legacyProcessor",)"
                            R"("parameters":{"legacyName":")" + name + R"("}}]})");
    VokEffectParams params = vok_test::params_with(strength, seed);
    params.bordersEnabled = borders;
    return TESKRunEffect(effect.get(), bitmap.get(), &params);
}

}  // namespace

TEST(Presets, ThirtyEightNamesTwentyFourBorders) {
    std::set<std::string> names;
    int borders = 0;
    for (uint32_t i = 0; TESKLegacyPresetName(i) != nullptr; ++i) {
        names.insert(TESKLegacyPresetName(i));
        borders += TESKLegacyPresetIsBorder(i);
        EXPECT_EQ(i < 24, TESKLegacyPresetIsBorder(i) == 1) << i;
    }
    EXPECT_EQ(names.size(), 38u);
    EXPECT_EQ(borders, 24);
    EXPECT_EQ(TESKLegacyPresetName(38), nullptr);
    EXPECT_EQ(TESKLegacyPresetIsBorder(38), 0);
}

TEST(Presets, EveryPresetRunsRepeatsAndObeysBordersEnabled) {
    const TestBitmap photo = vok_test::coffee_crop();
    uint64_t all = 0;
    for (uint32_t i = 0; TESKLegacyPresetName(i) != nullptr; ++i) {
        const std::string name = TESKLegacyPresetName(i);
        SCOPED_TRACE(name);
        TestBitmap once(photo), twice(photo), none(photo), off(photo);
        ASSERT_EQ(1, run_preset(name, once, 1.0, 11));
        EXPECT_NE(once.bytes(), photo.bytes());
        run_preset(name, twice, 1.0, 11);
        EXPECT_EQ(twice.bytes(), once.bytes());
        EXPECT_EQ(1, run_preset(name, none, 0.0, 11));
        EXPECT_EQ(none.bytes(), photo.bytes());  // strength 0: nothing
        EXPECT_EQ(1, run_preset(name, off, 1.0, 11, 0));
        EXPECT_EQ(off.bytes() == photo.bytes(), TESKLegacyPresetIsBorder(i) == 1);
        all = all * 1099511628211ull ^ vok_test::checksum(once.get());
    }
    // Every preset's bytes at once: the host and the armhf runs agree.
    EXPECT_EQ(all, 14844287625178884164ull);
}
