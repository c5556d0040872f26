#include "Tools/aaxhost/player/InstanceState.h"

#include "Tools/aaxhost/host/HostNames.h"
#include "Tools/aaxhost/player/CInstance.h"
#include "Tools/aaxhost/player/CModule.h"
#include "Tools/support/CStage.h"

#include <algorithm>
#include <fmt/format.h>

namespace
{
constexpr std::size_t kHeaderSize = offsetof(AAX_SPlugInChunk, mData);

AAX_CTypeID CodeOf(const SEffect& inEffect, AAX_EProperty inProperty)
{
    if (inEffect.mComponents.empty() || inEffect.mComponents.front().mProcs.empty())
        return 0;
    const PropertyList& properties = inEffect.mComponents.front().mProcs.front().mProperties;
    return static_cast<AAX_CTypeID>(FindProperty(properties, inProperty).value_or(0));
}

bool IsSameProduct(const SProductIdentity& inLeft, const SProductIdentity& inRight)
{
    return inLeft.mEffectID == inRight.mEffectID && inLeft.mManufacturerID == inRight.mManufacturerID &&
           inLeft.mProductID == inRight.mProductID && inLeft.mPlugInID == inRight.mPlugInID;
}

COutcome<CStateChunk> TakeChunk(const SProductIdentity& inProduct, CInstance& inInstance, AAX_CTypeID inId)
{
    const auto problem = [inId](const char* inCall, AAX_Result inResult)
    {
        return SProblem{fmt::format("The chunk {} cannot be saved: {} answered {}.", NameOfFourCharCode(inId),
                                    inCall, NameOfResult(inResult))};
    };
    std::uint32_t size = 0;
    if (const AAX_Result result = inInstance.Parameters().GetChunkSize(inId, &size))
        return problem("GetChunkSize", result);
    CStateChunk chunk(size);
    AAX_SPlugInChunk& record = chunk.Record();
    record.mManufacturerID = inProduct.mManufacturerID;
    record.mProductID = inProduct.mProductID;
    record.mPlugInID = inProduct.mPlugInID;
    record.mChunkID = inId;
    if (const AAX_Result result = inInstance.Parameters().GetChunk(inId, &record))
        return problem("GetChunk", result);
    return chunk;
}
} // namespace

SProductIdentity IdentityOf(const CModule& inModule)
{
    const SEffect& effect = inModule.Effect();
    return {effect.mID, effect.mNames.empty() ? std::string() : effect.mNames.front(),
            CodeOf(effect, kAAX_PropertyManufacturerID), CodeOf(effect, kAAX_PropertyProductID),
            CodeOf(effect, kAAX_PropertyPluginID)};
}

std::string NameOfProduct(const SProductIdentity& inProduct)
{
    return fmt::format("{} ({}, {} {})", inProduct.mName, inProduct.mEffectID,
                       NameOfFourCharCode(inProduct.mManufacturerID),
                       NameOfFourCharCode(inProduct.mPlugInID));
}

CStateChunk::CStateChunk(std::size_t inDataSize) : mMemory(kHeaderSize + inDataSize)
{
    Record().mSize = static_cast<std::int32_t>(inDataSize);
}

std::span<const std::byte> CStateChunk::Data() const noexcept
{
    const auto size = static_cast<std::size_t>(std::max(Record().mSize, 0));
    return std::span(mMemory).subspan(kHeaderSize, std::min(size, mMemory.size() - kHeaderSize));
}

std::span<std::byte> CStateChunk::Room() noexcept { return std::span(mMemory).subspan(kHeaderSize); }

COutcome<SInstanceState> TakeState(const CModule& inModule, CInstance& inInstance)
{
    const CStage stage("it was being asked for its state");
    SInstanceState state{IdentityOf(inModule), {}};
    std::int32_t count = 0;
    if (const AAX_Result result = inInstance.Parameters().GetNumberOfChunks(&count))
        return SProblem{
            fmt::format("The module does not say how many chunks it has: {}.", NameOfResult(result))};
    for (std::int32_t i = 0; i < count; ++i)
    {
        AAX_CTypeID id = 0;
        if (const AAX_Result result = inInstance.Parameters().GetChunkIDFromIndex(i, &id))
            return SProblem{
                fmt::format("The module does not name its chunk {}: {}.", i, NameOfResult(result))};
        auto chunk = TakeChunk(state.mProduct, inInstance, id);
        if (!chunk)
            return chunk.Problem();
        state.mChunks.push_back(std::move(*chunk));
    }
    return state;
}

COutcome<SDone> CheckProduct(const CModule& inModule, const SInstanceState& inState)
{
    const SProductIdentity own = IdentityOf(inModule);
    if (!IsSameProduct(own, inState.mProduct))
        return SProblem{fmt::format("The state belongs to {}, not to {}.", NameOfProduct(inState.mProduct),
                                    NameOfProduct(own))};
    return SDone{};
}

COutcome<SDone> GiveState(const CModule& inModule, CInstance& inInstance, const SInstanceState& inState)
{
    if (const auto own = CheckProduct(inModule, inState); !own)
        return own.Problem();
    const CStage stage("it was being given a state");
    for (const CStateChunk& chunk : inState.mChunks)
        if (const AAX_Result result =
                inInstance.Parameters().SetChunk(chunk.Record().mChunkID, &chunk.Record()))
            return SProblem{fmt::format("The chunk {} cannot be loaded: SetChunk answered {}.",
                                        NameOfFourCharCode(chunk.Record().mChunkID), NameOfResult(result))};
    return SDone{};
}

COutcome<bool> IsAsSaved(CInstance& inInstance, const SInstanceState& inState)
{
    const CStage stage("its state was being compared");
    bool isSame = true;
    for (const CStateChunk& chunk : inState.mChunks)
    {
        AAX_CBoolean isEqual = 0;
        if (const AAX_Result result = inInstance.Parameters().CompareActiveChunk(&chunk.Record(), &isEqual))
            return SProblem{fmt::format("The chunk {} cannot be compared: CompareActiveChunk answered {}.",
                                        NameOfFourCharCode(chunk.Record().mChunkID), NameOfResult(result))};
        isSame = isSame && isEqual != 0;
    }
    return isSame;
}
