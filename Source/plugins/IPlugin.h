#pragma once
#include "Source/plugins/IRoutingObject.h"
#include "Source/plugins/SMidiMsg.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <span>

class IMainHost;

/**
 * What every plug-in node has in common, whatever interface the plug-in behind it speaks.
 *
 * The order of the virtual operations is fixed. Numbers that a plug-in can't give are -1, 0.0 or the empty
 * text.
 */
class IPlugin : public IRoutingObject
{
public:
    static constexpr std::int32_t kInterfaceVst2 = 0;

    IPlugin();
    ~IPlugin() override;

    virtual void ProcessEvents(std::span<const SMidiMsg> inMessages) = 0;
    virtual void ProcessEvents(long inCount, unsigned long* inMessages);
    virtual void Process(float** inBuffers, long inFrames, long inInputBufferCount, long* inInputMap,
                         long inOutputBufferCount, long* inOutputMap) = 0;
    virtual float** Process(long inFrames, long& outOutputCount) = 0;
    virtual const char* GetName() = 0;
    virtual bool Initialize(long inBlockSize, float inSampleRate) = 0;
    virtual std::int32_t GetState() = 0;
    virtual long GetNumParameters() = 0;
    virtual void SetParameter(long inIndex, float inValue) = 0;
    virtual float GetParameter(long inIndex) = 0;
    virtual const char* GetParameterDisplay(long inIndex) = 0;
    virtual const char* GetParameterName(long inIndex) = 0;
    virtual const char* GetParameterLabel(long inIndex) = 0;
    virtual long GetNumPrograms() = 0;
    virtual long GetProgram() = 0;
    virtual void SetProgram(long inProgram) = 0;
    virtual const char* GetProgramNameByIndex(long inProgram) = 0;
    virtual long GetNumMidiPrograms() = 0;
    virtual long GetNumMidiCategories() = 0;
    virtual const char* GetMidiCategory(long inIndex) = 0;
    virtual const char* GetMidiProgram(long inIndex) = 0;
    virtual long VendorSpecific(long& outHandled, long inIndex, long inValue, char* inPointer,
                                float inOpt) = 0;
    /** @return the state's bytes, owned by the plug-in object and valid until its next state or chunk call.
     */
    virtual void* GetState(long& outSize) = 0;
    virtual void SetState(void* inData, long inSize) = 0;
    /** Writes the version byte and the state's bytes; a file that can't be opened is left alone. */
    virtual void StateToFile(const char* inPath);
    /** Sets the state that a file holds; a file that can't be read or has no byte of state changes nothing.
     */
    virtual void FileToState(const char* inPath);
    virtual std::int32_t GetInterfaceType();
    virtual bool OpenEditor(void* inParent, bool& outFlag, long& outValue, long& outX, long& outY,
                            long& outWidth, long& outHeight) = 0;
    virtual void CloseEditor() = 0;
    virtual void Idle() = 0;
    virtual bool HasEditor() = 0;
    virtual bool GetChannels(long& outInputs, long& outOutputs) = 0;
    virtual long GetBridgeHostIndex();
    virtual bool SaveToFile(const char* inPath);
    virtual bool LoadFromFile(const char* inPath);
    virtual bool IsInstrument();
    /** @return false when either number is outside 0 to 15; the matrix is unchanged then. */
    virtual bool RouteMidiToPlugin(long inRow, long inColumn, bool inOn);
    virtual void SetMasterIndex(long inIndex);

    /** A further listener to this plug-in's automation; not owned, null for none, must outlive the plug-in's
     * calls. */
    void SetAutomationListener(IMainHost* inListener) { mAutomationListener.store(inListener); }
    IMainHost* GetAutomationListener() const { return mAutomationListener.load(); }
    bool IsMidiRouted(long inRow, long inColumn) const;

protected:
    void SetInstrument(bool inInstrument) { mInstrument = inInstrument; }
    long GetMasterIndex() const { return mMasterIndex; }

private:
    static constexpr long kRoutes = 16;

    std::int32_t mInterfaceType = kInterfaceVst2;
    std::atomic<IMainHost*> mAutomationListener = nullptr; // main thread writes, the plug-in's callbacks read
    std::array<std::array<bool, kRoutes>, kRoutes> mMidiRoutes{};
    long mMasterIndex = 0;
    bool mInstrument = false;
};
