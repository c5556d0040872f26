#pragma once
#include "Interfaces/AAX/AAX_IACFHost.h"
#include "Interfaces/AAX/AAX_IViewContainer.h"

/**
 * The host's view container of one editor.
 *
 * Without the host's interface `SetViewSize` succeeds and does nothing; the other calls answer 0, null or
 * kAAX_ErrorUnsupported. NOTE: the host's interface is not released when this object goes.
 */
class AAX_VViewContainer final : public AAX_IViewContainer
{
public:
    explicit AAX_VViewContainer(IACFUnknown* inContainer); // may be null

    std::int32_t GetType() override;
    void* GetPtr() override;
    AAX_Result GetModifiers(std::uint32_t* outModifiers) override;
    AAX_Result SetViewSize(AAX_Point& ioSize) override;
    AAX_Result HandleParameterMouseDown(AAX_CParamID inId, std::uint32_t inModifiers) override;
    AAX_Result HandleParameterMouseDrag(AAX_CParamID inId, std::uint32_t inModifiers) override;
    AAX_Result HandleParameterMouseUp(AAX_CParamID inId, std::uint32_t inModifiers) override;

private:
    AAX_IACFViewContainer* mContainer = nullptr;
};
