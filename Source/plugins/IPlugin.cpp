#include "Source/plugins/IPlugin.h"

#include "Source/plugins/FileBytes.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace
{
constexpr std::byte kStateFileVersion{1};

bool IsRoute(long inNumber, long inCount) { return inNumber >= 0 && inNumber < inCount; }
} // namespace

IPlugin::IPlugin() = default;
IPlugin::~IPlugin() = default;

void IPlugin::ProcessEvents(long /*inCount*/, unsigned long* /*inMessages*/) {}

void IPlugin::StateToFile(const char* inPath)
{
    long size = 0;
    const auto* const state = static_cast<const std::byte*>(GetState(size));
    std::vector<std::byte> bytes{kStateFileVersion};
    if (state != nullptr && size > 0)
        bytes.insert(bytes.end(), state, state + size);
    (void)WriteFileBytes(inPath, bytes); // the interface has no word for a failure
}

void IPlugin::FileToState(const char* inPath)
{
    std::optional<std::vector<std::byte>> bytes = ReadFileBytes(inPath);
    if (bytes.has_value() && bytes->size() >= 2)
        SetState(bytes->data() + 1, static_cast<long>(bytes->size() - 1));
}

std::int32_t IPlugin::GetInterfaceType() { return mInterfaceType; }

long IPlugin::GetBridgeHostIndex() { return -1; }

bool IPlugin::SaveToFile(const char* /*inPath*/) { return false; }

bool IPlugin::LoadFromFile(const char* /*inPath*/) { return false; }

bool IPlugin::IsInstrument() { return mInstrument; }

bool IPlugin::RouteMidiToPlugin(long inRow, long inColumn, bool inOn)
{
    if (!IsRoute(inRow, kRoutes) || !IsRoute(inColumn, kRoutes))
        return false;
    mMidiRoutes[static_cast<std::size_t>(inRow)][static_cast<std::size_t>(inColumn)] = inOn;
    return true;
}

void IPlugin::SetMasterIndex(long inIndex) { mMasterIndex = inIndex; }

bool IPlugin::IsMidiRouted(long inRow, long inColumn) const
{
    return IsRoute(inRow, kRoutes) && IsRoute(inColumn, kRoutes) &&
           mMidiRoutes[static_cast<std::size_t>(inRow)][static_cast<std::size_t>(inColumn)];
}
