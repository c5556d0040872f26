#include "Source/plugins/IPlugin.h"

#include <cstdio>
#include <memory>
#include <vector>

namespace
{
constexpr unsigned char kStateFileVersion = 1;

struct SFileCloser
{
    void operator()(std::FILE* inFile) const
    {
        (void)std::fclose(inFile);
    } // nothing is reported to the caller
};
using File = std::unique_ptr<std::FILE, SFileCloser>;

/** Reads in pieces instead of asking for the size: what opens like a file (a folder) may claim any size. */
std::vector<unsigned char> ReadWhole(std::FILE* inFile)
{
    constexpr std::size_t kPiece = 65536;
    std::vector<unsigned char> bytes;
    std::size_t count = 0;
    do
    {
        const std::size_t old = bytes.size();
        bytes.resize(old + kPiece);
        count = std::fread(bytes.data() + old, 1, kPiece, inFile);
        bytes.resize(old + count);
    } while (count == kPiece);
    if (std::ferror(inFile) != 0)
    {
        bytes.clear();
    }
    return bytes;
}

bool IsRoute(long inNumber, long inCount) { return inNumber >= 0 && inNumber < inCount; }
} // namespace

IPlugin::IPlugin() = default;
IPlugin::~IPlugin() = default;

void IPlugin::ProcessEvents(long /*inCount*/, unsigned long* /*inMessages*/) {}

void IPlugin::StateToFile(const char* inPath)
{
    long size = 0;
    const void* state = GetState(size);
    const File file(std::fopen(inPath, "wb"));
    if (file == nullptr)
    {
        return;
    }
    (void)std::fputc(kStateFileVersion,
                     file.get()); // a full disk leaves a short file, as a failed open leaves none
    if (state != nullptr && size > 0)
    {
        (void)std::fwrite(state, 1, static_cast<std::size_t>(size), file.get());
    }
}

void IPlugin::FileToState(const char* inPath)
{
    const File file(std::fopen(inPath, "rb"));
    if (file == nullptr)
    {
        return;
    }
    std::vector<unsigned char> bytes = ReadWhole(file.get());
    if (bytes.size() >= 2)
    {
        SetState(bytes.data() + 1, static_cast<long>(bytes.size() - 1));
    }
}

std::int32_t IPlugin::GetInterfaceType() { return mInterfaceType; }

long IPlugin::GetBridgeHostIndex() { return -1; }

bool IPlugin::SaveToFile(const char* /*inPath*/) { return false; }

bool IPlugin::LoadFromFile(const char* /*inPath*/) { return false; }

bool IPlugin::IsInstrument() { return mInstrument; }

bool IPlugin::RouteMidiToPlugin(long inRow, long inColumn, bool inOn)
{
    if (!IsRoute(inRow, kRoutes) || !IsRoute(inColumn, kRoutes))
    {
        return false;
    }
    mMidiRoutes[static_cast<std::size_t>(inRow)][static_cast<std::size_t>(inColumn)] = inOn;
    return true;
}

void IPlugin::SetMasterIndex(long inIndex) { mMasterIndex = inIndex; }

bool IPlugin::IsMidiRouted(long inRow, long inColumn) const
{
    return IsRoute(inRow, kRoutes) && IsRoute(inColumn, kRoutes) &&
           mMidiRoutes[static_cast<std::size_t>(inRow)][static_cast<std::size_t>(inColumn)];
}
