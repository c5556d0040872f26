#pragma once
#include "Libs/AAXLibrary/source/AAX_CMutex.h"
#include "Libs/AAXLibrary/source/AAX_CPacket.h"
#include "Libs/AAXLibrary/source/AAX_IPacketHandler.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

class AAX_IController;
class AAX_IEffectParameters;

/**
 * Carries parameter changes to the algorithm: which parameter feeds which field of the algorithm's record,
 * how, and which fields wait to be sent.
 *
 * There is one packet per field, however many parameters feed it, and the packet carries the dirty flag.
 * Owns the packets and clones of the handlers.
 *
 * Threads: all operations are safe on any thread, one at a time. Handlers run and packets are posted with
 * the lock held; a handler may call back on its own thread and must not wait for another that does.
 */
class AAX_CPacketDispatcher
{
public:
    AAX_CPacketDispatcher() = default;
    AAX_CPacketDispatcher(const AAX_CPacketDispatcher&) = delete;
    AAX_CPacketDispatcher& operator=(const AAX_CPacketDispatcher&) = delete;

    /** Neither is owned; with null nothing is posted, or no single value generated. */
    void Initialize(AAX_IController* inController, AAX_IEffectParameters* inEffectParameters);

    /** Forgets every packet and handler; not from inside a handler or while a packet is posted. */
    void Clear();

    /** @param inHandler stays the caller's. @return kAAX_ErrorNullArgument without identifier or handler. */
    AAX_Result RegisterPacket(AAX_CParamID inId, AAX_CFieldIndex inField,
                              const AAX_IPacketHandler* inHandler);
    /** The packet is the parameter's value. */
    AAX_Result RegisterPacket(AAX_CParamID inId, AAX_CFieldIndex inField);

    /** @return kAAX_Success, also for an identifier without packets. */
    AAX_Result SetDirty(AAX_CParamID inId, bool inDirty = true);

    /**
     * Fills and posts every dirty packet, in the order of the identifiers' bytes. A packet whose handler
     * fails is not posted and waits for the next change; one whose handler throws stays dirty.
     * @return what the controller answered to the last packet, kAAX_Success when none was posted;
     *         kAAX_ErrorNullObject when a handler has thrown.
     */
    AAX_Result Dispatch();

    /**
     * Writes a parameter's value in the machine's byte order: 4 bytes for a bool (0 or 1), a float or an
     * integer, 8 for a double.
     * @return kAAX_ErrorNullObject when there is no such parameter or it is a text.
     */
    AAX_Result GenerateSingleValuePacket(AAX_CParamID inId, AAX_CPacket& outPacket);

private:
    struct SHandler
    {
        AAX_CPacket* mPacket = nullptr; // one of mPacketsHolder
        std::unique_ptr<AAX_IPacketHandler> mHandler;
    };

    struct SDispatched
    {
        AAX_Result mPosted = kAAX_Success;    // of the last packet posted
        AAX_Result mContained = kAAX_Success; // not so when a handler has thrown
    };

    void GenerateAndPost(AAX_CParamID inId, const SHandler& inHandler, SDispatched& ioResult);
    AAX_Result Post(const AAX_CPacket& inPacket);

    std::map<AAX_CFieldIndex, std::unique_ptr<AAX_CPacket>> mPacketsHolder;
    std::multimap<std::string, SHandler, std::less<>> mPacketsHandlers;
    AAX_IController* mController = nullptr;
    AAX_IEffectParameters* mEffectParameters = nullptr;
    AAX_CMutex mLockGuard;
};
