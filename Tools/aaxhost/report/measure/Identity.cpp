#include "Tools/aaxhost/check/CCheckContext.h"
#include "Tools/aaxhost/host/HostNames.h"
#include "Tools/aaxhost/player/InstanceState.h"
#include "Tools/aaxhost/report/measure/Parts.h"
#include "Tools/inspector/FeatureUses.h"

#include <fmt/format.h>

SReportIdentity MeasureIdentity(const std::string& inModule)
{
    CCheckContext context(inModule, kMeasureStrictness);
    const CModule& module = context.Module();
    const SProductIdentity product = IdentityOf(module);
    SReportIdentity identity;
    identity.mName = product.mName;
    identity.mManufacturer = module.Description().mManufacturerName;
    identity.mEffectID = product.mEffectID;
    identity.mVersion = fmt::format("{}", module.Description().mPackageVersion);
    identity.mManufacturerCode = NameOfFourCharCode(product.mManufacturerID);
    identity.mProductCode = NameOfFourCharCode(product.mProductID);
    identity.mPluginCode = NameOfFourCharCode(product.mPlugInID);
    const auto instance = context.MakeInstance();
    identity.mInputs = instance->InputChannels();
    identity.mOutputs = instance->MainOutputChannels();
    for (const SAuxStem& stem : instance->Component().mAuxStems)
        identity.mAuxStems.push_back({stem.mName, AAX_StemChannelCount(stem.mFormat)});
    for (const SField& field : instance->Component().mFields)
        if (field.mKind == EFieldKind::MidiNode && field.mNodeType == AAX_eMIDINodeType_LocalInput)
            identity.mMidiNodes.push_back(field.mName);
    identity.mLatency = instance->Host().Controller().State().mSignalLatency;
    for (const SParameterInfo& info : instance->ListParameters())
        identity.mParameters.push_back(
            {info.mID, info.mName, info.mDefault, info.mValueText, info.mSteps, info.mAutomatable});
    for (const SFeatureUse& feature : FeatureUses({}))
        if (context.HasFeature(feature.mName))
            identity.mFeatures.emplace_back(feature.mName);
    return identity;
}
