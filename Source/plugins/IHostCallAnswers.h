#pragma once
#include "Interfaces/VST2/HostAnswers.h"

#include <optional>

/** Answers host calls of a CVst2Host's plug-ins ahead of that host. */
class IHostCallAnswers
{
public:
    /** @return nothing for what the host answers by itself. On whatever thread the plug-in calls its host. */
    virtual std::optional<VstIntPtr> AnswerCall(const SHostCall& inCall) = 0;

protected:
    ~IHostCallAnswers() = default;
};
