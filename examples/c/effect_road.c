/* The effect road from C: load a description, run it on a bitmap, clean up. */
#include <stdio.h>
#include <vok/vok_lite.h>

int main(void) {
    const char *json = "{\"identifier\": \"demo\", \"processors\": ["
                       " {\"name\": \"original\", \"parameters\": {}}]}";
    VokJsonValue effect = TESKLoadEffect(json);     /* null if refused */
    if (!effect) return 1;

    VokBitmap bitmap = {0};
    if (!VokBitmapBuild(&bitmap, 640, 480)) return 1; /* zero-filled RGBA */
    /* ... copy the photo into bitmap.pixels, 4 bytes a pixel, rows packed ... */

    VokEffectParams params;
    VokEffectInitParams(&params);                    /* strength 1, seed 0 */
    params.strength = 0.8;
    params.seed = 42;
    int ok = TESKRunEffect(effect, &bitmap, &params); /* 1 on success */

    TESKUnloadEffect(&effect);                       /* nulls the handle */
    VokBitmapFree(&bitmap);
    uint32_t major, minor, patch;
    VokLiteVersion(&major, &minor, &patch);
    printf("vok-lite %u.%u.%u: %s\n", (unsigned)major, (unsigned)minor, (unsigned)patch,
           ok ? "effect applied" : "effect failed");
    return ok ? 0 : 1;
}
