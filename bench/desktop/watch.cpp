// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// Waits for a new window and tells when it was there and when it was painted, in nanoseconds of the
// monotonic clock:
//
//   bench_watch WIDTH HEIGHT [--click X Y | --exec PROGRAM...]
//
// The window is the first one that is mapped on the root window with at least that size and at most
// 40 pixels more, which covers a window manager's frame. --click clicks there first, --exec starts
// a program and ends it afterwards; "start" is the moment just before. "mapped" is the moment at
// which the X server's notice arrived, "painted" the moment at which the window's pixels were first
// seen as they stayed.

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <poll.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

constexpr long long second = 1'000'000'000;
constexpr long long patience = 30 * second;
constexpr long long settled = second * 3 / 10;
constexpr int frameAllowance = 40;

long long now()
{
    timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * second + time.tv_nsec;
}

void tell(const char *what, long long when)
{
    std::printf("%s %lld\n", what, when);
    std::fflush(stdout);
}

struct Area {
    int x = 0, y = 0, width = 0, height = 0;
};

std::string pixels(Display *display, const Area &area)
{
    XImage *image = XGetImage(display, DefaultRootWindow(display), area.x, area.y,
                              static_cast<unsigned>(area.width), static_cast<unsigned>(area.height),
                              AllPlanes, ZPixmap);
    if (!image)
        return {};
    std::string bytes(image->data, static_cast<size_t>(image->bytes_per_line * image->height));
    XDestroyImage(image);
    return bytes;
}

bool waitForWindow(Display *display, int width, int height, Area &area)
{
    const long long limit = now() + patience;
    while (now() < limit) {
        while (XPending(display)) {
            XEvent event;
            XNextEvent(display, &event);
            if (event.type != MapNotify)
                continue;
            const long long when = now();
            XWindowAttributes window;
            if (!XGetWindowAttributes(display, event.xmap.window, &window) ||
                window.width < width || window.height < height ||
                window.width > width + frameAllowance || window.height > height + frameAllowance)
                continue;
            tell("mapped", when);
            area = {window.x, window.y, window.width, window.height};
            return true;
        }
        pollfd descriptor{ConnectionNumber(display), POLLIN, 0};
        poll(&descriptor, 1, 100);
    }
    return false;
}

/// Keeps the part of the area that is on the screen.
Area onScreen(Display *display, Area area)
{
    const int screen = DefaultScreen(display);
    const int right = std::min(area.x + area.width, DisplayWidth(display, screen));
    const int bottom = std::min(area.y + area.height, DisplayHeight(display, screen));
    area.x = std::max(area.x, 0);
    area.y = std::max(area.y, 0);
    area.width = right - area.x;
    area.height = bottom - area.y;
    return area;
}

void waitForPaint(Display *display, const Area &area)
{
    std::string last = pixels(display, area);
    long long changed = now();
    while (now() < changed + settled) {
        usleep(500);
        std::string current = pixels(display, area);
        if (current != last) {
            last = std::move(current);
            changed = now();
        }
    }
    tell("painted", changed);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3)
        return 2;
    Display *display = XOpenDisplay(nullptr);
    if (!display)
        return 1;
    // A window may be gone again before it is asked for.
    XSetErrorHandler([](Display *, XErrorEvent *) { return 0; });
    XSelectInput(display, DefaultRootWindow(display), SubstructureNotifyMask);
    XSync(display, False);
    tell("armed", now());

    pid_t child = 0;
    const std::string action = argc > 4 ? argv[3] : "";
    if (action == "--click" && argc == 6) {
        XTestFakeMotionEvent(display, -1, std::atoi(argv[4]), std::atoi(argv[5]), 0);
        XSync(display, False);
        usleep(100'000); // the pointer has arrived, and what it hovers over is drawn
        tell("start", now());
        XTestFakeButtonEvent(display, 1, True, 0);
        XTestFakeButtonEvent(display, 1, False, 0);
        XFlush(display);
    } else if (action == "--exec") {
        tell("start", now());
        child = fork();
        if (child == 0) {
            execvp(argv[4], argv + 4);
            _exit(127);
        }
    }
    Area area;
    const bool found = waitForWindow(display, std::atoi(argv[1]), std::atoi(argv[2]), area);
    if (found)
        waitForPaint(display, onScreen(display, area));
    if (child > 0) {
        kill(child, SIGTERM);
        waitpid(child, nullptr, 0);
    }
    return found ? 0 : 1;
}
