// Light flares: a glow of one colour whose shape is a field of intensities
// around a centre, blended into the bitmap with the intensity as opacity.
// Every field is evaluated from tables or plain arithmetic built once per
// call, so the pixel loop carries no transcendental calls.
#include <math.h>
#include <stdlib.h>

#include <algorithm>

#include "core/log.h"
#include "generators/tint_blend.h"
#include "vok/generators.h"

namespace vok {
namespace {

constexpr float kPi = 3.14159265f;

float gauss(float t, float sigma) { return expf(-(t * t) / (2.0f * sigma * sigma)); }

float smoothstep(float t) { return t * t * (3.0f - 2.0f * t); }

uint32_t clamp_column(double v, uint32_t width) {
    if (!(v > 0.0)) return 0;
    return v >= width ? width : static_cast<uint32_t>(v);
}

// Pixel centres in flare units: X = (x + 0.5 - cx) kx, likewise Y.
struct Frame {
    float cx, cy, kx, ky;
    uint32_t width;
    float x_at(uint32_t x) const { return (static_cast<float>(x) + 0.5f - cx) * kx; }
    float y_at(uint32_t y) const { return (static_cast<float>(y) + 0.5f - cy) * ky; }

    // The columns of a row at Y^2 = y2 where X^2 + Y^2 < bound, with a column
    // of margin each side for rounding: all that a field vanishing beyond the
    // squared radius `bound` can cover.
    Span span(float y2, float bound) const {
        const float rest = bound - y2;
        if (!(rest > 0.0f)) return {0, 0};
        const double reach = sqrt(static_cast<double>(rest)) / kx;
        return {clamp_column(floor(cx - 0.5 - reach) - 1.0, width),
                clamp_column(ceil(cx - 0.5 + reach) + 2.0, width)};
    }
};

// ---- Radial profiles, tabulated over the squared radius --------------------

constexpr uint32_t kTableSteps = 4096;

struct RadialTable {
    float value[kTableSteps];
    float extent;          // the squared radius at the table's end
    float steps_per_unit;  // table index per unit of the squared radius

    // The last entry is 0: every profile has faded out by the table's end.
    template <class Profile>
    void fill(float squared_extent, Profile profile) {
        extent = squared_extent;
        steps_per_unit = static_cast<float>(kTableSteps - 1) / squared_extent;
        for (uint32_t i = 0; i + 1 < kTableSteps; ++i) {
            const float u = static_cast<float>(i) / steps_per_unit;
            value[i] = profile(sqrtf(u));
        }
        value[kTableSteps - 1] = 0.0f;
    }
    float at(float u) const {
        const float step = u * steps_per_unit;
        if (!(step < static_cast<float>(kTableSteps - 1))) return 0.0f;
        return value[static_cast<uint32_t>(step)];
    }
};

// Gaussians reach 1/1000 of their peak at a squared radius of 14 sigma^2.
float gauss_extent(float sigma) { return 14.0f * sigma * sigma; }

void fill_radial(RadialTable &table, uint32_t type) {
    switch (type) {
        case kVokFlareSinc:
            table.fill(1.0f, [](float r) {
                const float ar = 4.0f * kPi * r;
                const float sinc = r > 0.0f ? fabsf(sinf(ar) / ar) : 1.0f;
                const float fade = 1.0f - r * r;
                return sinc * fade * fade;
            });
            break;
        case kVokFlareGaussianThing:
            table.fill(gauss_extent(0.12f), [](float r) { return gauss(r, 0.12f); });
            break;
        case kVokFlareGaussianThing2:
            table.fill(gauss_extent(0.25f), [](float r) { return gauss(r, 0.25f); });
            break;
        case kVokFlareGaussianThing3:
            table.fill(gauss_extent(0.45f), [](float r) { return gauss(r, 0.45f); });
            break;
        case kVokFlareGaussianThing4:
            table.fill(gauss_extent(0.5f), [](float r) {
                return 0.65f * gauss(r, 0.05f) + 0.35f * gauss(r, 0.5f);
            });
            break;
        case kVokFlareBlah:
            table.fill(0.64f, [](float r) { return 0.15f * gauss(r, 0.2f) + gauss(r - 0.6f, 0.04f); });
            break;
        case kVokFlareBlob:
            table.fill(0.16f, [](float r) {
                return r < 0.3f ? 1.0f : smoothstep((0.4f - r) * 10.0f);
            });
            break;
        default:  // kVokFlareBlob2
            table.fill(0.1764f, [](float r) {
                if (r < 0.35f) {
                    const float t = r / 0.35f;
                    const float t3 = t * t * t;
                    return 0.35f + 0.65f * t3 * t3;
                }
                return smoothstep((0.42f - r) / 0.07f);
            });
            break;
    }
}

// The rows of a field that vanishes beyond the squared radius `bound`,
// keeping Y^2 of the current row.
struct RoundRows {
    Frame frame;
    float bound;
    float y2;
    Span begin_row(uint32_t y) {
        const float fy = frame.y_at(y);
        y2 = fy * fy;
        return frame.span(y2, bound);
    }
};

struct RadialField : RoundRows {
    const RadialTable *table;
    float at(uint32_t x) const {
        const float fx = frame.x_at(x);
        return table->at(fx * fx + y2);
    }
};

// ---- Fields with an angular part ---------------------------------------------

// A narrow gaussian streak tilted 30 degrees up from the horizontal.
struct TiltedGaussField {
    const RadialTable *table;  // exp(-q / 2) over q
    Frame frame;
    float row_u, row_v;
    static constexpr float kCos = 0.8660254f, kSin = 0.5f;
    static constexpr float kLong = 1.0f / 0.5f, kShort = 1.0f / 0.06f;
    // q = 28 is reached within a squared radius of 7.2.
    static constexpr float kBound = 7.2f;

