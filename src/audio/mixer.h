// Renders sound into a buffer. No device is needed, so that all of it can be listened to in a test.
#pragma once

#include "audio/audio_engine.h"

// Adds the next stereo frames, at most 65536, to `stereo`: music, bed and voices, held to -1 to 1.
void audioRender(AudioEngine& audio, float* stereo, int frames);

// Values up to 0.8 either side pass, louder ones are bent so that none leaves -1 to 1.
float softClip(float value);
