// Memoized blending of one fixed source colour: each opacity level's three
// channel tables are built on first use from 256 float blends of grey inputs,
// after which a pixel costs three look-ups.
#include "vok/color.h"

extern "C" {

// Only the flags are cleared; a level's tables are rebuilt when first used.
void VokColorBlendInitMemozied(VokBlendMemo *memo, VokBlendMode mode) {
    memo->mode = mode;
    for (int level = 0; level < 256; ++level) memo->filled[level] = 0;
}

// Levels above 255 are taken as 255: the memo holds tables for 0 to 255 only.
void VokColorBlendMemoized(VokColor *destination, const VokColor *source, uint32_t level,
                           VokBlendMemo *memo) {
    if (level > 255) level = 255;
    uint8_t(*tables)[256] = memo->tables[level];
    if (memo->filled[level] == 0) {
        memo->filled[level] = 1;
        const float opacity = level * 0.003921569f;
        for (int v = 0; v < 256; ++v) {
            const uint8_t g = static_cast<uint8_t>(v);
            VokColor grey = {g, g, g, 255};
            VokColorBlend(&grey, source, memo->mode, opacity);
            tables[0][v] = grey.red;
            tables[1][v] = grey.green;
            tables[2][v] = grey.blue;
        }
    }
    destination->red = tables[0][destination->red];
    destination->green = tables[1][destination->green];
    destination->blue = tables[2][destination->blue];
}

}  // extern "C"
