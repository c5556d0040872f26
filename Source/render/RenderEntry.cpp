#include "Source/render/RenderEntry.h"

#include "Source/AAX_CInstrumentParameters.h"

AAX_CProcessProc RenderEntry() noexcept
{
    return reinterpret_cast<AAX_CProcessProc>(&AAX_CInstrumentParameters::StaticRenderAudio);
}
