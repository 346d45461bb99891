// The game's side of an update: the main thread starts tasks and polls them once a frame, a worker thread
// does all that may wait.
#pragma once

#include "app/app.h"

void updateStartCheck(App& app);
// Does nothing unless a newer build has been found.
void updateStartDownload(App& app);
// At the start: the setup program that brought this build has done its work. One that brought none is deleted
// by a later start, because it might still be another game's.
void deleteFinishedUpdate(const App& app);
// Once a frame: takes up the result of a task that is done. A download that proved right is started, and the
// game asked to end.
void updatePoll(App& app);
// True while a worker may be at the network.
bool updateUnderWay(const App& app);

// The launcher's Update button.
bool canPressUpdate(UpdateState state);
void pressUpdate(App& app);
