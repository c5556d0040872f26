#pragma once
#include "Interfaces/VST2/AEffect.h"
#include "Source/plugins/IPlugin.h"
#include "Source/plugins/PresetRecord.h"
#include "Source/plugins/SIOPortDef.h"
#include "Source/plugins/SRoomyRecord.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

class CVst2Host;
class IPluginImage;

/**
 * One loaded VST 2 plug-in.
 *
 * Texts come in one buffer per object, valid until the next call that gives a text.
 * Threads: ProcessEvents and Process belong to the render thread, everything else to the main thread; the
 * setters that the host callback uses (ForceMidi, RequestIdle) may be called on any. An exception of the
 * plug-in's passes to the caller, but for Load, which fails, and for closing, where it counts for nothing.
 */
class CVst2Plugin final : public IPlugin
{
public:
    /** The most MIDI messages that one ProcessEvents call delivers. */
    static constexpr long kMaxEvents = 300;
    /** What GetState() tells. */
    enum EState : std::int32_t
    {
        kStateNew = 0,
        kStateLoaded = 1,
        kStateInitialized = 2
    };

    CVst2Plugin();
    /** Closes the plug-in; its executable stays loaded. */
    ~CVst2Plugin() override;

    /**
     * @param inUtf8Path absolute path of the plug-in.
     * @param inHost     answers the plug-in's calls; must outlive this object.
     * @return false when there is no plug-in that can be used; nothing of it is left in reach then.
     */
    bool Load(const char* inUtf8Path, CVst2Host* inHost);
    /** Sends mains off and close, the host still within the plug-in's reach; then there is no effect. */
    void Close() noexcept;
    /** Takes the effect out of reach of host calls ahead of Close(). */
    void Unregister() noexcept;
    /** Unloads the executable; a plug-in that was not closed is gone without being told. */
    void FreeLib() noexcept;
    void GetPortList();

    // Audio
    /** Hands the arrays on as they are. Render path. */
    void Process(float** inInputs, float** inOutputs, long inFrames)
    {
        CallReplacing(inInputs, inOutputs, inFrames);
    }

    // MIDI
    using IPlugin::ProcessEvents;
    /**
     * Render path.
     * @param inCount    at most kMaxEvents; of more the rest is not delivered.
     * @param inMessages the MIDI bytes as they lie in memory, status byte lowest; the upper half is ignored.
     * @param inOffsets  samples from the start of the block; null: all 0.
     */
    void ProcessEvents(long inCount, unsigned long* inMessages, unsigned long* inOffsets)
    {
        mEventBlock.mNumEvents = static_cast<std::int32_t>(inCount);
        if (inCount != 0) // in most blocks there are none
            DeliverEvents(inCount, inMessages, inOffsets);
    }

    // Identity and shape
    const char* GetName() override { return mEffectName.mRecord.data(); }
    const char* GetVendor() const { return mVendor.mRecord.data(); }
    long GetUniqueId() const { return mUniqueId; }
    long GetVersion() const { return mVersion; }
    std::span<const SIOPortDef> InputPorts() const { return mInputPorts; }
    std::span<const SIOPortDef> OutputPorts() const { return mOutputPorts; }
    /** Whether MIDI events are sent to the plug-in now. */
    bool AcceptsMidi() const { return mMidi.load(std::memory_order_relaxed); }
    /** Whether they were at the end of Load: some plug-ins ask for MIDI only when they are opened. */
    bool AcceptedMidiAtLoad() const { return mMidiAtLoad; }
    /** @return samples; 0 without an effect. Some plug-ins know it only after the first block. */
    long GetInitialDelay() const
    {
        // Some plug-ins write it while they render, on another thread.
        return mEffect != nullptr ? __atomic_load_n(&mEffect->initialDelay, __ATOMIC_RELAXED) : 0;
    }
    AEffect* GetEffect() const { return mEffect; }
    /** Calls the plug-in, for what has no operation here. There must be an effect. */
    VstIntPtr Dispatch(std::int32_t inOpcode, std::int32_t inIndex = 0, VstIntPtr inValue = 0,
                       void* inPointer = nullptr, float inOpt = 0.0F) const
    {
        // NOTE: a plug-in that closes itself may clear its record.
        return mEffect->dispatcher != nullptr
                   ? mEffect->dispatcher(mEffect, inOpcode, inIndex, inValue, inPointer, inOpt)
                   : 0;
    }

