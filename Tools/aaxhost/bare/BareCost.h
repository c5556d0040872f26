#pragma once
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

/**
 * A VST 2 plug-in called directly, with no module between: what a module's cost is compared with.
 *
 * Answers the plug-in just enough to render. Threads: the main thread.
 */
class CBareCost
{
public:
    /** @param inPlugin the shared object. @return null when it does not load. */
    static std::unique_ptr<CBareCost> Open(const std::string& inPlugin, float inRate);
    CBareCost(const CBareCost&) = delete;
    CBareCost& operator=(const CBareCost&) = delete;
    virtual ~CBareCost() = default;

    /** Renders noise in blocks of inFrames, at most 1,024. */
    virtual void Render(std::int32_t inFrames) = 0;
    virtual void SendNote(bool inOn) = 0;
    /** Of the audio buffers that it renders with, which are this object's and not the plug-in's. */
    virtual std::size_t BufferBytes() const = 0;

    /** The noise that Render feeds in, the same each time: -12 dB at most. */
    static void FillWithNoise(std::span<float> outSamples);

protected:
    CBareCost() = default;
};
