#pragma once
#include "Examples/common/SParameterInfo.h"

#include <cstddef>
#include <span>

/** A plug-in as its editor sees it. Parameters are named by their number, values are 0 to 1. */
class IEditedEffect
{
public:
    virtual std::span<const SParameterInfo> EditedParameters() const noexcept = 0;
    virtual float EditedValue(std::size_t inParameter) const noexcept = 0;
    /** The person takes hold of a control; the host hears of it. */
    virtual void BeginEdit(std::size_t inParameter) = 0;
    /** Sets the value and tells the host; between begin and end. */
    virtual void PerformEdit(std::size_t inParameter, float inValue) = 0;
    virtual void EndEdit(std::size_t inParameter) = 0;

protected:
    ~IEditedEffect() = default;
};
