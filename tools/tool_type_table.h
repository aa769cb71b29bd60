// One row per tool type: everything the tool framework decides by type. The
// framework reads these rows instead of switching on the type, so a new tool
// is one row (and its engine).
#ifndef VOK_TOOLS_TOOL_TYPE_TABLE_H
#define VOK_TOOLS_TOOL_TYPE_TABLE_H

#include <cstdint>

#include "vok/tools.h"

namespace vok {

// What the mask holds when a tool starts.
enum class StartMask : uint8_t { transparent, opaque };

// What the first point of a stroke does before it is stamped.
enum class FirstTouch : uint8_t {
    none,
    sample_colour,     // the stroke's colour from the photo, unless already set
    blemish,           // heals the skin under the touch
    region_brightest,  // region look-ups (7, 9): the stroke keeps its colour, deliberately
    region_closest_to_lip,
};

// How one point of a stroke paints the mask.
enum class Stamp : uint8_t {
    none,
    plain_brush,      // soft disc of the stroke's strength, any colour
    desaturate,       // the three stroke modes of the desaturate tool
    similar_colours,  // only where the photo is close to the effect colour
    draw,             // the stroke's colour painted into the mask itself
};

// Behaviour flags of a type beyond its stamp and effect.
enum ToolTypeFlag : uint8_t {
    kSkipsFullTool = 1,           // the full-tool step does nothing at all
    kFullToolWhenDeferred = 2,    // computed at start even when the host defers it
    kRestoresFromState = 4,       // the full bitmap is the draw state's kept photo
    kPaintsColour = 8,            // premultiplied colour mask, brush engine, draw previews
    kFirstTouchEveryStroke = 16,  // first-touch work runs for every stroke
};

struct ToolTypeRow {
    VokToolType type;
    const char *name;         // short name for captions and `vok tool --help`
    const char *description;  // one line: what the tool is for
    StartMask start_mask;
    FirstTouch first_touch;
    Stamp stamp;
    // The whole-bitmap effect at tool start; null means none.
    void (*full_effect)(VokBitmap *bitmap, VokToolDrawParams *params);
    double tolerance;  // the colour tolerance the full effect leaves behind
    uint8_t flags;
};

// The row of `type`, or null outside 1 to 35.
const ToolTypeRow *tool_type_row(VokToolType type);

// The row of a draw state's type; null for a missing state or an unknown type.
inline const ToolTypeRow *state_row(const VokToolDrawState *state) {
    return state != nullptr ? tool_type_row(state->type) : nullptr;
}

inline bool has_flag(const ToolTypeRow *row, ToolTypeFlag flag) {
    return row != nullptr && (row->flags & flag) != 0;
}

}  // namespace vok

#endif
