#pragma once

/** What all tapers have in common, whatever the type of their real values. */
class AAX_ITaperDelegateBase
{
public:
    virtual ~AAX_ITaperDelegateBase() = default;
};

/**
 * Maps between a parameter's real values and the normalized ones, 0 to 1, that the host automates. The order
 * of the declarations is the order of the slots.
 */
template <typename T>
class AAX_ITaperDelegate : public AAX_ITaperDelegateBase
{
public:
    virtual AAX_ITaperDelegate* Clone() const = 0; // owned by the caller
    virtual T GetMaximumValue() const = 0;
    virtual T GetMinimumValue() const = 0;
    virtual T ConstrainRealValue(T value) const = 0;
    virtual T NormalizedToReal(double normalizedValue) const = 0;
    virtual double RealToNormalized(T realValue) const = 0;
};
