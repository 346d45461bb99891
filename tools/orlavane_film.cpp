// orlavane-film [OPTIONS] SCRIPT OUT: a film of the city that a script builds.
#include "city_script.h"
#include "film_file.h"
#include "film_script.h"
#include "film_stage.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <string_view>

constexpr int FILM_LOST = SCRIPT_OUTPUT_LOST; // exit statuses besides 0
constexpr int FILM_REFUSED = SCRIPT_REFUSED;

struct FilmOptions {
    FilmScene scene;
    int64_t every = 1;   // days from frame to frame
    double linger = 2.0; // seconds
    std::string script;
    std::string out;
};

constexpr const char* USAGE = R"(usage: orlavane-film [OPTIONS] SCRIPT OUT
Draws the city that the script builds (- is standard input) while it grows, into OUT:
  NAME.png                       numbered pictures, NAME-00001.png and so on
  NAME.mp4, NAME.webp, NAME.gif  one film; ffmpeg makes it
The options, and what goes without them:
  --size WIDTHxHEIGHT  pixels, 1280x720
  --every DAYS         of the city from one frame to the next, 1
  --fps FRAMES         a second, 25
  --linger SECONDS     on the city as it is in the end, 2
  --state STATE        what is shown, as focus=X:Y,dist=D,hour=H,calday=N,overlay=NAME: the whole city
  --orbit DEGREES      of the camera around it in a second: 4, and 0 under --state
  --hour H or H:H      held, or running over the film, past 24 for the days after: 7:9
  --calday N or N:N    the same for the calendar, where 0 is 1 March: 70
)";

// --- Options

template<class Number>
static bool parseNumber(std::string_view word, Number least, Number most, Number& number) {
    Number value = 0;
    const char* end = word.data() + word.size();
    const auto [rest, error] = std::from_chars(word.data(), end, value);
    // Written so that a word that is no number at all is refused as well.
    if (error != std::errc() || rest != end || !(value >= least && value <= most)) return false;
    number = value;
    return true;
}

static bool parseSize(std::string_view word, FilmScene& scene) {
    const size_t by = word.find('x');
    return by != std::string_view::npos && parseNumber(word.substr(0, by), 16, 8192, scene.format.width) &&
           parseNumber(word.substr(by + 1), 16, 8192, scene.format.height);
}

static bool parseSpan(std::string_view word, double most, std::optional<FilmSpan>& span) {
    FilmSpan value;
    const size_t colon = std::min(word.find(':'), word.size());
    if (!parseNumber(word.substr(0, colon), 0.0, most, value.first)) return false;
    value.last = value.first;
    if (colon < word.size() && !parseNumber(word.substr(colon + 1), value.first, most, value.last))
        return false;
    span = value;
    return true;
}

static bool parseOption(std::string_view name, const std::string& value, FilmOptions& options) {
    FilmScene& scene = options.scene;
    if (name == "--size") return parseSize(value, scene);
    if (name == "--every") return parseNumber<int64_t>(value, 1, 1000000, options.every);
    if (name == "--fps") return parseNumber(value, 1, 120, scene.format.framesPerSecond);
    if (name == "--linger") return parseNumber(value, 0.0, 60.0, options.linger);
    if (name == "--hour") return parseSpan(value, 240.0, scene.hour);
    if (name == "--calday") return parseSpan(value, 36500.0, scene.calday);
    if (name == "--orbit") return parseNumber(value, -360.0, 360.0, scene.orbit.emplace());
    scene.state = value;
    return isTheStateOfAFilm(value);
}

constexpr std::string_view OPTIONS[] = {"--size",  "--every", "--fps",  "--linger",
                                        "--state", "--orbit", "--hour", "--calday"};

