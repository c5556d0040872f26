#pragma once

/** What the survey's page has beside the style of the report pages. */
extern const char* const kSurveyStyle;
/** Makes the table's heads buttons that sort it. */
extern const char* const kSurveyScript;
