#pragma once
#include "Interfaces/AAX/AAX_IACFEffectGUI.h"
#include "Interfaces/ACF/CACFUnknown.h"

/** Base of an instance's editor: the host-facing interface on a reference-counted object. */
class AAX_IEffectGUI : public AAX_IACFEffectGUI, public CACFUnknown
{
public:
    ACFRESULT QueryInterface(const acfIID& iid, void** out) final;
    acfUInt32 AddRef() final;
    acfUInt32 Release() final;

    /** Answers IID_IAAXEffectGUIV1, everything else as the base. */
    ACFRESULT InternalQueryInterface(const acfIID& iid, void** out) override;
    ~AAX_IEffectGUI() override = default;
};
