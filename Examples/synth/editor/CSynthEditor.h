#pragma once
#include "Examples/common/IEffectEditor.h"
#include "Examples/synth/editor/CKnobPanel.h"

#include <memory>

class IPanelView;

/** The synthesizer's editor: a knob for every parameter. */
class CSynthEditor final : public IEffectEditor
{
public:
    explicit CSynthEditor(IEditedEffect& ioSynth); // outlives the editor
    ~CSynthEditor() override;

    ERect Rectangle() const noexcept override;
    bool Open(void* inParent) override;
    void Close() noexcept override;
    void Idle() override;

private:
    CKnobPanel mPanel;
    std::unique_ptr<IPanelView> mView;
};
