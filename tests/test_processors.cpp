// Processor runners: each success path against the engine call it must make,
// each failure path with its message, and the strength rules.
#include <gtest/gtest.h>

#include <string>

#include "support/effect_checks.h"

using vok_test::Effect;
using vok_test::expect_failure;
using vok_test::expect_same_as_engine;
using vok_test::LogCapture;
using vok_test::one_step;
using vok_test::params_with;
using vok_test::TestBitmap;

namespace {

// r: a brightening curve, g: inverted, b: identity.
std::string histmap_json(VokHistMap *map) {
    std::string r, g, b;
    for (int i = 0; i < 256; ++i) {
        const int rv = i + (255 - i) / 3;
        map->table[0][i] = static_cast<uint8_t>(rv);
        map->table[1][i] = static_cast<uint8_t>(255 - i);
        map->table[2][i] = static_cast<uint8_t>(i);
        const char *sep = i ? "," : "";
        r += sep + std::to_string(rv);
        g += sep + std::to_string(255 - i);
        b += sep + std::to_string(i);
    }
    return R"({"r":[)" + r + R"(],"g":[)" + g + R"(],"b":[)" + b + "]}";
}

}  // namespace

TEST(TonalProcessors, HistogramMappingFadesTheMapByStrength) {
    VokHistMap map;
    const std::string json = histmap_json(&map);
    expect_same_as_engine("histogramMapping", R"({"histMap":)" + json + "}", 0.6,
                          [&](VokBitmap *b) {
                              VokHistMap faded = map;
                              VokHistMapFade(&faded, 0.6);
                              VokBitmapHistogramTransform(b, &faded);
                          });
    expect_failure("histogramMapping", R"({"histMap":[]})",
                   "HistMap Processor failed: histMap dne or is not an object.");
    expect_failure("histogramMapping", R"({"histMap":{"r":[],"g":[],"b":[]}})",
                   "HistMap Processor failed: r, g, or b is an array of the wrong length.");
    LogCapture log;
    EXPECT_EQ(TESKRunHistogramMappingProcessor(nullptr, nullptr, nullptr), 0);
    EXPECT_TRUE(log.only("HistMap Processor failed: params dne or is not an object."));
}

TEST(TonalProcessors, IntensityMapAppliesStrengthTwice) {
    VokHistMap map;
    const std::string json = histmap_json(&map);
    expect_same_as_engine("intensityMap",
                          R"({"histMap":)" + json + R"(,"alpha":0.8,"blendMode":"overlay"})",
                          0.5, [&](VokBitmap *b) {
                              VokHistMap faded = map;
                              VokHistMapFade(&faded, 0.5);
                              VokBitmapIntensityMap(b, &faded, 1, 0.8 * 0.5);
                          });
    expect_failure("intensityMap", R"({"histMap":)" + json + "}",
                   "HistMap Processor failed: histMap or alpha missing or problematic.");
    expect_failure("intensityMap", R"({"histMap":{},"alpha":1})",
                   "HistMap Processor failed: r,g, or b is missing or is not an array.");
}

TEST(TonalProcessors, GammaAndContrastMixTowardOne) {
    expect_same_as_engine("gamma", R"({"value":2.2})", 0.5,
                          [](VokBitmap *b) { VokBitmapGamma(b, 1.6f); });
    expect_same_as_engine("gamma", R"({"value":0.5})", 1.0,
                          [](VokBitmap *b) { VokBitmapGamma(b, 0.5f); });
    expect_same_as_engine("contrast", R"({"value":1.8})", 0.25, [](VokBitmap *b) {
        VokBitmapContrastCurve(b, 0.25f * 1.8f + 0.75f * 1.0f);
    });
    expect_failure("gamma", R"({"value":"2"})", "Gamma Processor failed: value is missing.");
    expect_failure("contrast", "{}", "Contrast Processor failed: value is missing.");
    // At strength 0 the factor is exactly 1, whatever the value.
    vok_test::StepRun run("gamma", R"({"value":3.7})", 0.0);
    VokBitmapGamma(run.original.get(), 1.0f);
    EXPECT_EQ(run.bitmap.bytes(), run.original.bytes());
}

