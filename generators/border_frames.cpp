// The framed border styles: every style but the vignette, each a coverage of
// the border colour over the photo, blended with the record's mode. Sizes
// follow the shorter side, so a frame looks the same at every resolution; the
// record's shape mode sets how soft the inner edge is (normal softest, ultra
// sharp hard); the ragged styles draw their edges from midpoint displacement
// seeded by the record's seed.
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "generators/border_frames.h"
#include "generators/tint_blend.h"

namespace vok {
namespace {

// Profile samples per side for the ragged edges.
constexpr int32_t kProfileSteps = 128;

struct Frame {
    double w, h, t;                        // size and frame thickness, in pixels
    double softness;                       // width of the inner edge's ramp, in pixels
    float profiles[4][kProfileSteps + 1];  // top, bottom, left, right, in [-1, 1]
    double sides[4];                       // per-side thickness factors (hard random frames)
};

// 0 at depth <= 0, 255 at depth >= softness, smoothstep between.
uint32_t ramp(double depth, double softness) {
    if (!(depth > 0.0)) return 0;
    if (depth >= softness) return 255;
    const double u = depth / softness;
    return static_cast<uint32_t>(u * u * (3.0 - 2.0 * u) * 255.0 + 0.5);
}

double profile_at(const float *profile, double along) {
    const double i = (along < 0.0 ? 0.0 : along > 1.0 ? 1.0 : along) * kProfileSteps;
    return profile[static_cast<int32_t>(i)];
}

// Distances of a pixel centre to the four sides: top, bottom, left, right.
struct Edges {
    double d[4], along[4];
};

Edges edges_of(const Frame &f, uint32_t x, uint32_t y) {
    const double px = x + 0.5, py = y + 0.5;
    return {{py, f.h - py, px, f.w - px}, {px / f.w, px / f.w, py / f.h, py / f.h}};
}

double nearest(const Edges &e) {
    return std::fmin(std::fmin(e.d[0], e.d[1]), std::fmin(e.d[2], e.d[3]));
}

// A frame whose side s is f.t x thickness(s, along) thick, the inner edge
// ramped over the frame's softness.
template <typename Thickness>
uint32_t sided(const Frame &f, const Edges &e, Thickness thickness) {
    uint32_t a = 0;
    for (int s = 0; s < 4; ++s) {
        const uint32_t side = ramp(f.t * thickness(s, e.along[s]) - e.d[s], f.softness);
        if (side > a) a = side;
    }
    return a;
}

uint32_t halftone(const Frame &f, uint32_t x, uint32_t y) {
    // Dots on a grid of cells a third of the frame, shrinking to nothing two
    // frames in from the edge.
    const double cell = std::fmax(3.0, std::floor(f.t / 3.0));
    const double cx = (std::floor(x / cell) + 0.5) * cell, cy = (std::floor(y / cell) + 0.5) * cell;
    const double reach = nearest(edges_of(f, static_cast<uint32_t>(cx), static_cast<uint32_t>(cy)));
    const double radius = 0.75 * cell * (1.0 - reach / (2.0 * f.t));
    if (!(radius > 0.0)) return 0;
    const double dx = x + 0.5 - cx, dy = y + 0.5 - cy;
    return ramp(radius - std::sqrt(dx * dx + dy * dy), 1.0);
}

uint32_t lines(const Frame &f, uint32_t x, uint32_t y) {
    // Ruled lines parallel to the edges across the frame, a third of a period wide.
    const double d = nearest(edges_of(f, x, y));
    if (d >= f.t) return 0;
    const double period = std::fmax(3.0, f.t / 4.0);
    return std::fmod(d, period) < std::fmax(1.0, period / 3.0) ? 255 : 0;
}

uint32_t smooth(const Frame &f, uint32_t x, uint32_t y) {
    return ramp(f.t - nearest(edges_of(f, x, y)), f.t);
}

uint32_t shadow(const Frame &f, uint32_t x, uint32_t y) {
    // Falls to the bottom right, as a light from the top left would cast it.
    const Edges e = edges_of(f, x, y);
    const double d = std::fmin(e.d[1], e.d[3]);
    if (d >= f.t) return 0;
    const double u = 1.0 - d / f.t;
    return static_cast<uint32_t>(u * u * 220.0 + 0.5);
}

uint32_t fade(const Frame &f, uint32_t x, uint32_t y) {
    return ramp(2.0 * f.t - nearest(edges_of(f, x, y)), 2.0 * f.t);
}

uint32_t rough(const Frame &f, uint32_t x, uint32_t y) {
    return sided(f, edges_of(f, x, y), [&f](int s, double along) {
        return 0.75 + 0.25 * profile_at(f.profiles[s], along);
    });
}

uint32_t bulge(const Frame &f, uint32_t x, uint32_t y) {
    // A pillow: the rounded square u^4 + v^4 = 1 of a lens, clear inside q0.
    const double u = (x + 0.5) / (f.w * 0.5) - 1.0, v = (y + 0.5) / (f.h * 0.5) - 1.0;
    const double q = u * u * u * u + v * v * v * v;
    const double inner = 1.0 - 4.0 * f.t / std::fmin(f.w, f.h);
    return ramp(q - inner, 1.0 - inner);
}

// Torn paper: a deep ragged edge with a lighter fringe of fibres inside it.
uint32_t torn_edge(const Frame &f, const Edges &e, bool all_sides) {
    uint32_t a = 0;
    for (int s = 0; s < 4; ++s) {
        const bool ragged = all_sides || s < 2;
        const double reach =
            ragged ? f.t * (0.8 + 0.6 * profile_at(f.profiles[s], e.along[s])) : 0.35 * f.t;
        const double depth = reach - e.d[s];
        const uint32_t side = depth > 0.12 * f.t ? 255 : depth > 0.0 && ragged ? 150 : 0;
        if (side > a) a = side;
    }
    return a;
}

uint32_t torn(const Frame &f, uint32_t x, uint32_t y) {
    return torn_edge(f, edges_of(f, x, y), true);
}

// A page torn from a pad: top and bottom torn, the sides cut straight.
uint32_t torn_2(const Frame &f, uint32_t x, uint32_t y) {
    return torn_edge(f, edges_of(f, x, y), false);
}

uint32_t rect(const Frame &f, uint32_t x, uint32_t y) {
    return ramp(f.t - nearest(edges_of(f, x, y)), f.softness);
}

uint32_t round_corners(const Frame &f, uint32_t x, uint32_t y) {
    // Outside a rounded rectangle the size of the photo, corner radius 2 frames.
    const double r = 2.0 * f.t, px = x + 0.5, py = y + 0.5;
    const double cx = px < r ? r : px > f.w - r ? f.w - r : px;
    const double cy = py < r ? r : py > f.h - r ? f.h - r : py;
    const double dx = px - cx, dy = py - cy;
    return ramp(std::sqrt(dx * dx + dy * dy) - r + f.softness, f.softness);
}

uint32_t flickr(const Frame &f, uint32_t x, uint32_t y) {
    // A narrow frame and, a little inside it, a thin keyline at half strength.
    const double d = nearest(edges_of(f, x, y)), band = 0.5 * f.t;
    if (d < band) return 255;
    const double keyline = std::fmax(1.0, f.t / 12.0);
    return d >= band + keyline && d < band + 2.0 * keyline ? 128 : 0;
}

uint32_t hard_rand(const Frame &f, uint32_t x, uint32_t y) {
    return sided(f, edges_of(f, x, y), [&f](int s, double) { return f.sides[s]; });
}

uint32_t instant(const Frame &f, uint32_t x, uint32_t y) {
    // The instant-print frame: even on three sides, four times as deep below.
    return sided(f, edges_of(f, x, y), [](int s, double) { return s == 1 ? 4.0 : 1.0; });
}

uint32_t viewfinder(const Frame &f, uint32_t x, uint32_t y) {
    // Corner brackets one frame in, a small cross in the middle: thin strokes
    // over the picture, as in a camera's finder.
    const double px = x + 0.5, py = y + 0.5, m = f.t, line = std::fmax(1.0, f.t / 6.0);
    const double arm = std::fmin(f.w, f.h) / 8.0;
    const double dx = std::fmin(px - m, f.w - m - px), dy = std::fmin(py - m, f.h - m - py);
    const bool bracket =
        dx >= 0.0 && dy >= 0.0 && ((dx < line && dy < arm) || (dy < line && dx < arm));
    const double ox = std::fabs(px - f.w * 0.5), oy = std::fabs(py - f.h * 0.5);
    const bool cross = (ox < line * 0.5 && oy < arm / 3.0) || (oy < line * 0.5 && ox < arm / 3.0);
    return bracket || cross ? 255 : 0;
}

// Visits only the band within `band` pixels of the edges, in two passes:
// the first takes whole rows of the top and bottom bands and the left band of
// the rows between, the second the right band of those rows.
struct FrameCoverage {
    const Frame *frame;
    uint32_t (*shape)(const Frame &, uint32_t, uint32_t);
    uint32_t width, height, band, y, opacity;
    bool right;

