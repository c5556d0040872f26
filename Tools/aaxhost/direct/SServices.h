#pragma once
#include "Interfaces/VST2/HostQuestions.h"

#include <optional>
#include <string>

/** What a host does for a plug-in beyond the least: one for each feature of a product that is about it. */
struct SServices
{
    bool mWholeTime = false; // every field of the time record, and what of it is valid
    bool mAnswers = false;   // to questions about the host
    bool mIdleTime = false;
    bool mSizes = false; // for the editor
    bool mTakesMidi = false;

    /**
     * @param inRate    Hz.
     * @param inFolder  of the plug-in; it keeps the address of its text.
     * @return nothing where the call is no question about the host, or the host answers none.
     */
    std::optional<VstIntPtr> Answer(const SHostCall& inCall, double inRate, bool inIsRendering,
                                    std::string& inFolder) const;
};