    /** @return one of EState. */
    std::int32_t GetState() override { return mState; }
    bool Initialize(long inBlockSize, float inSampleRate) override;

    /** Whether it says yes to one of the interface's texts. */
    bool CanDo(const char* inText) const;

    // Parameters and programs
    long GetNumParameters() override;
    /** Sends nothing when the plug-in has that value already, or when the comparison is with NaN. */
    void SetParameter(long inIndex, float inValue) override;
    float GetParameter(long inIndex) override;
    const char* GetParameterName(long inIndex) override;
    long GetNumPrograms() override;
    long GetProgram() override;
    void SetProgram(long inProgram) override;
    const char* GetProgramNameByIndex(long inProgram) override;

    // State
    /** Whether the plug-in keeps its state as a chunk of its own. */
    bool GotChunk() const;
    /** Asks for the bank's chunk. @return its size in bytes, 0 when the plug-in gives none. */
    long GetChunkSize();
    /** Asks for the bank's chunk. @return the plug-in's own memory, valid until its next chunk call; null for
     * none. */
    void* GetChunk();
    /** @return bytes of the chunk that the last of the two calls above got. */
    long GetLastChunkSize() const { return mChunkSize; }
    void SetChunk(void* inData, long inSize);
    // Editor
    bool OpenEditor(void* inParent);
    /** Pixels; all 0 when the plug-in gives no rectangle. */
    void GetEditorSize(long& outX, long& outY, long& outWidth, long& outHeight);
    void CloseEditor() override;
    bool IsEditorOpen() const { return mEditorOpen; }
    void Idle() override;
    bool HasEditor() override;

    // For the host callback
    /** The plug-in asked for MIDI: that outlives a negative answer to the question whether it takes any. */
    void ForceMidi();
    void RequestIdle() { mIdleRequested.store(true, std::memory_order_release); }

    // ---- What no module calls: the rest of the class's interface, for tools and other hosts.

    // Audio and MIDI
    void Process(float** inBuffers, long inFrames, long inInputBufferCount, long* inInputMap,
                 long inOutputBufferCount, long* inOutputMap) override;
    /** @param inFrames at most the block size given to Initialize. */
    float** Process(long inFrames, long& outOutputCount) override;
    float** Process();
    void ProcessEvents(std::span<const SMidiMsg> inMessages) override;
    void ProcessEvents(VstEvents* inEvents);

    // Identity, parameters and programs
    const char* GetProduct() const { return mProduct.mRecord.data(); }
    bool GetChannels(long& outInputs, long& outOutputs) override;
    const char* GetParameterDisplay(long inIndex) override;
    const char* GetParameterLabel(long inIndex) override;
    long GetNumMidiPrograms() override;
    long GetNumMidiCategories() override;
    const char* GetMidiCategory(long inIndex) override;
    /** @return " category ; ? ; bank LSB ; bank MSB ; program name". */
    const char* GetMidiProgram(long inIndex) override;
    long VendorSpecific(long& outHandled, long inIndex, long inValue, char* inPointer, float inOpt) override;

    // State of one program
    /**
     * @return the current program's chunk, or for a plug-in without chunks a block of 4 bytes per parameter
     * that does not hold their values.
     */
    void* GetState(long& outSize) override;
    /** Takes a program's chunk, or for a plug-in without chunks one float per parameter. */
    void SetState(void* inData, long inSize) override;
    /** Reverses the bytes, on machines that keep the least significant one first. */
    float Swap(float inValue) const;
    /** The same with the low four bytes; the result is sign-extended. */
    long Swap(long inValue) const;

    // Preset files hold the current program, bank files all of them, in the common format of VST 2.
    // Sizes in bytes; the header ends where the content starts.
    long GetPresetHeaderSize() const;
    long GetPresetSize();
    long GetBankHeaderSize() const;
    long GetBankSize();
    /**
     * @param outRecord   room for the header.
     * @param inTotalSize bytes of the whole record.
     * @return where the content starts.
     */
    char* WritePresetHeader(char* outRecord, long inTotalSize);
    char* WriteBankHeader(char* outRecord, long inTotalSize);
    /** @return false when the file could not be written whole. */
    bool SavePreset(const char* inPath);
    /** The same; a plug-in without chunks is sent through all its programs and back. */
    bool WriteBank(const char* inPath);
    /** @return nothing where the record is broken, another plug-in's, or of the kind that this one does not
     * use. */
    std::optional<SPresetRecord> ReadPresetHeader(std::span<const std::byte> inRecord) const;
    std::optional<SPresetRecord> ReadBankHeader(std::span<const std::byte> inRecord) const;
    /** @return false when the file is missing, broken or another plug-in's; the plug-in is as it was then. */
    bool ReadPreset(const char* inPath);
    bool ReadBank(const char* inPath);

