#include "Libs/AAXLibrary/source/AAX_CParameter.h"

#include "Interfaces/AAX/AAX_IAutomationDelegate.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <type_traits>

namespace
{
/**
 * Every call of the host's automation ends here: a parameter has no way to report that the host refused one,
 * and its own state does not depend on the answer.
 */
void IgnoreResult(AAX_Result) noexcept {}
} // namespace

template <typename T>
AAX_CParameter<T>::AAX_CParameter(const char* inIdentifier, const AAX_CString& inName, T inDefaultValue,
                                  const AAX_ITaperDelegate<T>& inTaperDelegate,
                                  const AAX_IDisplayDelegate<T>& inDisplayDelegate, bool inAutomatable)
    : mName(inName),
      mAutomatable(inAutomatable),
      mTaperDelegate(inTaperDelegate.Clone()),
      mDisplayDelegate(inDisplayDelegate.Clone()),
      mDefaultValue(inDefaultValue)
{
    if (inIdentifier != nullptr)
        std::strncpy(mIdentifier.data(), inIdentifier, mIdentifier.size() - 1);
    // Named with the class: no derived class takes part before its own construction.
    AAX_CParameter::SetNumberOfSteps(kInitialSteps);
    AAX_CParameter::UpdateNormalizedValue(mTaperDelegate->RealToNormalized(mDefaultValue));
}

template <typename T>
AAX_CParameter<T>::~AAX_CParameter()
{
    if (mAutomationDelegate != nullptr)
        IgnoreResult(mAutomationDelegate->UnregisterParameter(mIdentifier.data()));
}

template <typename T>
AAX_CParamID AAX_CParameter<T>::Identifier() const
{
    return mIdentifier.data();
}

template <typename T>
void AAX_CParameter<T>::SetName(const AAX_CString& inName)
{
    mName = inName;
}

template <typename T>
const AAX_CString& AAX_CParameter<T>::Name() const
{
    return mName;
}

template <typename T>
void AAX_CParameter<T>::AddShortenedName(const AAX_CString& inName)
{
    mShortenedNames.insert_or_assign(static_cast<std::int32_t>(inName.Length()), inName);
}

template <typename T>
const AAX_CString& AAX_CParameter<T>::ShortenedName(std::int32_t inNumCharacters) const
{
    if (inNumCharacters >= static_cast<std::int32_t>(mName.Length()) || mShortenedNames.empty())
        return mName;
    const auto tooLong = mShortenedNames.upper_bound(inNumCharacters);
    return tooLong == mShortenedNames.begin() ? tooLong->second : std::prev(tooLong)->second;
}

template <typename T>
void AAX_CParameter<T>::ClearShortenedNames()
{
    mShortenedNames.clear();
}

template <typename T>
bool AAX_CParameter<T>::Automatable() const
{
    return mAutomatable;
}

template <typename T>
void AAX_CParameter<T>::SetAutomationDelegate(AAX_IAutomationDelegate* inDelegate)
{
    if (mAutomationDelegate != nullptr)
        IgnoreResult(mAutomationDelegate->UnregisterParameter(mIdentifier.data()));
    mAutomationDelegate = inDelegate;
    if (mAutomationDelegate != nullptr)
        IgnoreResult(mAutomationDelegate->RegisterParameter(mIdentifier.data()));
}

template <typename T>
void AAX_CParameter<T>::Touch()
{
    if (mAutomationDelegate != nullptr)
        IgnoreResult(mAutomationDelegate->PostTouchRequest(Identifier()));
}

template <typename T>
void AAX_CParameter<T>::Release()
{
    if (mAutomationDelegate != nullptr)
        IgnoreResult(mAutomationDelegate->PostReleaseRequest(Identifier()));
}

template <typename T>
void AAX_CParameter<T>::RequestNormalizedValue(double inNormalizedValue)
{
    if (mAutomationDelegate == nullptr)
    {
        mNeedNotify = true;
        UpdateNormalizedValue(inNormalizedValue);
        return;
    }
    Touch();
    IgnoreResult(mAutomationDelegate->PostSetValueRequest(Identifier(), inNormalizedValue));
    Release();
}

