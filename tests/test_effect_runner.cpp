// Loading, the processor loop, one step, and the built-in processors.
#include <gtest/gtest.h>

#include <string>

#include "support/bitmaps.h"
#include "support/json_doc.h"
#include "support/log_capture.h"

using vok_test::Effect;
using vok_test::JsonValue;
using vok_test::LogCapture;
using vok_test::one_step;
using vok_test::TestBitmap;

namespace {

const char kEnvelope[] =
    "Missing or problematic identifier property and/or processors property";
const char kNameParams[] = "Missing or problematic name property and/or params property.";

VokEffectParams default_params() {
    VokEffectParams p;
    VokEffectInitParams(&p);
    return p;
}

std::string with_processors(const std::string &list) {
    return R"({"identifier":"t","processors":)" + list + "}";
}

}  // namespace

TEST(EffectLoad, RefusesBadEnvelopesWithTheirMessages) {
    {
        LogCapture log;
        EXPECT_EQ(TESKLoadEffect(nullptr), nullptr);
        EXPECT_TRUE(log.messages().empty());
    }
    const struct {
        const char *json;
        const char *message;
    } cases[] = {
        {"", "Invalid JSON string."},
        {"{\"identifier\":\"x\",", "Invalid JSON string."},
        {"{\"processors\":[]}", kEnvelope},
        {"{\"identifier\":7,\"processors\":[]}", kEnvelope},
        {"{\"identifier\":\"x\",\"processors\":{}}", kEnvelope},
        {"[]", kEnvelope},
    };
    for (const auto &c : cases) {
        LogCapture log;
        Effect effect(c.json);
        EXPECT_EQ(effect.get(), nullptr) << c.json;
        EXPECT_TRUE(log.only(c.message)) << c.json;
    }
    LogCapture log;
    Effect good(with_processors("[]"));
    EXPECT_NE(good.get(), nullptr);
    EXPECT_TRUE(log.messages().empty());
}

TEST(EffectLoad, RefusesDeepNestingAndOversizeBeforeParsing) {
    const std::string deep_message = "Effect description refused: nested deeper than 64 levels.";
    // Root object and processors array make two levels.
    auto nested = [](int levels) {
        return with_processors("[" + std::string(levels, '[') + std::string(levels, ']') + "]");
    };
    {
        LogCapture log;
        Effect effect(nested(62));
        EXPECT_NE(effect.get(), nullptr);
    }
    {
        LogCapture log;
        Effect effect(nested(63));
        EXPECT_EQ(effect.get(), nullptr);
        EXPECT_TRUE(log.only(deep_message));
    }
    {
        // Far too deep for a recursive free; unbalanced on purpose.
        LogCapture log;
        Effect effect(std::string(200000, '{') + std::string(1000, '['));
        EXPECT_EQ(effect.get(), nullptr);
        EXPECT_TRUE(log.only(deep_message));
    }
    {
        // Brackets inside strings, escaped quotes included, do not count.
        const std::string brackets(100, '[');
        LogCapture log;
        Effect effect(R"({"identifier":"\")" + brackets + R"(\\","x":"{)" + brackets +
                      R"(","processors":[]})");
        EXPECT_NE(effect.get(), nullptr);
        EXPECT_TRUE(log.messages().empty());
    }
    {
        // yajl skips comments, so brackets after a quote inside one still nest.
        LogCapture log;
        Effect effect("/* \" */" + std::string(100000, '['));
        EXPECT_EQ(effect.get(), nullptr);
        EXPECT_TRUE(log.only(deep_message));
        Effect commented("// [[[\n" + with_processors("[/* {{{ */]"));
        EXPECT_NE(commented.get(), nullptr);
    }
    {
        const size_t limit = 16u * 1024u * 1024u;
        std::string big = with_processors("[]");
        big.append(limit - big.size(), ' ');
        LogCapture log;
        Effect at_limit(big);
        EXPECT_NE(at_limit.get(), nullptr);
        big.push_back(' ');
        Effect over(big);
        EXPECT_EQ(over.get(), nullptr);
        EXPECT_TRUE(log.only("Effect description refused: longer than 16 MiB."));
    }
}

TEST(EffectLoad, UnloadNullsTheHandleAndIsHarmlessTwice) {
    VokJsonValue effect = TESKLoadEffect(with_processors("[]").c_str());
    ASSERT_NE(effect, nullptr);
    TESKUnloadEffect(&effect);
    EXPECT_EQ(effect, nullptr);
    TESKUnloadEffect(&effect);
    TESKUnloadEffect(nullptr);
}

TEST(EffectRun, NullArgumentsFailSilently) {
    Effect effect(with_processors("[]"));
    TestBitmap bitmap(2, 2);
    VokEffectParams params = default_params();
    LogCapture log;
    EXPECT_EQ(TESKRunEffectProcessors(nullptr, bitmap.get(), &params), 0);
    EXPECT_EQ(TESKRunEffectProcessors(effect.get(), nullptr, &params), 0);
    EXPECT_EQ(TESKRunEffectProcessors(effect.get(), bitmap.get(), nullptr), 0);
    EXPECT_EQ(TESKRunEffect(nullptr, bitmap.get(), &params), 0);
    VokBitmap unbuilt{nullptr, 2, 2};
    EXPECT_EQ(TESKRunEffect(effect.get(), &unbuilt, &params), 0);
    EXPECT_EQ(TESKRunAdjustableAlphaEffect(effect.get(), &unbuilt, &params), 0);
    EXPECT_TRUE(log.messages().empty());
}

