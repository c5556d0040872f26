#pragma once
#include "Interfaces/AAX/AAX_IMIDINode.h"
#include "Interfaces/AAX/AAX_ITransport.h"
#include "Tests/integration/ModuleBundle.h"
#include "Tools/aaxhost/lib/CInstance.h"
#include "Tools/aaxhost/lib/CModule.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

/** A transport that plays; its answers cost next to nothing and call nobody. */
class CFixedTransport final : public AAX_ITransport
{
public:
    AAX_Result GetCurrentTempo(double* outTempo) const override;
    AAX_Result GetCurrentMeter(std::int32_t*, std::int32_t*) const override;
    AAX_Result IsTransportPlaying(bool* outPlaying) const override;
    AAX_Result GetCurrentTickPosition(std::int64_t*) const override;
    AAX_Result GetCurrentLoopPosition(bool*, std::int64_t*, std::int64_t*) const override;
    AAX_Result GetCurrentNativeSampleLocation(std::int64_t* outSamples) const override;
    AAX_Result GetCustomTickPosition(std::int64_t*, std::int64_t) const override;
    AAX_Result GetBarBeatPosition(std::int32_t*, std::int32_t*, std::int64_t*, std::int64_t) const override;
    AAX_Result GetTicksPerQuarter(std::uint32_t*) const override;
    AAX_Result GetCurrentTicksPerBeat(std::uint32_t*) const override;
    AAX_Result GetTimelineSelectionStartPosition(std::int64_t*) const override;
    AAX_Result GetTimeCodeInfo(std::int32_t*, std::int32_t*) const override;
    AAX_Result GetFeetFramesInfo(std::int32_t*, std::int64_t*) const override;

private:
    mutable std::int64_t mLocation = 0; // samples; moves with each question
};

/** A MIDI node whose packets stay the same from block to block. */
class CFixedMidiNode final : public AAX_IMIDINode
{
public:
    explicit CFixedMidiNode(CFixedTransport& inTransport) : mTransport(inTransport) {}
    /** Controller changes, spread over the block. */
    void SetPackets(std::size_t inCount, std::int32_t inFrames);

    AAX_CMidiStream* GetNodeBuffer() override { return &mStream; }
    AAX_Result PostMIDIPacket(AAX_CMidiPacket*) override { return kAAX_Success; }
    AAX_ITransport* GetTransport() override { return &mTransport; }

private:
    CFixedTransport& mTransport;
    std::vector<AAX_CMidiPacket> mPackets;
    AAX_CMidiStream mStream{0, nullptr};
};

/**
 * A module with a plug-in of the benchmark's choice, any number of instances of it, and the means to render
 * them with a host that takes next to no time itself.
 *
 * Throws std::runtime_error when the module or an instance does not start. Threads: the main thread.
 */
class CBenchRig
{
public:
    static constexpr double kRate = 48000.0; // Hz

    CBenchRig(const std::filesystem::path& inModuleFile, const std::filesystem::path& inPlugin,
              int inInstances = 1);

    CModule& Module() { return *mModule; }
    CInstance& Instance() { return *mInstances.front()->mInstance; }
    const CModuleBundle& Bundle() const { return mBundle; }

    /** What every instance gets from the next call on. Noise at the inputs. */
    void SetBlock(std::int32_t inFrames, std::size_t inPackets);
    /** One call of the module for all instances. */
    void Render() { mProcess(mContexts.data(), mContexts.data() + mContexts.size()); }

private:
    struct SVoice
    {
        std::unique_ptr<CInstance> mInstance;
        std::unique_ptr<SRenderCall> mCall;
        std::unique_ptr<CFixedMidiNode> mNode;
    };
    void AddInstance();

    CModuleBundle mBundle;
    CHostLog mLog;
    std::unique_ptr<CModule> mModule;
    CFixedTransport mTransport;
    std::vector<std::unique_ptr<SVoice>> mInstances;
    std::vector<void*> mContexts;
    AAX_CProcessProc mProcess = nullptr;
};
