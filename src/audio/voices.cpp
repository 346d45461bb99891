#include "audio/voices.h"

#include "audio/sample_rate.h"
#include "audio/wave_shapes.h"

#include <algorithm>
#include <cassert>

using Block = std::array<float, BLOCK_FRAMES>;

// --- Starting

struct EffectRow {
    SoundEffect effect;
    VoiceKind kind;
    VoiceWave wave;
    float freqStart; // hertz
    float freqEnd;
    float duration; // seconds
    float gain;
    float delay; // seconds
};

static constexpr EffectRow EFFECTS[] = {
    {SOUND_CLICK, VOICE_TONE, WAVE_SINE, 1400.0f, 1100.0f, 0.05f, 0.3f, 0.0f},
    {SOUND_BUILD, VOICE_THUMP, WAVE_SINE, 160.0f, 70.0f, 0.18f, 0.55f, 0.0f},
    {SOUND_BUILD, VOICE_HISS, WAVE_NOISE, 0.0f, 0.0f, 0.08f, 0.2f, 0.0f},
    {SOUND_DEMOLISH, VOICE_HISS, WAVE_NOISE, 0.0f, 0.0f, 0.3f, 0.45f, 0.0f},
    {SOUND_DEMOLISH, VOICE_THUMP, WAVE_SINE, 120.0f, 60.0f, 0.25f, 0.25f, 0.0f},
    {SOUND_CHIME, VOICE_TONE, WAVE_SINE, 1046.0f, 1046.0f, 0.08f, 0.3f, 0.0f},
    {SOUND_CHIME, VOICE_TONE, WAVE_SINE, 1568.0f, 1568.0f, 0.16f, 0.25f, 0.08f},
    {SOUND_REFUSED, VOICE_BUZZ, WAVE_SQUARE, 180.0f, 150.0f, 0.16f, 0.22f, 0.0f},
    {SOUND_MISSION, VOICE_TONE, WAVE_SINE, 523.0f, 523.0f, 0.14f, 0.28f, 0.0f},
    {SOUND_MISSION, VOICE_TONE, WAVE_SINE, 659.0f, 659.0f, 0.14f, 0.28f, 0.14f},
    {SOUND_MISSION, VOICE_TONE, WAVE_SINE, 784.0f, 784.0f, 0.3f, 0.28f, 0.28f},
    {SOUND_DAY_BELL, VOICE_BELL, WAVE_SINE, 880.0f, 880.0f, 1.6f, 0.2f, 0.0f},
    {SOUND_DAY_BELL, VOICE_BELL, WAVE_SINE, 1320.0f, 1320.0f, 1.2f, 0.08f, 0.0f},
};

// A frame's step is less than a turn, so that a phase comes back into it by taking off one.
static_assert(std::all_of(std::begin(EFFECTS), std::end(EFFECTS), [](const EffectRow& row) {
    return row.duration > 0.0f && row.freqStart < SAMPLE_RATE && row.freqEnd < SAMPLE_RATE;
}));

Voice* freeVoice(Voices& voices) {
    const auto found = std::find_if(voices.begin(), voices.end(), [](const Voice& v) { return !v.active; });
    return found == voices.end() ? nullptr : &*found;
}

static void startVoice(Voices& voices, uint32_t& rng, const EffectRow& row) {
    Voice* voice = freeVoice(voices);
    if (!voice) return;
    *voice = {.active = 1,
              .kind = row.kind,
              .wave = row.wave,
              .delay = row.delay,
              .duration = row.duration,
              .freqStart = row.freqStart,
              .freqEnd = row.freqEnd,
              .gain = row.gain,
              .noiseState = static_cast<uint32_t>(noiseUnit(rng) * 100000.0f) + 7};
}

void startEffect(Voices& voices, uint32_t& rng, int effect) {
    for (const EffectRow& row : EFFECTS)
        if (row.effect == effect) startVoice(voices, rng, row);
}

// --- Sounding

