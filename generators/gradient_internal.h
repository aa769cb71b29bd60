// Private helpers shared by the gradient painters.
#ifndef VOK_GENERATORS_GRADIENT_INTERNAL_H
#define VOK_GENERATORS_GRADIENT_INTERNAL_H

#include "vok/generators.h"

namespace vok {

// Allocates a colour table of `count` entries (VokArrayBuild) and samples the
// gradient into it. Returns null when the table cannot be allocated; the
// caller releases a non-null table with VokArrayFree.
VokColor *build_gradient_table(const VokGradient *gradient, uint32_t count, VokArray *table);

}  // namespace vok

#endif
