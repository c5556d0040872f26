#pragma once

/**
 * The owner of a CVst2Host, told of what the wrapped plug-in changes by itself.
 *
 * Threads: called on whatever thread the plug-in calls its host on.
 */
class IMainHost
{
public:
    /** @param inValue the plug-in's own current value of the parameter, 0 to 1 in a well-behaved plug-in. */
    virtual void SetHostParameter(long inIndex, float inValue) = 0;
    /** Any number of parameters may have changed. */
    virtual void UpdateParameters() = 0;

protected:
    ~IMainHost() = default;
};
