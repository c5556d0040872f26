#pragma once
#include "Interfaces/AAX/AAX_IACFEffectParameters.h"
#include "Interfaces/ACF/CACFUnknown.h"

/** Base of an instance's data model: the host-facing interface on a reference-counted object. */
class AAX_IEffectParameters : public AAX_IACFEffectParameters_V2, public CACFUnknown
{
public:
    ACFRESULT QueryInterface(const acfIID& iid, void** out) final;
    acfUInt32 AddRef() final;
    acfUInt32 Release() final;

    /** Answers both versions of the host-facing interface, everything else as the base. */
    ACFRESULT InternalQueryInterface(const acfIID& iid, void** out) override;
    ~AAX_IEffectParameters() override = default;
};
