// The city of a film, seen by the game's own renderer without a window: where the camera stands at a frame,
// what time it shows, and the picture of it.
#pragma once

#include "app/app.h"
#include "film_file.h"
#include "film_script.h"

#include <optional>

// Runs evenly over the film, or stands still.
struct FilmSpan {
    double first = 0.0;
    double last = 0.0;
};

struct FilmScene {
    FilmFormat format = {1280, 720, 25};
    int frameCount = 0;
    std::string state;              // as the game's OV_STATE: what isTheStateOfAFilm lets through
    std::optional<double> orbit;    // degrees a second; none: slowly, and not at all under a state
    std::optional<FilmSpan> hour;   // past 24 for the days after; none: the state's, or a morning
    std::optional<FilmSpan> calday; // none: the state's, or a day in spring
};

struct FilmStage {
    FilmScene scene;
    App app;
    Camera pose; // at the first frame
    double orbit = 0.0;
    std::vector<uint8_t> samples;
    std::vector<uint8_t> picture; // red, green, blue, top row first
};

// Nothing but camera, time and overlay, each as it can be read: other keys have no meaning in a film.
bool isTheStateOfAFilm(const std::string& state);

// Opens the OpenGL context, starts the city as a script finds it and sets up the camera: before `box`,
// unless the state says where. False with the reason.
bool openStage(FilmStage& stage, const FilmScene& scene, const CellBox& box, std::string& reason);

// Draws the city as it stands into `picture`. The frames come in order, 0 first: the traffic goes on from
// one to the next.
void drawFrame(FilmStage& stage, int frame);
