#include "Examples/synth/editor/IPanelView.h"

std::unique_ptr<IPanelView> IPanelView::Create(void* /*inParent*/, CKnobPanel& /*ioPanel*/)
{
    return nullptr;
}
