#pragma once
#include "Tools/aaxhost/survey/SurveyPlugin.h"
#include "Tools/aaxhost/survey/SurveyRow.h"

#include <functional>

/** Makes the folders that a survey writes into. */
COutcome<SDone> MakeSurveyFolders(const SSurveySettings& inSettings);

/**
 * Has each plug-in looked at in a process of its own, some at a time. Of each is kept a record below the
 * output folder, as soon as it is done; one that is there already is taken as it is while the plug-in, the
 * tools and what is asked are the same, unless all is asked for again.
 *
 * @param inDone hears each row when it is there, those that were kept first; a problem of its own ends the
 * survey.
 * @return all rows in the order of the plug-ins.
 */
COutcome<std::vector<SSurveyRow>> RunSurvey(
    const std::vector<SFoundPlugin>& inPlugins, const SSurveySettings& inSettings,
    const std::function<COutcome<SDone>(const SSurveyRow&, bool inWasKept)>& inDone);