TEST(ColorProcessors, ColorMatrixAppliesStrengthInsideOperations) {
    expect_same_as_engine(
        "colorMatrixTransform",
        R"({"operations":[{"operation":"brightness","value":1.2},
                          {"operation":"contrast","value":1.5},
                          {"operation":"saturation","value":0.4}],
            "alpha":0.7,"blendMode":"multiply"})",
        0.5, [](VokBitmap *b) {
            VokColorMatrix m;
            VokColorMatrixSetIdentity(&m);
            VokColorMatrixBrightness(&m, 0.5f * 1.2f + 0.5f);
            VokColorMatrixContrast(&m, (0.5f * 1.5f + 0.5f) - 1.0f);
            VokColorMatrixAdjSaturation(&m, 0.5f * 0.4f + 0.5f);
            VokBitmapColorMatrixTransformAndBlendWithOriginal(b, &m, 5, 0.7f);
        });
    // hardSet replaces what came before; gain and strength scale it, and the
    // diagonal gets (1 - strength).
    const std::string entries = "[0.5,0.25,0,10, 0,1,0.5,-20, 0.125,0,0.75,5]";
    expect_same_as_engine(
        "colorMatrixTransform",
        R"({"operations":[{"operation":"saturation","value":0},
                          {"operation":"hardSet","entries":)" + entries + R"(,"gain":2}]})",
        0.75, [](VokBitmap *b) {
            const double e[12] = {0.5, 0.25, 0, 10, 0, 1, 0.5, -20, 0.125, 0, 0.75, 5};
            VokColorMatrix m;
            for (int k = 0; k < 12; ++k) {
                m.m[k] = static_cast<float>(0.75 * e[k] * 2.0 +
                                            (k == 0 || k == 5 || k == 10 ? 0.25 : 0.0));
            }
            VokBitmapColorMatrixTransformAndBlendWithOriginal(b, &m, 0, 1.0f);
        });
    // At strength 0 a hardSet is the identity: pixels stay.
    vok_test::StepRun identity("colorMatrixTransform", R"({"operations":[{"operation":"hardSet",
        "entries":)" + entries + "}]}", 0.0);
    EXPECT_EQ(identity.result, 1);
    EXPECT_TRUE(identity.unchanged);
    const std::string invalid = "Color Matrix Processor failed: invalid entry in operations array.";
    const std::string hard = "Color Matrix Processor failed: invalid entries val for hardSet operation.";
    expect_failure("colorMatrixTransform", R"({"operations":{}})",
                   "Color Matrix Processor failed: operations dne or is not an array.");
    expect_failure("colorMatrixTransform", R"({"operations":[{"value":1}]})", invalid);
    expect_failure("colorMatrixTransform", R"({"operations":[{"operation":"contrast"}]})",
                   invalid);
    expect_failure("colorMatrixTransform",
                   R"({"operations":[{"operation":"brightness","value":1.5},
                                     {"operation":"hue","value":1}]})",
                   "Color Matrix Processor failed: Operation 'hue' not found.");
    expect_failure("colorMatrixTransform",
                   R"({"operations":[{"operation":"hardSet","entries":[1,0,0,0,0,1,0,0,0,0,1]}]})",
                   hard);
    expect_failure("colorMatrixTransform",
                   R"({"operations":[{"operation":"hardSet",
                                      "entries":[1,0,0,0,0,1,0,0,0,0,1,"0"]}]})",
                   hard);
    LogCapture log;
    EXPECT_EQ(TESKRunColorMatrixTransformProcessor(nullptr, nullptr, nullptr), 0);
    EXPECT_TRUE(log.only("Color Matrix Processor failed: params dne or is not an object."));
}

