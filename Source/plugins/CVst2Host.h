#pragma once
#include "Interfaces/VST2/HostAnswers.h"
#include "Source/plugins/ListenerCalls.h"
#include "Source/plugins/SMidiMsg.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

class CVst2Host;
class CVst2Plugin;
class IEditHost;
class IHostCallAnswers;
class IMainHost;
class IPlugin;

/** Every host alive, in order of construction, not owned. For the thread that makes hosts; callbacks don't
 * look here. */
extern std::vector<CVst2Host*> gVctHosts;
/** The current host; null when there is none. Main thread writes, host callbacks read. */
extern std::atomic<CVst2Host*> pVst2Host;

/**
 * The host side of the VST 2 interface: owns the plug-ins of one instance and answers their calls.
 *
 * Threads: everything on the main thread, except that ProcessEvents, TimeInfo and SetTempo belong to the
 * render thread once audio runs, and that plug-ins may use the callback on any thread, also while other hosts
 * are made and destroyed. The time information is read by the plug-in without a lock.
 */
class CVst2Host final
{
public:
    CVst2Host();
    CVst2Host(const CVst2Host&) = delete;
    CVst2Host& operator=(const CVst2Host&) = delete;
    /** Closes every plug-in; their calls are unmatched ones by then. Afterwards there is no current host. */
    ~CVst2Host();

    /**
     * Loads a plug-in, and initialises it when block size (at least 1) and sample rate (above 0) are known.
     * @return owned by this host; null when it can't be loaded, or when initialising failed (it stays listed
     * then). An exception of the plug-in's while it is initialised passes; the plug-in stays listed then as
     * well.
     */
    virtual CVst2Plugin* LoadPlugin(const char* inUtf8Path);
    /** Closes and destroys every plug-in, in order of loading. */
    virtual void Reset();

    /** @param inFrames the largest block; plug-ins that are initialised already are not told. */
    void SetBufferSize(long inFrames) { mBlockSize = inFrames; }
    void SetSampleRate(float inHertz);
    void InitTimeInfo();
    /** Makes this host the current one. */
    void SetActualAAXHost() { pVst2Host.store(this); }

    /** What every plug-in's entry gets. Finds the caller's host at a cost that doesn't depend on how many
     * there are. */
    static VstIntPtr AudioMasterCallback(AEffect* inEffect, std::int32_t inOpcode, std::int32_t inIndex,
                                         VstIntPtr inValue, void* inPointer, float inOpt) noexcept;

    /**
     * Not owned, null for none; must outlive the host or be taken back. The one before is not called any more
     * when this returns: calls that other threads are making are waited for, though not for ever.
     */
    void SetMainListener(IMainHost* inListener);
    void SetEditListener(IEditHost* inListener);
    /** Answers ahead of this host; null for none, and else as with the listeners. */
    void SetCallAnswers(IHostCallAnswers* inAnswers);
    /** Whether this is the thread that set a listener last: the main thread of whoever listens. */
    bool IsListenerThread() const noexcept { return mListenerCalls.IsListenerThread(); }
    /**
     * Whether anybody sees the gestures that the edit listener hears; yes at first. Without a viewer nobody
     * asks the window system what is held down meanwhile.
     */
    void SetGestureViewer(bool inIsThere) noexcept;
    /** What is held down now goes with automation that is no drag. For the listeners' thread, now and then.
     */
    void RefreshMouseMods() noexcept;
    /** The one record that plug-ins are given; written by the render thread before each block. */
    VstTimeInfo& TimeInfo() { return mTimeInfo; }
    std::span<const std::unique_ptr<CVst2Plugin>> Plugins() const { return mPlugins; }
    float GetSampleRate() const { return mSampleRate; }
    /** Rises with each host made in this process; decides between hosts that share one effect. */
    std::uint32_t GetSerial() const { return mSerial; }

    // ---- What no module calls: the rest of the class's interface, for other hosts.

    /** @return false when it is none of this host's plug-ins; nothing is destroyed then. */
    bool ClosePlugin(IPlugin* inPlugin);
    /** @return whether all could be initialised; true when there are none. */
    bool InitPlugins();
    /** @return the place of the effect's plug-in in the order of loading, or -1; -1 for null. */
    long GetEffectIndex(const AEffect* inEffect) const;
    long GetBufferSize() const { return mBlockSize; }
    /** @param inTempo beats per minute; 0, negative or NaN: the tempo is unknown from now on. */
    void SetTempo(float inTempo);
    float GetTempo() const { return mTempo; }
    void ProcessEvents(std::span<const SMidiMsg> inMessages);
    /** Gives idle time to every plug-in that asked for it; moves no audio. */
    void Process();
    /** The answer to a call of one of this host's plug-ins; for another caller what concerns its plug-in is
     * skipped. */
    VstIntPtr OnAudioMasterCallback(AEffect* inEffect, std::int32_t inOpcode, std::int32_t inIndex,
                                    VstIntPtr inValue, void* inPointer, float inOpt);

private:
    // Argument by argument, as they came: most calls need no record of them.
    VstIntPtr AnswerContained(CVst2Plugin* inPlugin, std::int32_t inOpcode, std::int32_t inIndex,
                              VstIntPtr inValue, void* inPointer, float inOpt) noexcept;
    VstIntPtr Answer(CVst2Plugin* inPlugin, std::int32_t inOpcode, std::int32_t inIndex, void* inPointer);
    std::optional<VstIntPtr> AnswerAhead(const SHostCall& inCall);
    void OnAutomate(CVst2Plugin* inPlugin, std::int32_t inIndex);
    void OnUpdateDisplay(CVst2Plugin* inPlugin);
    enum class EGesture
    {
        kDown,
        kDrag,
        kUp
    };
    void OnGesture(EGesture inGesture, std::int32_t inIndex);
    unsigned long MouseModsFor(EGesture inGesture) noexcept;

    std::vector<std::unique_ptr<CVst2Plugin>> mPlugins;
    long mBlockSize = -1;      // frames
    float mSampleRate = -1.0F; // Hz
    float mTempo = 0.0F;       // beats per minute
    VstTimeInfo mTimeInfo{};
    // The main thread writes these three, host callbacks read them; sequentially consistent where one is
    // called, as the count of mListenerCalls is. `CListenerCalls` says why.
    std::atomic<IMainHost*> mMainListener = nullptr;
    std::atomic<IEditHost*> mEditListener = nullptr;
    std::atomic<IHostCallAnswers*> mCallAnswers = nullptr;
    CListenerCalls mListenerCalls;
    std::atomic<bool> mHasGestureViewer = true; // main thread writes, host callbacks read
    std::atomic<unsigned long> mMouseMods;      // the listeners' thread writes, host callbacks read
    std::atomic<bool> mIsDragging = false;      // between begin and end of an edit; as above
    std::uint32_t mSerial = 0;
};

/**
 * The answer to a host call that belongs to no loaded plug-in, in particular one made inside a plug-in's
 * entry.
 * @param inEntryVersion answered to audioMasterVersion; all else is answered 0.
 */
VstIntPtr AnswerUnmatchedCall(std::int32_t inOpcode, void* inPointer, std::int32_t inEntryVersion) noexcept;
