#pragma once
#include "Interfaces/AAX/AAX_Types.h"

/**
 * The place in a host's window where an editor shows itself. The order of the declarations is the order of
 * the slots.
 */
class AAX_IViewContainer
{
public:
    virtual ~AAX_IViewContainer() = default;
    /** What `GetPtr` points at; 1 is a Cocoa view, 0 nothing. */
    virtual std::int32_t GetType() = 0;
    virtual void* GetPtr() = 0; // the host's; null when there is no view
    [[nodiscard]] virtual AAX_Result GetModifiers(std::uint32_t* outModifiers) = 0;
    [[nodiscard]] virtual AAX_Result SetViewSize(AAX_Point& ioSize) = 0;
    [[nodiscard]] virtual AAX_Result HandleParameterMouseDown(AAX_CParamID inId,
                                                              std::uint32_t inModifiers) = 0;
    [[nodiscard]] virtual AAX_Result HandleParameterMouseDrag(AAX_CParamID inId,
                                                              std::uint32_t inModifiers) = 0;
    [[nodiscard]] virtual AAX_Result HandleParameterMouseUp(AAX_CParamID inId, std::uint32_t inModifiers) = 0;
};
