#include "Interfaces/ACF/ACFPtr.h"
#include "Source/AaxAdapter_Parameters.h"
#include "Tests/doubles/ScriptedModule.h"
#include "Tools/aaxhost/host/CHostLog.h"
#include "Tools/aaxhost/host/CInstanceHost.h"
#include "Tools/fuzz/FuzzChunk.h"

#include <cstdlib>

namespace
{
/** An instance around the scripted plug-in that takes every input of the run. */
struct SSubject
{
    SSubject()
    {
        mModule.Script().mParameters = {0.25F, 0.5F};
        mModule.Script().mShape.flags = effFlagsProgramChunks;
        if (mInstance->Initialize(mHost.Unknown()) != kAAX_Success || mModule.Script().mInstances.empty())
            std::abort(); // the plug-in does not lie where it should
    }

    ScriptedModule mModule;
    CHostLog mLog;
    CInstanceHost mHost{mLog};
    AaxAdapter_Parameters* mInstance = static_cast<AaxAdapter_Parameters*>(AaxAdapter_Parameters::Create());
    ACFPtr<AAX_IACFEffectParameters> mReference{mInstance};
};
} // namespace

// The first byte says which of the two chunks the rest is.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* inData, std::size_t inSize)
{
    static SSubject subject;
    if (inSize == 0)
        return 0;
    const AAX_CTypeID id = inData[0] % 2 == 0 ? AAX_FourCharCode("0001") : AAX_FourCharCode("elck");
    CFuzzChunk chunk(std::span(inData + 1, inSize - 1));
    if (subject.mInstance->SetChunk(id, &chunk.Record()) != kAAX_Success)
        std::abort();
    AAX_CBoolean isEqual = 0;
    chunk.Record().mChunkID = id;
    if (subject.mInstance->CompareActiveChunk(&chunk.Record(), &isEqual) != kAAX_Success)
        std::abort();
    (void)subject.mHost.DeliverUpdates(*subject.mInstance); // as a host does between two loads
    std::uint32_t size = 0;
    if (subject.mInstance->GetChunkSize(id, &size) != kAAX_Success)
        std::abort();
    CFuzzChunk saved(size);
    if (subject.mInstance->GetChunk(id, &saved.Record()) != kAAX_Success)
        std::abort();
    subject.mLog.Clear();
    (void)subject.mModule.Script().TakeLog(); // neither may grow with the run
    return 0;
}