template <typename T>
void AAX_CParameter<T>::SetValue(T inValue)
{
    RequestNormalizedValue(mTaperDelegate->RealToNormalized(inValue));
}

template <typename T>
void AAX_CParameter<T>::SetNormalizedValue(double inNormalizedValue)
{
    SetValue(mTaperDelegate->NormalizedToReal(inNormalizedValue));
}

template <typename T>
double AAX_CParameter<T>::GetNormalizedValue() const
{
    return mTaperDelegate->RealToNormalized(mValue);
}

template <typename T>
void AAX_CParameter<T>::SetNormalizedDefaultValue(double inNormalizedValue)
{
    mDefaultValue = mTaperDelegate->ConstrainRealValue(mTaperDelegate->NormalizedToReal(inNormalizedValue));
}

template <typename T>
double AAX_CParameter<T>::GetNormalizedDefaultValue() const
{
    return mTaperDelegate->RealToNormalized(mDefaultValue);
}

template <typename T>
void AAX_CParameter<T>::SetToDefaultValue()
{
    SetValue(mDefaultValue);
}

template <typename T>
void AAX_CParameter<T>::SetNumberOfSteps(std::uint32_t inSteps)
{
    mNumSteps = inSteps;
}

template <typename T>
std::uint32_t AAX_CParameter<T>::GetNumberOfSteps() const
{
    return mNumSteps;
}

template <typename T>
std::uint32_t AAX_CParameter<T>::GetStepValue() const
{
    const std::uint32_t steps = GetNumberOfSteps();
    if (steps < 2)
        return 0;
    const double last = steps - 1.0;
    const double step = GetNormalizedValue() * last + 0.5;
    if (!(step > 0.0)) // also a NaN, which no integer stands for
        return 0;
    return static_cast<std::uint32_t>(std::min(step, last));
}

template <typename T>
void AAX_CParameter<T>::SetStepValue(std::uint32_t inStep)
{
    const std::uint32_t steps = GetNumberOfSteps();
    if (steps >= 2)
        SetNormalizedValue(std::clamp(inStep / (steps - 1.0), 0.0, 1.0));
}

template <typename T>
bool AAX_CParameter<T>::GetValueString(AAX_CString* outText) const
{
    return mDisplayDelegate->ValueToString(mValue, outText);
}

template <typename T>
bool AAX_CParameter<T>::GetValueString(std::int32_t, AAX_CString* outText) const
{
    return mDisplayDelegate->ValueToString(mValue, outText);
}

template <typename T>
bool AAX_CParameter<T>::IsInRange(T inValue) const
{
    return inValue <= mTaperDelegate->GetMaximumValue() && mTaperDelegate->GetMinimumValue() <= inValue;
}

template <typename T>
bool AAX_CParameter<T>::GetNormalizedValueFromString(const AAX_CString& inText,
                                                     double* outNormalizedValue) const
{
    T value{};
    if (outNormalizedValue == nullptr || !mDisplayDelegate->StringToValue(inText, &value))
        return false;
    *outNormalizedValue = mTaperDelegate->RealToNormalized(value);
    return IsInRange(value);
}

template <typename T>
bool AAX_CParameter<T>::GetStringFromNormalizedValue(double inNormalizedValue, AAX_CString& outText) const
{
    const T value = mTaperDelegate->NormalizedToReal(inNormalizedValue);
    return mDisplayDelegate->ValueToString(value, &outText) && IsInRange(value);
}

template <typename T>
bool AAX_CParameter<T>::GetStringFromNormalizedValue(double inNormalizedValue, std::int32_t inMaxNumChars,
                                                     AAX_CString& outText) const
{
    const T value = mTaperDelegate->NormalizedToReal(inNormalizedValue);
    return mDisplayDelegate->ValueToString(value, inMaxNumChars, &outText) && IsInRange(value);
}

template <typename T>
bool AAX_CParameter<T>::SetValueFromString(const AAX_CString& inText)
{
    T value{};
    if (!mDisplayDelegate->StringToValue(inText, &value))
        return false;
    SetValue(value);
    return true;
}

