// Strength mixing of a parameter toward its neutral value.
#include "effects/effects_internal.h"

extern "C" {

// Single precision throughout: strength * value + (1 - strength) * identity.
float TESKBlendAroundIdentity(float value, float identity, float strength) {
    return strength * value + (1.0f - strength) * identity;
}

}  // extern "C"