TEST(EffectRun, LaterStepsSeeEarlierOnesAndFailuresDoNotStopTheRun) {
    TestBitmap runner(8, 8), direct(8, 8);
    runner.randomize(21);
    direct.randomize(21);
    const VokEffectParams params = params_with(1.0);
    Effect effect(R"({"identifier":"t","processors":[
        {"name":"gamma","parameters":{"value":1.5}},
        {"name":"nope","parameters":{}},
        {"name":"contrast","parameters":{"value":1.3}}]})");
    LogCapture log;
    EXPECT_EQ(TESKRunEffect(effect.get(), runner.get(), &params), 1);
    EXPECT_TRUE(log.only("No processor found with name: nope"));
    VokBitmapGamma(direct.get(), 1.5f);
    VokBitmapContrastCurve(direct.get(), 1.3f);
    EXPECT_EQ(runner.bytes(), direct.bytes());
}

TEST(ColorProcessors, BlendWithColorScalesAlphaAndDefaultsMode) {
    expect_same_as_engine("blendWithColor", R"({"color":{"r":200,"g":30,"b":90,"a":255},
                          "alpha":0.5})", 0.8, [](VokBitmap *b) {
        VokColor c{200, 30, 90, 255};
        VokBitmapBlendWithColor(b, &c, 0, static_cast<float>(0.5 * 0.8));
    });
    expect_same_as_engine("blendWithColor", R"({"color":{"r":10,"g":130,"b":250,"a":255},
                          "alpha":1e999,"blendMode":"multiply"})", 0.7, [](VokBitmap *b) {
        VokColor c{10, 130, 250, 255};
        VokBitmapBlendWithColor(b, &c, 5, static_cast<float>(1.0 * 0.7));
    });
    expect_failure("blendWithColor", R"({"color":{"r":1,"g":1,"b":1,"a":1}})",
                   "BlendWithColor Processor failed: color, blendMode, or alpha param is missing.");
    expect_failure("blendWithColor", R"({"color":{"r":1,"g":1,"b":1,"a":300},"alpha":1})",
                   "Error in color to vok color conversion: r,g,b,a outside of [0,255] range.");
    LogCapture log;
    EXPECT_EQ(TESKRunBlendWithColorProcessor(nullptr, nullptr, nullptr), 0);
    EXPECT_TRUE(log.only("BlendWithColor Processor failed: params dne or is not an object."));
}

TEST(DetailProcessors, NoiseScalesIntensityAndPassesTheSeed) {
    expect_same_as_engine("noise", R"({"intensity":40})", 0.5,
                          [](VokBitmap *b) { VokBitmapAddNoise(b, 20.0f, 1234u); }, 1234);
    expect_same_as_engine("noise", R"({"intensity":25})", 1.0,
                          [](VokBitmap *b) { VokBitmapAddNoise(b, 25.0f, 0xFFFFFFFFu); }, -1);
    expect_failure("noise", R"({"amount":40})", "Intensity param is missing.");
}

