#pragma once
#include <cstdint>

/**
 * Stands in for VSTGUI where it is not given: the declarations that the effect GUI base uses, in VSTGUI's own
 * header paths. Nothing is shown.
 * A unit test runs against VSTGUI itself as well and expects the same of both.
 */
namespace VSTGUI
{
using CCoord = double;
using int32_t = std::int32_t;

/** Lives until its last reference is gone; the maker has the first. */
class CBaseObject
{
public:
    CBaseObject() = default;
    CBaseObject(const CBaseObject&) = delete;
    CBaseObject& operator=(const CBaseObject&) = delete;
    virtual ~CBaseObject() = default;
    virtual void forget()
    {
        if (--mReferences == 0)
            delete this;
    }
    virtual void remember() { ++mReferences; }

private:
    std::int32_t mReferences = 1;
};
} // namespace VSTGUI
