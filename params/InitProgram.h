// The values of the init program "InitProg": a plain, neutral starting sound (both oscillators
// "SinM", filter on, 8 voices). Normalised values of parameters 0..143; the reserved ones are 0.
#pragma once

#include "params/ParameterIds.h"

namespace tolvane {

inline constexpr float kInitProgramValues[kNumProgramValues] = {
    /*   0 */ 0.125f, 0.0f, 0.5f, 0.495f, 0.5f, 0.5f, 0.0f, 0.5f,
    /*   8 */ 0.0f, 0.0f, 0.5f, 0.0f, 0.125f, 0.0f, 0.5f, 0.5f,
    /*  16 */ 0.5f, 0.5f, 0.0f, 0.5f, 0.0f, 0.0f, 0.5f, 0.0f,
    /*  24 */ 0.5f, 0.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.09375f, 0.5f,
    /*  32 */ 0.5f, 1.0f, 0.0f, 0.5f, 0.03125f, 0.5f, 0.0f, 0.03125f,
    /*  40 */ 0.5f, 0.0f, 0.125f, 0.5f, 0.0f, 0.0f, 0.5f, 0.5f,
    /*  48 */ 0.5f, 0.5f, 0.0f, 0.0f, 0.5f, 0.5f, 0.5f, 0.5f,
    /*  56 */ 0.023438f, 0.023438f, 0.0625f, 0.5f, 0.023438f, 0.023438f, 0.0625f, 0.5f,
    /*  64 */ 0.0f, 1.0f, 0.0f, 0.0f, 0.385f, 0.0f, 0.5f, 0.25f,
    /*  72 */ 0.0f, 0.0f, 1.0f, 0.5f, 0.0f, 0.117188f, 0.0f, 0.0f,
    /*  80 */ 0.03f, 0.0f, 0.595f, 0.5f, 0.5f, 0.5f, 0.5f, 0.5f,
    /*  88 */ 0.5f, 0.5f, 0.5f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f,
    /*  96 */ 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f,
    /* 104 */ 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f,
    /* 112 */ 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f,
    /* 120 */ 0.0f, 0.0f, 0.0f, 0.5f, 0.1f, 0.0f, 0.0f, 0.0f,
    /* 128 */ 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f,
    /* 136 */ 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f,
};

}  // namespace tolvane
