// The sound in its plain form: one frame after the other, one voice after the other, with the functions of
// the standard library. What the game renders must not differ by what 16 bits could hold.
#pragma once

#include "audio/audio_engine.h"

void plainStartEffect(AudioEngine& audio, int effect);
void plainRender(AudioEngine& audio, float* stereo, int frames);
