#pragma once
#include <array>
#include <span>
#include <vector>

class IRoutingObject;

/** One output link of a node. */
struct SOutputObject
{
    IRoutingObject* mTarget = nullptr; // not owned
    float mVolume = 0.0F;              // linear
    std::array<char, 512> mName{};
    bool mHasName = false;
};

/**
 * A node that takes audio from other nodes and feeds others: links, volumes, channel buffers and a name.
 *
 * Owns its buffers, never another node; whoever deletes a linked node unlinks it first.
 * Threads: links and buffers change on one thread, and not while audio is processed.
 *
 * What no module calls: every public operation but `CreateMyOutputs`. They are for hosts that connect
 * plug-ins.
 */
class IRoutingObject
{
public:
    IRoutingObject() = default;
    IRoutingObject(const IRoutingObject&) = delete;
    IRoutingObject& operator=(const IRoutingObject&) = delete;
    virtual ~IRoutingObject();

    /** Removes an existing input when inRemove is set; a node that is none yet is added in any case. */
    virtual void SetInput(IRoutingObject* inNode, bool inRemove);
    /**
     * Makes, changes or (with a negative or NaN volume on an existing link) removes the link to a target, on
     * both ends.
     * @param inName copied, at most 511 characters; may be null: a link then keeps the name it has.
     * @return false when the link would close a circle; nothing is changed then.
     */
    virtual bool SetOutput(IRoutingObject* inTarget, float inVolume, const char* inName);
    virtual void PostProcess();
    /** Keeps at most 254 characters. */
    virtual void SetRoutingObjectName(const char* inName);
    virtual const char* GetRoutingObjectName() const;
    /** Makes silent channel buffers of inBlockSize samples, one per channel, with volumes of 1. */
    virtual void CreateMyOutputs(long inBlockSize);
    virtual void DeleteMyOutputs();

    /** @return true when inTarget is this node or feeds it, directly or through others. The inputs must form
     * no circle. */
    bool ThisOutputLeadsToDeadLock(const IRoutingObject* inTarget) const;
    /** @return false when there is no such channel. */
    bool SetInputChannelVolume(float inVolume, long inChannel);
    bool SetOutputChannelVolume(float inVolume, long inChannel);
    void Log(const char* inText) const;
    void LogData() const;

    std::span<const SOutputObject> Outputs() const { return mOutputs; }
    std::span<IRoutingObject* const> Inputs() const { return mInputs; }
    std::span<const float> InputVolumes() const { return mInputVolumes; }
    std::span<const float> OutputVolumes() const { return mOutputVolumes; }

protected:
    static constexpr long kNoBlockSize = -1;

    /** Takes effect at the next CreateMyOutputs. */
    void SetChannelCounts(long inInputs, long inOutputs);
    /**
     * Lengthens the array of ChannelBuffers() from the next CreateMyOutputs on, for a node that hands it to
     * code which touches more channels than are counted here. The additional entries share one buffer that
     * nobody hears.
     */
    void ReserveChannels(long inChannels) { mReservedChannels = inChannels; }
    void SetBlockSize(long inBlockSize) { mBlockSize = inBlockSize; }
    long GetBlockSize() const { return mBlockSize; }
    /** Null before CreateMyOutputs, else one pointer per channel and a null behind the last. */
    float** ChannelBuffers() { return mChannelBuffers.empty() ? nullptr : mChannelBuffers.data(); }

private:
    std::vector<SOutputObject> mOutputs;
    std::vector<IRoutingObject*> mInputs;
    long mInputChannelCount = 0;
    long mOutputChannelCount = 0;
    long mReservedChannels = 0;
    std::vector<float> mSamples; // what mChannelBuffers points into
    std::vector<float*> mChannelBuffers;
    long mBlockSize = 0; // samples
    std::array<char, 256> mName{};
    std::vector<float> mInputVolumes;
    std::vector<float> mOutputVolumes;
    std::vector<float> mInputLevels;
    std::vector<float> mOutputLevels;
    std::vector<bool> mChannelFlags;
};
