#include "Source/DescribedShape.h"

#include "Source/StemLayout.h"
#include "Source/plugins/CVst2Plugin.h"
#include "Source/plugins/ProductFeatures.h"
#include "Source/plugins/ProductOptions.h"

#include <mutex>

namespace
{
// Written by the host's loader thread at the end of a description, read by whatever thread starts an
// instance.
std::mutex gDescribedMutex;
std::optional<SDescribedShape> gDescribed;

bool SendsMidi(const CVst2Plugin& inPlugin)
{
    return inPlugin.CanDo("sendVstMidiEvent") || inPlugin.CanDo("sendVstEvents");
}
} // namespace

SDescribedShape ShapeOf(const CVst2Plugin& inPlugin)
{
    const SStemLayout layout = StemLayoutOfPorts(inPlugin.InputPorts(), inPlugin.OutputPorts());
    return {layout.InputChannelCount(),
            layout.OutputChannelCount(),
            inPlugin.AcceptedMidiAtLoad() || kMidiInput,
            kProductFeatures.mMidiOutput && SendsMidi(inPlugin),
            AAX_StemChannelCount(layout.mOutputStem),
            ESecondChannel::kHosts,
            ESecondChannel::kHosts};
}

void RememberDescription(const SDescribedShape& inShape)
{
    const std::lock_guard lock(gDescribedMutex);
    if (!gDescribed)
        gDescribed = inShape;
}

std::optional<SDescribedShape> RememberedDescription()
{
    const std::lock_guard lock(gDescribedMutex);
    return gDescribed;
}
