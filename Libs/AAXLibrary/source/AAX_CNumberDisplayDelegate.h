#pragma once
#include "Interfaces/AAX/AAX_IDisplayDelegate.h"
#include "Libs/AAXLibrary/source/AAX_CString.h"

#include <cstdint>
#include <limits>

/** Shows a real number with `Precision` digits after the point, without a unit. */
template <typename T, std::uint32_t Precision, std::uint32_t SpaceAfter>
class AAX_CNumberDisplayDelegate : public AAX_IDisplayDelegate<T>
{
    static_assert(std::numeric_limits<T>::is_iec559); // a number too large for T becomes infinity
    static_assert(SpaceAfter == 0, "there is no unit to keep away from the number");

public:
    AAX_CNumberDisplayDelegate* Clone() const override { return new AAX_CNumberDisplayDelegate(*this); }

    bool ValueToString(T inValue, AAX_CString* outText) const override
    {
        if (outText == nullptr)
            return false;
        outText->Clear().AppendNumber(static_cast<double>(inValue), Precision);
        return true;
    }

    /** Cuts the text, without rounding; a point is not left at the end. A negative limit counts as 0. */
    bool ValueToString(T inValue, std::int32_t inMaxNumChars, AAX_CString* outText) const override
    {
        if (!ValueToString(inValue, outText))
            return false;
        const auto limit = static_cast<std::uint32_t>(inMaxNumChars > 0 ? inMaxNumChars : 0);
        if (outText->Length() > limit)
            outText->Erase(limit, outText->Length() - limit);
        if (limit > 0 && outText->Length() == limit && (*outText)[limit - 1] == '.')
            outText->Erase(limit - 1, 1);
        return true;
    }

    /** Stores 0 when the text does not start with a number. */
    bool StringToValue(const AAX_CString& inText, T* outValue) const override
    {
        if (outValue == nullptr)
            return false;
        double value = 0.0;
        const bool converted = inText.ToDouble(&value);
        *outValue = static_cast<T>(value);
        return converted;
    }
};
