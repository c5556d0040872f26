#include "Source/plugins/CVst2Plugin.h"

#include "Platform/PluginImage.h"
#include "Source/plugins/CVst2Host.h"
#include "Source/plugins/CopyBounded.h"
#include "Source/plugins/EffectRegistry.h"
#include "Source/plugins/PortList.h"
#include "Source/plugins/ProductOptions.h"

#include <algorithm>
#include <cstring>

namespace
{
/** Named so where a plug-in gives no name. Hosts may have stored it, so it stays as it is. */
constexpr const char* kNamelessEffect = "scroob_the_doob";
/** Far above what any plug-in has; keeps a nonsensical count from becoming a huge allocation. */
constexpr std::int32_t kMaxChannels = 65536;

/** Whether this machine keeps the least significant byte first. */
bool IsLittleEndian()
{
    const std::uint32_t probe = 0x61626364;
    return std::memcmp(&probe, "abcd", sizeof(probe)) != 0;
}

bool IsUsable(const AEffect* inEffect)
{
    return inEffect != nullptr && inEffect->magic == kEffectMagic && inEffect->dispatcher != nullptr;
}
} // namespace

CVst2Plugin::CVst2Plugin() : mSwapBytes(IsLittleEndian()) { SetBlockSize(kNoBlockSize); }

CVst2Plugin::~CVst2Plugin() { Close(); }

bool CVst2Plugin::Load(const char* inUtf8Path, CVst2Host* inHost)
{
    if (inHost == nullptr || inUtf8Path == nullptr || mState != kStateNew || mImage != nullptr)
        return false;
    bool loaded = false;
    try
    {
        loaded = LoadEffect(inUtf8Path, *inHost);
    }
    catch (...)
    {
        // Not handled in here: the exception object must be gone before the code of its type is unloaded.
        loaded = false;
    }
    if (!loaded)
        AbandonLoad();
    return loaded;
}

bool CVst2Plugin::LoadEffect(const char* inUtf8Path, CVst2Host& inHost)
{
    mImage = OpenPluginImage(inUtf8Path);
    mExecutableLoaded = mImage != nullptr && mImage->LoadExecutable();
    if (!mExecutableLoaded)
        return false;
    const VstPluginEntryProc entry = FindEntry();
    AEffect* const effect = entry != nullptr ? entry(&CVst2Host::AudioMasterCallback) : nullptr;
    if (!IsUsable(effect))
        return false;
    mEffect = effect;
    gEffectRegistry.Add(effect, &inHost, this, inHost.GetSerial());

    ReadIdentity();
    ReadShape();
    mState = kStateLoaded;
    return true;
}

VstPluginEntryProc CVst2Plugin::FindEntry() const
{
    for (const char* name : {"VSTPluginMain", "main_macho", PlatformEntrySymbol()})
    {
        void* const symbol = name != nullptr ? mImage->FindSymbol(name) : nullptr;
        if (symbol != nullptr)
            return reinterpret_cast<VstPluginEntryProc>(symbol);
    }
    return nullptr;
}

void CVst2Plugin::ReadIdentity()
{
    SetInstrument((mEffect->flags & effFlagsIsSynth) != 0);
    RequestText(effGetEffectName, 0, mEffectName);
    RequestText(effGetVendorString, 0, mVendor);
    RequestText(effGetProductString, 0, mProduct);
    if (mEffectName.mRecord.front() == '\0')
        CopyBounded(mEffectName.mRecord, kNamelessEffect);
    (void)Dispatch(effGetVstVersion); // some plug-ins take the question for the sign of a host of version 2
    mUniqueId = mEffect->uniqueID;
    mVersion = mEffect->version;
}

