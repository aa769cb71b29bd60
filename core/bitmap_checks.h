// The one test every engine makes before touching pixels.
#ifndef VOK_CORE_BITMAP_CHECKS_H
#define VOK_CORE_BITMAP_CHECKS_H

#include "vok/core.h"

namespace vok {

// A bitmap with pixels and a non-zero size.
inline bool usable(const VokBitmap *bitmap) {
    return bitmap != nullptr && bitmap->pixels != nullptr && bitmap->width != 0 &&
           bitmap->height != 0;
}

}  // namespace vok

#endif