    Span begin_row(uint32_t y) {
        // Y grows downwards, so the streak rises to the right with -Y.
        const float fy = -frame.y_at(y);
        row_u = fy * kSin;
        row_v = fy * kCos;
        return frame.span(fy * fy, kBound);
    }
    float at(uint32_t x) const {
        const float fx = frame.x_at(x);
        const float u = (fx * kCos + row_u) * kLong;
        const float v = (row_v - fx * kSin) * kShort;
        return table->at(u * u + v * v);
    }
};

// A small core with eight thin rays: cos(4 theta)^32 from the cosine alone.
struct StarField : RoundRows {
    const RadialTable *core;
    const RadialTable *rays;
    float at(uint32_t x) const {
        const float fx = frame.x_at(x);
        const float x2 = fx * fx;
        const float u = x2 + y2;
        const float c = core->at(u);
        if (!(u > 0.0f)) return c;
        const float cos2 = x2 / u;
        float t = 8.0f * cos2 * (cos2 - 1.0f) + 1.0f;
        for (int i = 0; i < 5; ++i) t *= t;
        return c + (1.0f - c) * t * rays->at(u);
    }
};

// Three round lobes, one pointing right: ((1 + cos 3 theta) / 2)^2 times a glow.
struct LobesField : RoundRows {
    const RadialTable *glow;
    float at(uint32_t x) const {
        const float fx = frame.x_at(x);
        const float u = fx * fx + y2;
        if (!(u > 0.0f)) return glow->at(u);
        const float c = fx / sqrtf(u);
        const float lobe = 0.5f + 0.5f * c * (4.0f * c * c - 3.0f);
        return lobe * lobe * glow->at(u);
    }
};

// A diamond: (1 - (|X| + |Y|))^3 inside the unit diamond.
struct DiamondField {
    Frame frame;
    float ay;
    Span begin_row(uint32_t y) {
        ay = fabsf(frame.y_at(y));
        return frame.span(ay * ay, 1.0f);
    }
    float at(uint32_t x) const {
        const float t = 1.0f - (fabsf(frame.x_at(x)) + ay);
        return t > 0.0f ? t * t * t : 0.0f;
    }
};

// ---- Separable fields: a sum of products of column and row profiles ----------

struct Bump {
    float centre, sigma, weight;
};

// A sum of up to three gaussian bumps, or the finger's one-sided streak.
struct Profile {
    Bump bumps[3];
    int count;
    float finger_length;  // > 0: the streak profile instead of the bumps