void CVst2Plugin::ReadShape()
{
    mInputCount = std::clamp(mEffect->numInputs, 0, kMaxChannels);
    mOutputCount = std::clamp(mEffect->numOutputs, 0, kMaxChannels);
    mInputPointers.assign(static_cast<std::size_t>(mInputCount), nullptr);
    mOutputPointers.assign(static_cast<std::size_t>(mOutputCount), nullptr);

    mMidi.store(false);
    mMidi.store(CanDo("receiveVstMidiEvent"));
    GetPortList();
    if (mForcedMidi.load())
        mMidi.store(true);
    mMidiAtLoad = mMidi.load();
}

bool CVst2Plugin::CanDo(const char* inText) const
{
    Text question; // of its own: some plug-ins write into it
    CopyBounded(question.mRecord, inText);
    return mEffect != nullptr && Dispatch(effCanDo, 0, 0, &question) == 1;
}

void CVst2Plugin::GetPortList()
{
    mInputPorts.clear();
    mOutputPorts.clear();
    if (mEffect != nullptr)
        ListPorts(*mEffect, mInputCount, mOutputCount, kPortsFromCounts, mInputPorts, mOutputPorts);
}

bool CVst2Plugin::Initialize(long inBlockSize, float inSampleRate)
{
    if (mEffect == nullptr)
        return false;
    // NOTE: the whole sequence on every call. Some plug-ins make their instance in effOpen and forget the
    // sample rate sent before it: only the second call gives them the right one.
    (void)Dispatch(effSetSampleRate, 0, 0, nullptr, inSampleRate);
    (void)Dispatch(effSetBlockSize, 0, inBlockSize);
    (void)Dispatch(effOpen);
    (void)Dispatch(effMainsChanged, 0, 1);
    mState = kStateInitialized;
    ReserveChannels(std::max(mInputCount, mOutputCount));
    CreateMyOutputs(inBlockSize);
    return true;
}

bool CVst2Plugin::GetChannels(long& outInputs, long& outOutputs)
{
    outInputs = mInputCount;
    outOutputs = mOutputCount;
    return true;
}

void CVst2Plugin::ForceMidi()
{
    mForcedMidi.store(true);
    mMidi.store(true);
}

void CVst2Plugin::Close() noexcept
{
    if (mEffect == nullptr)
        return;
    for (const std::int32_t opcode : {effMainsChanged, effClose})
    {
        if (opcode == effClose)
        {
            // Before: in it the plug-in frees its effect, whose place another thread's load may get at once.
            gEffectRegistry.MarkClosing(mEffect, this);
        }
        try
        {
            (void)Dispatch(opcode);
        }
        catch (...)
        {
            // It is given up either way, and whoever closes it has nobody to tell.
        }
    }
    ForgetEffect();
}

void CVst2Plugin::Unregister() noexcept { gEffectRegistry.Remove(mEffect, this); }

void CVst2Plugin::FreeLib() noexcept
{
    ForgetEffect();
    if (mImage != nullptr)
    {
        mImage->Unload();
        mImage.reset();
    }
    mExecutableLoaded = false;
}

void CVst2Plugin::AbandonLoad() noexcept
{
    if (mEffect != nullptr)
    {
        gEffectRegistry.MarkClosing(mEffect, this); // as in Close
        try
        {
            (void)Dispatch(effClose); // its instance may run threads of its own: ended before their code goes
        }
        catch (...)
        {
            // It failed already and is given up either way.
        }
    }
    ForgetEffect();
    // A bundle whose executable can't be loaded is kept: releasing it could run code that was never set up.
    if (mExecutableLoaded)
        FreeLib();
}

void CVst2Plugin::ForgetEffect() noexcept
{
    Unregister();
    mEffect = nullptr;
    mState = kStateNew;
    mChunk = nullptr;
    mChunkSize = 0;
}

void CVst2Plugin::RequestText(std::int32_t inOpcode, std::int32_t inIndex, Text& outText) const
{
    outText.mRecord.fill('\0');
    (void)Dispatch(inOpcode, inIndex, 0, &outText); // what counts is whether it wrote anything
    outText.mRecord.back() = '\0';
}
