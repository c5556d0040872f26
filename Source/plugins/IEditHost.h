#pragma once
#include <cstdint>

/**
 * The owner of a wrapped plug-in's editor, told of the gestures that the user makes in it.
 *
 * Each operation takes a parameter index and the bits of getMouseMods(), and returns 0 for success or a
 * negative code of the host's own. Threads: called on whatever thread the plug-in calls its host on.
 */
class IEditHost
{
public:
    virtual std::int32_t HandleParameterMouseDown(long inIndex, unsigned long inModifiers) = 0;
    virtual std::int32_t HandleParameterMouseDrag(long inIndex, unsigned long inModifiers) = 0;
    virtual std::int32_t HandleParameterMouseUp(long inIndex, unsigned long inModifiers) = 0;

protected:
    ~IEditHost() = default;
};