TEST(EffectRun, RunsWithoutAnEnvelopeFail) {
    // A subtree handed in as an effect: no identifier, no processors.
    JsonValue tree(R"({"processors":[]})");
    TestBitmap bitmap(2, 2);
    VokEffectParams params = default_params();
    LogCapture log;
    EXPECT_EQ(TESKRunEffect(tree.get(), bitmap.get(), &params), 0);
    EXPECT_TRUE(log.only(kEnvelope));
}

TEST(EffectRun, EmptyListSucceedsAndTheLastStepDecides) {
    TestBitmap bitmap(3, 2);
    bitmap.randomize(7);
    const auto before = bitmap.bytes();
    VokEffectParams params = default_params();
    const std::string original = R"({"name":"original","parameters":{}})";
    const std::string unknown = R"({"name":"Original","parameters":{}})";
    const struct {
        std::string list;
        int result;
        size_t messages;
    } cases[] = {
        {"[]", 1, 0},
        {"[" + original + "]", 1, 0},
        {"[" + unknown + "," + original + "]", 1, 1},
        {"[" + original + "," + unknown + "]", 0, 1},
        {"[" + unknown + "," + original + "," + unknown + "]", 0, 2},
    };
    for (const auto &c : cases) {
        Effect effect(with_processors(c.list));
        ASSERT_NE(effect.get(), nullptr) << c.list;
        LogCapture log;
        EXPECT_EQ(TESKRunEffect(effect.get(), bitmap.get(), &params), c.result) << c.list;
        EXPECT_EQ(log.messages().size(), c.messages) << c.list;
        if (c.messages) {
            EXPECT_TRUE(log.contains("No processor found with name: Original"));
        }
        EXPECT_EQ(bitmap.bytes(), before);
    }
}

TEST(EffectRun, MalformedStepsFailWithTheirMessages) {
    TestBitmap bitmap(2, 2);
    VokEffectParams params = default_params();
    const struct {
        const char *step;
        const char *message;
    } cases[] = {
        {"3", "Run Processor failed: Processor node is not an object."},
        {"null", "Run Processor failed: Processor node is not an object."},
        {"[]", "Run Processor failed: Processor node is not an object."},
        {R"({"name":"original","parameters":[]})", kNameParams},
        {R"({"name":"original"})", kNameParams},
        {R"({"parameters":{}})", kNameParams},
        {R"({"name":1,"parameters":{}})", kNameParams},
        {R"({"name":"","parameters":{}})", "No processor found with name: "},
        {R"({"name":"original ","parameters":{}})", "No processor found with name: original "},
    };
    for (const auto &c : cases) {
        Effect effect(with_processors(std::string("[") + c.step + "]"));
        LogCapture log;
        EXPECT_EQ(TESKRunEffectProcessors(effect.get(), bitmap.get(), &params), 0) << c.step;
        EXPECT_TRUE(log.only(c.message)) << c.step;
    }
    LogCapture log;
    EXPECT_EQ(TESKRunProcessor(nullptr, bitmap.get(), &params), 0);
    EXPECT_TRUE(log.only("Run Processor failed: Processor node is not an object."));
}

TEST(BuiltinProcessors, LegacyChecksItsNameAndKnowsNoPresetYet) {
    TestBitmap bitmap(2, 2);
    bitmap.randomize(5);
    const auto before = bitmap.bytes();
    VokEffectParams params = default_params();
    {
        LogCapture log;
        EXPECT_EQ(TESKRunLegacyProcessor(nullptr, bitmap.get(), &params), 0);
        EXPECT_TRUE(log.only("Legacy Processor failed: params dne or is not an object."));
    }
    const struct {
        const char *parameters;
        const char *message;
    } cases[] = {
        {"{}", "Legacy Processor failed: legacy border name is incorrect or missing."},
        {R"({"legacyName":3})", "Legacy Processor failed: legacy border name is incorrect or missing."},
        {R"({"legacyName":"nope"})", "No legacy processor found with name: nope."},
    };
    for (const auto &c : cases) {
        Effect effect(one_step("legacyProcessor", c.parameters));
        LogCapture log;
        EXPECT_EQ(TESKRunEffect(effect.get(), bitmap.get(), &params), 0) << c.parameters;
        EXPECT_TRUE(log.only(c.message)) << c.parameters;
    }
    EXPECT_EQ(bitmap.bytes(), before);
}

TEST(BuiltinProcessors, AutoColorsChecksItsColour) {
    TestBitmap bitmap(2, 2);
    VokEffectParams params = default_params();
    JsonValue missing("{}");
    LogCapture log;
    EXPECT_EQ(TESKRunAutoColorsFadeMaxProcessor(missing.get(), bitmap.get(), &params), 0);
    EXPECT_TRUE(log.only(
        "Error in color to vok color conversion: missing or invalid color object."));
    JsonValue bad(R"({"color":{"r":1,"g":2,"b":3}})");
    log.clear();
    EXPECT_EQ(TESKRunAutoColorsFadeMaxProcessor(bad.get(), bitmap.get(), &params), 0);
    EXPECT_TRUE(log.only(
        "Error in color to vok color conversion: missing or errant r,g,b, or a value."));
}
