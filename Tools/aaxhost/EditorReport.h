#pragma once
#include "Tools/aaxhost/player/CInstance.h"

#include <map>
#include <string>

/** Puts what an editor has its host do into words. */
class CEditorReport
{
public:
    explicit CEditorReport(const std::vector<SParameterInfo>& inParameters);

    /**
     * @param inLogLine a line of the host's log.
     * @return `00003 Shape            mouse down, shift` or `The editor asks for 400 by 300`; empty for a
     * call that is no gesture, no automation and no wish for a size.
     */
    std::string Describe(const std::string& inLogLine) const;

private:
    std::map<std::string, std::string> mNames; // by identifier
};
