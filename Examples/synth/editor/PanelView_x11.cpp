#include "Examples/synth/editor/CKnobPanel.h"
#include "Examples/synth/editor/IPanelView.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iterator>

#include <xcb/xcb.h>

namespace
{
constexpr std::uint8_t kPrimaryButton = 1;
constexpr std::size_t kLongestText = 254; // of one item of a text request

struct SDisconnect
{
    void operator()(xcb_connection_t* inConnection) const { xcb_disconnect(inConnection); }
};
using Connection = std::unique_ptr<xcb_connection_t, SDisconnect>;

struct SFree
{
    void operator()(void* inMemory) const { std::free(inMemory); }
};
template <class Record>
using Reply = std::unique_ptr<Record, SFree>;

const xcb_screen_t* FindScreen(const xcb_setup_t* inSetup, int inNumber)
{
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(inSetup);
    for (; inNumber > 0 && screens.rem > 1; --inNumber)
        xcb_screen_next(&screens);
    return screens.rem > 0 ? screens.data : nullptr;
}

/** Whether a pixel of the screen is what a canvas has: 32 bits, with red, green and blue from high to low. */
bool TakesCanvas(const xcb_setup_t* inSetup, const xcb_screen_t& inScreen)
{
    bool isWhole = false;
    for (auto format = xcb_setup_pixmap_formats_iterator(inSetup); format.rem > 0; xcb_format_next(&format))
        isWhole = isWhole || (format.data->depth == inScreen.root_depth && format.data->bits_per_pixel == 32);
    for (auto depth = xcb_screen_allowed_depths_iterator(&inScreen); depth.rem > 0; xcb_depth_next(&depth))
    {
        const auto* const visuals = xcb_depth_visuals(depth.data);
        for (int i = 0; i < xcb_depth_visuals_length(depth.data); ++i)
        {
            const xcb_visualtype_t& visual = visuals[i];
            if (visual.visual_id == inScreen.root_visual)
            {
                return isWhole && inSetup->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST &&
                       visual.red_mask == 0xFF0000 && visual.green_mask == 0xFF00 && visual.blue_mask == 0xFF;
            }
        }
    }
    return false;
}

/** A connection, a window and a picture of its contents. Requests that fail change nothing: a window may go
 * with the host's at any time. */
class CX11PanelView final : public IPanelView
{
public:
    CX11PanelView(Connection inConnection, const xcb_screen_t& inScreen, CKnobPanel& ioPanel);
    ~CX11PanelView() override;

    bool Open(xcb_window_t inParent);
    void Idle() override;

private:
    void Handle(const xcb_generic_event_t& inEvent);
    void Move(const xcb_motion_notify_event_t& inEvent);
    void ReadFont();
    void Paint();
    void SendPixels();
    void SendText(const SPanelText& inText);
    void Show();

