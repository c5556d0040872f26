#include "Tools/aaxhost/direct/DirectModule.h"

#include "Tools/aaxhost/direct/CDirectEditor.h"
#include "Tools/aaxhost/direct/CDirectEffect.h"

#include <algorithm>

namespace
{
/** Of the module that is unwrapped. A host's factories and procedures are functions without a context. */
SUnwrapped gUnwrapped;

// Their references own them.
IACFUnknown* MakeEffect() { return static_cast<AAX_IACFEffectParameters*>(new CDirectEffect(gUnwrapped)); }

IACFUnknown* MakeEditor() { return static_cast<AAX_IACFEffectGUI*>(new CDirectEditor); }

void Process(void* const inBegin[], const void* inEnd)
{
    for (void* const* context = inBegin; context != inEnd; ++context)
        if (auto* const slots = static_cast<void**>(*context); slots != nullptr)
            static_cast<CDirectEffect*>(*static_cast<void**>(slots[gUnwrapped.mEffectField]))->Render(slots);
}

SChannels ChannelsOf(const SComponent& inComponent)
{
    SChannels channels{MainStemsOf(inComponent)};
    channels.mInputs = AAX_StemChannelCount(channels.mStems.mInput);
    channels.mOutputs = AAX_StemChannelCount(channels.mStems.mOutput);
    for (const SAuxStem& stem : inComponent.mAuxStems)
        channels.mOutputs += AAX_StemChannelCount(stem.mFormat);
    return channels;
}
} // namespace

void UnwrapPlugin(CModule& ioModule, const SServices& inServices)
{
    gUnwrapped = {ioModule.PluginPath(), inServices};
    SField own;
    own.mKind = EFieldKind::PrivateData;
    own.mSize = sizeof(void*); // to the effect
    SEffect& effect = ioModule.Host().EditDescription().mEffects.front();
    for (const SComponent& component : effect.mComponents)
        for (const SField& field : component.mFields)
            own.mIndex = std::max(own.mIndex, field.mIndex + 1);
    gUnwrapped.mEffectField = own.mIndex;
    for (SComponent& component : effect.mComponents)
    {
        gUnwrapped.mChannels.push_back(ChannelsOf(component));
        gUnwrapped.mFields = component.mFields; // alike in all of them
        component.mFields.push_back(own);
        for (SProcessProc& proc : component.mProcs)
            proc.mProcess = &Process;
    }
    effect.mProcPtrs = {{reinterpret_cast<void*>(&MakeEffect), kAAX_ProcPtrEffectParameters},
                        {reinterpret_cast<void*>(&MakeEditor), kAAX_ProcPtrEffectGUI}};
}