TEST(AdjustableAlphaRun, MixesAFullStrengthRunBack) {
    Effect effect(R"({"identifier":"t","processors":[
        {"name":"gamma","parameters":{"value":2.5}},
        {"name":"contrast","parameters":{"value":1.6}}]})");
    TestBitmap source(9, 7);
    source.randomize(17);
    // Opaque, so that normal compositing at opacity 1 replaces the pixels.
    for (uint32_t y = 0; y < 7; ++y) {
        for (uint32_t x = 0; x < 9; ++x) source.at(x, y).alpha = 255;
    }
    TestBitmap full(source);
    const VokEffectParams one = params_with(1.0, 5);
    ASSERT_EQ(TESKRunEffect(effect.get(), full.get(), &one), 1);

    for (const double strength : {0.0, 0.4, 1.0}) {
        TestBitmap mixed(source);
        const VokEffectParams params = params_with(strength, 5);
        EXPECT_EQ(TESKRunAdjustableAlphaEffect(effect.get(), mixed.get(), &params), 1);
        TestBitmap expected(source);
        VokBitmapBlendBitmap(expected.get(), full.get(), 0, static_cast<float>(strength));
        EXPECT_EQ(mixed.bytes(), expected.bytes()) << strength;
        if (strength == 0.0) {
            EXPECT_EQ(mixed.bytes(), source.bytes());
        }
        if (strength == 1.0) {
            // Equal to the plain run up to the compositing's rounding.
            const auto a = mixed.bytes(), b = full.bytes();
            for (size_t i = 0; i < a.size(); ++i) EXPECT_NEAR(a[i], b[i], 1) << i;
        }
    }
    // A failing effect still mixes (a copy of itself) and reports the failure.
    Effect failing(one_step("gamma", "{}"));
    TestBitmap bitmap(source);
    const VokEffectParams half = params_with(0.5);
    LogCapture log;
    EXPECT_EQ(TESKRunAdjustableAlphaEffect(failing.get(), bitmap.get(), &half), 0);
    EXPECT_TRUE(log.only("Gamma Processor failed: value is missing."));
    EXPECT_EQ(TESKRunAdjustableAlphaEffect(failing.get(), nullptr, &half), 0);
}

TEST(TonalProcessors, AdjustmentsScaleOnlyTheOpacity) {
    expect_same_as_engine(
        "adjustments",
        R"({"brightness":30,"contrast":-20,"warmth":40,"saturation":50,"alpha":0.9,
            "blendMode":"normal"})",
        0.5, [](VokBitmap *b) {
            VokToolAdjustBrightnessContrastWarmthSaturationProcessor(b, 30, -20, 40, 50, 0,
                                                                     static_cast<float>(0.9 * 0.5));
        });
    {
        // Unreadable doubles default with their messages, in this order.
        TestBitmap runner(7, 7), direct(7, 7);
        runner.randomize(4);
        direct.randomize(4);
        const VokEffectParams params = params_with(0.5);
        Effect effect(one_step("adjustments", R"({"brightness":1e999,"contrast":1e999,
            "warmth":1e999,"saturation":60,"alpha":1e999,"blendMode":"Multiply"})"));
        LogCapture log;
        EXPECT_EQ(TESKRunEffect(effect.get(), runner.get(), &params), 1);
        const char *expected[] = {"Alpha is not a float. Defaulting to 1.0",
                                  "brightness is not a float. Defaulting to 0.0",
                                  "Contrast is not a float. Defaulting to 0.0",
                                  "Warmth is not a float. Defaulting to 0.0",
                                  "No blend mode found with name: Multiply. Defaulting to normal."};
        ASSERT_EQ(log.messages().size(), 5u);
        for (int i = 0; i < 5; ++i) {
            EXPECT_EQ(log.messages()[i].text, expected[i]);
            EXPECT_EQ(log.messages()[i].priority, i == 4 ? 4 : 3);
        }
        VokToolAdjustBrightnessContrastWarmthSaturationProcessor(direct.get(), 0, 0, 0, 60, 0,
                                                                 1.0f);
        EXPECT_EQ(runner.bytes(), direct.bytes());
    }
    expect_failure("adjustments",
                   R"({"brightness":1,"contrast":1,"warmth":1,"saturation":1,"alpha":1})",
                   "Sharpness Processor failed: amount, blendMode, or alpha param is missing.");
}
TEST(DetailProcessors, SharpnessScalesOnlyTheOpacity) {
    expect_same_as_engine("sharpness", R"({"amount":2.5,"alpha":0.8,"blendMode":"screen"})", 0.5,
                          [](VokBitmap *b) {
                              VokConvolutionProcessorSharpenAndBlendWithOriginal(b, 2.5f, 0.4f, 3);
                          });
    expect_failure("sharpness", R"({"amount":2.5,"blendMode":"screen"})",
                   "Sharpness Processor failed: amount, blendMode, or alpha param is missing.");
}