    const Connection mConnection;
    const xcb_screen_t& mScreen;
    CKnobPanel& mPanel;
    CPixelCanvas mCanvas;
    std::vector<SPanelText> mTexts;
    const std::uint16_t mWidth;
    const std::uint16_t mHeight;
    const xcb_window_t mWindow;
    const xcb_pixmap_t mPicture;
    const xcb_gcontext_t mContext;
    int mLetterWidth = 0;
    bool mIsExposed = false;
};

CX11PanelView::CX11PanelView(Connection inConnection, const xcb_screen_t& inScreen, CKnobPanel& ioPanel)
    : mConnection(std::move(inConnection)),
      mScreen(inScreen),
      mPanel(ioPanel),
      mCanvas(ioPanel.Width(), ioPanel.Height()),
      mWidth(static_cast<std::uint16_t>(ioPanel.Width())),
      mHeight(static_cast<std::uint16_t>(ioPanel.Height())),
      mWindow(xcb_generate_id(mConnection.get())),
      mPicture(xcb_generate_id(mConnection.get())),
      mContext(xcb_generate_id(mConnection.get()))
{
}

CX11PanelView::~CX11PanelView()
{
    // The rest goes with the connection; the host's window may be looked at right after this.
    const auto request = xcb_destroy_window_checked(mConnection.get(), mWindow);
    (void)Reply<xcb_generic_error_t>(xcb_request_check(mConnection.get(), request)); // it may be gone already
}

bool CX11PanelView::Open(xcb_window_t inParent)
{
    // In the order of the bits of the mask.
    const std::uint32_t values[] = {0, 0,
                                    XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_BUTTON_PRESS |
                                        XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_BUTTON_1_MOTION |
                                        XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                                    mScreen.default_colormap};
    const auto request = xcb_create_window_checked(
        mConnection.get(), mScreen.root_depth, mWindow, inParent, 0, 0, mWidth, mHeight, 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, mScreen.root_visual,
        XCB_CW_BACK_PIXMAP | XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP, values);
    if (Reply<xcb_generic_error_t>(xcb_request_check(mConnection.get(), request)) != nullptr)
        return false;
    xcb_create_pixmap(mConnection.get(), mScreen.root_depth, mPicture, mWindow, mWidth, mHeight);
    xcb_create_gc(mConnection.get(), mContext, mPicture, 0, nullptr);
    ReadFont();
    Paint();
    xcb_map_window(mConnection.get(), mWindow);
    xcb_flush(mConnection.get());
    return true;
}

/** Every server has this font. */
void CX11PanelView::ReadFont()
{
    constexpr char name[] = "fixed";
    const xcb_font_t font = xcb_generate_id(mConnection.get());
    xcb_open_font(mConnection.get(), font, sizeof(name) - 1, name);
    const Reply<xcb_query_font_reply_t> reply(
        xcb_query_font_reply(mConnection.get(), xcb_query_font(mConnection.get(), font), nullptr));
    if (reply != nullptr)
    {
        mLetterWidth = reply->max_bounds.character_width;
        xcb_change_gc(mConnection.get(), mContext, XCB_GC_FONT, &font);
    }
    xcb_close_font(mConnection.get(), font); // the context keeps it
}

void CX11PanelView::Idle()
{
    using EventPtr = Reply<xcb_generic_event_t>;
    EventPtr motion; // of several in a row only the last counts
    while (EventPtr event = EventPtr(xcb_poll_for_event(mConnection.get())))
    {
        if ((event->response_type & 0x7F) == XCB_MOTION_NOTIFY)
        {
            motion.swap(event);
            continue;
        }
        if (motion != nullptr)
        {
            Handle(*motion);
            motion.reset();
        }
        Handle(*event);
    }
    if (motion != nullptr)
        Handle(*motion);
    if (mPanel.IsOutdated())
    {
        Paint();
        mIsExposed = true;
    }
    if (mIsExposed)
        Show();
}

void CX11PanelView::Handle(const xcb_generic_event_t& inEvent)
{
    // The first bit tells only who sent it.
    switch (inEvent.response_type & 0x7F)
    {
    case XCB_EXPOSE: mIsExposed = true; break;
    case XCB_DESTROY_NOTIFY: mPanel.Release(); break;
    case XCB_MOTION_NOTIFY: Move(reinterpret_cast<const xcb_motion_notify_event_t&>(inEvent)); break;
    case XCB_BUTTON_PRESS:
        if (const auto& press = reinterpret_cast<const xcb_button_press_event_t&>(inEvent);
            press.detail == kPrimaryButton)
            mPanel.Press(press.event_x, press.event_y);
        break;
    case XCB_BUTTON_RELEASE:
        if (reinterpret_cast<const xcb_button_release_event_t&>(inEvent).detail == kPrimaryButton)
            mPanel.Release();
        break;
    default: break;
    }
}

void CX11PanelView::Move(const xcb_motion_notify_event_t& inEvent)
{
    mPanel.Drag(inEvent.event_y, (inEvent.state & XCB_MOD_MASK_SHIFT) != 0);
}

void CX11PanelView::Paint()
{
    mPanel.Paint(mCanvas, mTexts);
    SendPixels();
    if (mLetterWidth > 0)
        for (const SPanelText& text : mTexts)
            SendText(text);
}

/** In strips of as many rows as the server takes in one request. */
void CX11PanelView::SendPixels()
{
    const std::span<const std::uint32_t> pixels = mCanvas.Pixels();
    const std::size_t width = mWidth;
    const std::size_t largest =
        xcb_get_maximum_request_length(mConnection.get()); // in units of a pixel's size
    const std::size_t head = sizeof(xcb_put_image_request_t) / sizeof(std::uint32_t) + 1;
    const std::size_t rows = std::max<std::size_t>(1, largest > head ? (largest - head) / width : 0);
    for (std::size_t row = 0; row < mHeight; row += rows)
    {
        const std::size_t count = std::min(rows, mHeight - row);
        const auto strip = pixels.subspan(row * width, count * width);
        xcb_put_image(mConnection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, mPicture, mContext, mWidth,
                      static_cast<std::uint16_t>(count), 0, static_cast<std::int16_t>(row), 0,
                      mScreen.root_depth, static_cast<std::uint32_t>(strip.size_bytes()),
                      reinterpret_cast<const std::uint8_t*>(strip.data()));
    }
}

void CX11PanelView::SendText(const SPanelText& inText)
{
    const std::size_t length = std::min(inText.mText.size(), kLongestText);
    std::vector<std::uint8_t> item = {static_cast<std::uint8_t>(length), 0}; // 0: without a gap before it
    item.insert(item.end(), inText.mText.begin(), std::next(inText.mText.begin(), static_cast<long>(length)));
    const int left = inText.mX - mLetterWidth * static_cast<int>(length) / 2;
    xcb_change_gc(mConnection.get(), mContext, XCB_GC_FOREGROUND, &inText.mColour);
    xcb_poly_text_8(mConnection.get(), mPicture, mContext, static_cast<std::int16_t>(left),
                    static_cast<std::int16_t>(inText.mY), static_cast<std::uint32_t>(item.size()),
                    item.data());
}

void CX11PanelView::Show()
{
    mIsExposed = false;
    xcb_copy_area(mConnection.get(), mPicture, mWindow, mContext, 0, 0, 0, 0, mWidth, mHeight);
    xcb_flush(mConnection.get());
}
} // namespace

std::unique_ptr<IPanelView> IPanelView::Create(void* inParent, CKnobPanel& ioPanel)
{
    int screenNumber = 0;
    Connection connection(xcb_connect(nullptr, &screenNumber));
    if (xcb_connection_has_error(connection.get()) != 0)
        return nullptr;
    const xcb_setup_t* const setup = xcb_get_setup(connection.get());
    const xcb_screen_t* const screen = FindScreen(setup, screenNumber);
    if (screen == nullptr || !TakesCanvas(setup, *screen))
        return nullptr;
    auto view = std::make_unique<CX11PanelView>(std::move(connection), *screen, ioPanel);
    // The interface hands over a window's number where it says pointer.
    const auto parent = static_cast<xcb_window_t>(reinterpret_cast<std::uintptr_t>(inParent));
    if (!view->Open(parent))
        return nullptr;
    return view;
}
