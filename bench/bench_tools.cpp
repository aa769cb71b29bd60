/* Interactive tools: the latency of one touch (stamp the new stroke segment,
 * then redraw the changed rectangle of the preview) on a 2-megapixel preview,
 * and the final full-resolution render. */
#include <algorithm>
#include <chrono>
#include <cmath>
#include <vector>

#include "fixture.h"
#include "vok/tools.h"

namespace {

constexpr uint32_t kPreviewWidth = 1632;
constexpr uint32_t kPreviewHeight = 1224;  // 2.0 megapixels
constexpr double kRadius = 40.0;
constexpr int kTouchesPerStroke = 120;

// A preview-size tool run: photo, full-effect bitmap, mask and screen image.
struct PreviewRun {
    VokBitmap photo{}, full{}, mask{}, screen{};
    VokToolDrawParams params;
    VokToolDrawState state;

    explicit PreviewRun(VokToolType type) {
        VokBitmapBuild(&photo, kPreviewWidth, kPreviewHeight);
        VokBitmapBuild(&full, kPreviewWidth, kPreviewHeight);
        VokBitmapBuild(&mask, kPreviewWidth, kPreviewHeight);
        VokBitmapBuild(&screen, kPreviewWidth, kPreviewHeight);
        VokBitmapCopyRect(&photo, &vok_bench::pristine(), 1000, 800, 1000 + kPreviewWidth - 1,
                          800 + kPreviewHeight - 1);
        VokToolDrawParamsInit(&params);
        VokToolDrawStateInit(&state);
        params.type = state.type = type;
        VokToolInit(&photo, &full, &mask, &params, &state);
        VokBitmapCopy(&screen, &photo);
    }
    ~PreviewRun() {
        VokBitmapFree(&photo);
        VokBitmapFree(&full);
        VokBitmapFree(&mask);
        VokBitmapFree(&screen);
    }
};

// Touches along a wavy path across the preview, about 15 pixels apart, the
// speed of a finger sampled at screen rate.
VokPoint touch_position(int k) {
    const float x = 200.0f + 10.0f * static_cast<float>(k);
    const float y = 600.0f + 250.0f * sinf(static_cast<float>(k) * 0.05f);
    return {x, y};
}

void touch_latency(benchmark::State &bench, VokToolType type) {
    PreviewRun run(type);
    // The draw tool previews the painted mask itself.
    const VokBitmap *source = type == kVokToolDraw ? &run.mask : &run.full;
    std::vector<VokPoint> points(kTouchesPerStroke);
    VokToolStroke stroke;
    VokToolStrokeInit(&stroke);
    stroke.pointData = nullptr;
    stroke.points = points.data();
    stroke.radius = kRadius;
    std::vector<double> latencies;
    int k = 0;
    for (auto _ : bench) {
        if (stroke.count == kTouchesPerStroke) {  // lift the finger, start again
            stroke.count = stroke.firstIndex = 0;
            stroke.colorSet = 0;
            k = 0;
        }
        const auto start = std::chrono::steady_clock::now();
        points[stroke.count++] = touch_position(k++);
        VokPoint lo{0, 0}, hi{0, 0};
        VokToolDrawStrokeOutRect(&run.photo, &run.mask, &stroke, &run.params, &run.state, &lo,
                                 &hi);
        stroke.colorSet = 1;
        stroke.firstIndex = stroke.count;
        VokToolRenderPreviewBox(&run.screen, &run.photo, source, &run.mask,
                                static_cast<int32_t>(lo.x), static_cast<int32_t>(lo.y),
                                static_cast<int32_t>(hi.x), static_cast<int32_t>(hi.y),
                                &run.state);
        benchmark::ClobberMemory();
        latencies.push_back(
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
                .count());
    }
    std::sort(latencies.begin(), latencies.end());
    if (!latencies.empty()) {
        bench.counters["median_ms"] = latencies[latencies.size() / 2];
        bench.counters["worst_ms"] = latencies.back();
    }
}

void BM_ToolTouchPlainBrush(benchmark::State &state) { touch_latency(state, 15); }
void BM_ToolTouchSimilarColour(benchmark::State &state) {
    touch_latency(state, kVokToolSimilarSoft);
}
void BM_ToolTouchDraw(benchmark::State &state) { touch_latency(state, kVokToolDraw); }

// Full-resolution render of a painted preview mask: full effect of type 15
// (none) so that the figure is the framework's own cost.
void BM_ToolRenderHiRes(benchmark::State &state) {
    PreviewRun run(15);
    VokToolStroke stroke;
    VokToolStrokeInit(&stroke);
    stroke.pointData = nullptr;
    std::vector<VokPoint> points;
    for (int k = 0; k < kTouchesPerStroke; ++k) points.push_back(touch_position(k));
    stroke.points = points.data();
    stroke.count = kTouchesPerStroke;
    stroke.radius = kRadius;
    VokToolDrawStroke(&run.photo, &run.mask, &stroke, &run.params, &run.state);
    vok_bench::Photo photo;
    for (auto _ : state) {
        photo.reset_untimed(state);
        VokToolRenderHiRes(&photo.bitmap, &run.mask, &run.params, &run.state);
    }
    vok_bench::report_pixels(state);
}

// Teeth whitening over the whole photo: the full effect of type 5.
void BM_Whiten(benchmark::State &state) {
    vok_bench::Photo photo;
    for (auto _ : state) {
        photo.reset_untimed(state);
        VokWhiten(&photo.bitmap, &photo.bitmap);
    }
    vok_bench::report_pixels(state);
}

}  // namespace

BENCHMARK(BM_ToolTouchPlainBrush)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ToolTouchSimilarColour)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ToolTouchDraw)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ToolRenderHiRes)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Whiten)->Unit(benchmark::kMillisecond);

// The full effect each retouching and mosaic type computes at tool start, on
// the 2-megapixel preview.
static void BM_FullEffectAtStart(benchmark::State &state) {
    PreviewRun run(static_cast<VokToolType>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        VokBitmapCopy(&run.full, &run.photo);
        state.ResumeTiming();
        VokToolTypesApplyEffect(&run.full, &run.params);
    }
    vok_bench::report_pixels(state, size_t{kPreviewWidth} * kPreviewHeight);
}
BENCHMARK(BM_FullEffectAtStart)
    ->Arg(kVokToolRedEye)->Arg(kVokToolMascara)->Arg(kVokToolEyeBright)->Arg(kVokToolEyeColor)
    ->Arg(kVokToolEyeShadow)->Arg(kVokToolAirbrush)->Arg(kVokToolPixelate)->Arg(kVokToolVoronoi)
    ->Arg(kVokToolHexagons)->Unit(benchmark::kMillisecond);

// One blemish touch at radius 40 on the preview.
static void BM_BlemishTouch(benchmark::State &state) {
    PreviewRun run(kVokToolBlemish);
    VokPoint touch = {800.0f, 600.0f};
    VokToolStroke stroke;
    VokToolStrokeInit(&stroke);
    stroke.points = &touch;
    stroke.count = 1;
    stroke.radius = kRadius;
    for (auto _ : state) VokBlemish(&run.photo, &stroke);
}
BENCHMARK(BM_BlemishTouch)->Unit(benchmark::kMicrosecond);
