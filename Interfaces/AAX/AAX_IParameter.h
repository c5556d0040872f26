#pragma once
#include "Interfaces/AAX/AAX_Types.h"

class AAX_CString;
class AAX_IAutomationDelegate;
class AAX_IDisplayDelegateBase;
class AAX_IString;
class AAX_ITaperDelegateBase;

/**
 * One control of a plug-in. The order of the declarations is the order of the slots.
 *
 * Normalized values are 0 to 1. The `Set...` operations are requests: with an automation delegate attached
 * the value changes when the host calls `UpdateNormalizedValue`, without one at once.
 *
 * Threads: the host serializes all calls of one parameter.
 */
class AAX_IParameter
{
public:
    virtual ~AAX_IParameter() = default;

    virtual AAX_CParamID Identifier() const = 0; // lives as long as the parameter
    virtual void SetName(const AAX_CString& name) = 0;
    virtual const AAX_CString& Name() const = 0;
    /** Replaces the earlier name of the same length. */
    virtual void AddShortenedName(const AAX_CString& name) = 0;
    /** The longest fitting name; the shortest there is when none fits. Valid until a name is changed. */
    virtual const AAX_CString& ShortenedName(std::int32_t numCharacters) const = 0;
    virtual void ClearShortenedNames() = 0;

    virtual bool Automatable() const = 0;
    /** Not owned; null detaches. The parameter unregisters itself when it is destroyed. */
    virtual void SetAutomationDelegate(AAX_IAutomationDelegate* delegate) = 0;
    virtual void Touch() = 0;
    virtual void Release() = 0;

    virtual void SetNormalizedValue(double normalizedValue) = 0;
    virtual double GetNormalizedValue() const = 0;
    /** Leaves the current value alone. */
    virtual void SetNormalizedDefaultValue(double normalizedValue) = 0;
    virtual double GetNormalizedDefaultValue() const = 0;
    virtual void SetToDefaultValue() = 0;
    virtual void SetNumberOfSteps(std::uint32_t steps) = 0;
    virtual std::uint32_t GetNumberOfSteps() const = 0;
    virtual std::uint32_t GetStepValue() const = 0; // 0 to steps - 1
    virtual void SetStepValue(std::uint32_t step) = 0;

    virtual bool GetValueString(AAX_CString* valueString) const = 0;
    /** The limit is not applied; `GetStringFromNormalizedValue` has one that is. */
    virtual bool GetValueString(std::int32_t maxNumChars, AAX_CString* valueString) const = 0;
    /** @return false also for a value out of range, whose clamped normalization is stored nevertheless. */
    virtual bool GetNormalizedValueFromString(const AAX_CString& valueString,
                                              double* normalizedValue) const = 0;
    /** @return false when the value is out of range; the text is written nevertheless. */
    virtual bool GetStringFromNormalizedValue(double normalizedValue, AAX_CString& valueString) const = 0;
    virtual bool GetStringFromNormalizedValue(double normalizedValue, std::int32_t maxNumChars,
                                              AAX_CString& valueString) const = 0;
    virtual bool SetValueFromString(const AAX_CString& valueString) = 0;

    /** The pair that matches the type of the parameter's real value works; all others return false and do
     * nothing. */
    virtual bool GetValueAsBool(bool* value) const = 0;
    virtual bool GetValueAsInt32(std::int32_t* value) const = 0;
    virtual bool GetValueAsFloat(float* value) const = 0;
    virtual bool GetValueAsDouble(double* value) const = 0;
    virtual bool GetValueAsString(AAX_IString* value) const = 0;
    virtual bool SetValueWithBool(bool value) = 0;
    virtual bool SetValueWithInt32(std::int32_t value) = 0;
    virtual bool SetValueWithFloat(float value) = 0;
    virtual bool SetValueWithDouble(double value) = 0;
    virtual bool SetValueWithString(const AAX_IString& value) = 0;

    virtual void SetType(AAX_EParameterType type) = 0;
    virtual AAX_EParameterType GetType() const = 0;
    virtual void SetOrientation(std::int32_t orientation) = 0; // a set of bits, 0 the default
    virtual std::int32_t GetOrientation() const = 0;
    /**
     * Takes a clone; a delegate for values of another type is ignored.
     * @param preserveValue   true keeps the real value, false the normalized one.
     */
    virtual void SetTaperDelegate(AAX_ITaperDelegateBase& taper, bool preserveValue) = 0;
    /** Takes a clone; a delegate for values of another type is ignored. */
    virtual void SetDisplayDelegate(AAX_IDisplayDelegateBase& display) = 0;

    /** The host's decision: stores the value and posts it back when it is new. */
    virtual void UpdateNormalizedValue(double normalizedValue) = 0;
};
