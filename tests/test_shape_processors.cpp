// Vignette, flare and gradient runners against the engine calls they make.
#include <gtest/gtest.h>

#include <string>

#include "support/effect_checks.h"

using vok_test::expect_failure;
using vok_test::expect_same_as_engine;
using vok_test::LogCapture;
using vok_test::StepRun;
using vok_test::TwoStopGradient;

namespace {

const std::string kStops = vok_test::kTwoStopGradientJson;

}  // namespace

TEST(VignetteProcessor, WeakerStrengthPushesTheVignetteOut) {
    expect_same_as_engine(
        "vignette",
        R"({"color":{"r":10,"g":0,"b":40,"a":230},"blendMode":"multiply",
            "shape":{"vignetteScale":0.8,"scaling":"stretch","shapeMode":"sharp","dx":0.1}})",
        0.5, [](VokBitmap *b) {
            VokBorderParams border;
            VokBorderInitParams(&border);
            border.style = 15;
            border.color = {10, 0, 40, 230};
            border.blendMode = 5;
            border.shapeMode = 1;
            border.stretch = 1;
            border.scale = 0.8 / (0.5 + 1e-8);
            border.dx = 0.1;
            border.dy = 0.0;
            VokBorders(b, &border);
        });
    expect_failure("vignette", R"({"color":{"r":1,"g":1,"b":1,"a":1}})",
                   "Borders Vignette Processor failed: some params are incorrect or missing.");
    expect_failure("vignette",
                   R"({"color":{"r":1,"g":1,"b":1,"a":1},"blendMode":"normal",
                      "shape":{"vignetteScale":1}})",
                   "vokBorderPopoulateWithShapeTypeVal failed: some params are incorrect or "
                   "missing.");
    LogCapture log;
    EXPECT_EQ(TESKRunVignetteProcessor(nullptr, nullptr, nullptr), 0);
    EXPECT_TRUE(log.only("Borders Vignette Processor failed: params dne or is not an object."));
}

TEST(FlareProcessor, StrengthScalesAlphaExceptForTheFingerFlare) {
    const std::string common =
        R"("dx":0.4,"dy":0.6,"dsx":1.5,"dsy":0.75,"fScale":0.8,"blendMode":"screen",
           "color":{"r":255,"g":200,"b":120,"a":255})";
    expect_same_as_engine("flare", "{" + common + R"(,"type":"gaussianThing2"})", 0.5,
                          [](VokBitmap *b) {
                              VokFlare(b, 0.8f, VokColor{255, 200, 120, 127}, 2, 0.4f, 0.6f,
                                       1.5f, 0.75f, 3, 0.5);
                          });
    expect_same_as_engine("flare", "{" + common + R"(,"type":"fingerFlare"})", 0.5,
                          [](VokBitmap *b) {
                              VokFlare(b, 0.8f, VokColor{255, 200, 120, 255}, 14, 0.4f, 0.6f,
                                       1.5f, 0.75f, 3, 0.5);
                          });
    expect_failure("flare", "{" + common + R"(,"type":"diamondFlare"})",
                   "No flare type found with name: diamondFlare\n");
    expect_failure("flare", R"({"dx":0.4,"dy":0.6,"dsx":1,"dsy":1,"fScale":1,"type":"sinc",
                               "color":{"r":1,"g":1,"b":1,"a":1}})",
                   "Flare Processor failed: some params are incorrect or missing.");
    LogCapture log;
    EXPECT_EQ(TESKRunFlareProcessor(nullptr, nullptr, nullptr), 0);
    EXPECT_TRUE(log.only("Flare Processor failed: params dne or is not an object."));
}
