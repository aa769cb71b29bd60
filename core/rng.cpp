// The seeded linear congruential generator behind every random decision.
#include "vok/core.h"

#include <cmath>
#include <cstdlib>

#include "core/numeric.h"

namespace {

inline uint32_t step(uint32_t state) { return 69069u * state + 1u; }

}  // namespace

extern "C" {

void VokRNGSeed(VokRNG *rng, uint32_t seed) {
    rng->seed = seed;
    rng->state = seed;
}

// The only path that takes entropy from outside: the process-wide lrand48
// sequence, which the library never seeds itself.
void VokRNGInit(VokRNG *rng) {
    float doubled = static_cast<float>(lrand48()) * 2.0f;
    VokRNGSeed(rng, vok::trunc_to<uint32_t>(doubled));
}

uint32_t VokRNGNextInt(VokRNG *rng) {
    uint32_t next = step(static_cast<uint32_t>(rng->state));
    rng->state = next;
    return next;
}

uint32_t VokRNGNextSeedN(uint32_t value, uint32_t n) {
    for (uint32_t i = 0; i < n; ++i) value = step(value);
    return value;
}

// Rounding the state to float means states from 4294967168 up give exactly 1.
float VokRNGNextFloat(VokRNG *rng) {
    return static_cast<float>(VokRNGNextInt(rng)) * 2.3283064e-10f;
}

float VokRNGNextFloatNormal(VokRNG *rng) {
    float u1 = VokRNGNextFloat(rng);
    float u2 = VokRNGNextFloat(rng);
    while (u1 == 0.0f) u1 = VokRNGNextFloat(rng);
    while (u2 == 0.0f) u2 = VokRNGNextFloat(rng);
    float angle = static_cast<float>(static_cast<double>(u2) * 6.283185307179586);
    return cosf(angle) * sqrtf(-2.0f * logf(u1));
}

float VokRNGNextFloatLaplace(VokRNG *rng) {
    float v = 0.5f - VokRNGNextFloat(rng);
    if (v < 0.0f) return logf(2.0f * v + 1.0f);
    return -logf(1.0f - 2.0f * v);
}

}  // extern "C"
