#pragma once
#include "Source/CPluginParameter.h"

#include <atomic>
#include <memory>
#include <optional>
#include <string>

class AAX_IParameter;
class CVst2Plugin;

/**
 * The programs of a plug-in that has at least two, as one parameter of the host: its real value is the
 * program's number from 0, its text the program's name.
 *
 * What the host chooses goes to the plug-in, what the plug-in chooses by itself to the host, as with any
 * parameter of the plug-in (`CPluginParameter`); the plug-in is asked for its program at each beat, since
 * most do not report it. Threads: the main thread, but for `Take`.
 */
class CPrograms
{
public:
    static constexpr const char* kID = "Program"; // its name, too
    static constexpr long kMost = 65536;          // a higher number is a mistake, and counts as none

    /** @param inPlugin until `Detach`. @return nothing for a plug-in that has no choice; else the parameter,
     * which this object must outlive. */
    std::unique_ptr<AAX_IParameter> Attach(CVst2Plugin& inPlugin);
    /** Then there are none. */
    void Detach() noexcept;
    bool AreThere() const noexcept { return mCount > 0; }

    /** The host updates the parameter; any thread. Normalized, as all values here. */
    void Take(double inValue) noexcept;
    /** @return the program that the host chose last; each once. */
    std::optional<long> TakeChoice() noexcept;
    /** A beat of the timer: what a host left unanswered counts as its choice. */
    void TimerBeat() noexcept;
    /** Has the plug-in choose it. @return false where it has it already. */
    bool Choose(long inProgram);
    /** @return what the host is to be asked for: the value of a program that the plug-in chose by itself. */
    std::optional<double> TakeReport();
    /** Has the plug-in choose a saved one, a number from 0, which the host is going to be asked for. Does
     * nothing with one that it has not. */
    void Restore(double inProgram);

    /** Of the plug-in; from 0. */
    long Current() const;
    double Value() const { return ValueOf(Current()); }
    /** Its number, from 1, where it has none. */
    std::string Name(long inProgram) const;
    /** By its name, its number from 1, or how its name begins. */
    std::optional<long> Find(const std::string& inText) const;

private:
    double ValueOf(long inProgram) const noexcept;
    void NoteRequest(long inProgram) noexcept;

    CVst2Plugin* mPlugin = nullptr;
    long mCount = 0; // of its programs when it was attached; 0: no choice
    long mKnown = 0; // the program that the host knows, or is asked for
    // Of the host, which the plug-in has not got yet: the host's threads write, the main thread takes.
    std::atomic<long> mChoice{-1};
    std::optional<CPluginParameter> mRequests; // to the host, where there are programs
};
