// Stands for the game in the tests of its set-up: tells in the home folder which version has been started,
// where, and whether nobody could ask it to end. With an argument it stays until it is ended.
#include <SDL.h>
#ifdef TINY_FONTS
#include <SDL_ttf.h>
#endif

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>

int main(int argc, char**) {
    if (SDL_WasInit(0) != 0) return 1;
#ifdef TINY_FONTS
    if (TTF_WasInit() != 0) return 1;
#endif
    const std::filesystem::path home = std::getenv("HOME");
    const bool deaf = std::signal(SIGTERM, SIG_DFL) == SIG_IGN;
    std::ofstream(home / "started.new") << TINY_VERSION << '\n'
                                        << std::filesystem::current_path().string() << '\n'
                                        << (deaf ? "deaf\n" : "");
    std::filesystem::rename(home / "started.new", home / "started");
    while (argc > 1) std::this_thread::sleep_for(std::chrono::seconds(1));
    return 0;
}
