// JSON value converters: colours, histogram maps, keywords, the border-shape
// block, strength mixing and gradients.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "support/json_doc.h"
#include "support/log_capture.h"
#include "vok/effects.h"

using vok_test::JsonValue;
using vok_test::LogCapture;

namespace {

// r: identity, g: inverted, b: halved; `override_b` replaces blue entry 10.
std::string histmap_json(int g_length = 256, const std::string &override_b = "") {
    std::string r = "[", g = "[", b = "[";
    for (int i = 0; i < 256; ++i) {
        const char *sep = i ? "," : "";
        r += sep + std::to_string(i);
        b += sep + (i == 10 && !override_b.empty() ? override_b : std::to_string(i / 2));
    }
    for (int i = 0; i < g_length; ++i) g += (i ? "," : "") + std::to_string(255 - (i & 255));
    return R"({"r":)" + r + R"(],"g":)" + g + R"(],"b":)" + b + "]}";
}

}  // namespace

TEST(ColorConverter, ChecksPresenceThenRange) {
    VokColor out{1, 2, 3, 4};
    {
        JsonValue v(R"({"r":255,"g":0,"b":128,"a":7})");
        LogCapture log;
        ASSERT_EQ(TESKColorFromColorVal(v.get(), &out), 1);
        EXPECT_EQ(out.red, 255);
        EXPECT_EQ(out.green, 0);
        EXPECT_EQ(out.blue, 128);
        EXPECT_EQ(out.alpha, 7);
        EXPECT_TRUE(log.messages().empty());
    }
    const std::string missing =
        "Error in color to vok color conversion: missing or errant r,g,b, or a value.";
    const std::string range =
        "Error in color to vok color conversion: r,g,b,a outside of [0,255] range.";
    const std::string object =
        "Error in color to vok color conversion: missing or invalid color object.";
    const struct {
        const char *json;
        std::string message;
    } cases[] = {
        {"null", object},
        {"[1,2,3,4]", object},
        {R"({"r":255,"g":0,"b":0})", missing},
        {R"({"r":"1","g":0,"b":0,"a":0})", missing},
        {R"({"r":256,"g":0,"b":0,"a":0})", range},
        {R"({"r":0,"g":0,"b":0,"a":-1})", range},
        {R"({"r":0,"g":12.5,"b":0,"a":0})", range},  // non-integer text reads out of range
    };
    for (const auto &c : cases) {
        JsonValue v(c.json);
        VokColor kept{9, 9, 9, 9};
        LogCapture log;
        EXPECT_EQ(TESKColorFromColorVal(v.get(), &kept), 0) << c.json;
        EXPECT_TRUE(log.only(c.message)) << c.json;
        EXPECT_EQ(kept.red + kept.green + kept.blue + kept.alpha, 36) << c.json;
    }
}

TEST(HistMapConverter, ReadsThreeTablesAndRefusesBadOnes) {
    VokHistMap map;
    {
        JsonValue v(histmap_json());
        LogCapture log;
        ASSERT_EQ(TESKHistMapfromHistMapVal(v.get(), &map), 1);
        EXPECT_TRUE(log.messages().empty());
        for (int i = 0; i < 256; ++i) {
            EXPECT_EQ(map.table[0][i], i);
            EXPECT_EQ(map.table[1][i], 255 - i);
            EXPECT_EQ(map.table[2][i], i / 2);
        }
    }
    {
        JsonValue v(histmap_json(255));
        LogCapture log;
        EXPECT_EQ(TESKHistMapfromHistMapVal(v.get(), &map), 0);
        EXPECT_TRUE(log.only("HistMap Processor failed: r, g, or b is an array of the wrong length."));
    }
    for (const char *bad : {"12.0", "256", "-1", "\"3\""}) {
        JsonValue v(histmap_json(256, bad));
        memset(&map, 0x77, sizeof map);
        LogCapture log;
        EXPECT_EQ(TESKHistMapfromHistMapVal(v.get(), &map), 0) << bad;
        EXPECT_TRUE(log.only("HistMap Processor failed: r, g, or b array entry is invalid (must "
                             "be an integer in [0,255].")) << bad;
        // Indices before the bad one are written, the bad index is not.
        EXPECT_EQ(map.table[1][9], 246);
        EXPECT_EQ(map.table[0][10], 0x77);
    }
    for (const char *json : {"null", R"({"r":[],"g":[]})", R"({"r":{},"g":[],"b":[]})"}) {
        JsonValue v(json);
        LogCapture log;
        EXPECT_EQ(TESKHistMapfromHistMapVal(v.get(), &map), 0) << json;
        EXPECT_TRUE(log.only("HistMap Processor failed: r,g, or b is missing or is not an array."));
    }
}

