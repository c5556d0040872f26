#include "Source/features/CPrograms.h"

#include "Interfaces/AAX/AAX_IDisplayDelegate.h"
#include "Libs/AAXLibrary/source/AAX_CLinearTaperDelegate.h"
#include "Libs/AAXLibrary/source/AAX_CParameter.h"
#include "Libs/AAXLibrary/source/AAX_CString.h"
#include "Source/features/PluginText.h"
#include "Source/features/ReadValueText.h"
#include "Source/plugins/CVst2Plugin.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace
{
/** Shows a program as its name. */
class CProgramNames final : public AAX_IDisplayDelegate<float>
{
public:
    explicit CProgramNames(const CPrograms& inPrograms) : mPrograms(inPrograms) {}

    CProgramNames* Clone() const override { return new CProgramNames(*this); }
    bool ValueToString(float inValue, AAX_CString* outText) const override
    {
        if (outText == nullptr)
            return false;
        *outText = AAX_CString(mPrograms.Name(std::lround(inValue)).c_str());
        return true;
    }
    bool ValueToString(float inValue, std::int32_t inMaxNumChars, AAX_CString* outText) const override
    {
        if (outText == nullptr)
            return false;
        *outText = AAX_CString(ShortenedText(mPrograms.Name(std::lround(inValue)), inMaxNumChars).c_str());
        return true;
    }
    bool StringToValue(const AAX_CString& inText, float* outValue) const override
    {
        const std::optional<long> program = mPrograms.Find(CleanText(inText.Get()));
        if (program && outValue != nullptr)
            *outValue = static_cast<float>(*program);
        return program && outValue != nullptr;
    }

private:
    const CPrograms& mPrograms;
};

std::optional<long> NumberIn(const std::string& inText)
{
    long number = 0;
    const char* const end = inText.data() + inText.size();
    const auto [stop, error] = std::from_chars(inText.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}
} // namespace

std::unique_ptr<AAX_IParameter> CPrograms::Attach(CVst2Plugin& inPlugin)
{
    Detach();
    const long count = inPlugin.GetNumPrograms();
    if (count < 2 || count > kMost)
        return nullptr;
    mPlugin = &inPlugin;
    mCount = count;
    mRequests.emplace();
    mKnown = Current();
    auto parameter = std::make_unique<AAX_CParameter<float>>(
        kID, AAX_CString(kID), static_cast<float>(mKnown),
        AAX_CLinearTaperDelegate<float, 0>(0.0F, static_cast<float>(count - 1)), CProgramNames(*this), true);
    parameter->SetNumberOfSteps(static_cast<std::uint32_t>(count));
    parameter->SetType(AAX_eParameterType_Discrete);
    return parameter;
}

void CPrograms::Detach() noexcept
{
    mPlugin = nullptr;
    mCount = 0;
    mChoice.store(-1, std::memory_order_relaxed);
}

double CPrograms::ValueOf(long inProgram) const noexcept
{
    return static_cast<double>(inProgram) / static_cast<double>(mCount - 1);
}

long CPrograms::Current() const { return std::clamp(mPlugin->GetProgram(), 0L, mCount - 1); }

void CPrograms::Take(double inValue) noexcept
{
    if (!mRequests->Settle(inValue))
        mChoice.store(std::lround(CPluginParameter::AsRequested(inValue) * static_cast<double>(mCount - 1)),
                      std::memory_order_relaxed);
}

std::optional<long> CPrograms::TakeChoice() noexcept
{
    const long choice = mChoice.exchange(-1, std::memory_order_relaxed);
    return choice >= 0 ? std::optional(choice) : std::nullopt;
}

void CPrograms::TimerBeat() noexcept
{
    if (const std::optional<float> value = mRequests->TimerBeat())
        Take(static_cast<double>(*value));
}

bool CPrograms::Choose(long inProgram)
{
    mKnown = inProgram;
    if (mPlugin->GetProgram() == inProgram)
        return false;
    (void)mPlugin->Dispatch(effBeginSetProgram); // the interface gives none of the results a meaning
    mPlugin->SetProgram(inProgram);
    (void)mPlugin->Dispatch(effEndSetProgram);
    return true;
}

std::optional<double> CPrograms::TakeReport()
{
    const long program = Current();
    const bool isNew = program != mKnown && !mRequests->PutsOff();
    mKnown = program;
    if (!isNew && !mRequests->TakePutOff())
        return std::nullopt;
    NoteRequest(program);
    return ValueOf(program);
}

void CPrograms::Restore(double inProgram)
{
    if (!(inProgram >= 0.0 && inProgram < static_cast<double>(mCount)))
        return;
    const auto program = static_cast<long>(inProgram);
    (void)Choose(program); // its values come next, so they are told in any case
    NoteRequest(program);
}

void CPrograms::NoteRequest(long inProgram) noexcept
{
    mKnown = inProgram;
    (void)mRequests->NoteRequest(ValueOf(inProgram)); // one too many is answered as the host's own choice
}

std::string CPrograms::Name(long inProgram) const
{
    std::string name;
    if (mPlugin != nullptr)
        name = ReadPluginText(*mPlugin, effGetProgramNameIndexed, inProgram);
    if (name.empty() && mPlugin != nullptr && mPlugin->GetProgram() == inProgram)
        name = ReadPluginText(*mPlugin, effGetProgramName, 0);
    return !name.empty() ? name : std::to_string(inProgram + 1);
}

std::optional<long> CPrograms::Find(const std::string& inText) const
{
    std::optional<long> begun; // the first whose name begins so: small displays cut it
    for (long program = 0; program < mCount; ++program)
    {
        const std::string name = Name(program);
        if (name == inText)
            return program;
        if (!begun && name.starts_with(inText))
            begun = program;
    }
    const std::optional<long> number = NumberIn(inText);
    return number && *number >= 1 && *number <= mCount ? *number - 1 : begun;
}