    float at(float t) const {
        if (finger_length > 0.0f) {
            if (t < 0.0f) return gauss(t, bumps[0].sigma);
            if (t > finger_length) return 0.0f;
            const float rest = 1.0f - t / finger_length;
            return rest * rest;
        }
        float sum = 0.0f;
        for (int i = 0; i < count; ++i) sum += bumps[i].weight * gauss(t - bumps[i].centre, bumps[i].sigma);
        return sum;
    }
};

constexpr int kMaxTerms = 4;

struct SeparableShape {
    Profile column[kMaxTerms];
    Profile row[kMaxTerms];
    int terms;
};

Profile bumps(Bump a) { return {{a, {}, {}}, 1, 0.0f}; }
Profile bumps(Bump a, Bump b) { return {{a, b, {}}, 2, 0.0f}; }
Profile bumps(Bump a, Bump b, Bump c) { return {{a, b, c}, 3, 0.0f}; }

SeparableShape separable_shape(uint32_t type, float finger_length) {
    SeparableShape s{};
    switch (type) {
        case kVokFlareStripe:
            s.terms = 1;
            s.column[0] = bumps({0.0f, 0.7f, 1.0f});
            s.row[0] = bumps({0.0f, 0.02f, 1.0f});
            break;
        case kVokFlareStripe2:
            s.terms = 1;
            s.column[0] = bumps({0.0f, 0.6f, 1.0f});
            s.row[0] = bumps({0.0f, 0.02f, 1.0f}, {-0.1f, 0.015f, 0.5f}, {0.1f, 0.015f, 0.5f});
            break;
        case kVokFlareCross:
            s.terms = 3;
            s.column[0] = bumps({0.0f, 0.6f, 1.0f});
            s.row[0] = bumps({0.0f, 0.015f, 1.0f});
            s.column[1] = bumps({0.0f, 0.015f, 1.0f});
            s.row[1] = bumps({0.0f, 0.6f, 1.0f});
            s.column[2] = bumps({0.0f, 0.06f, 1.0f});
            s.row[2] = bumps({0.0f, 0.06f, 1.0f});
            break;
        case kVokFlareCorner:
            s.terms = 1;
            s.column[0] = bumps({-0.5f, 0.1f, 1.0f}, {0.5f, 0.1f, 1.0f});
            s.row[0] = s.column[0];
            break;
        case kVokFlareFinger:
            s.terms = 1;
            s.column[0] = {{{0.0f, 0.03f, 1.0f}, {}, {}}, 1, finger_length};
            s.row[0] = bumps({0.0f, 0.03f, 1.0f});
            break;
        default: {  // kVokFlareBlobFlare: ghosts along a line through the centre
            static const float kAlong[kMaxTerms] = {-0.55f, -0.2f, 0.35f, 0.75f};
            static const float kSigma[kMaxTerms] = {0.06f, 0.04f, 0.1f, 0.05f};
            static const float kWeight[kMaxTerms] = {0.5f, 0.8f, 0.35f, 0.6f};
            s.terms = kMaxTerms;
            for (int k = 0; k < kMaxTerms; ++k) {
                s.column[k] = bumps({kAlong[k], kSigma[k], kWeight[k]});
                s.row[k] = bumps({-0.6f * kAlong[k], kSigma[k], 1.0f});
            }
            break;
        }
    }
    return s;
}

// Column factors for every column and row factors for every row, built once;
// rows and columns whose best case still rounds to opacity 0 are skipped.
struct SeparableField {
    const SeparableShape *shape;
    const float *columns;  // terms x width
    const float *rows;     // terms x height
    uint32_t width, height;
    float color_alpha;
    float column_max[kMaxTerms];
    Span columns_span;
    float row[kMaxTerms];

    // The pass turns an intensity i into opacity 0 exactly when
    // i alpha + 0.5 < 1; products and sums of non-negative floats only grow
    // with their terms, so a bound below that proves a whole row or column empty.
    bool invisible(float bound) const { return bound * color_alpha + 0.5f < 1.0f; }

