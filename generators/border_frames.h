// The framed border styles (every style but the vignette).
#ifndef VOK_GENERATORS_BORDER_FRAMES_H
#define VOK_GENERATORS_BORDER_FRAMES_H

#include "vok/generators.h"

namespace vok {

// Whether `style` is one of the framed styles.
bool is_frame_style(uint32_t style);

// Draws a framed style onto a non-empty bitmap; 0 when its scratch memory
// cannot be had (the bitmap untouched), else 1.
int draw_frame(VokBitmap &bitmap, const VokBorderParams &params);

}  // namespace vok

#endif
