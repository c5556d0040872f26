#include "Interfaces/AAX/AAX_IParameter.h"
#include "Libs/AAXLibrary/source/AAX_CChunkDataParser.h"
#include "Libs/AAXLibrary/source/AAX_ExceptionBarrier.h"
#include "Source/AaxAdapter_Parameters.h"
#include "Source/ParameterId.h"
#include "Source/plugins/CVst2Plugin.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <span>

namespace
{
constexpr AAX_CTypeID kControlsChunk = AAX_FourCharCode("elck");
constexpr AAX_CTypeID kPluginChunk = AAX_FourCharCode("0001");
constexpr char kPluginChunkName[] = "0001";

/** What stands between the plug-in's own chunk and its program number, a 32-bit integer at the very end. */
constexpr std::array<char, 5> kTrailerMark{'E', 'D', 'I', 'D', '\0'};
constexpr std::size_t kTrailerSize = kTrailerMark.size() + sizeof(std::int32_t);
/** Of a plug-in's own chunk, so that the size of the whole fits its field. */
constexpr long kMaxPluginDataSize = INT32_MAX - static_cast<long>(kTrailerSize);

/** What a saved chunk holds. Chunks of older versions have no trailer, and so no program. */
struct SSavedChunk
{
    std::span<const char> mPluginData;
    std::int32_t mProgram = -1;
};

SSavedChunk SplitTrailer(std::span<const char> inData)
{
    if (inData.size() <= kTrailerSize)
        return {inData};
    const std::span<const char> trailer = inData.last(kTrailerSize);
    if (!std::ranges::equal(trailer.first(kTrailerMark.size()), kTrailerMark))
        return {inData};
    std::int32_t program = 0;
    std::memcpy(&program, trailer.data() + kTrailerMark.size(), sizeof(program));
    return program >= 0 ? SSavedChunk{inData.first(inData.size() - kTrailerSize), program}
                        : SSavedChunk{inData};
}

std::span<const char> DataOf(const AAX_SPlugInChunk& inChunk)
{
    return {inChunk.mData, static_cast<std::size_t>(inChunk.mSize)};
}
} // namespace

bool AaxAdapter_Parameters::HasPluginChunk() const { return mPlugin != nullptr && mPlugin->GotChunk(); }

AAX_Result AaxAdapter_Parameters::GetNumberOfChunks(std::int32_t* outCount) const
{
    const AAX_Result result = AAX_CEffectParameters::GetNumberOfChunks(outCount);
    if (result == kAAX_Success && HasPluginChunk())
        ++*outCount;
    return result;
}

AAX_Result AaxAdapter_Parameters::GetChunkIDFromIndex(std::int32_t inIndex, AAX_CTypeID* outId) const
{
    std::int32_t count = 0;
    (void)AAX_CEffectParameters::GetNumberOfChunks(&count);
    if (outId == nullptr || inIndex != count || !HasPluginChunk())
        return AAX_CEffectParameters::GetChunkIDFromIndex(inIndex, outId);
    *outId = kPluginChunk;
    return kAAX_Success;
}

AAX_Result AaxAdapter_Parameters::GetChunkSize(AAX_CTypeID inId, std::uint32_t* outSize) const
{
    if (outSize == nullptr)
        return kAAX_ErrorNullArgument;
    if (inId == 0)
    {
        *outSize = 0;
        return kAAX_Success;
    }
    return AAX_Contained(
        [&, this]
        {
            if (inId != kPluginChunk || !HasPluginChunk())
            {
                MirrorPluginValues();
                return AAX_CEffectParameters::GetChunkSize(inId, outSize);
            }
            *outSize = 0;
            mAnnouncedChunkSize = mPlugin->GetChunkSize();
            if (mAnnouncedChunkSize > kMaxPluginDataSize)
                return kAAX_ErrorChunkSize;
            *outSize = static_cast<std::uint32_t>(mAnnouncedChunkSize) + kTrailerSize;
            return kAAX_Success;
        });
}

AAX_Result AaxAdapter_Parameters::GetChunk(AAX_CTypeID inId, AAX_SPlugInChunk* outChunk) const
{
    if (outChunk == nullptr)
        return kAAX_ErrorNullArgument;
    return AAX_Contained(
        [&, this]
        {
            if (inId == kPluginChunk && HasPluginChunk())
                return SavePluginChunk(*outChunk);
            MirrorPluginValues();
            return AAX_CEffectParameters::GetChunk(inId, outChunk);
        });
}

AAX_Result AaxAdapter_Parameters::SavePluginChunk(AAX_SPlugInChunk& outChunk) const
{
    const auto* const data = static_cast<const char*>(mPlugin->GetChunk());
    const long size = mPlugin->GetLastChunkSize();
    // The host's room is what it was told; a chunk that has grown since does not fit.
    if (size > kMaxPluginDataSize || (mAnnouncedChunkSize >= 0 && size > mAnnouncedChunkSize))
        return kAAX_ErrorChunkSize;
    outChunk.mChunkID = kPluginChunk;
    outChunk.mVersion = 0;
    outChunk.mSize = static_cast<std::int32_t>(size + static_cast<long>(kTrailerSize));
    std::ranges::copy(kPluginChunkName, outChunk.mName);
    char* out = std::copy_n(data, size, outChunk.mData);
    out = std::ranges::copy(kTrailerMark, out).out;
    const auto program = static_cast<std::int32_t>(mPlugin->GetProgram());
    std::memcpy(out, &program, sizeof(program));
    return kAAX_Success;
}

