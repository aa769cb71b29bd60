// Vignette, flare and gradient runners against the engine calls they make.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "support/effect_checks.h"

using vok_test::expect_failure;
using vok_test::expect_same_as_engine;
using vok_test::LogCapture;
using vok_test::StepRun;
using vok_test::TwoStopGradient;

namespace {

const std::string kStops = vok_test::kTwoStopGradientJson;

// The gradient flare of the two-stop gradient, drawn directly.
void draw_flare(VokBitmap *b, int32_t shape, const double *transform, const double *params,
                int32_t aspect, uint8_t invert, int32_t wrap, int32_t mode, double alpha) {
    TwoStopGradient g;
    double t[16], p[16];
    std::copy(transform, transform + 16, t);
    std::copy(params, params + 16, p);
    VokGradientFlareParams r;
    VokGradientFlareParamsInit(&r);
    r.shape = shape;
    r.transform = t;
    r.params = p;
    r.aspectMode = aspect;
    r.gradient = &g.g;
    r.invert = invert;
    r.wrapMode = wrap;
    r.blendMode = mode;
    r.alpha = alpha;
    VokGradientFlareApply(b, &r);
}

// Shape parameters placed as the "placement" keys of the gradient tests say.
VokGradientShapeParams placed(int32_t shape) {
    VokGradientShapeParams p;
    VokGradientShapeParamsInit(&p);
    p.gradientShape = shape;
    p.scale = 1.5;
    p.xCenter = static_cast<float>(0.3);
    p.yCenter = static_cast<float>(0.6);
    p.angle = static_cast<float>(30.0f * 0.017453292519943295);
    return p;
}

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
TEST(GradientProcessor, FillsTheShapeRecordAndScalesAlpha) {
    const std::string placement = R"("scale":1.5,"xCenter":0.3,"yCenter":0.6,"angle":30,)";
    expect_same_as_engine(
        "gradient",
        "{" + kStops + "," + placement + R"("alpha":0.9,"gradientShape":"linear",
                                            "blendMode":"overlay"})",
        0.5, [](VokBitmap *b) {
            TwoStopGradient g;
            const VokGradientShapeParams p = placed(0);
            VokGradientApply(b, &p, &g.g, 1, static_cast<float>(0.9 * 0.5));
        });
    expect_same_as_engine(
        "gradient",
        "{" + kStops + "," + placement + R"("alpha":1,"gradientShape":"linearVignette",
            "vignetteShape":{"vignetteScale":0.6,"scaling":"stretch","shapeMode":"sharp",
                             "dx":0.2,"dy":-0.1}})",
        0.75, [](VokBitmap *b) {
            TwoStopGradient g;
            VokGradientShapeParams p = placed(2);
            p.vignetteShapeMode = 1;
            p.vignetteSize = 0.6;  // strength 1 and no epsilon inside the block
            p.vignetteOffsetX = 0.2;
            p.vignetteOffsetY = -0.1;
            VokGradientApply(b, &p, &g.g, 0, 0.75f);
        });
    expect_failure("gradient", "{" + kStops + R"(,"scale":1,"xCenter":0,"yCenter":0,"alpha":1,
                                                 "gradientShape":"linear"})",
                   "Gradient Processor failed: something is missing.");
    expect_failure("gradient", "{" + kStops + "," + placement +
                                   R"("alpha":1,"gradientShape":"Radial"})",
                   "Color Matrix Processor failed: shape mode 'Radial' not found.");
    expect_failure("gradient", "{" + kStops + "," + placement +
                                   R"("alpha":1,"gradientShape":"linearVignette","blendMode":"normal"})",
                   "vokBorderPopoulateWithShapeTypeVal failed: some params are incorrect or "
                   "missing.");
}

TEST(GradientMapProcessor, ReadsVariableInvertAndAlpha) {
    expect_same_as_engine(
        "gradientMap",
        R"({"gradient":{)" + kStops + R"(},"alpha":0.8,"gradientVariable":"maxChannel",
            "invertGradient":"true","blendMode":"overlay"})",
        0.5, [](VokBitmap *b) {
            TwoStopGradient g;
            VokGradientMapApply(b, &g.g, 5, 1, 1, 0.8 * 0.5);
        });
    {
        // No alpha: nothing visible, and every default is logged.
        StepRun check("gradientMap", R"({"gradient":{)" + kStops +
                                                 R"(},"gradientVariable":"Chroma",
                                                 "invertGradient":true})");
        EXPECT_EQ(check.result, 1);
        EXPECT_TRUE(check.unchanged);
        ASSERT_EQ(check.log.size(), 3u);
        EXPECT_EQ(check.log[0], "Alpha not a float.  Defaulting to 0.0.");
        EXPECT_EQ(check.log[1], "Gradient Variable doesn't match.  Defaulting to intensity.");
        EXPECT_EQ(check.log[2], "Missing blend mode. Defaulting to normal.");
    }
    expect_failure("gradientMap", R"({"alpha":1})",
                   "vokGradientfromColorsValAndOpacitiesVal failed: opacities or colors is not "
                   "an array");
}

TEST(GradientFlareProcessor, ReadsEveryKeyWithItsDefault) {
    const std::string transform =
        R"([1.5,0,0,0.1, 0,1,"x",0, 0,0,1,0, 0,0,0,1])";
    expect_same_as_engine(
        "gradientFlare",
        R"({"gradient":{)" + kStops + R"(},"alpha":0.8,"gradientShapeType":"circle",
            "invertGradient":"true","aspectMode":"fit","gradientTransform":)" + transform +
            R"(,"gradientParams":[0.5,0.25,0,0,0,0,0,0,0,0,0,0,0,0,0,0],
            "gradientWrapMode":"repeat","blendMode":"screen"})",
        0.5, [](VokBitmap *b) {
            const double t[16] = {1.5, 0, 0, 0.1, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
            const double p[16] = {0.5, 0.25};
            draw_flare(b, 2, t, p, 0, 1, 1, 3, 0.8 * 0.5);
        });
    {
        // A boolean true does not invert; "Fit" and the missing keys default.
        StepRun check("gradientFlare", R"({"gradient":{)" + kStops +
                                                   R"(},"alpha":1,"invertGradient":true,
                                                   "aspectMode":"Fit","gradientTransform":[1],
                                                   "gradientWrapMode":"Clamp"})");
        EXPECT_EQ(check.result, 1);
        const std::vector<std::string> expected = {
            "Shape not a string.  Defaulting to Line.",
            "Aspect Mode doesn't match.  Defaulting to Stretch.",
            "error: gradient transform must be a 16 length float array.  Defaulting to Identity.",
            "error: gradient params must be a 16 length float array.  Defaulting to Zeros.",
            "Wrap mode doesn't match.  Defaulting to clamp.",
            "Missing blend mode. Defaulting to normal."};
        EXPECT_EQ(check.log, expected);
        const double identity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
        const double zeros[16] = {};
        draw_flare(check.original.get(), 1, identity, zeros, 1, 0, 0, 0, 1.0);
        EXPECT_EQ(check.bitmap.bytes(), check.original.bytes());
    }
}
