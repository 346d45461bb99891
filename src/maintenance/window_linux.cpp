#include "maintenance/platform.h"

#include <SDL.h>
#include <SDL_syswm.h>

// As a window manager would tell the program of it.
static void sendGeometry(Display* display, Window window, int x, int y, int width, int height) {
    XEvent event = {};
    event.xconfigure.type = ConfigureNotify;
    event.xconfigure.event = window;
    event.xconfigure.window = window;
    event.xconfigure.x = x;
    event.xconfigure.y = y;
    event.xconfigure.width = width;
    event.xconfigure.height = height;
    XSendEvent(display, window, False, StructureNotifyMask, &event);
}

void confirmWindowSize(SDL_Window* sdlWindow) {
    SDL_SysWMinfo info;
    SDL_VERSION(&info.version);
    if (!SDL_GetWindowWMInfo(sdlWindow, &info) || info.subsystem != SDL_SYSWM_X11) return;
    Display* display = info.info.x11.display;
    const Window window = info.info.x11.window;
    int believedWidth;
    int believedHeight;
    SDL_GetWindowSize(sdlWindow, &believedWidth, &believedHeight);

    XGrabServer(display); // nobody may change the size between the answer and the news of it
    XWindowAttributes is;
    XGetWindowAttributes(display, window, &is);
    if (is.width != believedWidth || is.height != believedHeight) {
        int x;
        int y;
        Window child;
        XTranslateCoordinates(display, window, is.root, 0, 0, &x, &y, &child);
        // SDL passes over a size that it has been told before: the first one makes the second one news.
        sendGeometry(display, window, x, y, believedWidth, believedHeight);
        sendGeometry(display, window, x, y, is.width, is.height);
    }
    XUngrabServer(display);
    XSync(display, False);
}
