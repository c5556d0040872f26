#pragma once
#include <cstdint>

/**
 * Stands in for VSTGUI where it is not given: the declarations that the effect GUI base uses, in VSTGUI's own
 * header paths. Nothing is shown; calls are recorded (vstgui_stand_in.h).
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
    virtual void forget();
    virtual void remember() { ++mReferences; }

private:
    std::int32_t mReferences = 1;
};
} // namespace VSTGUI
