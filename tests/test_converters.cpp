// JSON value converters: colours, keywords and gradient stops (histogram maps and
// the border-shape block are read through their processors).
#include <gtest/gtest.h>

#include <string>

#include "support/bitmaps.h"
#include "support/json_doc.h"

using vok_test::JsonValue;
using vok_test::Lines;
using vok_test::LogCapture;

TEST(ValueConverters, ColoursAndKeywordsMatchExactlyOrDefaultOrFail) {
    using Converter = int (*)(VokJsonValue, uint32_t *);
    // The colour as 0xRRGGBBAA; 0x09090909 is the colour left untouched.
    const Converter color = [](VokJsonValue v, uint32_t *out) {
        VokColor c{9, 9, 9, 9};
        const int result = TESKColorFromColorVal(v, &c);
        *out = uint32_t{c.red} << 24 | uint32_t{c.green} << 16 | uint32_t{c.blue} << 8 | c.alpha;
        return result;
    };
    const Converter blend = TESKBlendModeFromBlendModeVal, shape = TESKBorderShapeModeFromBorderShapeModeVal;
    const Converter style = TESKBorderStyleFromBorderStyleTypeVal, flare = TESKFlareTypeFromFlareTypeVal;
    const std::string error = "3 Error in color to vok color conversion: ";
    const Lines missing{error + "missing or errant r,g,b, or a value."}, range{error + "r,g,b,a outside of [0,255] range."};
    const uint32_t kept = 0x09090909;
    // A keyword left untouched is 77.
    const struct { Converter convert; const char *json; int result; uint32_t value; Lines log; } cases[] = {
        {color, R"({"r":255,"g":0,"b":128,"a":7})", 1, 0xFF008007, {}},
        {color, "[1,2,3,4]", 0, kept, {error + "missing or invalid color object."}},
        {color, R"({"r":255,"g":0,"b":0})", 0, kept, missing},
        {color, R"({"r":"1","g":0,"b":0,"a":0})", 0, kept, missing},
        {color, R"({"r":256,"g":0,"b":0,"a":0})", 0, kept, range},
        {color, R"({"r":0,"g":0,"b":0,"a":-1})", 0, kept, range},
        {color, R"({"r":0,"g":12.5,"b":0,"a":0})", 0, kept, range},  // a non-integer text reads out of range
        {blend, "\"heat\"", 1, 28, {}}, {shape, "\"ultraSharp\"", 1, 3, {}}, {style, "\"torn_2\"", 1, 9, {}},
        {style, "\"viewfinder\"", 1, 16, {}}, {flare, "\"lobes\"", 1, 7, {}}, {flare, "\"stripe\"", 1, 9, {}},
        {flare, "\"dimondFlare\"", 1, 11, {}}, {flare, "\"blob2\"", 1, 18, {}},
        {blend, "\"Overlay\"", 1, 0, {"4 No blend mode found with name: Overlay. Defaulting to normal."}},
        {blend, "3", 1, 0, {"4 Missing blend mode. Defaulting to normal."}},
        {shape, "\"Sharp\"", 1, 0, {"4 No border shape mode found with name: Sharp. Defaulting to normal."}},
        {shape, "null", 1, 0, {"4 Missing border shape mode. Defaulting to normal."}},
        {style, "\"none\"", 0, 77, {"3 No border style found with name: none\n"}},
        {style, "{}", 0, 77, {"3 Missing or invalid blend mode."}},
        {flare, "\"diamondFlare\"", 0, 77, {"3 No flare type found with name: diamondFlare\n"}},
        {flare, "8", 0, 77, {"3 Error in flare type to vok flare type conversion: missing or invalid blend mode.\n"}},
    };
    for (const auto &c : cases) {
        JsonValue v(c.json);
        uint32_t value = 77;
        LogCapture log;
        EXPECT_EQ(c.convert(v.get(), &value), c.result) << c.json;
        EXPECT_EQ(value, c.value) << c.json;
        EXPECT_EQ(vok_test::lines(log), c.log) << c.json;
    }
}

TEST(GradientConverter, StoresStopsThroughSinglePrecision) {
    JsonValue colors(R"([{"color":{"r":1,"g":2,"b":3,"a":4},"location":0.1},{"color":{"r":9,"g":0,"b":0,"a":5},"location":2}])");
    JsonValue opacities(R"([{"opacity":0.3,"location":-0.2}])");
    VokColorStop color_stops[2];
    VokOpacityStop opacity_stop;
    VokGradient g{color_stops, &opacity_stop, 2, 1};
    EXPECT_EQ(TESKGradientfromColorsValAndOpacitiesVal(colors.get(), opacities.get(), &g), 1);
    EXPECT_EQ(g.colorStops[0].color, vok_test::rgba(1, 2, 3, 4));
    EXPECT_EQ(g.colorStops[1].color, vok_test::rgba(9, 0, 0, 5));
    EXPECT_EQ(g.colorStops[0].location, static_cast<double>(0.1f));
    EXPECT_EQ(g.opacityStops[0].opacity, static_cast<double>(0.3f));
    EXPECT_EQ(g.opacityStops[0].location, static_cast<double>(-0.2f));
}
