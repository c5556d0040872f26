#pragma once
#include "Examples/common/IEffectEditor.h"

/** An editor that shows nothing. */
class CBlankEditor final : public IEffectEditor
{
public:
    ERect Rectangle() const noexcept override { return {0, 0, 100, 200}; }
    bool Open(void*) override { return true; }
    void Close() noexcept override {}
    void Idle() override {}
};
