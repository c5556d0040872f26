#include "Source/features/CFeaturedParameters.h"

#include "Interfaces/AAX/AAX_IParameter.h"
#include "Interfaces/AAX/AAX_IString.h"
#include "Libs/AAXLibrary/source/AAX_CString.h"
#include "Libs/AAXLibrary/source/AAX_ExceptionBarrier.h"
#include "Source/ParameterId.h"
#include "Source/features/ParameterProperties.h"
#include "Source/features/PluginText.h"
#include "Source/features/ReadValueText.h"
#include "Source/plugins/CVst2Plugin.h"
#include "Source/plugins/ProductFeatures.h"

#include <algorithm>
#include <string_view>
#include <utility>

// What the host is told and shows of the parameters.

// ---- Parameters as the host is told of them

bool CFeaturedParameters::IsAutomatable(long inIndex) const
{
    return !mAnswersAutomation || CanBeAutomated(*Plugin(), inIndex);
}

void CFeaturedParameters::DescribeParameter(long inIndex, AAX_IParameter& ioParameter) const
{
    if (!kProductFeatures.mParameterProperties)
        return;
    const SParameterProperties properties = ReadParameterProperties(*Plugin(), inIndex);
    if (!properties.mShortName.empty())
        ioParameter.AddShortenedName(AAX_CString(properties.mShortName.c_str()));
    if (properties.mSteps != 0)
    {
        ioParameter.SetNumberOfSteps(properties.mSteps);
        ioParameter.SetType(AAX_eParameterType_Discrete);
    }
}

void CFeaturedParameters::TellNewNames()
{
    if (!mHasNewNames.exchange(false, std::memory_order_acquire) || Plugin() == nullptr)
        return;
    for (long i = 0; i < PluginParameterCount(); ++i)
        TellNewName(i);
}

void CFeaturedParameters::TellNewName(long inIndex)
{
    const CParameterId id(inIndex);
    AAX_IParameter* const parameter = mParameterManager.GetParameterByID(id.Get());
    const AAX_CString name(Plugin()->GetParameterName(inIndex));
    if (parameter == nullptr || parameter->Name() == name)
        return;
    parameter->SetName(name);
    parameter->ClearShortenedNames();
    DescribeParameter(inIndex, *parameter);
    // There is no call for a new name; a host that is told a value shows the parameter anew.
    (void)AutomationDelegate()->PostCurrentValue(
        id.Get(), CPluginParameter::AsRequested(static_cast<double>(Plugin()->GetParameter(inIndex))));
}

// ---- Values and gestures

AAX_IAutomationDelegate& CFeaturedParameters::AutomationFor(AAX_IAutomationDelegate& inHost)
{
    if (!kProductFeatures.mGestures)
        return inHost;
    mGestures.Attach(inHost, static_cast<std::size_t>(PluginParameterCount()));
    NoteKnownValues();
    return mGestures;
}

void CFeaturedParameters::ParametersEnd() { mGestures.EndAll(); }

void CFeaturedParameters::NoteKnownValues()
{
    for (long i = 0; i < PluginParameterCount(); ++i)
        mGestures.NoteKnown(i, Plugin()->GetParameter(i));
}

void CFeaturedParameters::UpdateParameters()
{
    if (!kProductFeatures.mGestures)
        return AaxAdapter_Parameters::UpdateParameters();
    if (!HearsParameters())
        return;
    for (long i = 0; i < PluginParameterCount(); ++i)
        if (const float value = Plugin()->GetParameter(i); !mGestures.IsKnown(i, value))
            SetParameter(i, value);
}

AAX_Result CFeaturedParameters::UpdateParameterNormalizedValue(AAX_CParamID inId, double inValue,
                                                               AAX_EUpdateSource inSource)
{
    mGestures.NoteKnown(PluginParameterIndex(inId), static_cast<float>(inValue));
    // Ahead of the plug-in, which may ask for another value while it is given this one; a host may answer
    // that at once.
    if (kProductFeatures.mParameterSync)
        KeepUpdate(inId, inValue);
    const std::string_view id = inId != nullptr ? inId : "";
    const bool isProgram = mPrograms.AreThere() && id == CPrograms::kID;
    if (!isProgram && !(kProductFeatures.mBypass && id == cDefaultMasterBypassID))
        return AaxAdapter_Parameters::UpdateParameterNormalizedValue(inId, inValue, inSource);
    return AAX_Contained(
        [=, this]
        {
            if (isProgram)
                ChooseProgram(inValue);
            else
                SwitchBypass(inValue >= 0.5);
            if (kProductFeatures.mLatency)
                RefreshLatency();
            return kAAX_Success;
        });
}

