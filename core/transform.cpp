// 2-D affine transforms as 3x3 matrices with the last row (0, 0, 1).
#include "vok/core.h"

#include <cmath>

extern "C" {

void VokTransformCopy(VokTransform *destination, const VokTransform *source) {
    *destination = *source;
}

void VokTransformSetIdentity(VokTransform *transform) { *transform = VokTransformIdentity; }

// second := first x second; computed into a temporary so both may be one record.
void VokTransformConcat(const VokTransform *first, VokTransform *second) {
    const VokTransform &A = *first;
    const VokTransform &B = *second;
    VokTransform r;
    r.a = A.a * B.a + A.b * B.c;
    r.b = A.a * B.b + A.b * B.d;
    r.tx = A.a * B.tx + A.b * B.ty + A.tx;
    r.c = A.c * B.a + A.d * B.c;
    r.d = A.c * B.b + A.d * B.d;
    r.ty = A.c * B.tx + A.d * B.ty + A.ty;
    *second = r;
}

void VokTransformPostRotate(VokTransform *transform, double angle) {
    double c = cos(angle), s = sin(angle);
    VokTransform rotation = {c, -s, 0.0, s, c, 0.0};
    VokTransformConcat(&rotation, transform);
}

void VokTransformPostTranslate(VokTransform *transform, double tx, double ty) {
    VokTransform translation = {1.0, 0.0, tx, 0.0, 1.0, ty};
    VokTransformConcat(&translation, transform);
}

void VokTransformPostScale(VokTransform *transform, double sx, double sy) {
    VokTransform scale = {sx, 0.0, 0.0, 0.0, sy, 0.0};
    VokTransformConcat(&scale, transform);
}

// A singular transform is not guarded: the output first becomes the identity
// and is then overwritten by the same formulas with r = 1/0, leaving
// infinities and NaNs. Callers must not pass singular transforms.
void VokTransformGetInverse(const VokTransform *transform, VokTransform *inverse) {
    const VokTransform t = *transform;
    double det = t.a * t.d - t.b * t.c;
    if (det == 0.0) *inverse = VokTransformIdentity;
    double r = 1.0 / det;
    VokTransform out;
    out.a = t.d * r;
    out.b = -t.b * r;
    out.c = -t.c * r;
    out.d = t.a * r;
    out.tx = -(out.b * t.ty + out.a * t.tx);
    out.ty = -(out.c * t.tx + out.d * t.ty);
    *inverse = out;
}

}  // extern "C"
