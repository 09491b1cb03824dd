#pragma once

// What the start-up and running benchmarks see of a program from outside:
// top-level windows being mapped on the X display, a ping that the window's
// event loop must answer, and keys sent through XTEST as a keyboard would.

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <chrono>
#include <cmath>
#include <cstring>
#include <string>
#include <sys/select.h>

namespace bench {

inline double nowMs()
{
    using namespace std::chrono;
    return duration<double, std::milli>(steady_clock::now().time_since_epoch()).count();
}

struct Mapped
{
    // The player's title begins with the program's name.
    bool isPlayer() const { return title.rfind("Quillmere", 0) == 0; }
    Window window = 0;
    int width = 0, height = 0;
    std::string title;
    double atMs = -1;
};

class XWatch
{
public:
    XWatch() : m_dpy(XOpenDisplay(nullptr))
    {
        if (!m_dpy)
            return;
        // A window may be gone before it is asked about (a run ends): such
        // an error is no reason to end the benchmark.
        XSetErrorHandler([](Display *, XErrorEvent *) { return 0; });
        m_root = DefaultRootWindow(m_dpy);
        // Qt answers a ping by sending it to the root window for StructureNotify.
        XSelectInput(m_dpy, m_root, SubstructureNotifyMask | StructureNotifyMask);
        m_ping = XInternAtom(m_dpy, "_NET_WM_PING", False);
        m_protocols = XInternAtom(m_dpy, "WM_PROTOCOLS", False);
        XSync(m_dpy, True);
    }
    ~XWatch()
    {
        if (m_dpy)
            XCloseDisplay(m_dpy);
    }
    bool ok() const { return m_dpy != nullptr; }
    Display *display() const { return m_dpy; }

    // Drops the events that came before a new run.
    void drain()
    {
        XSync(m_dpy, False);
        while (XPending(m_dpy)) {
            XEvent e;
            XNextEvent(m_dpy, &e);
        }
    }

    // The next top-level window mapped, or a window with atMs < 0 after
    // timeoutMs.
    Mapped nextMap(double timeoutMs)
    {
        Mapped m;
        XEvent e;
        while (next(e, timeoutMs)) {
            if (e.type == MapNotify && e.xmap.event == m_root && !e.xmap.override_redirect) {
                m.atMs = nowMs();
                m.window = e.xmap.window;
                XWindowAttributes a;
                if (!XGetWindowAttributes(m_dpy, m.window, &a))
                    continue;
                m.width = a.width;
                m.height = a.height;
                char *name = nullptr;
                if (XFetchName(m_dpy, m.window, &name) && name) {
                    m.title = name;
                    XFree(name);
                }
                return m;
            }
        }
        return m;
    }

    // Gives the window the keyboard, sends Shift (which changes nothing) as
    // a key press, then a ping: the answer comes once the program's event
    // loop has taken both. The time of the answer, or -1.
    double keyAndPing(Window w, double timeoutMs)
    {
        XSetInputFocus(m_dpy, w, RevertToParent, CurrentTime);
        key(XK_Shift_L);
        XEvent ping{};
        ping.xclient.type = ClientMessage;
        ping.xclient.window = w;
        ping.xclient.message_type = m_protocols;
        ping.xclient.format = 32;
        ping.xclient.data.l[0] = long(m_ping);
        ping.xclient.data.l[1] = CurrentTime;
        ping.xclient.data.l[2] = long(w);
        XSendEvent(m_dpy, w, False, NoEventMask, &ping);
        XFlush(m_dpy);
        XEvent e;
        while (next(e, timeoutMs)) {
            if (e.type == ClientMessage && e.xclient.message_type == m_protocols
                && Atom(e.xclient.data.l[0]) == m_ping && Window(e.xclient.data.l[2]) == w)
                return nowMs();
        }
        return -1;
    }

    void focus(Window w)
    {
        XSetInputFocus(m_dpy, w, RevertToParent, CurrentTime);
        XSync(m_dpy, False);
    }

    // Press and release of one key through XTEST; returns the time the
    // press left for the server.
    double key(KeySym sym)
    {
        const KeyCode code = XKeysymToKeycode(m_dpy, sym);
        XTestFakeKeyEvent(m_dpy, code, True, CurrentTime);
        XFlush(m_dpy);
        const double at = nowMs();
        XTestFakeKeyEvent(m_dpy, code, False, CurrentTime);
        XFlush(m_dpy);
        return at;
    }

private:
    bool next(XEvent &e, double timeoutMs)
    {
        const double until = nowMs() + timeoutMs;
        for (;;) {
            if (XPending(m_dpy)) {
                XNextEvent(m_dpy, &e);
                return true;
            }
            const double left = until - nowMs();
            if (left <= 0)
                return false;
            fd_set fds;
            FD_ZERO(&fds);
            FD_SET(ConnectionNumber(m_dpy), &fds);
            timeval tv{long(left / 1000), long(std::fmod(left, 1000.0) * 1000)};
            select(ConnectionNumber(m_dpy) + 1, &fds, nullptr, nullptr, &tv);
        }
    }

    Display *m_dpy;
    Window m_root = 0;
    Atom m_ping = 0, m_protocols = 0;
};

} // namespace bench
