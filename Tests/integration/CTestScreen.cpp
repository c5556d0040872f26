#include "Tests/integration/CTestScreen.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <vector>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <poll.h>

struct CTestScreen::SServer
{
    SServer() : mDisplay(XOpenDisplay(nullptr))
    {
        // A server that begins anew after its last client refuses the next one for a moment.
        for (int tries = 0; mDisplay == nullptr && tries < 50; ++tries)
        {
            (void)poll(nullptr, 0, 20); // milliseconds
            mDisplay = XOpenDisplay(nullptr);
        }
        if (mDisplay == nullptr)
            throw std::runtime_error("no X server");
    }
    SServer(const SServer&) = delete;
    SServer& operator=(const SServer&) = delete;
    ~SServer() { XCloseDisplay(mDisplay); }

    std::vector<Window> ChildrenOf(Window inWindow) const
    {
        Window root = None;
        Window parent = None;
        Window* children = nullptr;
        unsigned count = 0;
        if (XQueryTree(mDisplay, inWindow, &root, &parent, &children, &count) == 0)
            return {};
        const std::unique_ptr<Window, decltype(&XFree)> owned(children, &XFree);
        return {children, children + count};
    }
    std::string TitleOf(Window inWindow) const
    {
        char* title = nullptr;
        if (XFetchName(mDisplay, inWindow, &title) == 0)
            return {};
        const std::unique_ptr<char, decltype(&XFree)> owned(title, &XFree);
        return title;
    }
    bool IsVisible(Window inWindow) const
    {
        XWindowAttributes attributes;
        return XGetWindowAttributes(mDisplay, inWindow, &attributes) != 0 &&
               attributes.map_state == IsViewable;
    }

    Display* mDisplay;
};

CTestScreen::CTestScreen() : mServer(std::make_unique<SServer>()) {}

CTestScreen::~CTestScreen() = default;

void CTestScreen::MoveTo(int inX, int inY)
{
    XTestFakeMotionEvent(mServer->mDisplay, -1, inX, inY, CurrentTime);
    XSync(mServer->mDisplay, False);
}

void CTestScreen::Button(unsigned inButton, bool inDown)
{
    XTestFakeButtonEvent(mServer->mDisplay, inButton, inDown ? True : False, CurrentTime);
    XSync(mServer->mDisplay, False);
}

void CTestScreen::Key(const std::string& inKey, bool inDown)
{
    const KeyCode code = XKeysymToKeycode(mServer->mDisplay, XStringToKeysym(inKey.c_str()));
    if (code == 0)
        throw std::runtime_error("no key " + inKey);
    XTestFakeKeyEvent(mServer->mDisplay, code, inDown ? True : False, CurrentTime);
    XSync(mServer->mDisplay, False);
}

void CTestScreen::Close(WindowID inWindow)
{
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = inWindow;
    event.xclient.message_type = XInternAtom(mServer->mDisplay, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(mServer->mDisplay, "WM_DELETE_WINDOW", False));
    XSendEvent(mServer->mDisplay, inWindow, False, NoEventMask, &event);
    XSync(mServer->mDisplay, False);
}

int CTestScreen::Children(WindowID inWindow) const
{
    return static_cast<int>(mServer->ChildrenOf(inWindow).size());
}

bool CTestScreen::ShowsEditor(WindowID inWindow) const
{
    const std::vector<Window> children = mServer->ChildrenOf(inWindow);
    return std::ranges::any_of(children, [&](Window inChild) { return mServer->IsVisible(inChild); });
}

CTestScreen::WindowID CTestScreen::FindEditor(const std::string& inTitle) const
{
    const std::vector<Window> windows = mServer->ChildrenOf(DefaultRootWindow(mServer->mDisplay));
    const auto found =
        std::ranges::find_if(windows, [&](Window inWindow)
                             { return mServer->TitleOf(inWindow) == inTitle && ShowsEditor(inWindow); });
    return found != windows.end() ? *found : 0;
}
