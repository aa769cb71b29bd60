// Teeth whitening: pixels near a neutral red-green position are lightened
// and lose their yellow, weighted by a Gaussian of that distance.
#include "vok/tools.h"

#include <cmath>

#include "core/numeric.h"
#include "tools/tools_internal.h"
#include "vok/color.h"

extern "C" {

// Works on the first bitmap in place; the second is not used.
void VokWhiten(VokBitmap *source, VokBitmap *) {
    if (!vok::usable(source)) return;
    VokColor *pixel = reinterpret_cast<VokColor *>(source->pixels);
    VokColor *end = pixel + static_cast<size_t>(source->width) * source->height;
    for (; pixel != end; ++pixel) {
        double L, a, b;
        VokColorRGB2LABDoublesWithCbrtMapping(pixel, &L, &a, &b);
        const double da = a - 132.0, db = b - 127.0;
        // Yellow pixels (b above neutral) are judged by red-green alone.
        const double d2 = b < 127.0 ? da * da + db * db : da * da;
        const float g = expf(static_cast<float>(-d2 * 0.01020408163265306));  // sigma 7
        const double s = g * 0.65;
        // Only the power is single precision: its exponent is formed in double
        // and narrowed once on the way in.
        const float lightened =
            powf(static_cast<float>(L / 255.0), static_cast<float>(1.0 / (1.0 + 0.5 * s))) *
            255.0f;
        const double yellow = 127.0 + (1.0 - s) * (b - 127.0);
        VokColor lab = {vok::byte_trunc_clamp(lightened), vok::byte_trunc_clamp(a),
                        vok::byte_trunc_clamp(yellow), pixel->alpha};
        VokColorLAB2RGB(&lab);
        pixel->red = lab.red;
        pixel->green = lab.green;
        pixel->blue = lab.blue;
    }
}

}  // extern "C"
