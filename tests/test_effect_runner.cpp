// Loading effect descriptions, the processor loop and the adjustable-strength run.
#include <gtest/gtest.h>

#include <cstring>
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

// Two trees alike to the bit: types, texts, number readings and their flags, key order.
void expect_same_tree(yajl_val a, yajl_val b, const std::string &where) {
    ASSERT_EQ(a == nullptr, b == nullptr) << where;
    if (a == nullptr) return;
    ASSERT_EQ(a->type, b->type) << where;
    switch (a->type) {
        case yajl_t_string:
            EXPECT_STREQ(a->u.string, b->u.string) << where;
            break;
        case yajl_t_number:
            EXPECT_STREQ(a->u.number.r, b->u.number.r) << where;
            EXPECT_EQ(a->u.number.flags, b->u.number.flags) << where;
            if (a->u.number.flags & YAJL_NUMBER_INT_VALID) {
                EXPECT_EQ(a->u.number.i, b->u.number.i) << where;
            }
            if (a->u.number.flags & YAJL_NUMBER_DOUBLE_VALID) {
                EXPECT_EQ(0, memcmp(&a->u.number.d, &b->u.number.d, sizeof(double))) << where;
            }
            break;
        case yajl_t_object:
            ASSERT_EQ(a->u.object.len, b->u.object.len) << where;
            for (size_t i = 0; i < a->u.object.len; ++i) {
                EXPECT_STREQ(a->u.object.keys[i], b->u.object.keys[i]) << where;
                expect_same_tree(a->u.object.values[i], b->u.object.values[i],
                                 where + "." + a->u.object.keys[i]);
            }
            break;
        case yajl_t_array:
            ASSERT_EQ(a->u.array.len, b->u.array.len) << where;
            for (size_t i = 0; i < a->u.array.len; ++i)
                expect_same_tree(a->u.array.values[i], b->u.array.values[i],
                                 where + "[" + std::to_string(i) + "]");
            break;
        default:
            break;
    }
}

// The loader builds its own tree (so that running out of memory cannot crash
// the parser); it must be yajl's tree exactly, number flags above all.
TEST(EffectLoad, TreeIsYajlsTreeToTheBit) {
    const char *values[] = {
        "0", "-0", "12", "-12", "12.0", "1e2", "1E-2", "-0.5", "9223372036854775807",
        "9223372036854775808", "-9223372036854775808", "-9223372036854775809",
        "99999999999999999999", "1e999", "-1e999", "1e-400", "4.9e-324", "0.1",
        R"("text")", R"("esc\"aped\n\u00e9\ud83d\ude00")", "\"\"", "true", "false", "null",
        "[]", "{}", R"([1, [2, [3, {"a": [4.5, "b"]}]]])", R"({"k": 1, "k": 2, "": null})",
        "/* comment */ [1, // line\n 2]"};
    for (const char *value : values) {
        const std::string text =
            std::string(R"({"identifier": "t", "processors": [], "v": )") + value + "}";
        const vok_test::Effect ours(text);
        char error[64];
        yajl_val theirs = yajl_tree_parse(text.c_str(), error, sizeof error);
        ASSERT_NE(theirs, nullptr) << value;
        expect_same_tree(ours.get(), theirs, value);
        yajl_tree_free(theirs);
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
