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
     * @return `00003 Shape            mouse down, shift`; empty for a call that is no gesture and no
     * automation.
     */
    std::string Describe(const std::string& inLogLine) const;

private:
    std::map<std::string, std::string> mNames; // by identifier
};