    void prepare() {
        float row_max[kMaxTerms] = {};
        for (int k = 0; k < shape->terms; ++k) {
            column_max[k] = *std::max_element(columns + k * width, columns + (k + 1) * width);
            row_max[k] = *std::max_element(rows + k * height, rows + (k + 1) * height);
        }
        auto column_bound = [&](uint32_t x) {
            float sum = 0.0f;
            for (int k = 0; k < shape->terms; ++k) sum += columns[k * width + x] * row_max[k];
            return sum;
        };
        columns_span = {0, width};
        while (columns_span.first < width && invisible(column_bound(columns_span.first)))
            ++columns_span.first;
        while (columns_span.last > columns_span.first &&
               invisible(column_bound(columns_span.last - 1)))
            --columns_span.last;
    }
    Span begin_row(uint32_t y) {
        float bound = 0.0f;
        for (int k = 0; k < shape->terms; ++k) {
            row[k] = rows[k * height + y];
            bound += column_max[k] * row[k];
        }
        return invisible(bound) ? Span{0, 0} : columns_span;
    }
    float at(uint32_t x) const {
        float sum = 0.0f;
        for (int k = 0; k < shape->terms; ++k) sum += columns[k * width + x] * row[k];
        return sum;
    }
};

// ---- The pass ----------------------------------------------------------------

// Turns a field's intensity (clamped to [0, 1]) into the colour's opacity.
template <class Field>
struct FlareCoverage {
    Field field;
    float color_alpha;
    Span begin_row(uint32_t y) { return field.begin_row(y); }
    uint32_t alpha(uint32_t x) const {
        float intensity = field.at(x);
        if (!(intensity > 0.0f)) return 0;
        if (intensity > 1.0f) intensity = 1.0f;
        return static_cast<uint32_t>(intensity * color_alpha + 0.5f);
    }
};

template <class Field>
void draw(VokBitmap &bitmap, const TintBlend &tint, Field field) {
    FlareCoverage<Field> coverage{field, static_cast<float>(tint.color.alpha)};
    tint_pass(bitmap, tint, coverage);
}

bool known_type(uint32_t type) { return type < kVokFlareTypeCount && type != kVokFlareUnnamed8; }

int draw_flare(VokBitmap &bitmap, const TintBlend &tint, uint32_t type, const Frame &frame,
               float finger_length) {
    switch (type) {
        case kVokFlareAngleGaussian: {
            RadialTable table;
            table.fill(28.0f, [](float r) { return expf(-0.5f * r * r); });
            draw(bitmap, tint, TiltedGaussField{&table, frame, 0.0f, 0.0f});
            return 1;
        }
        case kVokFlareStardom: {
            RadialTable core, rays;
            core.fill(gauss_extent(0.06f), [](float r) { return gauss(r, 0.06f); });
            rays.fill(1.0f, [](float r) { return (1.0f - r) * (1.0f - r) * expf(-r / 0.3f); });
            draw(bitmap, tint, StarField{{frame, rays.extent, 0.0f}, &core, &rays});
            return 1;
        }
        case kVokFlareLobes: {
            RadialTable glow;
            glow.fill(gauss_extent(0.35f), [](float r) { return gauss(r, 0.35f); });
            draw(bitmap, tint, LobesField{{frame, glow.extent, 0.0f}, &glow});
            return 1;
        }
        case kVokFlareDiamond:
            draw(bitmap, tint, DiamondField{frame, 0.0f});
            return 1;
        case kVokFlareStripe:
        case kVokFlareStripe2:
        case kVokFlareCross:
        case kVokFlareCorner:
        case kVokFlareFinger:
        case kVokFlareBlobFlare: {
            const SeparableShape shape = separable_shape(type, finger_length);
            const uint32_t width = bitmap.width, height = bitmap.height;
            const size_t terms = static_cast<size_t>(shape.terms);
            float *columns = static_cast<float *>(malloc(sizeof(float) * terms * (width + height)));
            if (columns == nullptr) return 0;
            float *rows = columns + terms * width;
            for (size_t k = 0; k < terms; ++k) {
                for (uint32_t x = 0; x < width; ++x)
                    columns[k * width + x] = shape.column[k].at(frame.x_at(x));
                for (uint32_t y = 0; y < height; ++y)
                    rows[k * height + y] = shape.row[k].at(frame.y_at(y));
            }
            SeparableField field{&shape, columns, rows, width, height,
                                 static_cast<float>(tint.color.alpha), {}, {}, {}};
            field.prepare();
            draw(bitmap, tint, field);
            free(columns);
            return 1;
        }
        default: {
            RadialTable table;
            fill_radial(table, type);
            draw(bitmap, tint, RadialField{{frame, table.extent, 0.0f}, &table});
            return 1;
        }
    }
}

}  // namespace
}  // namespace vok

extern "C" {

int VokFlare(VokBitmap *bitmap, float fScale, VokColor color, uint32_t type, float dx, float dy,
             float dsx, float dsy, VokBlendMode mode, double strength) {
    if (!vok::known_type(type)) {
        VOK_LOGD("Flare type %u is not available.", static_cast<unsigned>(type));
        return 0;
    }
    if (bitmap == nullptr) return 0;
    if (bitmap->width == 0 || bitmap->height == 0) return 1;  // nothing to draw on
    if (bitmap->pixels == nullptr) return 0;
    // The finger flare reaches further with the strength; the other types take
    // the strength through the colour's alpha.
    float finger_length = 0.0f;
    if (type == kVokFlareFinger) {
        finger_length = strength >= 1.0 ? 1.0f : static_cast<float>(strength);
        if (!(finger_length > 0.0f)) return 1;
    }
    // One flare unit is fScale times the longer side, stretched per axis.
    const float unit = fScale * static_cast<float>(bitmap->width > bitmap->height ? bitmap->width
                                                                                   : bitmap->height);
    const float kx = 1.0f / (unit * dsx);
    const float ky = 1.0f / (unit * dsy);
    // A flare of no size, a negative stretch or a non-finite value draws nothing.
    if (color.alpha == 0 || !(kx > 0.0f && kx < INFINITY) || !(ky > 0.0f && ky < INFINITY) ||
        !isfinite(dx) || !isfinite(dy)) {
        return 1;
    }
    const vok::Frame frame{dx * static_cast<float>(bitmap->width),
                           dy * static_cast<float>(bitmap->height), kx, ky, bitmap->width};
    vok::TintBlend tint;
    vok::tint_blend_init(tint, color, mode);
    return vok::draw_flare(*bitmap, tint, type, frame, finger_length);
}

}  // extern "C"