// ---- Texts of values

bool CFeaturedParameters::IsPluginValue(AAX_CParamID inId, long inIndex, float inValue) const
{
    if (inValue == Plugin()->GetParameter(inIndex))
        return true;
    // A plug-in may round what it is given.
    double told = -1.0;
    return kProductFeatures.mParameterSync && !AwaitsAnswer(inIndex) &&
           GetParameterNormalizedValue(inId, &told) == kAAX_Success && inValue == static_cast<float>(told);
}

std::optional<std::string> CFeaturedParameters::ValueText(AAX_CParamID inId, long inIndex,
                                                          double inValue) const
{
    const auto value = static_cast<float>(inValue);
    std::optional<std::string> text;
    (void)AAX_Contained( // a plug-in that throws here has no text
        [&]
        {
            if (!IsPluginValue(inId, inIndex, value))
                text = mValueTexts.TextOf(static_cast<std::size_t>(inIndex), value);
            else if (std::string own = ReadValueText(*Plugin(), inIndex); !own.empty())
                mValueTexts.Note(static_cast<std::size_t>(inIndex), value, text.emplace(std::move(own)));
            return kAAX_Success;
        });
    return text;
}

AAX_Result CFeaturedParameters::GiveValueText(AAX_CParamID inId, long inIndex, double inValue,
                                              AAX_IString* outText, std::int32_t inMaxLength) const
{
    return AAX_Contained(
        [&]
        {
            if (const auto text = ValueText(inId, inIndex, inValue); text && outText != nullptr)
            {
                outText->Set(ShortenedText(*text, inMaxLength).c_str());
                return kAAX_Success;
            }
            const AAX_Result result =
                AaxAdapter_Parameters::GetParameterStringFromValue(inId, inValue, outText, inMaxLength);
            if (result == kAAX_Success)
                mValueTexts.NoteNumber(static_cast<std::size_t>(inIndex), outText->Get());
            return result;
        });
}

AAX_Result CFeaturedParameters::GetParameterStringFromValue(AAX_CParamID inId, double inValue,
                                                            AAX_IString* outText,
                                                            std::int32_t inMaxLength) const
{
    const long index = kProductFeatures.mValueTexts ? PluginParameterIndex(inId) : -1;
    if (index < 0)
        return AaxAdapter_Parameters::GetParameterStringFromValue(inId, inValue, outText, inMaxLength);
    return GiveValueText(inId, index, inValue, outText, inMaxLength);
}

AAX_Result CFeaturedParameters::GetParameterValueString(AAX_CParamID inId, AAX_IString* outText,
                                                        std::int32_t inMaxLength) const
{
    const long index = kProductFeatures.mValueTexts ? PluginParameterIndex(inId) : -1;
    double value = 0.0;
    if (index < 0 || GetParameterNormalizedValue(inId, &value) != kAAX_Success)
        return AaxAdapter_Parameters::GetParameterValueString(inId, outText, inMaxLength);
    return GiveValueText(inId, index, value, outText, inMaxLength);
}

AAX_Result CFeaturedParameters::GetParameterValueFromString(AAX_CParamID inId, double* outValue,
                                                            const AAX_IString& inText) const
{
    const AAX_Result found = AAX_Contained(
        [&]
        {
            const long index = PluginParameterIndex(inId);
            if (!kProductFeatures.mValueTexts || index < 0 || outValue == nullptr)
                return kAAX_ErrorTextNotConvertible;
            const std::optional<float> value =
                mValueTexts.ValueOf(static_cast<std::size_t>(index), CleanText(inText.Get()));
            if (!value)
                return kAAX_ErrorTextNotConvertible;
            *outValue = static_cast<double>(*value);
            return kAAX_Success;
        });
    return found == kAAX_Success ? found
                                 : AaxAdapter_Parameters::GetParameterValueFromString(inId, outValue, inText);
}
