#include "audio/audio_engine.h"

void audioPlayEffect(AudioEngine& audio, int effect) {
    if (effect < 0 || effect >= SOUND_COUNT) return;
    audio.played[effect]++;
}