TEST(KeywordConverters, MatchExactlyAndDefaultOrFailWithTheirMessages) {
    using Converter = int (*)(VokJsonValue, uint32_t *);
    const Converter blend = TESKBlendModeFromBlendModeVal;
    const Converter shape = TESKBorderShapeModeFromBorderShapeModeVal;
    const Converter style = TESKBorderStyleFromBorderStyleTypeVal;
    const Converter flare = TESKFlareTypeFromFlareTypeVal;
    const char *flare_missing =
        "Error in flare type to vok flare type conversion: missing or invalid blend mode.\n";
    // value 77 means "left untouched"; priority 0 means "nothing logged".
    const struct {
        Converter convert;
        const char *json;
        int result;
        uint32_t value;
        const char *message;
        int priority;
    } cases[] = {
        {blend, "\"overlay\"", 1, 1, "", 0},
        {blend, "\"interpolation\"", 1, 15, "", 0},
        {blend, "\"heat\"", 1, 28, "", 0},
        {blend, "\"Overlay\"", 1, 0, "No blend mode found with name: Overlay. Defaulting to normal.", 4},
        {blend, "3", 1, 0, "Missing blend mode. Defaulting to normal.", 4},
        {shape, "\"ultraSharp\"", 1, 3, "", 0},
        {shape, "\"Sharp\"", 1, 0, "No border shape mode found with name: Sharp. Defaulting to normal.", 4},
        {shape, "null", 1, 0, "Missing border shape mode. Defaulting to normal.", 4},
        {style, "\"torn_2\"", 1, 9, "", 0},
        {style, "\"viewfinder\"", 1, 16, "", 0},
        {style, "\"none\"", 0, 77, "No border style found with name: none\n", 3},
        {style, "{}", 0, 77, "Missing or invalid blend mode.", 3},
        {flare, "\"lobes\"", 1, 7, "", 0},
        {flare, "\"stripe\"", 1, 9, "", 0},
        {flare, "\"dimondFlare\"", 1, 11, "", 0},
        {flare, "\"blob2\"", 1, 18, "", 0},
        {flare, "\"diamondFlare\"", 0, 77, "No flare type found with name: diamondFlare\n", 3},
        {flare, "8", 0, 77, flare_missing, 3},
    };
    for (const auto &c : cases) {
        JsonValue v(c.json);
        uint32_t value = 77;
        LogCapture log;
        EXPECT_EQ(c.convert(v.get(), &value), c.result) << c.json;
        EXPECT_EQ(value, c.value) << c.json;
        if (c.priority) {
            EXPECT_TRUE(log.only(c.message, c.priority)) << c.json;
        } else {
            EXPECT_TRUE(log.messages().empty()) << c.json;
        }
    }
}

TEST(BorderShapeBlock, ScalesByModeAndStrength) {
    VokBitmap bitmap{nullptr, 300, 100};
    const struct {
        const char *json;
        float strength;
        uint8_t epsilon;
        uint8_t stretch;
        double scale;
    } cases[] = {
        {R"({"vignetteScale":1,"scaling":"average"})", 1.0f, 1, 0, 200.0 / (1.0 + 1e-8)},
        {R"({"vignetteScale":1,"scaling":"average"})", 1.0f, 0, 0, 200.0},
        {R"({"vignetteScale":0.5,"scaling":"max"})", 0.5f, 0, 0, 300.0},
        {R"({"vignetteScale":0.8,"scaling":"stretch"})", 0.25f, 0, 1, 0.8 / 0.25},
        {R"({"vignetteScale":0.8,"scaling":"stretch"})", 0.0f, 1, 1, 0.8 / 1e-8},
    };
    for (const auto &c : cases) {
        JsonValue v(c.json);
        VokBorderParams border{};
        border.stretch = 7;
        LogCapture log;
        ASSERT_EQ(TESKBorderPopoulateWithShapeTypeVal(v.get(), &border, &bitmap, c.strength,
                                                      c.epsilon), 1) << c.json;
        EXPECT_EQ(border.stretch, c.stretch) << c.json;
        EXPECT_EQ(border.scale, c.scale) << c.json;
        EXPECT_EQ(border.dx, 0.0);
        EXPECT_EQ(border.shapeMode, 0u);
        EXPECT_TRUE(log.only("Missing border shape mode. Defaulting to normal.", 4));
    }
    {
        JsonValue v(R"({"vignetteScale":1,"scaling":"max","shapeMode":"mediumSharp",
                        "dx":0.25,"dy":-0.5})");
        VokBorderParams border{};
        LogCapture log;
        ASSERT_EQ(TESKBorderPopoulateWithShapeTypeVal(v.get(), &border, &bitmap, 1.0f, 0), 1);
        EXPECT_EQ(border.shapeMode, 2u);
        EXPECT_EQ(border.dx, 0.25);
        EXPECT_EQ(border.dy, -0.5);
        EXPECT_TRUE(log.messages().empty());
    }
    const std::string missing =
        "vokBorderPopoulateWithShapeTypeVal failed: some params are incorrect or missing.";
    for (const char *json : {R"({"scaling":"max"})", R"({"vignetteScale":1})",
                             R"({"vignetteScale":"1","scaling":"max"})", "null"}) {
        JsonValue v(json);
        VokBorderParams border{};
        LogCapture log;
        EXPECT_EQ(TESKBorderPopoulateWithShapeTypeVal(v.get(), &border, &bitmap, 1.0f, 1), 0);
        EXPECT_TRUE(log.only(missing)) << json;
    }
    JsonValue v(R"({"vignetteScale":1,"scaling":"Max","shapeMode":"sharp","dx":2})");
    VokBorderParams border{};
    LogCapture log;
    EXPECT_EQ(TESKBorderPopoulateWithShapeTypeVal(v.get(), &border, &bitmap, 1.0f, 1), 0);
    EXPECT_TRUE(log.only("Borders Vignette Processor failed: scaling mode Max not defined\n\\"));
    EXPECT_EQ(border.dx, 2.0);  // the offsets and shape mode are written first
    EXPECT_EQ(border.shapeMode, 1u);
}