    // Editor and idle time
    bool OpenEditor(void* inParent, bool& outFlag, long& outValue, long& outX, long& outY, long& outWidth,
                    long& outHeight) override;
    /** Sends effIdle when the plug-in has asked for it. */
    void EffectIdle();

private:
    static constexpr std::size_t kTextLength = 256;
    using Text = SRoomyRecord<std::array<char, kTextLength>>;

    /** A VstEvents with room for kMaxEvents pointers. */
    struct SEventBlock
    {
        std::int32_t mNumEvents = 0;
        VstIntPtr mReserved = 0;
        std::array<VstMidiEvent*, kMaxEvents> mEvents{};
    };

    bool LoadEffect(const char* inUtf8Path, CVst2Host& inHost);
    VstPluginEntryProc FindEntry() const;
    void ReadIdentity();
    void ReadShape();
    void AbandonLoad() noexcept;
    void ForgetEffect() noexcept;
    void RequestText(std::int32_t inOpcode, std::int32_t inIndex, Text& outText) const;
    const char* TextFor(std::int32_t inOpcode, long inIndex);
    void RequestChunk(std::int32_t inScope, void*& outChunk, long& outSize) const;
    char* WriteNumber(char* outRecord, long inValue) const;
    char* WriteRecordStart(char* outRecord, const char* inMagic, long inFormatVersion,
                           long inTotalSize) const;
    // As the public ones, of counts that were taken before.
    char* WritePresetHeader(char* outRecord, long inTotalSize, bool inHasChunk, long inParameters);
    char* WriteBankHeader(char* outRecord, long inTotalSize, bool inHasChunk, long inPrograms,
                          long inCurrentProgram) const;
    // Each adds a record; false when its size would not fit its field.
    bool AddProgramValues(std::vector<std::byte>& ioRecords);
    bool AddProgramsBank(std::vector<std::byte>& ioRecords);
    bool IsOwnRecord(const std::optional<SPresetRecord>& inRecord) const;
    void ApplyProgram(SPresetRecord& ioProgram);
    void ApplyBank(std::span<SPresetRecord> inPrograms, long inCurrentProgram);
    bool RequestEditorSize(long& outX, long& outY, long& outWidth, long& outHeight);
    void DeliverEvents(long inCount, const unsigned long* inMessages, const unsigned long* inOffsets);
    void SetEvent(long inSlot, std::uint32_t inMidiBytes, std::int32_t inOffset);
    VstEvents* EventBlock();
    void CallReplacing(float** inInputs, float** inOutputs, long inFrames)
    {
        if (mEffect != nullptr && mEffect->processReplacing != nullptr)
            mEffect->processReplacing(mEffect, inInputs, inOutputs, static_cast<std::int32_t>(inFrames));
    }

    long mInputCount = 0;
    long mOutputCount = 0;
    long mUniqueId = 0;
    long mVersion = 0;
    std::unique_ptr<IPluginImage> mImage;
    bool mExecutableLoaded = false;
    AEffect* mEffect = nullptr; // frees itself on effClose
    std::int32_t mState = kStateNew;
    Text mEffectName;
    Text mVendor;
    Text mProduct;
    std::vector<SIOPortDef> mInputPorts;
    std::vector<SIOPortDef> mOutputPorts;
    // The three below: the plug-in's calls write on any thread; the render thread reads the first, the main
    // thread all. The third is stored (release) and loaded (acquire), so that the plug-in finds what it
    // wrote.
    std::atomic<bool> mMidi = false;
    std::atomic<bool> mForcedMidi = false;
    std::atomic<bool> mIdleRequested = false;
    bool mMidiAtLoad = false;
    std::vector<float*> mInputPointers;
    std::vector<float*> mOutputPointers;
    std::array<VstMidiEvent, kMaxEvents> mMidiEvents{}; // what mEventBlock points at
    SEventBlock mEventBlock;
    void* mChunk = nullptr; // the plug-in's memory
    long mChunkSize = 0;    // bytes
    std::unique_ptr<float[]> mStateBuffer;
    Text mText;
    bool mEditorOpen = false;
    bool mSwapBytes = false; // this machine's byte order is not the one of preset files
};
