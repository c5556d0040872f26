#pragma once
#include <string>

#include <sys/types.h>

/**
 * An X server of its own without a screen; DISPLAY names it until it ends with this object.
 *
 * Threads: one at a time.
 */
class CVirtualDisplay
{
public:
    CVirtualDisplay() = default;
    CVirtualDisplay(const CVirtualDisplay&) = delete;
    CVirtualDisplay& operator=(const CVirtualDisplay&) = delete;
    ~CVirtualDisplay();

    static bool IsInstalled();
    /** @return empty when it runs, else what went wrong. */
    std::string Start();

private:
    pid_t mServer = 0;
    void* mConnection = nullptr; // the server would end with its last client, and windows come and go
};
