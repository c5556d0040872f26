#pragma once
#include "Interfaces/AAX/AAX_Types.h"
#include "Tools/support/COutcome.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

class CInstance;
class CModule;

/** Which product a state belongs to, as the module describes itself. */
struct SProductIdentity
{
    std::string mEffectID;
    std::string mName;
    AAX_CTypeID mManufacturerID = 0;
    AAX_CTypeID mProductID = 0;
    AAX_CTypeID mPlugInID = 0;
};
SProductIdentity IdentityOf(const CModule& inModule);
/** "Kars (com.example.kars, 'DstH' 'Kars')". */
std::string NameOfProduct(const SProductIdentity& inProduct);

/** One chunk in memory that ends where its data does. */
class CStateChunk
{
public:
    /** @param inDataSize bytes of the data, which is zero at first. */
    explicit CStateChunk(std::size_t inDataSize);
    AAX_SPlugInChunk& Record() noexcept { return *reinterpret_cast<AAX_SPlugInChunk*>(mMemory.data()); }
    const AAX_SPlugInChunk& Record() const noexcept
    {
        return *reinterpret_cast<const AAX_SPlugInChunk*>(mMemory.data());
    }
    /** As much of the data as the record's size field says, at most what there is. */
    std::span<const std::byte> Data() const noexcept;
    /** All of it. */
    std::span<std::byte> Room() noexcept;

private:
    std::vector<std::byte> mMemory;
};

/** All that a host keeps of an instance. */
struct SInstanceState
{
    SProductIdentity mProduct;
    std::vector<CStateChunk> mChunks; // in the order in which the module reports them
};

/** Asks the instance for every chunk that it reports, each with its size first. */
COutcome<SInstanceState> TakeState(const CModule& inModule, CInstance& inInstance);
/** Refuses another product's state with a sentence that names both. */
COutcome<SDone> CheckProduct(const CModule& inModule, const SInstanceState& inState);
/** Whether the instance says of every chunk that it is as saved: where not, a host's compare light is on. */
COutcome<bool> IsAsSaved(CInstance& inInstance, const SInstanceState& inState);
/** Gives the chunks back in their order; what the module asks for meanwhile is answered in the next cycle.
 * Refuses another product's. */
COutcome<SDone> GiveState(const CModule& inModule, CInstance& inInstance, const SInstanceState& inState);
