#include "Examples/broken/CPlainEffect.h"

#include <memory>

namespace
{
/** An editor that shows nothing, takes hold of a control as soon as it is open, and never lets go. */
class CHoldingEditor final : public IEffectEditor
{
public:
    explicit CHoldingEditor(IEditedEffect& inEffect) : mEffect(inEffect) {}

    ERect Rectangle() const noexcept override { return {0, 0, 100, 200}; }
    bool Open(void*) override
    {
        mEffect.BeginEdit(0);
        return true;
    }
    void Close() noexcept override {}
    void Idle() override {}

private:
    IEditedEffect& mEffect;
};
} // namespace

/** Begins an edit that it never ends. */
class CBrokenGestures final : public CPlainEffect
{
public:
    explicit CBrokenGestures(audioMasterCallback inHost) : CPlainEffect(inHost)
    {
        SetEditor(std::make_unique<CHoldingEditor>(Edited()));
    }
};

BROKEN_PLUGIN(CBrokenGestures)
