#pragma once
#include "Extensions/GUI/AAX_CEffectGUI_VST.h"
#include "Source/IAttachedEditor.h"
#include "Source/plugins/IEditHost.h"

#include <array>
#include <atomic>
#include <cstdint>

class AAX_IViewContainer;
class AaxAdapter_Parameters;
class CVst2Host;
class CVst2Plugin;

/**
 * The instance's editor as the host sees it: the wrapped plug-in's own, opened in the host's native view. It
 * makes no frame of its own.
 *
 * The plug-in's gestures become the host's mouse calls for the parameter; the value itself goes by way of the
 * instance. Threads: everything on the host's GUI thread, except that gestures may come on any thread of the
 * plug-in. No exception of the plug-in leaves a call: it fails with kAAX_ErrorNullObject.
 */
class CAaxEditor : public AAX_CEffectGUI_VST, public IEditHost, public IAttachedEditor
{
public:
    /** The factory that the description registers; the object starts with no references. */
    static AAX_IEffectGUI* Create();

    CAaxEditor() = default;
    /** Leaves the plug-in's editor as it is. */
    ~CAaxEditor() override;

    /** What the plug-in gives as its editor's size; 0 by 0 where there is no plug-in, editor or rectangle. */
    AAX_Result GetViewSize(AAX_Point* outSize) const override;
    /** Nothing while there is a plug-in: its views draw themselves. */
    AAX_Result Draw(AAX_Rect* inRect) override;
    /** Idle time for the plug-in's editor, also while it is closed. */
    AAX_Result TimerWakeup() override;
    /** Nothing: the plug-in knows its values. */
    AAX_Result ParameterUpdated(AAX_CParamID inId) override;

    // What no module calls: the next two, `IxToId` and `IdToIx`. They are for editors that derive from this.
    virtual void SetParameter(long inIndex, float inValue);
    /** @return 0 for an unknown parameter. */
    virtual float GetParameter(long inIndex);
    // Each returns the view container's result, kAAX_ErrorUnsupported without one.
    std::int32_t HandleParameterMouseDown(long inIndex, unsigned long inModifiers) override;
    std::int32_t HandleParameterMouseDrag(long inIndex, unsigned long inModifiers) override;
    std::int32_t HandleParameterMouseUp(long inIndex, unsigned long inModifiers) override;
    /** Hears the gestures of this host's plug-ins from now on. Not owned; null hears nothing more. */
    virtual void SetHost(CVst2Host* inHost);

    /** The text lives in this object until the next call. */
    const char* IxToId(long inIndex);
    static long IdToIx(const char* inId);

    void ForgetInstance() noexcept override;

protected:
    /** Opens the plug-in's editor in the host's view. */
    void CreateViewContainer() override;
    /** Closes it. The plug-in stays known: it gets idle time, and opens again with the next container. */
    void DeleteViewContainer() override;
    /** Hears no more of the instance. A derived class does this first when it goes: calls may be on their
     * way. */
    void LeaveInstance() noexcept;
    AaxAdapter_Parameters* Instance() const { return mInstance; }
    CVst2Plugin* Plugin() const { return mPlugin; }

private:
    void CreateViewContents() override {}
    void OpenEditor();

    std::array<char, 24> mIdBuffer{};
    CVst2Host* mHost = nullptr;     // the instance's
    CVst2Plugin* mPlugin = nullptr; // the instance's
    AaxAdapter_Parameters* mInstance = nullptr;
    // The container that hears gestures: the GUI thread stores it (release) as it was made, the plug-in's
    // threads load it (acquire). A container that was taken away stays valid as long as this object.
    std::atomic<AAX_IViewContainer*> mGestureContainer = nullptr;
};