    Span begin_row(uint32_t row) {
        y = row;
        const bool whole = row < band || row + band >= height || 2 * band >= width;
        if (whole) return right ? Span{0, 0} : Span{0, width};
        return right ? Span{width - band, width} : Span{0, band};
    }
    uint32_t alpha(uint32_t x) const { return (shape(*frame, x, y) * opacity + 127) / 255; }
};

// Each style's shape and how far in from the edges it can reach, in frames;
// 0 when it may touch anywhere (the bulge's pillow, the finder's cross).
const struct {
    uint32_t style;
    uint32_t (*shape)(const Frame &, uint32_t, uint32_t);
    double reach;
} kStyles[] = {
    {kVokBorderHalftone, halftone, 2.5},
    {kVokBorderLines, lines, 1.0},
    {kVokBorderSmooth, smooth, 1.0},
    {kVokBorderShadow, shadow, 1.0},
    {kVokBorderFade, fade, 2.0},
    {kVokBorderRough, rough, 1.0},
    {kVokBorderBulge, bulge, 0.0},
    {kVokBorderTorn, torn, 1.4},
    {kVokBorderTorn2, torn_2, 1.4},
    {kVokBorderRect, rect, 1.0},
    {kVokBorderRound, round_corners, 2.0},
    {kVokBorderFlickr, flickr, 1.0},
    {kVokBorderHardRand, hard_rand, 1.5},
    {kVokBorderInstant, instant, 4.0},
    {kVokBorderViewfinder, viewfinder, 0.0},
};

// Ragged profiles for the four sides from the seed, each in [-1, 1].
void fill_profiles(Frame &f, uint32_t seed) {
    for (int s = 0; s < 4; ++s) {
        float *p = f.profiles[s];
        memset(p, 0, sizeof(f.profiles[s]));
        VokMPDSeed(p, 0, kProfileSteps, 1.0f, 0.6f, 0, seed * 4u + static_cast<uint32_t>(s));
        for (int32_t i = 0; i <= kProfileSteps; ++i)
            p[i] = p[i] < -1.0f ? -1.0f : p[i] > 1.0f ? 1.0f : p[i];
    }
    VokRNG rng;
    VokRNGSeed(&rng, seed ^ 0x9e3779b9u);
    for (double &side : f.sides) side = 0.5 + VokRNGNextFloat(&rng);
}

}  // namespace

bool is_frame_style(uint32_t style) {
    for (const auto &row : kStyles)
        if (row.style == style) return true;
    return false;
}

int draw_frame(VokBitmap &bitmap, const VokBorderParams &params) {
    Frame *frame = static_cast<Frame *>(malloc(sizeof(Frame)));
    if (frame == nullptr) return 0;
    frame->w = bitmap.width;
    frame->h = bitmap.height;
    const double shorter = std::fmin(frame->w, frame->h);
    // A clear area given as a share of each side (stretched scale under 1)
    // sets the thickness; otherwise a frame is a twentieth of the shorter side.
    const bool clear_given = params.stretch && params.scale > 0.0 && params.scale < 1.0;
    frame->t = std::fmax(1.0, clear_given ? shorter * (1.0 - params.scale) * 0.5 : shorter / 20.0);
    static const double kSoftness[4] = {0.5, 0.25, 0.12, 0.0};
    frame->softness =
        std::fmax(1.0, frame->t * kSoftness[params.shapeMode < 4 ? params.shapeMode : 0]);
    fill_profiles(*frame, params.seed);
    FrameCoverage coverage{frame, nullptr, bitmap.width,       bitmap.height,
                           0,     0,       params.color.alpha, false};
    double reach = 0.0;
    for (const auto &row : kStyles)
        if (row.style == params.style) coverage.shape = row.shape, reach = row.reach;
    const double band = reach * frame->t + frame->softness + 2.0;
    coverage.band = reach == 0.0 || band >= frame->w || band >= frame->h
                        ? bitmap.width + bitmap.height
                        : static_cast<uint32_t>(band);
    TintBlend tint;
    tint_blend_init(tint, params.color, params.blendMode);
    tint_pass(bitmap, tint, coverage);
    coverage.right = true;
    tint_pass(bitmap, tint, coverage);
    free(frame);
    return 1;
}

}  // namespace vok
