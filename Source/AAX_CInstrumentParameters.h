#pragma once
#include "Libs/AAXLibrary/source/AAX_CEffectParameters.h"
#include "Source/AAX_SInstrumentRenderInfo.h"
#include "Source/AAX_SInstrumentSetupInfo.h"

class AAX_IEffectDescriptor;

/**
 * An instance whose component is one instrument: knows how the component is described and how the host's
 * render call finds its way to the instance.
 */
class AAX_CInstrumentParameters : public AAX_CEffectParameters
{
public:
    /**
     * Adds one instrument component to an effect.
     * @return all results of the host, combined by bitwise or: 0 when every call succeeded.
     */
    [[nodiscard]] static AAX_Result StaticDescribe(AAX_IEffectDescriptor* outDescriptor,
                                                   const AAX_SInstrumentSetupInfo& inInfo);

    /** Renders each instance whose record stands from `inBegin` up to `inEnd`. Render thread. */
    static void StaticRenderAudio(AAX_SInstrumentRenderInfo* const inBegin[], const void* inEnd);

    /** Puts this object's address into its private-data field; clears every other field. */
    AAX_Result ResetFieldData(AAX_CFieldIndex inField, void* outData, std::uint32_t inSize) const override;

    /** One block of this instance. Render thread. */
    virtual void RenderAudio(AAX_SInstrumentRenderInfo* ioInfo);
};
