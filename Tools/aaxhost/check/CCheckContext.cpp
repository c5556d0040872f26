#include "Tools/aaxhost/check/CCheckContext.h"

#include "Tools/aaxhost/check/CDirectRig.h"
#include "Tools/aaxhost/direct/DirectModule.h"
#include "Tools/aaxhost/host/CHostString.h"
#include "Tools/aaxhost/host/HostNames.h"

#include <algorithm>
#include <cmath>
#include <dlfcn.h>
#include <filesystem>
#include <fmt/format.h>
#include <fstream>
#include <limits>

CCheckContext::CCheckContext(std::string inModulePath, int inStrictness, EAnswers inAnswers,
                             ESubject inSubject, SSizes inSizes)
    : mModulePath(std::move(inModulePath)),
      mStrictness(inStrictness),
      mSubject(inSubject),
      mSizes(std::move(inSizes)),
      mInstanceOptions{.mAnswers = inAnswers, .mTellsValues = inSubject == ESubject::PluginAlone}
{
}

CModule& CCheckContext::Module()
{
    if (mModule == nullptr)
    {
        auto module = CModule::Open(mModulePath, mLog);
        if (!module)
            throw SCheckEnd{SFinding::Failed(module.Problem().mSentence)};
        mModule = std::move(*module);
        UnwrapWhereAlone(*mModule);
    }
    return *mModule;
}

void CCheckContext::UnwrapWhereAlone(CModule& ioModule)
{
    if (mSubject == ESubject::PluginAlone)
        UnwrapPlugin(ioModule, ServicesOf(*this));
}

std::unique_ptr<CInstance> CCheckContext::MakeInstance(double inRate)
{
    // Where there are several components, stereo is most like the plug-in called directly.
    const std::vector<SComponent>& components = Module().Effect().mComponents;
    const auto isStereo = [](const SComponent& component)
    { return NameOfStems(MainStemsOf(component)) == "stereo"; };
    mInstanceOptions.mStems =
        components.size() > 1 && std::ranges::any_of(components, isStereo) ? "stereo" : "";
    auto instance = CInstance::Create(Module(), inRate, mInstanceOptions);
    if (!instance)
        throw SCheckEnd{SFinding::Failed(instance.Problem().mSentence)};
    return std::move(*instance);
}

int CCheckContext::Scaled(int inLow, int inHigh) const
{
    const double part =
        static_cast<double>(mStrictness - kLowestStrictness) / (kHighestStrictness - kLowestStrictness);
    return static_cast<int>(std::lround(inLow * std::pow(static_cast<double>(inHigh) / inLow, part)));
}

bool IsSessionRate(double inRate)
{
    const double rates[] = {44100.0, 48000.0, 88200.0, 96000.0, 176400.0, 192000.0};
    return std::ranges::find(rates, inRate) != std::end(rates);
}

namespace
{
template <class Value>
std::vector<Value> Chosen(std::vector<Value> inTable, std::vector<Value> inAsked, bool (*inAre)(Value),
                          const char* inOption)
{
    if (inAsked.empty())
        return inTable;
    std::erase_if(inAsked, [=](Value value) { return inAre != nullptr && !inAre(value); });
    if (inAsked.empty())
        throw SCheckEnd{
            SFinding::Skipped(fmt::format("{} names none that this check goes through.", inOption))};
    return inAsked;
}
} // namespace

std::vector<double> CCheckContext::Rates(std::vector<double> inTable, bool (*inAre)(double)) const
{
    return Chosen(std::move(inTable), mSizes.mRates, inAre, "--rates");
}

std::vector<std::int32_t> CCheckContext::Blocks(std::vector<std::int32_t> inTable,
                                                bool (*inAre)(std::int32_t)) const
{
    return Chosen(std::move(inTable), mSizes.mBlocks, inAre, "--blocks");
}

bool CCheckContext::TakesMidi()
{
    const auto& components = Module().Effect().mComponents;
    return !components.empty() &&
           std::ranges::any_of(components.front().mFields,
                               [](const SField& field) {
                                   return field.mKind == EFieldKind::MidiNode &&
                                          field.mNodeType == AAX_eMIDINodeType_LocalInput;
                               });
}

bool CCheckContext::IsInstrument()
{
    const auto& categories = Module().Effect().mCategories;
    return std::ranges::find(categories, kAAX_CategorySoftwareInstrument) != categories.end();
}

void CCheckContext::NeedFeature(std::string_view inName)
{
    if (!HasFeature(inName))
        throw SCheckEnd{SFinding::Skipped(fmt::format("The product does not have the feature {}.", inName))};
}

bool CCheckContext::HasFeature(std::string_view inName)
{
    std::ifstream file(std::filesystem::path(Module().PluginPath()).replace_filename("features.txt"));
    for (std::string line; std::getline(file, line);) // one a line; a product without features has no file
        if (line == inName)
            return true;
    return false;
}

std::string CCheckContext::ModuleFile()
{
    Dl_info info{};
    const auto entry = reinterpret_cast<void*>(Module().Entries().mStartup);
    return dladdr(entry, &info) != 0 && info.dli_fname != nullptr ? info.dli_fname : std::string();
}

std::uint32_t CSequence::Next() noexcept
{
    mState ^= mState << 13;
    mState ^= mState >> 17;
    mState ^= mState << 5;
    return mState;
}

namespace
{
bool IsPlugins(const SParameterInfo& inInfo)
{
    return std::ranges::all_of(
        inInfo.mID, [](char c) { return c >= '0' && c <= '9'; });
}
} // namespace

std::vector<std::string> PluginParameters(CInstance& inInstance)
{
    std::vector<std::string> list;
    for (const SParameterInfo& info : inInstance.ListParameters())
        if (IsPlugins(info))
            list.push_back(info.mID);
    return list;
}

std::vector<std::string> AutomatableParameters(CInstance& inInstance)
{
    std::vector<std::string> list;
    for (const SParameterInfo& info : inInstance.ListParameters())
        if (IsPlugins(info) && info.mAutomatable)
            list.push_back(info.mID);
    return list;
}

std::vector<std::string> NeededParameters(CInstance& inInstance)
{
    auto ids = AutomatableParameters(inInstance);
    if (ids.empty())
        throw SCheckEnd{SFinding::Skipped("The plug-in has no parameters.")};
    return ids;
}

std::string NameOfParameter(CInstance& inInstance, const std::string& inID)
{
    CHostString name;
    (void)inInstance.Parameters().GetParameterName(inID.c_str(), &name); // unnamed: the identifier has to do
    return name.Text().empty() ? fmt::format("'{}'", inID) : fmt::format("'{}' ({})", inID, name.Text());
}

double ValueOf(CInstance& inInstance, const std::string& inID)
{
    double value = std::numeric_limits<double>::quiet_NaN();
    AAX_CTypeID chunk = 0;
    std::uint32_t size = 0;
    // Without chunks there is nothing to bring up to date.
    if (!inInstance.Options().mTellsValues &&
        inInstance.Parameters().GetChunkIDFromIndex(0, &chunk) == kAAX_Success)
        (void)inInstance.Parameters().GetChunkSize(chunk, &size);
    (void)inInstance.Parameters().GetParameterNormalizedValue(inID.c_str(), &value); // stays not a number
    return value;
}

bool DeliverAll(CInstance& inInstance)
{
    for (int i = 0; i < kMostCycles && inInstance.Host().Automation().PendingRequests() > 0; ++i)
        (void)inInstance.RunCycle(); // what waits next tells
    return inInstance.Host().Automation().PendingRequests() == 0;
}
