#pragma once
#include "Interfaces/AAX/AAX_IEffectGUI.h"
#include "Interfaces/AAX/AAX_IEffectParameters.h"
#include "Interfaces/ACF/ACFPtr.h"

#include <memory>
#include <utility>
#include <vector>

class AAX_IController;
class AAX_ITransport;
class AAX_IViewContainer;
class AAX_VController;
class AAX_VTransport;
class AAX_VViewContainer;

/**
 * Base of an instance's editor: keeps the ways to the host's controller, transport and view container and to
 * the instance's parameters, and leaves what is shown to the derived class.
 *
 * Any of the host's interfaces may be missing. An exception, also of the derived class's operations below,
 * fails the call with kAAX_ErrorNullObject. Wrappers that a further `Initialize` or `SetViewContainer`
 * replaces are kept until the editor is destroyed: a derived class may still hold them.
 *
 * Threads: the host's main thread.
 */
class AAX_CEffectGUI : public AAX_IEffectGUI
{
public:
    AAX_CEffectGUI();
    ~AAX_CEffectGUI() override;

    /** @return kAAX_ErrorNullArgument for null; the controller is then one that nobody answers. */
    AAX_Result Initialize(IACFUnknown* inController) override;
    /** Gives the controller, the parameters and the transport back; the view container stays. */
    AAX_Result Uninitialize() override;
    AAX_Result NotificationReceived(AAX_CTypeID inType, const void* inData, std::uint32_t inSize) override;
    /** Null takes the view away again. */
    AAX_Result SetViewContainer(IACFUnknown* inContainer) override;
    AAX_Result GetViewSize(AAX_Point* outSize) const override;
    AAX_Result Draw(AAX_Rect* inRect) override;
    AAX_Result TimerWakeup() override;
    AAX_Result ParameterUpdated(AAX_CParamID inId) override;
    AAX_Result GetCustomLabel(std::int32_t inWhich, AAX_IString* outText) const override;
    AAX_Result SetControlHighlightInfo(AAX_CParamID inId, AAX_CBoolean inOn, std::int32_t inColour) override;

protected:
    /** Once the host's controller is known; there is no view yet. */
    virtual void CreateViewContents() = 0;
    /** A view has come; `GetViewContainer` is it. */
    virtual void CreateViewContainer() = 0;
    /** The view has gone. */
    virtual void DeleteViewContainer() = 0;
    /** Calls `ParameterUpdated` for every parameter of the instance. */
    virtual void UpdateAllParameters();

public:
    std::int32_t GetViewContainerType() const; // 1 is a Cocoa view, 0 none
    void* GetViewContainerPtr() const;         // the host's native view; null when there is none

    /** All are null before `Initialize` or `SetViewContainer`. */
    AAX_IController* GetController();
    const AAX_IController* GetController() const;
    AAX_IEffectParameters* GetEffectParameters();
    const AAX_IEffectParameters* GetEffectParameters() const;
    AAX_IViewContainer* GetViewContainer();
    const AAX_IViewContainer* GetViewContainer() const;
    AAX_ITransport* Transport();
    const AAX_ITransport* Transport() const;

private:
    /** Owners of objects, of which the last one is in use; replaced ones live on. */
    template <class Owner>
    class CLink
    {
    public:
        auto Get() const { return mCurrent; }
        void Set(Owner inOwner)
        {
            const auto current = std::to_address(inOwner);
            if (current != nullptr)
                mOwners.push_back(std::move(inOwner));
            mCurrent = current; // last: the object has an owner now
        }
        /** Nothing is in use any more; the object lives on. */
        void Clear() { mCurrent = nullptr; }
        void Release()
        {
            if (std::exchange(mCurrent, nullptr) != nullptr)
                mOwners.pop_back();
        }

    private:
        decltype(std::to_address(std::declval<Owner>())) mCurrent = nullptr;
        std::vector<Owner> mOwners;
    };

    CLink<std::unique_ptr<AAX_VController>> mController;
    // Of this module, or of whoever answers for the instance: only the interface may be relied on.
    CLink<ACFPtr<AAX_IACFEffectParameters>> mEffectParameters;
    CLink<std::unique_ptr<AAX_VViewContainer>> mViewContainer;
    CLink<std::unique_ptr<AAX_VTransport>> mTransport;
};
