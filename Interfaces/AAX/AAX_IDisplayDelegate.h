#pragma once
#include <cstdint>

class AAX_CString;

/** What all displays have in common, whatever the type of their real values. */
class AAX_IDisplayDelegateBase
{
public:
    virtual ~AAX_IDisplayDelegateBase() = default;
};

/**
 * Turns a parameter's real values into text and back; true means success. The order of the declarations is
 * the order of the slots.
 */
template <typename T>
class AAX_IDisplayDelegate : public AAX_IDisplayDelegateBase
{
public:
    virtual AAX_IDisplayDelegate* Clone() const = 0; // owned by the caller
    virtual bool ValueToString(T value, AAX_CString* valueString) const = 0;
    virtual bool ValueToString(T value, std::int32_t maxNumChars, AAX_CString* valueString) const = 0;
    virtual bool StringToValue(const AAX_CString& valueString, T* value) const = 0;
};