static bool parseArguments(int argc, char** argv, FilmOptions& options) {
    std::vector<std::string> names;
    for (int i = 1; i < argc; i++) {
        const std::string word = argv[i];
        if (!word.starts_with("--")) {
            names.push_back(word);
            continue;
        }
        if (std::find(std::begin(OPTIONS), std::end(OPTIONS), word) == std::end(OPTIONS)) {
            std::cerr << "orlavane-film: unknown option " << word << "\n";
            return false;
        }
        if (i + 1 == argc) {
            std::cerr << "orlavane-film: " << word << " needs a value\n";
            return false;
        }
        if (!parseOption(word, argv[++i], options)) {
            std::cerr << "orlavane-film: " << word << " cannot be " << argv[i] << "\n";
            return false;
        }
    }
    if (names.size() != 2) {
        std::cerr << USAGE;
        return false;
    }
    options.script = names[0];
    options.out = names[1];
    return true;
}

// --- The film

static bool readScript(const FilmOptions& options, FilmScript& script, std::string& reason) {
    if (options.script == "-") return readFilmScript(script, "stdin", std::cin, reason);
    std::ifstream file(options.script, std::ios::binary);
    if (file) return readFilmScript(script, options.script, file, reason);
    reason = options.script + ": cannot be opened";
    return false;
}

// Frame 0 shows the city before its first day, the last ones linger on it after its last.
static bool countFrames(FilmOptions& options, const FilmScript& script, std::string& reason) {
    const int64_t days = daysToCome(script) / options.every + 1;
    const int64_t lingering = std::llround(options.linger * options.scene.format.framesPerSecond);
    options.scene.frameCount = static_cast<int>(std::min<int64_t>(days + lingering, FRAME_LIMIT + 1));
    if (options.scene.frameCount <= FRAME_LIMIT) return true;
    reason =
        options.script + ": more than " + std::to_string(FRAME_LIMIT) + " frames; --every makes them fewer";
    return false;
}

static double secondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Says where it is once for each second of the film.
static bool makeFilm(const FilmOptions& options, FilmScript& script, std::string& reason) {
    const FilmScene& scene = options.scene;
    static FilmStage stage; // too large for the stack
    FilmFile film;
    if (!openStage(stage, scene, rehearse(script, options.every), reason)) return false;
    if (!openFilm(film, options.out, scene.format, reason)) return false;

    const auto start = std::chrono::steady_clock::now();
    for (int frame = 0; frame < scene.frameCount; frame++) {
        runDays(script, stage.app.city, frame == 0 ? 0 : options.every);
        drawFrame(stage, frame);
        if (!addFrame(film, stage.picture, reason)) return false;
        if ((frame + 1) % scene.format.framesPerSecond == 0)
            std::printf("frame %d, day %d\n", frame + 1, stage.app.city.day);
        std::fflush(stdout);
    }
    if (!closeFilm(film, reason)) return false;
    const double seconds = secondsSince(start);
    std::printf("%s: %d frames in %.1f seconds, %.2f a second\n", options.out.c_str(), scene.frameCount,
                seconds, scene.frameCount / seconds);
    return true;
}

static int fail(int status, const std::string& reason) {
    std::cerr << reason << "\n";
    return status;
}

int main(int argc, char** argv) {
    if (argc == 2 && std::string_view(argv[1]) == "--help") {
        std::cout << USAGE;
        return 0;
    }
    FilmOptions options;
    FilmScript script;
    std::string reason;
    if (!parseArguments(argc, argv, options)) return FILM_REFUSED;
    const FilmScene& scene = options.scene;
    if (!readScript(options, script, reason) || !countFrames(options, script, reason))
        return fail(FILM_REFUSED, reason);
    if (!canMakeFilm(options.out, scene.format, scene.frameCount, reason)) return fail(FILM_REFUSED, reason);

    std::printf("%s: %d frames of %dx%d, %.1f seconds\n", options.out.c_str(), scene.frameCount,
                scene.format.width, scene.format.height,
                static_cast<double>(scene.frameCount) / scene.format.framesPerSecond);
    std::fflush(stdout);
    return makeFilm(options, script, reason) ? 0 : fail(FILM_LOST, reason);
}
