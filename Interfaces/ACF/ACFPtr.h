#pragma once
#include "Interfaces/ACF/ACFInterfaces.h"

#include <utility>

/**
 * Owns one counted reference of a component-model interface.
 *
 * A copy takes a reference of its own; the old reference is given back before a new one is taken over.
 */
template <class T>
class ACFPtr
{
public:
    ACFPtr() noexcept = default;
    /** Takes a further reference; null is allowed. */
    explicit ACFPtr(T* inObject) noexcept : mObject(inObject)
    {
        if (mObject != nullptr)
            mObject->AddRef();
    }
    ACFPtr(const ACFPtr& inOther) noexcept : ACFPtr(inOther.mObject) {}
    ACFPtr(ACFPtr&& ioOther) noexcept : mObject(std::exchange(ioOther.mObject, nullptr)) {}
    ACFPtr& operator=(ACFPtr inOther) noexcept
    {
        std::swap(mObject, inOther.mObject);
        return *this;
    }
    ~ACFPtr() { Reset(); }

    /** Asks for an interface of another object; empty when it is not offered or `inSource` is null. */
    static ACFPtr Query(IACFUnknown* inSource, const acfIID& inIid)
    {
        ACFPtr result;
        if (inSource != nullptr)
            (void)inSource->QueryInterface(inIid, result.Receive()); // a refusal leaves the pointer empty
        return result;
    }

    void Reset() noexcept
    {
        if (T* object = std::exchange(mObject, nullptr))
            object->Release();
    }

    /** The out argument of a call that hands over a reference; what was held is released first. */
    void** Receive() noexcept
    {
        Reset();
        return reinterpret_cast<void**>(&mObject);
    }

    /** Gives the reference to the caller. */
    T* Detach() noexcept { return std::exchange(mObject, nullptr); }

    T* Get() const noexcept { return mObject; }
    T* operator->() const noexcept { return mObject; }
    explicit operator bool() const noexcept { return mObject != nullptr; }

private:
    T* mObject = nullptr;
};
