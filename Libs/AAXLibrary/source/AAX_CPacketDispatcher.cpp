#include "Libs/AAXLibrary/source/AAX_CPacketDispatcher.h"

#include "Interfaces/AAX/AAX_IController.h"
#include "Interfaces/AAX/AAX_IEffectParameters.h"
#include "Interfaces/AAX/AAX_IParameter.h"
#include "Libs/AAXLibrary/source/AAX_ExceptionBarrier.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace
{
template <class Value>
AAX_Result Write(const Value& inValue, AAX_CPacket& outPacket)
{
    std::memcpy(outPacket.mPacketData.Get(sizeof(inValue)), &inValue, sizeof(inValue));
    outPacket.mDataSize = sizeof(inValue);
    return kAAX_Success;
}
} // namespace

void AAX_CPacketDispatcher::Initialize(AAX_IController* inController,
                                       AAX_IEffectParameters* inEffectParameters)
{
    mController = inController;
    mEffectParameters = inEffectParameters;
}

void AAX_CPacketDispatcher::Clear()
{
    const AAX_CMutexScope lock(mLockGuard);
    mPacketsHandlers.clear();
    mPacketsHolder.clear();
}

AAX_Result AAX_CPacketDispatcher::RegisterPacket(AAX_CParamID inId, AAX_CFieldIndex inField,
                                                 const AAX_IPacketHandler* inHandler)
{
    if (inId == nullptr || inHandler == nullptr)
        return kAAX_ErrorNullArgument;
    const AAX_CMutexScope lock(mLockGuard);
    std::unique_ptr<AAX_CPacket>& packet = mPacketsHolder[inField];
    if (packet == nullptr)
        packet = std::make_unique<AAX_CPacket>(inField);
    mPacketsHandlers.emplace(inId, SHandler{packet.get(), inHandler->Clone()});
    return kAAX_Success;
}

AAX_Result AAX_CPacketDispatcher::RegisterPacket(AAX_CParamID inId, AAX_CFieldIndex inField)
{
    const AAX_CPacketHandler<AAX_CPacketDispatcher> handler(
        this, &AAX_CPacketDispatcher::GenerateSingleValuePacket);
    return RegisterPacket(inId, inField, &handler);
}

AAX_Result AAX_CPacketDispatcher::SetDirty(AAX_CParamID inId, bool inDirty)
{
    if (inId == nullptr)
        return kAAX_ErrorNullArgument;
    const AAX_CMutexScope lock(mLockGuard);
    const auto [first, last] = mPacketsHandlers.equal_range(std::string_view(inId));
    std::for_each(first, last, [=](const auto& inEntry) { inEntry.second.mPacket->mDirty = inDirty; });
    return kAAX_Success;
}

AAX_Result AAX_CPacketDispatcher::Dispatch()
{
    const AAX_CMutexScope lock(mLockGuard);
    SDispatched dispatched;
    for (const auto& [id, handler] : mPacketsHandlers)
        if (handler.mPacket->mDirty)
            GenerateAndPost(id.c_str(), handler, dispatched);
    return dispatched.mContained != kAAX_Success ? dispatched.mContained : dispatched.mPosted;
}

void AAX_CPacketDispatcher::GenerateAndPost(AAX_CParamID inId, const SHandler& inHandler,
                                            SDispatched& ioResult)
{
    const AAX_Result contained = AAX_Contained(
        [&, this]
        {
            AAX_CPacket& packet = *inHandler.mPacket;
            if (inHandler.mHandler->Call(inId, packet) == kAAX_Success)
                ioResult.mPosted = Post(packet);
            packet.mDirty = false;
            return kAAX_Success;
        });
    if (contained != kAAX_Success)
        ioResult.mContained = contained;
}

AAX_Result AAX_CPacketDispatcher::Post(const AAX_CPacket& inPacket)
{
    if (mController == nullptr)
        return kAAX_ErrorNullObject;
    return mController->PostPacket(inPacket.mID, inPacket.mPacketData.Get(), inPacket.mDataSize);
}

AAX_Result AAX_CPacketDispatcher::GenerateSingleValuePacket(AAX_CParamID inId, AAX_CPacket& outPacket)
{
    AAX_IParameter* parameter = nullptr;
    if (mEffectParameters == nullptr || mEffectParameters->GetParameter(inId, &parameter) != kAAX_Success ||
        parameter == nullptr)
        return kAAX_ErrorNullObject;

    bool flag = false;
    float real = 0.0F;
    std::int32_t integer = 0;
    double wideReal = 0.0;
    if (parameter->GetValueAsBool(&flag))
        return Write(std::int32_t{flag ? 1 : 0}, outPacket);
    if (parameter->GetValueAsFloat(&real))
        return Write(real, outPacket);
    if (parameter->GetValueAsInt32(&integer))
        return Write(integer, outPacket);
    if (parameter->GetValueAsDouble(&wideReal))
        return Write(wideReal, outPacket);
    return kAAX_ErrorNullObject;
}
