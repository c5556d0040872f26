#pragma once
#include <cstdint>

/**
 * Text that a host and a module hand to each other. The order of the declarations is the order of the slots.
 *
 * Bytes are passed through as given; a null argument is an error of the caller.
 */
class AAX_IString
{
public:
    virtual ~AAX_IString() = default;
    virtual std::uint32_t Length() const = 0;
    virtual std::uint32_t MaxLength() const = 0;
    virtual const char* Get() const = 0; // NUL-terminated, valid until the next change
    virtual void Set(const char* text) = 0;
    virtual AAX_IString& operator=(const AAX_IString& other) = 0;
    virtual AAX_IString& operator=(const char* text) = 0;

protected:
    AAX_IString() = default;
    AAX_IString(const AAX_IString&) = default;
};
