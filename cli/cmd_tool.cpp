// `vok tool`: paints strokes with one interactive tool, calling the library
// exactly as a photo editor does, and reports how long each touch took.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include <yajl/yajl_tree.h>

#include "args.h"
#include "command.h"
#include "effect_file.h"
#include "image_io.h"
#include "log_printer.h"
#include "vok/tools.h"

namespace vok_cli {
namespace {

const char kName[] = "tool";
const char kHelp[] =
    "Usage: vok tool --type N [--radius R] [--strokes STROKES.json] INPUT OUTPUT\n"
    "Replays finger strokes with tool type N (1 to 35) on the photo INPUT the way\n"
    "a photo editor drives the library: the tool starts on a preview-size copy\n"
    "(longest side at most 1280; full size for the draw tool, type 12), each\n"
    "touch stamps the mask and redraws the changed part of the preview, and the\n"
    "finished mask is rendered onto the full-size photo, written to OUTPUT.\n"
    "Prints the median and worst time of one touch and the time of the render.\n"
    "\n"
    "STROKES.json is a list of strokes; a stroke is a list of points or an object\n"
    "{\"points\": [...], \"mode\": M}. A point is [x, y] or [x, y, pressure] in\n"
    "photo pixels (pressure scales the draw tool's radius). Mode 2 erases; type 1\n"
    "uses modes 1 and 3 to erase and 2 to paint. Without --strokes one S-shaped\n"
    "stroke crosses the photo.\n"
    "\n"
    "Options:\n"
    "  --type N             tool type, 1 to 35 (required)\n"
    "  --radius R           brush radius in photo pixels (default: the shorter\n"
    "                       side / 24)\n"
    "  --strokes FILE.json  strokes to replay\n"
    "  --max-pixels N       refuse photos of more than N pixels (default 100000000)\n"
    "  -h, --help           show this help\n"
    "\n"
    "Exit status: 0 written, 1 out of memory, 2 usage error or unreadable or\n"
    "unwritable file.\n";
// Longest side of the preview the strokes are painted on, as on a phone screen.
constexpr uint32_t kPreviewSide = 1280;

struct Touch {
    float x, y;
    double pressure;
};

struct StrokeSpec {
    int32_t mode = 0;
    std::vector<Touch> touches;
};

// One point: [x, y] or [x, y, pressure], in photo pixels.
bool read_touch(yajl_val value, Touch &touch) {
    if (!YAJL_IS_ARRAY(value)) return false;
    const size_t n = value->u.array.len;
    if (n != 2 && n != 3) return false;
    double v[3] = {0.0, 0.0, 1.0};
    for (size_t i = 0; i < n; ++i) {
        yajl_val item = value->u.array.values[i];
        if (!YAJL_IS_NUMBER(item)) return false;
        v[i] = YAJL_GET_DOUBLE(item);
        if (!std::isfinite(v[i])) return false;
    }
    touch = {static_cast<float>(v[0]), static_cast<float>(v[1]), v[2]};
    return true;
}

// A stroke: a list of points, or {"points": [...], "mode": N}.
bool read_stroke(yajl_val value, StrokeSpec &stroke, std::string &error) {
    yajl_val points = value;
    if (YAJL_IS_OBJECT(value)) {
        const char *points_path[] = {"points", nullptr};
        const char *mode_path[] = {"mode", nullptr};
        points = yajl_tree_get(value, points_path, yajl_t_array);
        yajl_val mode = yajl_tree_get(value, mode_path, yajl_t_number);
        if (mode != nullptr) {
            if (!YAJL_IS_INTEGER(mode)) {
                error = "a stroke's \"mode\" must be an integer";
                return false;
            }
            const long long m = YAJL_GET_INTEGER(mode);
            stroke.mode = static_cast<int32_t>(std::min(std::max(m, -1000000LL), 1000000LL));
        }
    }
    if (points == nullptr || !YAJL_IS_ARRAY(points) || points->u.array.len == 0) {
        error = "each stroke must be a non-empty list of points";
        return false;
    }
    for (size_t i = 0; i < points->u.array.len; ++i) {
        Touch touch;
        if (!read_touch(points->u.array.values[i], touch)) {
            error = "each point must be [x, y] or [x, y, pressure] with finite numbers";
            return false;
        }
        stroke.touches.push_back(touch);
    }
    return true;
}

bool read_strokes(const std::string &path, std::vector<StrokeSpec> &strokes, std::string &error) {
    std::string text;
    if (!read_text_file(path, text, error)) return false;
    char message[256] = "";
    yajl_val root = yajl_tree_parse(text.c_str(), message, sizeof message);
    if (root == nullptr) {
        error = std::string("not valid JSON: ") + message;
        return false;
    }
    bool ok = YAJL_IS_ARRAY(root);
    if (!ok) error = "expected a list of strokes";
    for (size_t i = 0; ok && i < root->u.array.len; ++i) {
        strokes.emplace_back();
        ok = read_stroke(root->u.array.values[i], strokes.back(), error);
    }
    yajl_tree_free(root);
    return ok;
}

// One S-shaped stroke across the middle of the photo.
std::vector<StrokeSpec> sample_strokes(const VokBitmap &photo) {
    StrokeSpec stroke;
    const float w = static_cast<float>(photo.width), h = static_cast<float>(photo.height);
    for (int k = 0; k <= 48; ++k) {
        const float t = static_cast<float>(k) / 48.0f;
        stroke.touches.push_back(
            {w * (0.15f + 0.7f * t), h * (0.5f + 0.25f * sinf(t * 6.2831853f)), 1.0});
    }
    return {stroke};
}

// Box-filtered copy whose longest side is at most kPreviewSide (an exact
// copy when the photo is already that small).
bool make_preview(const VokBitmap &photo, Image &preview, double &scale) {
    const uint32_t side = std::max(photo.width, photo.height);
    const uint32_t factor = (side + kPreviewSide - 1) / kPreviewSide;
    const uint32_t width = std::max(1u, photo.width / factor);
    const uint32_t height = std::max(1u, photo.height / factor);
    scale = 1.0 / factor;
    if (!VokBitmapBuild(&preview.bitmap, width, height)) return false;
    for (uint32_t y = 0; y < height; ++y) {
        for (uint32_t x = 0; x < width; ++x) {
            uint32_t sum[4] = {0, 0, 0, 0};
            for (uint32_t dy = 0; dy < factor; ++dy) {
                const size_t row = size_t{y} * factor + dy;
                const uint8_t *p = photo.pixels + (row * photo.width + size_t{x} * factor) * 4;
                for (uint32_t i = 0; i < factor * 4; ++i) sum[i % 4] += p[i];
            }
            uint8_t *q = preview.bitmap.pixels + (size_t{y} * width + x) * 4;
            for (int c = 0; c < 4; ++c) q[c] = static_cast<uint8_t>(sum[c] / (factor * factor));
        }
    }
    return true;
}

double median(std::vector<double> values) {
    if (values.empty()) return 0.0;
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

int run_tool(int argc, char **argv) {
    Arguments args;
    std::string error;
    if (!args.parse(
            argc, argv,
            {{"--type", true}, {"--radius", true}, {"--strokes", true}, {"--max-pixels", true}},
            error))
        return usage_error(kName, error);
    if (args.positional().size() != 2) return usage_error(kName, "expected INPUT OUTPUT");
    if (!args.has("--type")) return usage_error(kName, "--type is required");
    long long type = 0;
    double radius = 0.0;
    uint64_t max_pixels = 0;
    if (!args.get_int("--type", 1, 35, type, error) ||
        !args.get_double("--radius", radius, error) || !read_max_pixels(args, max_pixels, error))
        return usage_error(kName, error);
    if (args.has("--radius") && radius <= 0.0)
        return usage_error(kName, "--radius must be above 0");

    const std::string input = args.positional()[0];
    const std::string output = args.positional()[1];
    ImageFormat format;
    if (!format_for_path(output, format))
        return file_error("write", output, "unknown image type (use .png, .jpg or .jpeg)");
    std::vector<StrokeSpec> strokes;
    if (args.has("--strokes") && !read_strokes(args.value("--strokes"), strokes, error))
        return file_error("read", args.value("--strokes"), error);

    Image photo;
    if (!read_image(input, photo, error, max_pixels)) return file_error("read", input, error);
    if (!args.has("--strokes")) strokes = sample_strokes(photo.bitmap);
    if (!args.has("--radius"))
        radius = std::max(1u, std::min(photo.bitmap.width, photo.bitmap.height) / 24);

    // The draw tool keeps its colour in the mask, which is composited pixel for
    // pixel at the end, so it paints on a full-size preview.
    const bool draw = type == kVokToolDraw;
    Image preview, full, mask, screen;
    double scale = 1.0;
    bool ok = draw ? VokBitmapBuild(&preview.bitmap, photo.bitmap.width, photo.bitmap.height) &&
                         VokBitmapCopy(&preview.bitmap, &photo.bitmap)
                   : make_preview(photo.bitmap, preview, scale);
    const uint32_t width = preview.bitmap.width, height = preview.bitmap.height;
    ok = ok && VokBitmapBuild(&full.bitmap, width, height) &&
         VokBitmapBuild(&mask.bitmap, width, height) &&
         VokBitmapBuild(&screen.bitmap, width, height) &&
         VokBitmapCopy(&screen.bitmap, &preview.bitmap);
    if (!ok) {
        fprintf(stderr, "vok: not enough memory for a %ux%u preview\n", width, height);
        return kExitFailed;
    }

    VokToolDrawParams params;
    VokToolDrawParamsInit(&params);
    VokToolDrawState state;
    VokToolDrawStateInit(&state);
    params.type = state.type = static_cast<VokToolType>(type);
    {
        // The library's messages are shown at start and at the final render;
        // printing them during the touches would be timed with them.
        LogPrinter log(stderr);
        VokToolInit(&preview.bitmap, &full.bitmap, &mask.bitmap, &params, &state);
    }
    const VokBitmap *source = draw ? &mask.bitmap : &full.bitmap;

    using Clock = std::chrono::steady_clock;
    std::vector<double> latencies;
    for (const StrokeSpec &planned : strokes) {
        std::vector<VokPoint> points;
        std::vector<double> pressure;
        VokToolStroke stroke;
        VokToolStrokeInit(&stroke);
        stroke.radius = radius * scale;
        stroke.mode = planned.mode;
        const float reach = static_cast<float>(2.0 * stroke.radius + 4.0);
        for (size_t i = 0; i < planned.touches.size(); ++i) {
            const Touch &touch = planned.touches[i];
            const VokPoint at = {static_cast<float>(touch.x * scale),
                                 static_cast<float>(touch.y * scale)};
            points.push_back(at);
            pressure.push_back(touch.pressure);
            stroke.points = points.data();
            stroke.pointData = pressure.data();
            stroke.count = static_cast<int32_t>(points.size());
            stroke.ended = i + 1 == planned.touches.size();  // the lift carries the last point
            // A first touch leaves the rectangle alone: redraw around it.
            VokPoint lo = {at.x - reach, at.y - reach}, hi = {at.x + reach, at.y + reach};
            const Clock::time_point start = Clock::now();
            VokToolDrawStrokeOutRect(&preview.bitmap, &mask.bitmap, &stroke, &params, &state, &lo,
                                     &hi);
            stroke.colorSet = 1;
            stroke.firstIndex = stroke.count;
            auto corner = [](float v) {
                return static_cast<int32_t>(std::min(std::max(v, -1e9f), 1e9f));
            };
            VokToolRenderPreviewBox(&screen.bitmap, &preview.bitmap, source, &mask.bitmap,
                                    corner(lo.x), corner(lo.y), corner(hi.x), corner(hi.y), &state);
            latencies.push_back(
                std::chrono::duration<double, std::milli>(Clock::now() - start).count());
        }
    }
    double render = 0.0;
    {
        LogPrinter log(stderr);
        const Clock::time_point start = Clock::now();
        VokToolRenderHiRes(&photo.bitmap, &mask.bitmap, &params, &state);
        render = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    }

    printf("%zu touches on a %ux%u preview: median %.3f ms, worst %.3f ms per touch\n",
           latencies.size(), width, height, median(latencies),
           latencies.empty() ? 0.0 : *std::max_element(latencies.begin(), latencies.end()));
    printf("full-size render (%ux%u): %.1f ms\n", photo.bitmap.width, photo.bitmap.height, render);
    if (!write_image(output, photo.bitmap, error)) return file_error("write", output, error);
    return kExitOk;
}

// The help ends with every tool type and what it is for, from the library.
const char *help_text() {
    static const std::string text = [] {
        std::string help = kHelp;
        help += "\nTool types:\n";
        char line[160];
        for (VokToolType type = 1; VokToolTypeName(type) != nullptr; ++type) {
            snprintf(line, sizeof line, "  %2d  %-12s %s\n", static_cast<int>(type),
                     VokToolTypeName(type), VokToolTypeDescription(type));
            help += line;
        }
        return help;
    }();
    return text.c_str();
}

}  // namespace

extern const Command tool_command = {
    kName,
    "paint strokes with an interactive tool and time each touch",
    help_text(),
    run_tool,
};

}  // namespace vok_cli
