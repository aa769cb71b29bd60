// Processor runners, each step run by name on a random bitmap: successes against the engine call
// they must make (which pins each strength rule), failures with their exact message, pixels kept.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "support/bitmaps.h"
#include "support/json_doc.h"

using vok_test::Lines;
using vok_test::TestBitmap;

namespace {

// Two colour and two opacity stops, as JSON and built directly; a fresh gradient for each flare, which
// scales the opacities in place.
const std::string kStops = R"("colors":[{"color":{"r":20,"g":40,"b":200,"a":255},"location":0},
    {"color":{"r":250,"g":180,"b":10,"a":255},"location":100}],"opacities":[{"opacity":1,"location":0},{"opacity":0.5,"location":100}])";
struct TwoStops {
    VokColorStop colors[2] = {{{20, 40, 200, 255}, 0.0}, {{250, 180, 10, 255}, 100.0}};
    VokOpacityStop opacities[2] = {{1.0, 0.0}, {0.5, 100.0}};
    VokGradient g{colors, opacities, 2, 2};
};

}  // namespace

TEST(Processors, RunAsTheirEngineCallsOrFailWithTheirMessage) {
    // A histogram map: r brightened, g inverted and `g_length` long, b halved with entry 10 replaced by `b10`.
    VokHistMap map, faded;
    auto histmap = [&map](int g_length = 256, const std::string &b10 = "5") {
        std::string s[3];
        for (int i = 0; i < 256; ++i) {
            const int v[3] = {(i + 255) / 2, 255 - i, i / 2};
            for (int c = 0; c < 3; ++c) {
                map.table[c][i] = static_cast<uint8_t>(v[c]);
                if (c != 1 || i < g_length) s[c] += (i ? "," : "") + (c == 2 && i == 10 ? b10 : std::to_string(v[c]));
            }
        }
        return R"({"histMap":{"r":[)" + s[0] + R"(],"g":[)" + s[1] + R"(],"b":[)" + s[2] + "]}";
    };
    const std::string hist = histmap();
    auto fade = [&](double strength) { faded = map, VokHistMapFade(&faded, strength); };
    const std::string vignette = R"({"color":{"r":10,"g":0,"b":40,"a":230},"blendMode":"multiply","shape":{"vignetteScale":0.8,
        "shapeMode":"sharp","dx":0.1,"scaling":)";
    auto border = [](uint8_t stretch, double scale) {
        return [=](VokBitmap *b) { const VokBorderParams p{15, {10, 0, 40, 230}, 5, 1, stretch, scale, 0.1, 0, 0}; VokBorders(b, &p); };
    };
    TwoStops stops;
    const VokGradientShapeParams placed{0, 1.5, 0.3f, 0.6f, static_cast<float>(30.0f * 0.017453292519943295), 0, 1, 0, 0};
    const std::string place = kStops + R"(,"scale":1.5,"xCenter":0.3,"yCenter":0.6,"angle":30,)";
    const std::string grad = R"({"gradient":{)" + kStops + "},", one = R"({"color":{"r":1,"g":1,"b":1,"a":1})";
    const std::string flare = R"({"dx":0.4,"dy":0.6,"dsx":1.5,"dsy":0.75,"fScale":0.8,"color":{"r":255,"g":200,"b":120,"a":255},)";
    const std::string no_blend = "4 Missing blend mode. Defaulting to normal.", matrix = "3 Color Matrix Processor failed: ";
    const std::string no_shape = "3 vokBorderPopoulateWithShapeTypeVal failed: some params are incorrect or missing.";
    const std::string no_amount = "3 Sharpness Processor failed: amount, blendMode, or alpha param is missing.";
    const std::string hm = "3 HistMap Processor failed: ", entry = hm + "r, g, or b array entry is invalid (must be an integer in [0,255].";
    const std::string stop = "3 Error in vokGradientfromColorsValAndOpacitiesVal: missing or errant ";
    struct Case {  // no engine: the pixels stay
        const char *name; std::string parameters; Lines log; int result = 0; double strength = 1.0;
        std::function<void(VokBitmap *)> engine = nullptr; int32_t seed = 0;
    };
    const Case cases[] = {
        {"histogramMapping", hist + "}", {}, 1, 0.6, [&](VokBitmap *b) { fade(0.6), VokBitmapHistogramTransform(b, &faded); }},
        {"histogramMapping", R"({"histMap":[]})", {hm + "histMap dne or is not an object."}},
        {"histogramMapping", histmap(255) + "}", {hm + "r, g, or b is an array of the wrong length."}},
        {"histogramMapping", histmap(256, "12.0") + "}", {entry}}, {"histogramMapping", histmap(256, "256") + "}", {entry}},
        {"histogramMapping", histmap(256, "-1") + "}", {entry}}, {"histogramMapping", histmap(256, "\"3\"") + "}", {entry}},
        {"histogramMapping", R"({"histMap":{"r":[],"g":[]}})", {hm + "r,g, or b is missing or is not an array."}},
        {"intensityMap", R"({"histMap":{"r":{},"g":[],"b":[]},"alpha":1})", {hm + "r,g, or b is missing or is not an array."}},
        {"intensityMap", hist + R"(,"alpha":0.8,"blendMode":"overlay"})", {}, 1, 0.5,
         [&](VokBitmap *b) { fade(0.5), VokBitmapIntensityMap(b, &faded, 1, 0.8 * 0.5); }},
        {"intensityMap", hist + "}", {hm + "histMap or alpha missing or problematic."}},
        {"gamma", R"({"value":2.2})", {}, 1, 0.5, [](VokBitmap *b) { VokBitmapGamma(b, 1.6f); }},
        {"contrast", R"({"value":3})", {}, 1, 0.25, [](VokBitmap *b) { VokBitmapContrastCurve(b, 1.5f); }},
        {"gamma", R"({"value":"2"})", {"3 Gamma Processor failed: value is missing."}},
        {"contrast", "{}", {"3 Contrast Processor failed: value is missing."}},
        // The strength acts inside each operation, not on the opacity.
        {"colorMatrixTransform", R"({"operations":[{"operation":"brightness","value":1.2},{"operation":"contrast","value":1.5},
            {"operation":"saturation","value":0.4}],"alpha":0.7,"blendMode":"multiply"})", {}, 1, 0.5, [](VokBitmap *b) {
             VokColorMatrix m = VokColorMatrixIdentity;
             VokColorMatrixBrightness(&m, 1.1f), VokColorMatrixContrast(&m, 0.25f), VokColorMatrixAdjSaturation(&m, 0.7f);
             VokBitmapColorMatrixTransformAndBlendWithOriginal(b, &m, 5, 0.7f);
         }},
        // hardSet replaces what came before by 0.75 * gain * entries, plus 0.25 on the diagonal; strength 0 keeps all.
        {"colorMatrixTransform", R"({"operations":[{"operation":"saturation","value":0},{"operation":"hardSet",
            "entries":[0.5,0.25,0,10, 0,1,0.5,-20, 0.125,0,0.75,5],"gain":2}]})", {}, 1, 0.75, [](VokBitmap *b) {
             const VokColorMatrix m{{1.0f, 0.375f, 0, 15, 0, 1.75f, 0.75f, -30, 0.1875f, 0, 1.375f, 7.5f}};
             VokBitmapColorMatrixTransformAndBlendWithOriginal(b, &m, 0, 1.0f);
         }},
        {"colorMatrixTransform", R"({"operations":[{"operation":"hardSet","entries":[2,0,0,9, 0,2,0,9, 0,0,2,9]}]})", {}, 1, 0},
        {"colorMatrixTransform", R"({"operations":{}})", {matrix + "operations dne or is not an array."}},
        {"colorMatrixTransform", R"({"operations":[{"value":1}]})", {matrix + "invalid entry in operations array."}},
        {"colorMatrixTransform", R"({"operations":[{"operation":"contrast"}]})", {matrix + "invalid entry in operations array."}},
        {"colorMatrixTransform", R"({"operations":[{"operation":"gamma","value":1}]})", {matrix + "Operation 'gamma' not found."}},
        {"colorMatrixTransform", R"({"operations":[{"operation":"hardSet","entries":[1,0,0,0,0,1,0,0,0,0,1]}]})",
         {matrix + "invalid entries val for hardSet operation."}},
        {"blendWithColor", R"({"color":{"r":200,"g":30,"b":90,"a":255},"alpha":0.5})", {no_blend}, 1, 0.8,
         [](VokBitmap *b) { VokColor c{200, 30, 90, 255}; VokBitmapBlendWithColor(b, &c, 0, 0.4f); }},
        {"blendWithColor", one + "}", {"3 BlendWithColor Processor failed: color, blendMode, or alpha param is missing."}},
        {"blendWithColor", R"({"color":{"r":1,"g":1,"b":1,"a":300},"alpha":1})",
         {"3 Error in color to vok color conversion: r,g,b,a outside of [0,255] range."}},
        {"noise", R"({"intensity":40})", {}, 1, 0.5, [](VokBitmap *b) { VokBitmapAddNoise(b, 20.0f, 1234u); }, 1234},
        {"noise", R"({"intensity":25})", {}, 1, 1.0, [](VokBitmap *b) { VokBitmapAddNoise(b, 25.0f, 0xFFFFFFFFu); }, -1},
        {"noise", R"({"amount":40})", {"3 Intensity param is missing."}},
        {"adjustments", R"({"brightness":30,"contrast":-20,"warmth":40,"saturation":50,"alpha":0.9,"blendMode":"normal"})", {},
         1, 0.5, [](VokBitmap *b) { VokToolAdjustBrightnessContrastWarmthSaturationProcessor(b, 30, -20, 40, 50, 0, 0.45f); }},
        {"adjustments", R"({"brightness":1e999,"contrast":1e999,"warmth":1e999,"saturation":60,"alpha":1e999,
            "blendMode":"Multiply"})", {"3 Alpha is not a float. Defaulting to 1.0", "3 brightness is not a float. Defaulting to 0.0",
            "3 Contrast is not a float. Defaulting to 0.0", "3 Warmth is not a float. Defaulting to 0.0",
            "4 No blend mode found with name: Multiply. Defaulting to normal."}, 1, 0.5,
         [](VokBitmap *b) { VokToolAdjustBrightnessContrastWarmthSaturationProcessor(b, 0, 0, 0, 60, 0, 1.0f); }},
        {"adjustments", R"({"brightness":1,"contrast":1,"warmth":1,"saturation":1,"alpha":1})", {no_amount}},
        {"sharpness", R"({"amount":2.5,"alpha":0.8,"blendMode":"screen"})", {}, 1, 0.5,
         [](VokBitmap *b) { VokConvolutionProcessorSharpenAndBlendWithOriginal(b, 2.5f, 0.4f, 3); }},
        {"sharpness", R"({"amount":2.5,"blendMode":"screen"})", {no_amount}},
        // A weaker strength pushes the vignette out (strength 0 out of sight); the scale is relative to each side
        // when stretched, else to the mean or the larger side in pixels.
        {"vignette", vignette + R"("stretch"}})", {}, 1, 0.5, border(1, 0.8 / (0.5 + 1e-8))},
        {"vignette", vignette + R"("average"}})", {}, 1, 0.5, border(0, 0.8 * 0.5 * (13 + 9) / (0.5 + 1e-8))},
        {"vignette", vignette + R"("max"}})", {}, 1, 0.25, border(0, 13 * 0.8 / (0.25 + 1e-8))},
        {"vignette", vignette + R"("stretch"}})", {}, 1, 0.0},
        {"vignette", vignette + R"("Max"}})", {"3 Borders Vignette Processor failed: scaling mode Max not defined\n\\"}},
        {"vignette", one + "}", {"3 Borders Vignette Processor failed: some params are incorrect or missing."}},
        {"vignette", one + R"(,"blendMode":"normal","shape":{"vignetteScale":1}})", {no_shape}},
        // The strength scales the colour's alpha (127.5 truncated), except for the finger flare.
        {"flare", flare + R"("blendMode":"screen","type":"gaussianThing2"})", {}, 1, 0.5,
         [](VokBitmap *b) { VokFlare(b, 0.8f, {255, 200, 120, 127}, 2, 0.4f, 0.6f, 1.5f, 0.75f, 3, 0.5); }},
        {"flare", flare + R"("blendMode":"screen","type":"fingerFlare"})", {}, 1, 0.5,
         [](VokBitmap *b) { VokFlare(b, 0.8f, {255, 200, 120, 255}, 14, 0.4f, 0.6f, 1.5f, 0.75f, 3, 0.5); }},
        {"flare", flare + R"("blendMode":"screen","type":"diamondFlare"})", {"3 No flare type found with name: diamondFlare\n"}},
        {"flare", flare + R"("type":"sinc"})", {"3 Flare Processor failed: some params are incorrect or missing."}},
        {"gradient", "{" + place + R"("alpha":0.9,"gradientShape":"linear","blendMode":"overlay"})", {}, 1, 0.5,
         [&](VokBitmap *b) { VokGradientApply(b, &placed, &stops.g, 1, 0.45f); }},
        // The vignette block of a gradient sees strength 1 and no epsilon.
        {"gradient", "{" + place + R"("alpha":1,"gradientShape":"linearVignette","vignetteShape":{"vignetteScale":0.6,
            "scaling":"stretch","shapeMode":"sharp","dx":0.2,"dy":-0.1}})", {no_blend}, 1, 0.75, [&](VokBitmap *b) {
             const VokGradientShapeParams p{2, placed.scale, placed.xCenter, placed.yCenter, placed.angle, 1, 0.6, 0.2, -0.1};
             VokGradientApply(b, &p, &stops.g, 0, 0.75f);
         }},
        {"gradient", "{" + place + R"("gradientShape":"linear"})", {"3 Gradient Processor failed: something is missing."}},
        {"gradient", "{" + place + R"("alpha":1,"gradientShape":"Radial"})", {matrix + "shape mode 'Radial' not found."}},
        {"gradient", "{" + place + R"("alpha":1,"gradientShape":"linearVignette","blendMode":"normal"})", {no_shape}},
        {"gradientMap", grad + R"("alpha":0.8,"gradientVariable":"maxChannel","invertGradient":"true","blendMode":"overlay"})",
         {}, 1, 0.5, [&](VokBitmap *b) { VokGradientMapApply(b, &stops.g, 5, 1, 1, 0.4); }},
        {"gradientMap", grad + R"("alpha":0.8,"gradientVariable":"maxChannel","invertGradient":"false","blendMode":"overlay"})",
         {}, 1, 0.5, [&](VokBitmap *b) { VokGradientMapApply(b, &stops.g, 5, 0, 1, 0.4); }},
        {"gradientMap", grad + R"("gradientVariable":"Chroma","invertGradient":true})", {"3 Alpha not a float.  Defaulting to 0.0.",
            "3 Gradient Variable doesn't match.  Defaulting to intensity.", no_blend}, 1},
        {"gradientMap", R"({"alpha":1})", {"3 vokGradientfromColorsValAndOpacitiesVal failed: opacities or colors is not an array"}},
        {"gradientMap", R"({"gradient":{"colors":[],"opacities":[{"opacity":"1","location":0}]}})", {stop + "opacity or location."}},
        // The aspect mode falls back to fill although the message says Stretch.
        {"gradientFlare", grad + R"("alpha":0.8,"gradientShapeType":"circle","invertGradient":"true","aspectMode":"Fit",
            "gradientTransform":[1.5,0,0,0.1, 0,1,"x",0, 0,0,1,0, 0,0,0,1],"gradientParams":[0.5,0.25,"y",0,0,0,0,0,0,0,0,0,0,0,0,0],
            "gradientWrapMode":"repeat","blendMode":"screen"})", {"3 Aspect Mode doesn't match.  Defaulting to Stretch.",
            "3 Entries in the gradient transform matrix must be floats.", "3 Entries in the gradient parameters matrix must be floats."},
         1, 0.5, [](VokBitmap *b) {
             double t[16] = {1.5, 0, 0, 0.1, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}, p[16] = {0.5, 0.25};
             TwoStops g;
             VokGradientFlareParams r{2, p, t, 1, &g.g, 1, 1, 3, 0.8 * 0.5, 0};
             VokGradientFlareApply(b, &r);
         }},
        // A boolean true does not invert.
        {"gradientFlare", grad + R"("alpha":1,"invertGradient":true,"aspectMode":7,"gradientTransform":[1],
            "gradientWrapMode":"Clamp"})", {"3 Shape not a string.  Defaulting to Line.", "3 Aspect Mode not a string.  Defaulting to Stretch.",
            "3 error: gradient transform must be a 16 length float array.  Defaulting to Identity.",
            "3 error: gradient params must be a 16 length float array.  Defaulting to Zeros.",
            "3 Wrap mode doesn't match.  Defaulting to clamp.", no_blend}, 1, 1.0, [](VokBitmap *b) {
             double t[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}, p[16] = {};
             TwoStops g;
             VokGradientFlareParams r{1, p, t, 1, &g.g, 0, 0, 0, 1.0, 0};
             VokGradientFlareApply(b, &r);
         }},
        {"gradientFlare", R"({"gradient":{"colors":[{"location":0}],"opacities":[]}})", {stop + "color or location."}},
        {"legacyProcessor", "{}", {"3 Legacy Processor failed: legacy border name is incorrect or missing."}},
        {"legacyProcessor", R"({"legacyName":"sepiaDream"})", {"3 No legacy processor found with name: sepiaDream."}},
        {"legacyProcessor", R"({"legacyName":"autocontrast"})", {"3 No legacy processor found with name: autocontrast."}},
        {"legacyProcessor", R"({"legacyName":"autoContrast"})", {}, 1, 0.5, [](VokBitmap *b) { VokVaryingContrast(b, 0.5f); }},
        {"legacyProcessor", R"({"legacyName":"autoColourTone"})", {}, 1, 0.7, [](VokBitmap *b) { VokLabCorrect(b, 0.7f); }},
    };
    for (const auto &c : cases) {
        TestBitmap bitmap(13, 9);
        bitmap.randomize(11);
        TestBitmap expected(bitmap);
        const VokEffectParams params = vok_test::params_with(c.strength, c.seed);
        vok_test::Effect effect(R"({"identifier":"t","processors":[{"name":")" + std::string(c.name) + R"(","parameters":)" +
                                c.parameters + "}]}");
        vok_test::LogCapture log;
        EXPECT_EQ(TESKRunEffect(effect.get(), bitmap.get(), &params), c.result) << c.parameters;
        EXPECT_EQ(vok_test::lines(log), c.log) << c.parameters;
        EXPECT_EQ(bitmap.bytes() == expected.bytes(), !c.engine) << c.parameters;
        if (c.engine) c.engine(expected.get());
        EXPECT_EQ(bitmap.bytes(), expected.bytes()) << c.parameters;
    }
    // Parameters that are no object reach the runners only directly; so does the automatic-colours
    // runner, outside the name table.
    const struct { int (*run)(VokJsonValue, VokBitmap *, const VokEffectParams *); const char *parameters, *message; } direct[] = {
        {TESKRunHistogramMappingProcessor, "3", "HistMap Processor failed: params dne or is not an object."},
        {TESKRunColorMatrixTransformProcessor, "null", "Color Matrix Processor failed: params dne or is not an object."},
        {TESKRunBlendWithColorProcessor, "1", "BlendWithColor Processor failed: params dne or is not an object."},
        {TESKRunVignetteProcessor, "1", "Borders Vignette Processor failed: params dne or is not an object."},
        {TESKRunFlareProcessor, "1", "Flare Processor failed: params dne or is not an object."},
        {TESKRunLegacyProcessor, "[]", "Legacy Processor failed: params dne or is not an object."},
    };
    TestBitmap bitmap(2, 2);
    const VokEffectParams params = vok_test::params_with(1.0);
    for (const auto &c : direct) {
        vok_test::JsonValue v(c.parameters);
        vok_test::LogCapture log;
        EXPECT_EQ(c.run(v.get(), bitmap.get(), &params), 0) << c.message;
        EXPECT_EQ(vok_test::lines(log), Lines{std::string("3 ") + c.message});
    }
    // The automatic-colours runner hands the engine the strength and the colour.
    TestBitmap colours(13, 9), expected(13, 9);
    colours.randomize(12);
    std::copy_n(colours.get()->pixels, 13 * 9 * 4, expected.get()->pixels);
    const VokColor warm = {250, 190, 120, 200};
    VokAutoColorsFadeMaxColor(expected.get(), 0.5, &warm);
    vok_test::JsonValue colour(R"({"color":{"r":250,"g":190,"b":120,"a":200}})");
    const VokEffectParams half = vok_test::params_with(0.5);
    EXPECT_EQ(TESKRunAutoColorsFadeMaxProcessor(colour.get(), colours.get(), &half), 1);
    EXPECT_EQ(colours.bytes(), expected.bytes());
    vok_test::JsonValue no_colour(R"({"colour":{}})");
    EXPECT_EQ(TESKRunAutoColorsFadeMaxProcessor(no_colour.get(), colours.get(), &half), 0);
}

