#include "Tests/macho/subjects/RuntimeSubject.h"

#include "Tests/macho/subjects/RuntimeExceptions.h"
#include "Tests/macho/subjects/UnwindShapes.h"

#include <stdexcept>

namespace
{
class CRuntimeSubject final : public IRuntimeSubject
{
public:
    void Release() override { delete this; }

    void Throw() override { throw std::invalid_argument("thrown on request"); }
    int CallHost(IRuntimeHost* inHost) override
    {
        return inHost->ThrowFive() + 1;
    } // else no frame stays here
    bool CatchFromHost(IRuntimeHost* inHost) override
    {
        try
        {
            inHost->Throw();
        }
        catch (...)
        {
            return true;
        }
        return false;
    }
    int ThrowAndCatch(int inThrown, int* outLiveObjects) override
    {
        return ThrowSomethingAndCatchIt(inThrown, *outLiveObjects);
    }
    int CountLostRegisters() override { return LostWithFramePointer() + LostWithoutFramePointer(); }
};
} // namespace

extern "C" __attribute__((visibility("default"))) IRuntimeSubject* MakeRuntimeSubject()
{
    return new CRuntimeSubject; // the caller's, until Release()
}
