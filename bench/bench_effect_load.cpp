// Loading an effect description: parse, envelope checks and the pre-scan of
// nesting depth, on a mid-size look (a histogram map of 768 entries, a
// gradient map and four simpler steps, about 5 KB of text).
#include <benchmark/benchmark.h>

#include <string>

#include "vok/effects.h"

namespace {

std::string mid_size_description() {
    std::string r, g, b;
    for (int i = 0; i < 256; ++i) {
        const char *sep = i ? "," : "";
        r += sep + std::to_string(i + (255 - i) / 4);
        g += sep + std::to_string(i);
        b += sep + std::to_string(i - i / 5);
    }
    return R"({"identifier":"bench.mid","processors":[
      {"name":"histogramMapping","parameters":{"histMap":{"r":[)" + r + R"(],"g":[)" + g +
           R"(],"b":[)" + b + R"(]}}},
      {"name":"gamma","parameters":{"value":1.1}},
      {"name":"contrast","parameters":{"value":1.2}},
      {"name":"colorMatrixTransform","parameters":{"operations":[
        {"operation":"saturation","value":0.8},{"operation":"brightness","value":1.05}],
        "alpha":1.0,"blendMode":"normal"}},
      {"name":"gradientMap","parameters":{"alpha":0.3,"blendMode":"overlay",
        "gradientVariable":"intensity","gradient":{
          "colors":[{"color":{"r":30,"g":10,"b":60,"a":255},"location":0},
                    {"color":{"r":255,"g":220,"b":170,"a":255},"location":100}],
          "opacities":[{"opacity":1,"location":0},{"opacity":1,"location":100}]}}},
      {"name":"noise","parameters":{"intensity":6}}]})";
}

void BM_LoadEffect(benchmark::State &state) {
    const std::string json = mid_size_description();
    for (auto _ : state) {
        VokJsonValue effect = TESKLoadEffect(json.c_str());
        benchmark::DoNotOptimize(effect);
        TESKUnloadEffect(&effect);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(json.size()));
}
BENCHMARK(BM_LoadEffect)->Unit(benchmark::kMicrosecond);

}  // namespace