// Worked bytes, independent of the engine functions the table above calls.
TEST(Processors, GammaAndFadedMapsRoundAsWorkedByHand) {
    std::string zeros = "[0";
    for (int i = 1; i < 256; ++i) zeros += ",0";
    zeros += "]";
    const struct { std::string step; double strength; VokColor in, out; } cases[] = {
        // 255 (200/255)^2 + 0.5 = 157.36; (128/255)^2: 64.75; 1: 0.5 truncates to 0.
        {R"({"name":"gamma","parameters":{"value":2}})", 1.0, {200, 128, 1, 9}, {157, 64, 0, 9}},
        // Every map entry 0, faded by half: level v gives v / 2 rounded half up.
        {R"({"name":"histogramMapping","parameters":{"histMap":{"r":)" + zeros + R"(,"g":)" + zeros +
             R"(,"b":)" + zeros + "}}}",
         0.5, {1, 3, 254, 9}, {1, 2, 127, 9}},
    };
    for (const auto &c : cases) {
        TestBitmap px(1, 1);
        px.at(0, 0) = c.in;
        const VokEffectParams params = vok_test::params_with(c.strength);
        vok_test::Effect effect(R"({"identifier":"t","processors":[)" + c.step + "]}");
        EXPECT_EQ(TESKRunEffect(effect.get(), px.get(), &params), 1) << c.step;
        EXPECT_EQ(px.at(0, 0), c.out) << c.step;
    }
}

// The adjustment tools' entry point is the "adjustments" processor at full opacity.
TEST(Processors, ToolAdjustmentMatchesTheAdjustmentsProcessor) {
    TestBitmap by_tool(13, 9);
    by_tool.randomize(31);
    TestBitmap by_effect(by_tool);
    VokToolAdjustColorProcessor(by_tool.get(), 20, -30, 45, 60);
    vok_test::Effect effect(R"({"identifier":"t","processors":[{"name":"adjustments","parameters":
        {"brightness":20,"contrast":-30,"warmth":45,"saturation":60,"alpha":1,"blendMode":"normal"}}]})");
    const VokEffectParams params = vok_test::params_with(1.0);
    ASSERT_EQ(TESKRunEffect(effect.get(), by_effect.get(), &params), 1);
    EXPECT_EQ(by_tool.bytes(), by_effect.bytes());
}
