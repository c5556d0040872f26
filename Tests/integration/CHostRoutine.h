#pragma once
#include "Tools/aaxhost/player/CInstance.h"
#include "Tools/aaxhost/player/InstanceState.h"

#include <cstdint>
#include <memory>
#include <set>
#include <vector>

/**
 * What a host does with an instance, over and over: render, move parameters, save and load, show the editor.
 *
 * Threads: `Render` on one thread at a time, everything else on the main thread.
 */
class CHostRoutine
{
public:
    explicit CHostRoutine(CInstance& inInstance);
    CHostRoutine(const CHostRoutine&) = delete;
    CHostRoutine& operator=(const CHostRoutine&) = delete;

    /** Every input holds kInputLevel. */
    void Render(std::int32_t inFrames, std::uint32_t inPackets);
    /** Asks about each parameter, sets and updates it, and delivers what was asked for. */
    void MoveParameters(double inValue);
    void Save();
    /** Loads what was saved last, in parts that failed to be saved nothing. */
    void Load();
    /** Opens the editor without a window behind it, idles it and closes it. */
    void ShowEditor();
    /** All of it, once. */
    void Everything();

    SRenderCall& Call() { return *mCall; }
    /** Every result that was not success. */
    const std::set<AAX_Result>& Failures() const { return mFailures; }

    static constexpr float kInputLevel = 0.25F;

private:
    void Note(AAX_Result inResult);

    struct SSaved
    {
        AAX_CTypeID mId = 0;
        CStateChunk mChunk;
    };

    CInstance& mInstance;
    std::unique_ptr<SRenderCall> mCall;
    std::vector<SSaved> mSaved;
    std::set<AAX_Result> mFailures;
};
