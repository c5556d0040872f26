#include "Tools/aaxhost/window/CHostWindow.h"

#include "Tools/aaxhost/window/SPicture.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <poll.h>

namespace
{
constexpr SViewSize kInitialSize{400, 300};
constexpr int kLargestExtent = 32767; // of the protocol
// The interface counts the views of other systems only.
constexpr std::int32_t kViewOfNoNumber = 0;

struct SDisplayCloser
{
    void operator()(Display* inDisplay) const { (void)XCloseDisplay(inDisplay); } // it is gone either way
};
using DisplayPtr = std::unique_ptr<Display, SDisplayCloser>;

struct SImageDestroyer
{
    void operator()(XImage* inImage) const { (void)XDestroyImage(inImage); }
};
using ImagePtr = std::unique_ptr<XImage, SImageDestroyer>;

int IgnoreError(Display*, XErrorEvent*) { return 0; }

/** The part of a pixel under a mask, as 0 to 255. */
std::uint8_t ColourPart(unsigned long inPixel, unsigned long inMask)
{
    return static_cast<std::uint8_t>(inMask == 0 ? 0 : (inPixel & inMask) * 255 / inMask);
}

class CX11Window final : public CHostWindow
{
public:
    CX11Window(DisplayPtr inDisplay, const std::string& inTitle);
    ~CX11Window() override;

    void* View() const noexcept override;
    std::int32_t ViewType() const noexcept override { return kViewOfNoNumber; }
    void Show() override;
    void Resize(const SViewSize& inSize) override;
    void MoveTo(int inLeft, int inTop) override;
    void HandleEvents(std::chrono::milliseconds inLongest) override;
    bool IsClosed() const noexcept override { return mClosed; }
    COutcome<SPicture> TakePicture() override;

private:
    // What a request answers here tells nothing: errors arrive later, and are ignored.
    Display* Server() const noexcept { return mDisplay.get(); }

    const DisplayPtr mDisplay;
    Window mWindow = None;
    Atom mDeleteWindow = None;
    bool mClosed = false;
};

CX11Window::CX11Window(DisplayPtr inDisplay, const std::string& inTitle) : mDisplay(std::move(inDisplay))
{
    const int screen = DefaultScreen(Server());
    mWindow = XCreateSimpleWindow(Server(), RootWindow(Server(), screen), 0, 0, kInitialSize.mWidth,
                                  kInitialSize.mHeight, 0, 0, BlackPixel(Server(), screen));
    (void)XStoreName(Server(), mWindow, inTitle.c_str());
    (void)XSelectInput(Server(), mWindow, StructureNotifyMask);
    mDeleteWindow = XInternAtom(Server(), "WM_DELETE_WINDOW", False);
    (void)XSetWMProtocols(Server(), mWindow, &mDeleteWindow, 1);
    (void)XSync(Server(), False); // before other connections use the window
}

CX11Window::~CX11Window()
{
    (void)XDestroyWindow(Server(), mWindow);
    (void)XSync(Server(), False);
}

void* CX11Window::View() const noexcept
{
    return reinterpret_cast<void*>(mWindow); // where plug-ins expect a pointer they get the number
}

void CX11Window::Show()
{
    (void)XMapWindow(Server(), mWindow);
    (void)XSync(Server(), False);
}

void CX11Window::Resize(const SViewSize& inSize)
{
    XSizeHints hints{};
    hints.flags = PMinSize | PMaxSize;
    hints.min_width = hints.max_width = std::clamp(inSize.mWidth, 1, kLargestExtent);
    hints.min_height = hints.max_height = std::clamp(inSize.mHeight, 1, kLargestExtent);
    XSetWMNormalHints(Server(), mWindow, &hints);
    (void)XResizeWindow(Server(), mWindow, static_cast<unsigned>(hints.max_width),
                        static_cast<unsigned>(hints.max_height));
    (void)XSync(Server(), False);
}

void CX11Window::MoveTo(int inLeft, int inTop)
{
    (void)XMoveWindow(Server(), mWindow, inLeft, inTop);
    (void)XSync(Server(), False);
}

void CX11Window::HandleEvents(std::chrono::milliseconds inLongest)
{
    if (XPending(Server()) == 0)
    {
        pollfd connection{ConnectionNumber(Server()), POLLIN, 0};
        (void)poll(&connection, 1, static_cast<int>(inLongest.count())); // whichever ends the wait
    }
    while (XPending(Server()) > 0)
    {
        XEvent event;
        (void)XNextEvent(Server(), &event);
        const bool asked =
            event.type == ClientMessage && static_cast<Atom>(event.xclient.data.l[0]) == mDeleteWindow;
        mClosed = mClosed || asked || event.type == DestroyNotify;
    }
}

COutcome<SPicture> CX11Window::TakePicture()
{
    (void)XSync(Server(), False);
    XWindowAttributes attributes;
    if (XGetWindowAttributes(Server(), mWindow, &attributes) == 0)
        return SProblem{"The window is gone, so there is no picture of it."};
    const ImagePtr image(XGetImage(Server(), mWindow, 0, 0, static_cast<unsigned>(attributes.width),
                                   static_cast<unsigned>(attributes.height), AllPlanes, ZPixmap));
    if (image == nullptr)
        return SProblem{"The window does not lie wholly on the screen, so no picture can be taken of it."};
    SPicture picture{attributes.width, attributes.height, {}};
    picture.mPixels.reserve(3 * static_cast<std::size_t>(attributes.width) *
                            static_cast<std::size_t>(attributes.height));
    const Visual& visual = *attributes.visual;
    for (int y = 0; y < attributes.height; ++y)
        for (int x = 0; x < attributes.width; ++x)
        {
            const unsigned long pixel = XGetPixel(image.get(), x, y);
            for (const unsigned long mask : {visual.red_mask, visual.green_mask, visual.blue_mask})
                picture.mPixels.push_back(ColourPart(pixel, mask));
        }
    return picture;
}

/** A server that begins anew after its last client refuses the next one for a moment. @return null: none is
 * there. */
DisplayPtr OpenDisplay()
{
    constexpr std::chrono::seconds kLongest{1};
    constexpr int kPauseMs = 20;
    const auto deadline = std::chrono::steady_clock::now() + kLongest;
    DisplayPtr display(XOpenDisplay(nullptr));
    // Where no server is named there is none to wait for.
    while (display == nullptr && std::getenv("DISPLAY") != nullptr &&
           std::chrono::steady_clock::now() < deadline)
    {
        (void)poll(nullptr, 0, kPauseMs);
        display.reset(XOpenDisplay(nullptr));
    }
    return display;
}
} // namespace

COutcome<std::unique_ptr<CHostWindow>> CHostWindow::Create(const std::string& inTitle)
{
    DisplayPtr display = OpenDisplay();
    if (display == nullptr)
        return SProblem{"There is no X server to open a window on: DISPLAY has to name one."};
    // Stays for the life of the process: plug-ins cause errors for as long as they are loaded.
    (void)XSetErrorHandler(&IgnoreError);
    return std::unique_ptr<CHostWindow>(std::make_unique<CX11Window>(std::move(display), inTitle));
}
