#pragma once
#include "Interfaces/VST2/HostAnswers.h"

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
};

/** What such a host tells of itself. */
struct SHostFacts
{
    SServices mServices;
    double mRate = 0.0; // Hz
    bool mIsRendering = false;
    std::string& mFolder; // of the plug-in; plug-ins keep its address
};

/** @return nothing where the call is no question about the host, or the host answers none. */
std::optional<VstIntPtr> AnswerQuestion(const SHostFacts& inFacts, const SHostCall& inCall);
