#pragma once
#include "Tools/aaxhost/check/SCheck.h"
#include "Tools/aaxhost/player/CInstance.h"
#include "Tools/aaxhost/player/CModule.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

inline constexpr double kCheckRate = 48000.0; // Hz, where a check does not choose another

/** One of those that sessions run at, from 44.1 to 192 kHz. */
bool IsSessionRate(double inRate);
inline bool IsUnusualRate(double inRate) { return !IsSessionRate(inRate); }

/** What stands behind the instances that a check makes. */
enum class ESubject
{
    Module,
    PluginAlone // called directly, described as the module does
};

/** What the checks that go through several rates or block sizes go through; empty: each its own table. */
struct SSizes
{
    std::vector<double> mRates;        // Hz
    std::vector<std::int32_t> mBlocks; // frames, 1 to SRenderCall::kBufferFrames
};

/**
 * What a check works on: a module, opened when it is first asked for, and instances of it.
 *
 * Lives in the process of its one check. Threads: the main thread.
 */
class CCheckContext
{
public:
    CCheckContext(std::string inModulePath, int inStrictness, EAnswers inAnswers = EAnswers::Late,
                  ESubject inSubject = ESubject::Module, SSizes inSizes = {});
    CCheckContext(const CCheckContext&) = delete;
    CCheckContext& operator=(const CCheckContext&) = delete;

    const std::string& ModulePath() const noexcept { return mModulePath; }
    int Strictness() const noexcept { return mStrictness; }
    CHostLog& Log() noexcept { return mLog; }
    /** Opens it on the first call; ends the check as failed when it does not open. */
    CModule& Module();
    /** For a module that a check opens for itself: its instances become the plug-in's, where that is the
     * subject. */
    void UnwrapWhereAlone(CModule& ioModule);
    /** All instances must be gone. */
    void CloseModule() { mModule.reset(); }
    /** Of the instances that are made from now on. */
    SInstanceOptions& InstanceOptions() noexcept { return mInstanceOptions; }
    /** Ends the check as failed when there is none to be had. */
    std::unique_ptr<CInstance> MakeInstance(double inRate = kCheckRate);
    /**
     * The rates that a check goes through: those of its table, or where others were asked for, these.
     * @param inAre which of the others are this check's; skips it where none is.
     */
    std::vector<double> Rates(std::vector<double> inTable, bool (*inAre)(double)) const;
    /** The sizes of blocks, likewise. */
    std::vector<std::int32_t> Blocks(std::vector<std::int32_t> inTable,
                                     bool (*inAre)(std::int32_t) = nullptr) const;
    /** From inLow at strictness 1 to inHigh at 10, in equal ratios. */
    int Scaled(int inLow, int inHigh) const;

    bool TakesMidi();
    /** It is in the category of instruments; modules describe inputs for these, too. */
    bool IsInstrument();
    /** @param inName as in features.txt of the product's bundle: "TIME". */
    bool HasFeature(std::string_view inName);
    /** Skips the check where it has not. */
    void NeedFeature(std::string_view inName);
    /** The module file as the loader knows it; empty where it cannot be told. */
    std::string ModuleFile();

private:
    std::string mModulePath;
    int mStrictness;
    ESubject mSubject;
    SSizes mSizes;
    SInstanceOptions mInstanceOptions;
    CHostLog mLog;
    std::unique_ptr<CModule> mModule; // goes before the log that it writes into
};

/** Numbers that look random and are the same in every run with the same seed. */
class CSequence
{
public:
    explicit CSequence(std::uint32_t inSeed = 1)
        : mState(std::max((inSeed + 1000U * gSeed) * 2654435761U + 1U, 1U))
    {
    }
    /** For the sequences that are made from now on. */
    static void SetSeed(std::uint32_t inSeed) noexcept { gSeed = inSeed; }
    std::uint32_t Next() noexcept;
    /** 0 up to inCount - 1. */
    std::uint32_t Below(std::uint32_t inCount) noexcept { return Next() % inCount; }
    /** 0 up to 1. */
    double Fraction() noexcept { return Next() / 4294967296.0; }

private:
    static inline std::uint32_t gSeed = 0;
    std::uint32_t mState;
};

/** The identifiers of the wrapped plug-in's parameters, by their index: not those that modules add. */
std::vector<std::string> PluginParameters(CInstance& inInstance);
/** Those of them that a host may automate. */
std::vector<std::string> AutomatableParameters(CInstance& inInstance);
/** As above; skips the check where there are none. */
std::vector<std::string> NeededParameters(CInstance& inInstance);
/** "'00003' (Cutoff)". */
std::string NameOfParameter(CInstance& inInstance, const std::string& inID);
/** The value as a module tells it after it was asked for its state, which is when it looks at the plug-in's
 * own values; not a number where it does not tell. */
double ValueOf(CInstance& inInstance, const std::string& inID);
/** So many cycles of answers are long enough: a plug-in that echoes each value once needs two. */
inline constexpr int kMostCycles = 20;
/** Answers what waits until nothing does. @return false when that takes more than kMostCycles. */
bool DeliverAll(CInstance& inInstance);
