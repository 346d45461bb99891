#include "film_file.h"

#include "png_file.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <string_view>

struct Encoding {
    std::string_view extension;
    const char* options; // of ffmpeg, its container included; null for PNG files
};

// Nothing in the files tells when or by which version they were made, so that the same frames give the same
// file. WebP: every frame whole, since an encoder that leaves out what has hardly changed leaves squares of
// an earlier light behind. GIF: a palette for each frame costs less than a kilobyte, and one for all would
// keep every frame in memory.
constexpr Encoding ENCODINGS[] = {
    {".png", nullptr},
    {".mp4",
     "-vf scale=out_color_matrix=bt709:out_range=tv -colorspace bt709 -color_primaries bt709 "
     "-color_trc bt709 -c:v libx264 -preset slow -crf 20 -pix_fmt yuv420p -movflags +faststart -f mp4"},
    {".webp", "-c:v libwebp -quality 60 -compression_level 4 -loop 0 -f webp"},
    {".gif", "-vf \"split[a][b];[a]palettegen=stats_mode=single[p];[b][p]paletteuse=new=1:dither=bayer\" "
             "-loop 0 -f gif"},
};

static const Encoding* encodingOf(const std::string& path) {
    const auto found =
        std::find_if(std::begin(ENCODINGS), std::end(ENCODINGS),
                     [&path](const Encoding& encoding) { return path.ends_with(encoding.extension); });
    return found == std::end(ENCODINGS) ? nullptr : found;
}

static std::string partOf(const std::string& path) { return path + ".part"; }

std::string framePath(const std::string& path, int frame) {
    const size_t stem = path.size() - std::string_view(".png").size();
    std::string digits = std::to_string(frame);
    digits.insert(0, std::to_string(FRAME_LIMIT).size() - digits.size(), '0');
    return path.substr(0, stem) + "-" + digits + path.substr(stem);
}

static bool refuse(std::string& reason, const std::string& why) {
    reason = why;
    return false;
}

static bool canBeWritten(const std::string& path) {
    std::FILE* file = std::fopen(partOf(path).c_str(), "wb");
    if (!file) return false;
    std::fclose(file);
    std::remove(partOf(path).c_str());
    return !std::filesystem::is_directory(path);
}

bool canMakeFilm(const std::string& path, const FilmFormat& format, int frameCount, std::string& reason) {
    const Encoding* encoding = encodingOf(path);
    if (!encoding) return refuse(reason, path + ": a film's name ends with .png, .mp4, .webp or .gif");
    if (!canBeWritten(path)) return refuse(reason, path + ": cannot be written");
    if (!encoding->options) {
        const std::string behind = framePath(path, std::min(frameCount + 1, FRAME_LIMIT));
        if (frameCount < FRAME_LIMIT && std::filesystem::exists(behind))
            return refuse(reason, behind + " is a frame of a longer film: take that away first");
        return true;
    }
    if (encoding->extension == ".mp4" && (format.width % 2 != 0 || format.height % 2 != 0))
        return refuse(reason, "the width and the height of an MP4 film are even numbers");
    if (std::system("ffmpeg -version > /dev/null 2>&1") != 0)
        return refuse(reason,
                      path + ": needs ffmpeg, which is not here; " + path + ".png would need nothing");
    return true;
}

// As one word of a command line.
static std::string quoted(const std::string& path) {
    std::string text = "'";
    for (const char c : path) text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return text + "'";
}

static std::string commandLine(const std::string& path, const FilmFormat& format) {
    return "ffmpeg -hide_banner -loglevel error -xerror -y -f rawvideo -pixel_format rgb24 -video_size " +
           std::to_string(format.width) + "x" + std::to_string(format.height) + " -framerate " +
           std::to_string(format.framesPerSecond) + " -i - " + encodingOf(path)->options +
           " -map_metadata -1 -fflags +bitexact -flags:v +bitexact " + quoted("file:" + partOf(path));
}

bool openFilm(FilmFile& film, const std::string& path, const FilmFormat& format, std::string& reason) {
    film.path = path;
    film.format = format;
    if (!encodingOf(path)->options) return true;
    std::signal(SIGPIPE, SIG_IGN); // an encoder that ends early is told by what it leaves unread
    film.encoder = popen(commandLine(path, format).c_str(), "w");
    if (!film.encoder) return refuse(reason, path + ": ffmpeg cannot be started");
    std::setvbuf(film.encoder, nullptr, _IONBF, 0);
    return true;
}

static bool replace(const std::string& part, const std::string& path) {
    std::error_code error;
    std::filesystem::rename(part, path, error);
    if (error) std::remove(part.c_str());
    return !error;
}

static bool addPng(FilmFile& film, const std::vector<uint8_t>& rgb, std::string& reason) {
    const std::string part = partOf(film.path);
    const std::string path = framePath(film.path, film.frameCount + 1);
    if (writeFile(part, encodePng(film.format.width, film.format.height, 3, rgb)) && replace(part, path))
        return true;
    std::remove(part.c_str());
    return refuse(reason,
                  path + ": cannot be written; frames that stand: " + std::to_string(film.frameCount));
}

// The film before it stands as it was.
static bool loseFilm(FilmFile& film, std::string& reason) {
    std::remove(partOf(film.path).c_str());
    return refuse(reason, film.path + ": ffmpeg could not make it and says why above; no film is written");
}

bool addFrame(FilmFile& film, const std::vector<uint8_t>& rgb, std::string& reason) {
    if (!film.encoder) {
        if (!addPng(film, rgb, reason)) return false;
    } else if (std::fwrite(rgb.data(), 1, rgb.size(), film.encoder) != rgb.size()) {
        pclose(film.encoder);
        return loseFilm(film, reason);
    }
    film.frameCount++;
    return true;
}

bool closeFilm(FilmFile& film, std::string& reason) {
    if (!film.encoder) return true;
    if (pclose(film.encoder) != 0) return loseFilm(film, reason);
    return replace(partOf(film.path), film.path) || refuse(reason, film.path + ": cannot be written");
}