// What the clocks of a voice show in each frame of a block that it sounds in.
struct Course {
    int first = 0; // frame of the block
    int count = 0;
    Block time = {}; // seconds
    Block part = {}; // of the duration, 0 to 1
    Block phase = {};
};

// Moves the voice on to the end of the block, step by step as its clocks add up.
static void walk(Voice& voice, int frames, Course& course) {
    int i = 0;
    for (; i < frames && voice.delay > 0.0f; i++) voice.delay -= FRAME_TIME;
    course.first = i;
    float time = voice.time; // in registers, which the arrays cannot alias
    float phase = voice.phase;
    for (; i < frames; i++) {
        time += FRAME_TIME;
        if (time >= voice.duration) {
            voice.active = 0;
            break;
        }
        const float part = time / voice.duration;
        const float frequency = (voice.freqEnd - voice.freqStart) * part + voice.freqStart;
        phase += frequency * TWO_PI * FRAME_TIME;
        if (phase > TWO_PI) phase -= TWO_PI;
        course.time[course.count] = time;
        course.part[course.count] = part;
        course.phase[course.count] = phase;
        course.count++;
    }
    voice.time = time;
    voice.phase = phase;
    assert(course.first + course.count <= frames);
}

// The sign of the sine. In single precision half a turn and TWO_PI are both a little more than the true ones,
// so that the sine is already negative at the one and positive at the other.
static float squareOfPhase(float phase) { return phase >= 3.14159274f && phase < TWO_PI ? -1.0f : 1.0f; }

static float noise(uint32_t& state) {
    return static_cast<float>(nextNoise(state) >> 8) * 1.1920929e-07f - 1.0f;
}

static float secondHarmonic(float phase) {
    const float twice = 2.0f * phase;
    return sineOfPhase(twice > TWO_PI ? twice - TWO_PI : twice);
}

static void fillWave(Voice& voice, const Course& course, Block& samples) {
    if (voice.wave == WAVE_NOISE)
        for (int i = 0; i < course.count; i++) samples[i] = noise(voice.noiseState);
    else if (voice.wave == WAVE_SQUARE)
        for (int i = 0; i < BLOCK_FRAMES; i++) samples[i] = squareOfPhase(course.phase[i]);
    else
        for (int i = 0; i < BLOCK_FRAMES; i++) samples[i] = sineOfPhase(course.phase[i]);
    if (voice.kind == VOICE_AMBIENT_NOTE)
        for (int i = 0; i < BLOCK_FRAMES; i++) samples[i] += 0.3f * secondHarmonic(course.phase[i]);
}

// A steep rise, then an exponential fall: over the duration, for the ambient note over seconds.
static void fillEnvelope(const Voice& voice, const Course& course, Block& envelope) {
    const bool note = voice.kind == VOICE_AMBIENT_NOTE;
    const float rise = note ? 40.0f : 300.0f; // a second
    const float fall = note ? -2.2f : (voice.duration > 0.5f ? 0.6f : 1.5f) * -6.0f;
    const Block& clock = note ? course.time : course.part;
    for (int i = 0; i < BLOCK_FRAMES; i++) envelope[i] = fallingExp(fall * clock[i]);
    for (int i = 0; i < course.count && course.time[i] * rise < 1.0f; i++)
        envelope[i] *= course.time[i] * rise;
}

// Whole blocks are worked out even where only a part sounds, because loops of a fixed length run several
// samples at once.
static void addVoice(Voice& voice, float* sum, int frames) {
    Course course;
    walk(voice, frames, course);
    if (course.count == 0) return;
    Block samples = {};
    Block envelope;
    fillWave(voice, course, samples);
    fillEnvelope(voice, course, envelope);
    for (int i = 0; i < BLOCK_FRAMES; i++) samples[i] *= envelope[i] * voice.gain;
    for (int i = 0; i < course.count; i++) sum[course.first + i] += samples[i];
}

void addVoices(Voices& voices, float* sum, int frames) {
    assert(frames <= BLOCK_FRAMES);
    for (Voice& voice : voices)
        if (voice.active) addVoice(voice, sum, frames);
}