template <typename T>
template <typename U>
bool AAX_CParameter<T>::GetValueAs([[maybe_unused]] U* outValue) const
{
    if constexpr (std::is_same_v<T, U>)
    {
        if (outValue == nullptr)
            return false;
        *outValue = mValue;
        return true;
    }
    else
    {
        return false;
    }
}

template <typename T>
template <typename U>
bool AAX_CParameter<T>::SetValueWith([[maybe_unused]] U inValue)
{
    if constexpr (std::is_same_v<T, U>)
        SetValue(inValue);
    return std::is_same_v<T, U>;
}

template <typename T>
bool AAX_CParameter<T>::GetValueAsBool(bool* outValue) const
{
    return GetValueAs(outValue);
}

template <typename T>
bool AAX_CParameter<T>::GetValueAsInt32(std::int32_t* outValue) const
{
    return GetValueAs(outValue);
}

template <typename T>
bool AAX_CParameter<T>::GetValueAsFloat(float* outValue) const
{
    return GetValueAs(outValue);
}

template <typename T>
bool AAX_CParameter<T>::GetValueAsDouble(double* outValue) const
{
    return GetValueAs(outValue);
}

template <typename T>
bool AAX_CParameter<T>::GetValueAsString(AAX_IString*) const
{
    return false;
}

template <typename T>
bool AAX_CParameter<T>::SetValueWithBool(bool inValue)
{
    return SetValueWith(inValue);
}

template <typename T>
bool AAX_CParameter<T>::SetValueWithInt32(std::int32_t inValue)
{
    return SetValueWith(inValue);
}

template <typename T>
bool AAX_CParameter<T>::SetValueWithFloat(float inValue)
{
    return SetValueWith(inValue);
}

template <typename T>
bool AAX_CParameter<T>::SetValueWithDouble(double inValue)
{
    return SetValueWith(inValue);
}

template <typename T>
bool AAX_CParameter<T>::SetValueWithString(const AAX_IString&)
{
    return false;
}

template <typename T>
void AAX_CParameter<T>::SetType(AAX_EParameterType inType)
{
    mType = inType;
}

template <typename T>
AAX_EParameterType AAX_CParameter<T>::GetType() const
{
    return mType;
}

template <typename T>
void AAX_CParameter<T>::SetOrientation(std::int32_t inOrientation)
{
    mOrientation = inOrientation;
}

template <typename T>
std::int32_t AAX_CParameter<T>::GetOrientation() const
{
    return mOrientation;
}

template <typename T>
void AAX_CParameter<T>::SetTaperDelegate(AAX_ITaperDelegateBase& inTaper, bool inPreserveValue)
{
    const auto* const taper = dynamic_cast<const AAX_ITaperDelegate<T>*>(&inTaper);
    if (taper == nullptr)
        return;
    const double oldNormalizedValue = GetNormalizedValue();
    mTaperDelegate.reset(taper->Clone());
    mNeedNotify = true;
    if (inPreserveValue)
        SetValue(mValue);
    else
        UpdateNormalizedValue(oldNormalizedValue);
}

template <typename T>
void AAX_CParameter<T>::SetDisplayDelegate(AAX_IDisplayDelegateBase& inDisplay)
{
    const auto* const display = dynamic_cast<const AAX_IDisplayDelegate<T>*>(&inDisplay);
    if (display == nullptr)
        return;
    mDisplayDelegate.reset(display->Clone());
    if (mAutomationDelegate != nullptr) // so that the host draws the text again
        IgnoreResult(mAutomationDelegate->PostCurrentValue(mIdentifier.data(), GetNormalizedValue()));
}

template <typename T>
void AAX_CParameter<T>::UpdateNormalizedValue(double inNormalizedValue)
{
    const T newValue = mTaperDelegate->NormalizedToReal(inNormalizedValue);
    if (!mNeedNotify && newValue == mValue)
        return;
    mValue = newValue;
    if (mAutomationDelegate != nullptr)
        IgnoreResult(mAutomationDelegate->PostCurrentValue(Identifier(), inNormalizedValue));
    mNeedNotify = false;
}

template class AAX_CParameter<float>;
template class AAX_CParameter<bool>;
