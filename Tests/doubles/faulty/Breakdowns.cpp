#include "Tests/doubles/faulty/CPlainEffect.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace
{
[[noreturn]] void Crash()
{
    (void)std::raise(SIGSEGV); // ends the process
    std::abort();
}

[[noreturn]] void Hang()
{
    while (true)
        std::this_thread::sleep_for(std::chrono::hours(1)); // beyond every limit
}

/** Which process with this plug-in this one is, by a list in the file that FAULTY_LIVES names. */
std::size_t NumberOfLife()
{
    const std::string own = std::to_string(getpid());
    const char* const file = std::getenv("FAULTY_LIVES");
    std::vector<std::string> lives;
    std::ifstream list(file != nullptr ? file : "");
    for (std::string life; list >> life;)
        lives.push_back(life);
    if (file != nullptr && (lives.empty() || lives.back() != own))
    {
        std::ofstream(file, std::ios::app) << own << '\n';
        lives.push_back(own);
    }
    return lives.size();
}
} // namespace

// What refuses itself, crashes, hangs or throws.
namespace faults
{
AEffect* CrashInEntry(audioMasterCallback) { Crash(); }

AEffect* HangInEntry(audioMasterCallback) { Hang(); }

AEffect* ExitInEntry(audioMasterCallback) { std::exit(3); }

AEffect* ThrowInEntry(audioMasterCallback) { throw std::runtime_error("faulty"); }

AEffect* ReturnNull(audioMasterCallback) { return nullptr; }

/** Is whole but for its mark. */
AEffect* WrongMagic(audioMasterCallback inHost)
{
    static CPlainEffect effect(inHost); // nobody closes what was refused
    effect.Effect()->magic = 0x12345678;
    return effect.Effect();
}

/** Asks for the host's version inside its entry, and takes none for an answer. */
AEffect* RefuseAnyVersion(audioMasterCallback inHost)
{
    (void)inHost(nullptr, audioMasterVersion, 0, 0, nullptr, 0.0F); // whatever it is
    return nullptr;
}

void CrashInOpen(CPlainEffect& ioEffect) { ioEffect.Before(effOpen, &Crash); }

void HangInOpen(CPlainEffect& ioEffect) { ioEffect.Before(effOpen, &Hang); }

void CrashInRender(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [](const SBlock&) { Crash(); };
}

/** Crashes in each process but the third, as by chance. */
void CrashMostly(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [](const SBlock&)
    {
        if (NumberOfLife() != 3)
            Crash();
    };
}

/** Throws when it has written its block. */
void ThrowInRender(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [](const SBlock& inBlock)
    {
        std::fill_n(inBlock.mOutputs[1], inBlock.mFrames, 0.5F);
        throw std::runtime_error("faulty");
    };
}

/** Crashes where the tempo is above any that its maker thought of. */
void Tempo(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [&ioEffect](const SBlock& inBlock)
    {
        const VstTimeInfo* const time = ioEffect.Time();
        if (time != nullptr && time->tempo > 500.0)
            std::abort();
        ioEffect.Render(inBlock);
    };
}

/** Crashes where a parameter moves more often in a tenth of a second than its list of movements has room for.
 */
void Automation(CPlainEffect& ioEffect)
{
    ioEffect.mOnBlock = [&ioEffect, last = 0.0F, frames = 0, movements = 0](const SBlock& inBlock) mutable
    {
        constexpr std::int32_t listFrames = 4800;
        constexpr int room = 50;
        const float gain = ioEffect.Get(kGain);
        movements += gain != last ? 1 : 0;
        last = gain;
        frames += inBlock.mFrames;
        if (frames >= listFrames)
            frames = movements = 0;
        if (movements > room)
            std::abort();
        ioEffect.Render(inBlock);
    };
}

/** Crashes in set-chunk when the chunk is not one of its own. */
void Chunk(CPlainEffect& ioEffect)
{
    ioEffect.mOnCall = [&ioEffect](const SCall& inCall)
    {
        const VstIntPtr result = ioEffect.Answer(inCall);
        if (inCall.mOpcode == effSetChunk && result == 0)
            std::abort();
        return result;
    };
}
} // namespace faults
