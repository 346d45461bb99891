// play_folder FOLDER SECONDS: what the player makes of the tracks there in game mode, at full volume, as
// stereo floats on the output stream.
#include "audio/music_player.h"
#include "audio/sample_rate.h"

#include <cstdio>
#include <cstdlib>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

int main(int argc, char** argv) {
#ifdef _WIN32
    _setmode(1, _O_BINARY);
#endif
    if (argc != 3) return 2;
    MusicPlayer player;
    if (!musicScan(player, argv[1], nullptr)) return 1;
    musicSetMode(player, MUSIC_GAME);
    std::vector<float> sound(static_cast<size_t>(2.0 * SAMPLE_RATE * std::atof(argv[2])));
    musicMix(player, sound.data(), static_cast<int>(sound.size() / 2), 1.0f);
    return std::fwrite(sound.data(), sizeof(float), sound.size(), stdout) == sound.size() ? 0 : 1;
}