AAX_Result AaxAdapter_Parameters::SetChunk(AAX_CTypeID inId, const AAX_SPlugInChunk* inChunk)
{
    if (inId == 0 || (inId == kPluginChunk && !HasPluginChunk()))
        return kAAX_Success;
    if (inId != kControlsChunk && inId != kPluginChunk)
        return kAAX_Success;
    if (inChunk == nullptr)
        return kAAX_ErrorNullArgument;
    if (inChunk->mSize < 0) // above 0x7FFFFFFF as the host counts it
        return kAAX_ErrorChunkSize;
    return AAX_Contained(
        [&, this] { return inId == kControlsChunk ? LoadControls(*inChunk) : LoadPluginChunk(*inChunk); });
}

AAX_Result AaxAdapter_Parameters::LoadControls(const AAX_SPlugInChunk& inChunk)
{
    AAX_CChunkDataParser saved;
    saved.LoadChunk(&inChunk);
    // The plug-in gets the values first, then the host is asked to set them. A host may answer late or never,
    // and it may look at the state meanwhile: it finds it whole.
    {
        const CClearedFlag notReady = IgnoredReports();
        RestoreControls(saved);
    }
    MirrorPluginValues();
    mHasRequests.store(true, std::memory_order_relaxed);
    RequestSavedValues(saved);
    TellOtherControls(saved);
    return kAAX_Success;
}

void AaxAdapter_Parameters::RestoreControls(AAX_CChunkDataParser& ioSaved)
{
    const long count = PluginParameterCount();
    for (long i = 0; i < count; ++i)
    {
        double value = 0.0;
        if (ioSaved.FindDouble(CParameterId(i).Get(), &value))
            mPlugin->SetParameter(i, static_cast<float>(CPluginParameter::AsRequested(value)));
    }
}

void AaxAdapter_Parameters::TellOtherControls(AAX_CChunkDataParser& ioSaved)
{
    const long count = PluginParameterCount();
    for (long i = 0; i < count; ++i)
    {
        double saved = 0.0;
        if (!ioSaved.FindDouble(CParameterId(i).Get(), &saved))
            continue;
        const float value = mPlugin->GetParameter(i);
        const double change =
            CPluginParameter::AsRequested(static_cast<double>(value)) - CPluginParameter::AsRequested(saved);
        if (std::abs(change) > CPluginParameter::kTolerance)
            SetParameter(i, value);
    }
}

AAX_Result AaxAdapter_Parameters::LoadPluginChunk(const AAX_SPlugInChunk& inChunk)
{
    {
        const CClearedFlag notReady = IgnoredReports();
        const SSavedChunk saved = SplitTrailer(DataOf(inChunk));
        RestorePlugin(saved.mPluginData, saved.mProgram);
    }
    MirrorPluginValues();
    const long count = PluginParameterCount();
    for (long i = 0; i < count; ++i)
        SetParameter(i, mPlugin->GetParameter(i));
    return kAAX_Success;
}

void AaxAdapter_Parameters::RestorePlugin(std::span<const char> inData, std::int32_t inProgram)
{
    GivePluginChunk(inData);
    GivePluginProgram(inProgram);
}

void AaxAdapter_Parameters::GivePluginChunk(std::span<const char> inData)
{
    // A plug-in only reads the data; the interface has no word for that.
    mPlugin->SetChunk(const_cast<char*>(inData.data()), static_cast<long>(inData.size()));
}

void AaxAdapter_Parameters::GivePluginProgram(std::int32_t inProgram)
{
    if (inProgram >= 0)
        mPlugin->SetProgram(inProgram);
}

AAX_Result AaxAdapter_Parameters::CompareActiveChunk(const AAX_SPlugInChunk* inChunk,
                                                     AAX_CBoolean* outIsEqual) const
{
    if (inChunk != nullptr && inChunk->mSize < 0)
        return kAAX_ErrorChunkSize;
    return AAX_Contained(
        [&, this]
        {
            MirrorPluginValues();
            return AAX_CEffectParameters::CompareActiveChunk(inChunk, outIsEqual);
        });
}

void AaxAdapter_Parameters::MirrorPluginValues() const
{
    // Saving is const to the host, but what it saves has to be brought up to date first.
    auto& parameters = const_cast<AAX_CParameterManager&>(mParameterManager);
    const long count = PluginParameterCount();
    for (long i = 0; i < count; ++i)
    {
        const auto value = static_cast<double>(mPlugin->GetParameter(i));
        AAX_IParameter* const parameter = parameters.GetParameterByID(CParameterId(i).Get());
        if (parameter != nullptr && !std::isnan(value))
            parameter->UpdateNormalizedValue(std::clamp(value, 0.0, 1.0));
    }
}