TEST(BlendAroundIdentity, MixesInSinglePrecision) {
    EXPECT_EQ(TESKBlendAroundIdentity(2.2f, 1.0f, 0.5f), 1.6f);
    EXPECT_EQ(TESKBlendAroundIdentity(2.2f, 1.0f, 0.0f), 1.0f);
    EXPECT_EQ(TESKBlendAroundIdentity(0.7f, 1.0f, 0.3f), 0.3f * 0.7f + 0.7f);
}

TEST(GradientConverter, StoresStopsInOrderThroughSinglePrecision) {
    JsonValue colors(R"([{"color":{"r":1,"g":2,"b":3,"a":4},"location":0.1},
                         {"color":{"r":255,"g":0,"b":0,"a":255},"location":1.5}])");
    JsonValue opacities(R"([{"opacity":0.3,"location":-0.2}])");
    VokGradient g;
    ASSERT_EQ(VokGradientBuild(&g, 2, 1), 1);
    LogCapture log;
    EXPECT_EQ(TESKGradientfromColorsValAndOpacitiesVal(colors.get(), opacities.get(), &g), 1);
    EXPECT_TRUE(log.messages().empty());
    EXPECT_EQ(g.colorStops[0].color.blue, 3);
    EXPECT_EQ(g.colorStops[0].location, static_cast<double>(0.1f));
    EXPECT_EQ(g.colorStops[1].color.red, 255);
    EXPECT_EQ(g.colorStops[1].location, 1.5);
    EXPECT_EQ(g.opacityStops[0].opacity, static_cast<double>(0.3f));
    EXPECT_EQ(g.opacityStops[0].location, static_cast<double>(-0.2f));
    VokGradientFree(&g);

    JsonValue empty("[]"), object("{}");
    VokGradient none{};
    EXPECT_EQ(TESKGradientfromColorsValAndOpacitiesVal(empty.get(), empty.get(), &none), 1);
    EXPECT_EQ(TESKGradientfromColorsValAndOpacitiesVal(empty.get(), object.get(), &none), 0);
    EXPECT_TRUE(log.only("vokGradientfromColorsValAndOpacitiesVal failed: opacities or colors "
                         "is not an array"));

    const struct {
        const char *colors, *opacities, *message;
    } cases[] = {
        {R"([{"color":{"r":1,"g":2,"b":3,"a":4}}])", "[]",
         "Error in vokGradientfromColorsValAndOpacitiesVal: missing or errant color or location."},
        {R"([{"color":{"r":1,"g":2,"b":3},"location":0}])", "[]",
         "Error in color to vok color conversion: missing or errant r,g,b, or a value."},
        {"[]", R"([{"opacity":"1","location":0}])",
         "Error in vokGradientfromColorsValAndOpacitiesVal: missing or errant opacity or "
         "location."},
    };
    for (const auto &c : cases) {
        JsonValue cv(c.colors), ov(c.opacities);
        VokGradient one;
        ASSERT_EQ(VokGradientBuild(&one, 1, 1), 1);
        log.clear();
        EXPECT_EQ(TESKGradientfromColorsValAndOpacitiesVal(cv.get(), ov.get(), &one), 0);
        EXPECT_TRUE(log.only(c.message)) << c.colors << c.opacities;
        VokGradientFree(&one);
    }
}
