#include "Platform/PointerState.h"

#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <mutex>

#include <csignal>
#include <pthread.h>
#include <xcb/xcb.h>

namespace
{
/**
 * Keeps a write to a server that went away from ending the process.
 *
 * Blocks the signal for this thread and swallows the one that the scope caused; one that was pending before
 * stays.
 */
class CPipeSignalBlock
{
public:
    CPipeSignalBlock() noexcept
    {
        sigemptyset(&mPipe);
        sigaddset(&mPipe, SIGPIPE);
        sigset_t pending;
        sigemptyset(&pending);
        sigpending(&pending);
        mWasPending = sigismember(&pending, SIGPIPE) == 1;
        mBlocked = !mWasPending && pthread_sigmask(SIG_BLOCK, &mPipe, &mOld) == 0;
    }
    CPipeSignalBlock(const CPipeSignalBlock&) = delete;
    CPipeSignalBlock& operator=(const CPipeSignalBlock&) = delete;
    ~CPipeSignalBlock()
    {
        if (mBlocked)
        {
            const std::timespec now{};
            while (sigtimedwait(&mPipe, nullptr, &now) == SIGPIPE)
            {
            }
            pthread_sigmask(SIG_SETMASK, &mOld, nullptr);
        }
    }

private:
    sigset_t mPipe{};
    sigset_t mOld{};
    bool mWasPending = false;
    bool mBlocked = false;
};

struct SDisconnect
{
    void operator()(xcb_connection_t* inConnection) const { xcb_disconnect(inConnection); }
};
struct SFree
{
    void operator()(void* inMemory) const { std::free(inMemory); }
};
using PointerReply = std::unique_ptr<xcb_query_pointer_reply_t, SFree>;

SPointerState StateFromMask(std::uint32_t inMask)
{
    SPointerState state;
    state.mPrimaryButton = (inMask & XCB_BUTTON_MASK_1) != 0;
    state.mSecondaryButton = (inMask & XCB_BUTTON_MASK_3) != 0; // the server counts the middle button second
    state.mShift = (inMask & XCB_MOD_MASK_SHIFT) != 0;
    state.mControl = (inMask & XCB_MOD_MASK_CONTROL) != 0;
    state.mOption = (inMask & XCB_MOD_MASK_1) != 0;
    state.mCommand = (inMask & XCB_MOD_MASK_4) != 0;
    return state;
}

/** The process's one connection for this purpose; made when first needed and again after the server was lost.
 */
class CDisplayConnection
{
public:
    SPointerState Query() noexcept
    {
        const std::lock_guard lock(mMutex);
        const CPipeSignalBlock pipeBlock;
        if (!IsConnected())
            Connect();
        if (mRoot == XCB_NONE)
            return {};
        const PointerReply reply(
            xcb_query_pointer_reply(mConnection.get(), xcb_query_pointer(mConnection.get(), mRoot), nullptr));
        return reply != nullptr ? StateFromMask(reply->mask) : SPointerState{};
    }

private:
    bool IsConnected() const noexcept
    {
        return mConnection != nullptr && xcb_connection_has_error(mConnection.get()) == 0;
    }

    void Connect() noexcept
    {
        int screenNumber = 0;
        mRoot = XCB_NONE;
        mConnection.reset(); // before the new one, so that there are never two
        mConnection.reset(xcb_connect(nullptr, &screenNumber));
        if (!IsConnected())
            return;
        xcb_screen_iterator_t screen = xcb_setup_roots_iterator(xcb_get_setup(mConnection.get()));
        while (screen.rem > 1 && screenNumber > 0)
        {
            xcb_screen_next(&screen);
            --screenNumber;
        }
        mRoot = screen.rem > 0 ? screen.data->root : xcb_window_t{XCB_NONE};
    }

    std::mutex mMutex;
    std::unique_ptr<xcb_connection_t, SDisconnect> mConnection;
    xcb_window_t mRoot = XCB_NONE; // stays none without a server
};
} // namespace

SPointerState GetPointerState() noexcept
{
    static CDisplayConnection connection;
    return connection.Query();
}
