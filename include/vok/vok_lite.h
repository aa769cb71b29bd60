/* vok-lite: the whole public interface. */
#ifndef VOK_LITE_H
#define VOK_LITE_H

#include "vok/core.h"
#include "vok/color.h"
#include "vok/tonal.h"
#include "vok/generators.h"
#include "vok/effects.h"
#include "vok/tools.h"

#endif
