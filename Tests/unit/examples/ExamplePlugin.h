#pragma once
#include "Interfaces/VST2/AEffect.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

/** A MIDI message at a sample of the whole rendering. */
struct STestMessage
{
    std::int32_t frame;
    std::uint8_t status;
    std::uint8_t first;
    std::uint8_t second;
};

using Channels = std::vector<std::vector<float>>;

/** An example plug-in without inputs in its file, driven as a host drives it that answers 0 to everything. */
class CExamplePlugin
{
public:
    /** Fails the test by an exception when the file is no plug-in. */
    explicit CExamplePlugin(const char* inFile);
    CExamplePlugin(const CExamplePlugin&) = delete;
    CExamplePlugin& operator=(const CExamplePlugin&) = delete;
    ~CExamplePlugin();

    AEffect& Effect() { return *mEffect; }
    VstIntPtr Dispatch(std::int32_t inOpcode, std::int32_t inIndex = 0, VstIntPtr inValue = 0,
                       void* inPointer = nullptr, float inOpt = 0.0F);
    std::string Text(std::int32_t inOpcode, std::int32_t inIndex = 0);
    void Set(std::int32_t inParameter, float inValue)
    {
        mEffect->setParameter(mEffect, inParameter, inValue);
    }
    float Get(std::int32_t inParameter) { return mEffect->getParameter(mEffect, inParameter); }
    /** Switches off and on, so that the parameters hold at once. */
    void Restart();
    void Send(std::span<const STestMessage> inMessages);

    /** Renders in blocks whose sizes are taken from `inBlocks` round and round. @param inMessages by time. */
    Channels Render(std::int32_t inFrames, const std::vector<STestMessage>& inMessages = {},
                    const std::vector<std::int32_t>& inBlocks = {1024});

private:
    void* mLibrary = nullptr;
    AEffect* mEffect = nullptr;
};
