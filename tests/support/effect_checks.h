// Checks shared by the processor suites: a runner against the engine call it
// must make, and a failing runner that must leave the bitmap alone.
#ifndef VOK_TESTS_EFFECT_CHECKS_H
#define VOK_TESTS_EFFECT_CHECKS_H

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "support/bitmaps.h"
#include "support/json_doc.h"
#include "support/log_capture.h"
#include "vok/vok_lite.h"

namespace vok_test {

inline VokEffectParams params_with(double strength, int32_t seed = 0) {
    VokEffectParams p;
    VokEffectInitParams(&p);
    p.strength = strength;
    p.seed = seed;
    return p;
}

// One step run on a random bitmap, with what it logged.
struct StepRun {
    StepRun(const std::string &name, const std::string &parameters, double strength = 1.0,
            int32_t seed = 0)
        : bitmap(13, 9), original(13, 9) {
        bitmap.randomize(11);
        original.randomize(11);
        const VokEffectParams params = params_with(strength, seed);
        Effect effect(one_step(name, parameters));
        EXPECT_NE(effect.get(), nullptr) << parameters;
        LogCapture capture;
        result = TESKRunEffect(effect.get(), bitmap.get(), &params);
        for (const auto &m : capture.messages()) log.push_back(m.text);
        unchanged = bitmap.bytes() == original.bytes();
    }
    TestBitmap bitmap;    // after the step
    TestBitmap original;  // the same pixels, untouched
    int result = -1;
    bool unchanged = false;
    std::vector<std::string> log;
};

// The runner and the direct engine call give the same, changed, bytes.
inline void expect_same_as_engine(const std::string &name, const std::string &parameters,
                                  double strength,
                                  const std::function<void(VokBitmap *)> &engine,
                                  int32_t seed = 0) {
    StepRun run(name, parameters, strength, seed);
    EXPECT_EQ(run.result, 1) << name << " " << parameters;
    engine(run.original.get());
    EXPECT_EQ(run.bitmap.bytes(), run.original.bytes()) << name << " " << parameters;
    EXPECT_FALSE(run.unchanged) << name << " " << parameters;
}

// A failing step: result 0, exactly this message at priority 3, pixels kept.
inline void expect_failure(const std::string &name, const std::string &parameters,
                           const std::string &message) {
    TestBitmap bitmap(5, 4);
    bitmap.randomize(3);
    const auto before = bitmap.bytes();
    const VokEffectParams params = params_with(1.0);
    Effect effect(one_step(name, parameters));
    ASSERT_NE(effect.get(), nullptr) << parameters;
    LogCapture log;
    EXPECT_EQ(TESKRunEffect(effect.get(), bitmap.get(), &params), 0) << parameters;
    EXPECT_TRUE(log.only(message)) << name << " " << parameters << " -> "
                                   << (log.messages().empty() ? "" : log.messages()[0].text);
    EXPECT_EQ(bitmap.bytes(), before) << parameters;
}

// Two colour stops and two opacity stops, as JSON members and as a gradient.
inline const char kTwoStopGradientJson[] =
    R"("colors":[{"color":{"r":20,"g":40,"b":200,"a":255},"location":0},
                 {"color":{"r":250,"g":180,"b":10,"a":255},"location":100}],
       "opacities":[{"opacity":1,"location":0},{"opacity":0.5,"location":100}])";

struct TwoStopGradient {
    TwoStopGradient() {
        VokGradientBuild(&g, 2, 2);
        g.colorStops[0] = {{20, 40, 200, 255}, 0.0};
        g.colorStops[1] = {{250, 180, 10, 255}, 100.0};
        g.opacityStops[0] = {1.0, 0.0};
        g.opacityStops[1] = {0.5, 100.0};
    }
    ~TwoStopGradient() { VokGradientFree(&g); }
    TwoStopGradient(const TwoStopGradient &) = delete;
    TwoStopGradient &operator=(const TwoStopGradient &) = delete;
    VokGradient g;
};

}  // namespace vok_test

#endif
