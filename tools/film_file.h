// Where the frames of a film go: into numbered PNG files, or through a pipe into ffmpeg, which makes one
// file of them. What stood under a film's name is replaced when the new file is whole, and not before.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

struct FilmFormat {
    int width = 0; // pixels
    int height = 0;
    int framesPerSecond = 0;
};

struct FilmFile {
    std::string path;
    FilmFormat format;
    std::FILE* encoder = nullptr; // ffmpeg's standard input; null for PNG files
    int frameCount = 0;           // that stand
};

// All of these leave what is wrong in `reason` when they answer false.

// Whether such a film can be made at all: asked before anything is drawn. PNG files of a longer film under
// the same name would be taken for the end of this one.
bool canMakeFilm(const std::string& path, const FilmFormat& format, int frameCount, std::string& reason);

bool openFilm(FilmFile& film, const std::string& path, const FilmFormat& format, std::string& reason);
// `rgb` has its top row first.
bool addFrame(FilmFile& film, const std::vector<uint8_t>& rgb, std::string& reason);
bool closeFilm(FilmFile& film, std::string& reason);

// The PNG file of a frame, counted from 1: "city.png" gives "city-00001.png".
std::string framePath(const std::string& path, int frame);
constexpr int FRAME_LIMIT = 99999;
