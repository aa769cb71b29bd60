// Loading effect descriptions, the processor loop and the adjustable-strength run.
#include <gtest/gtest.h>

#include <string>

#include "support/bitmaps.h"
#include "support/json_doc.h"

using vok_test::Effect;
using vok_test::lines;
using vok_test::Lines;
using vok_test::LogCapture;
using vok_test::params_with;
using vok_test::TestBitmap;

namespace {

const std::string kEnvelope = "3 Missing or problematic identifier property and/or processors property";

std::string with_processors(const std::string &list) { return R"({"identifier":"t","processors":)" + list + "}"; }

}  // namespace

TEST(EffectLoad, RefusesBadTextWithItsMessageAndLoadsTheRestSilently) {
    const std::string deep = "3 Effect description refused: nested deeper than 64 levels.", brackets(100, '[');
    std::string big = with_processors("[]");
    big.append(16u * 1024u * 1024u - big.size(), ' ');
    // An empty log: the effect loads. The root and the processors array are two levels; brackets in strings
    // (escaped quotes included) do not nest, and a quote in a comment opens no string.
    const struct { std::string json; Lines log; } cases[] = {
        {"{\"identifier\":\"x\",", {"3 Invalid JSON string."}},
        {"{\"processors\":[]}", {kEnvelope}},
        {"{\"identifier\":\"x\",\"processors\":{}}", {kEnvelope}},
        {with_processors("[" + std::string(62, '[') + std::string(62, ']') + "]"), {}},
        {with_processors("[" + std::string(63, '[') + std::string(63, ']') + "]"), {deep}},
        {std::string(200000, '{') + std::string(1000, '['), {deep}},
        {R"({"identifier":"\")" + brackets + R"(\\","x":"{)" + brackets + R"(","processors":[]})", {}},
        {"/* \" */" + std::string(100000, '['), {deep}},
        {"// [[[\n" + with_processors("[/* {{{ */]"), {}},
        {big, {}},
        {big + " ", {"3 Effect description refused: longer than 16 MiB."}},
    };
    for (const auto &c : cases) {
        LogCapture log;
        Effect effect(c.json);
        EXPECT_EQ(effect.get() != nullptr, c.log.empty()) << c.json.substr(0, 60);
        EXPECT_EQ(lines(log), c.log) << c.json.substr(0, 60);
    }
}

TEST(EffectRun, EveryStepRunsTheLastOneDecidesAndNullArgumentsFailSilently) {
    const std::string ok = R"({"name":"original","parameters":{}})", unknown = R"({"name":"Original","parameters":{}})";
    const std::string no_such = "3 No processor found with name: Original";
    const std::string no_name = "3 Missing or problematic name property and/or params property.";
    const struct { std::string list; int result; Lines log; } cases[] = {
        {"[]", 1, {}},
        {"[" + unknown + "," + ok + "]", 1, {no_such}},
        {"[" + unknown + "," + ok + "," + unknown + "]", 0, {no_such, no_such}},
        {"[3]", 0, {"3 Run Processor failed: Processor node is not an object."}},
        {R"([{"name":"original","parameters":[]}])", 0, {no_name}},
        {R"([{"name":"original ","parameters":{}}])", 0, {"3 No processor found with name: original "}},
        {R"([{"name":"legacyProcessor","parameters":{"legacyName":"nope"}}])", 0, {"3 No legacy processor found with name: nope."}},
    };
    TestBitmap bitmap(3, 2);
    bitmap.randomize(7);
    const auto before = bitmap.bytes();
    const VokEffectParams params = params_with(1.0);
    for (const auto &c : cases) {
        Effect effect(with_processors(c.list));
        LogCapture log;
        EXPECT_EQ(TESKRunEffect(effect.get(), bitmap.get(), &params), c.result) << c.list;
        EXPECT_EQ(lines(log), c.log) << c.list;
        EXPECT_EQ(bitmap.bytes(), before) << c.list;
    }
    Effect effect(with_processors("[]"));
    VokBitmap unbuilt{nullptr, 2, 2};
    LogCapture log;
    TESKUnloadEffect(nullptr);
    EXPECT_EQ(TESKLoadEffect(nullptr), nullptr);
    EXPECT_EQ(TESKRunEffectProcessors(nullptr, bitmap.get(), &params) + TESKRunEffectProcessors(effect.get(), nullptr, &params) +
                  TESKRunEffectProcessors(effect.get(), bitmap.get(), nullptr) + TESKRunEffect(effect.get(), &unbuilt, &params) +
                  TESKRunAdjustableAlphaEffect(effect.get(), &unbuilt, &params),
              0);
    EXPECT_TRUE(log.messages().empty());
    // A subtree handed in as an effect.
    vok_test::JsonValue tree(R"({"processors":[]})");
    EXPECT_EQ(TESKRunEffect(tree.get(), bitmap.get(), &params), 0);
    EXPECT_EQ(lines(log), Lines{kEnvelope});
}

TEST(EffectRun, StepsChainAndTheAdjustableRunMixesAFullStrengthRunBack) {
    Effect effect(with_processors(R"([{"name":"gamma","parameters":{"value":2.5}},{"name":"nope","parameters":{}},
                                      {"name":"contrast","parameters":{"value":1.6}}])"));
    TestBitmap source(9, 7);
    source.randomize(17);
    TestBitmap full(source), direct(source);
    const VokEffectParams one = params_with(1.0, 5);
    EXPECT_EQ(TESKRunEffect(effect.get(), full.get(), &one), 1);
    VokBitmapGamma(direct.get(), 2.5f);
    VokBitmapContrastCurve(direct.get(), 1.6f);
    EXPECT_EQ(full.bytes(), direct.bytes());
    for (const double strength : {0.0, 0.4, 1.0}) {
        TestBitmap mixed(source), expected(source);
        const VokEffectParams params = params_with(strength, 5);
        EXPECT_EQ(TESKRunAdjustableAlphaEffect(effect.get(), mixed.get(), &params), 1);
        VokBitmapBlendBitmap(expected.get(), full.get(), 0, static_cast<float>(strength));
        EXPECT_EQ(mixed.bytes(), expected.bytes()) << strength;
    }
    Effect failing(with_processors(R"([{"name":"gamma","parameters":{}}])"));
    EXPECT_EQ(TESKRunAdjustableAlphaEffect(failing.get(), source.get(), &one), 0);
}
