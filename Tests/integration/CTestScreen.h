#pragma once
#include <memory>
#include <string>

/** The person in front of the display that DISPLAY names: its pointer, its keys, and what can be seen of it.
 */
class CTestScreen
{
public:
    using WindowID = unsigned long;

    CTestScreen(); // throws where there is no display
    CTestScreen(const CTestScreen&) = delete;
    CTestScreen& operator=(const CTestScreen&) = delete;
    ~CTestScreen();

    // Each returns when the server has done it; whoever has the window gets the events later.
    void MoveTo(int inX, int inY);
    void Button(unsigned inButton, bool inDown);
    /** @param inKey "Shift_L" and so on. */
    void Key(const std::string& inKey, bool inDown);
    /** Asks a window's owner to close it, as a window manager does. */
    void Close(WindowID inWindow);

    /** How many windows there are in one. */
    int Children(WindowID inWindow) const;
    /** Whether there is a visible window in one. */
    bool ShowsEditor(WindowID inWindow) const;
    /** @return 0 as long as there is no window of that title that shows an editor. */
    WindowID FindEditor(const std::string& inTitle) const;

private:
    struct SServer;
    std::unique_ptr<SServer> mServer;
};
