// A small built-in 5 x 7 pixel font for captions drawn into bitmaps.
// Letters are drawn in capitals; characters without a glyph draw as '?'.
#ifndef VOK_CLI_BITMAP_FONT_H
#define VOK_CLI_BITMAP_FONT_H

#include "vok/core.h"

namespace vok_cli {

constexpr int kGlyphWidth = 5;
constexpr int kGlyphHeight = 7;
constexpr int kGlyphAdvance = 6;  // glyph plus one column of spacing

// Width in pixels of the text drawn at this scale (no trailing spacing).
int text_width(const char *text, int scale);

// Draws the text with its top-left corner at (x, y), each font pixel a
// scale x scale square blended in with the colour's alpha as opacity; parts
// outside the bitmap are clipped.
void draw_text(VokBitmap &bitmap, int x, int y, const char *text, VokColor color, int scale);

}  // namespace vok_cli

#endif
