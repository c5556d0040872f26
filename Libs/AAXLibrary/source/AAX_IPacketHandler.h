#pragma once
#include "Interfaces/AAX/AAX_Types.h"

#include <memory>

class AAX_CPacket;

/** Fills a packet from the parameter that it was registered for. */
class AAX_IPacketHandler
{
public:
    virtual ~AAX_IPacketHandler() = default;
    virtual std::unique_ptr<AAX_IPacketHandler> Clone() const = 0;
    /** @return kAAX_Success when the packet is to be posted. The dispatcher's lock is held. */
    virtual AAX_Result Call(AAX_CParamID inId, AAX_CPacket& outPacket) const = 0;
};

/** A handler that calls a member function of an object, which is not owned and must outlive the dispatcher.
 */
template <class T>
class AAX_CPacketHandler final : public AAX_IPacketHandler
{
public:
    using Function = AAX_Result (T::*)(AAX_CParamID, AAX_CPacket&);

    AAX_CPacketHandler(T* inObject, Function inFunction) : mObject(inObject), mFunction(inFunction) {}

    std::unique_ptr<AAX_IPacketHandler> Clone() const override
    {
        return std::make_unique<AAX_CPacketHandler>(*this);
    }
    AAX_Result Call(AAX_CParamID inId, AAX_CPacket& outPacket) const override
    {
        return (mObject->*mFunction)(inId, outPacket);
    }

private:
    T* mObject = nullptr;
    Function mFunction = nullptr;
};
