#pragma once
#include "Interfaces/AAX/AAX_ITaperDelegate.h"

#include <type_traits>

/** Maps a switch onto 0 and 1; every normalized value above 0, however small, is on. */
template <typename T>
class AAX_CBinaryTaperDelegate : public AAX_ITaperDelegate<T>
{
    static_assert(std::is_same_v<T, bool>);

public:
    AAX_CBinaryTaperDelegate* Clone() const override { return new AAX_CBinaryTaperDelegate(*this); }
    T GetMaximumValue() const override { return true; }
    T GetMinimumValue() const override { return false; }
    T ConstrainRealValue(T inValue) const override { return inValue; }
    T NormalizedToReal(double inNormalizedValue) const override { return inNormalizedValue > 0.0; }
    double RealToNormalized(T inRealValue) const override { return inRealValue ? 1.0 : 0.0; }
};
